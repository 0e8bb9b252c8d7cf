// Trees are looked at by their views without memory: whichever allocation fails, the alarm says so,
// or all that the views give is there. A path is whole or empty.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "allocation/example_trees.h"
#include "allocation/reading_attempts.h"
#include "allocation/sweep.h"
#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/look.h"
#include "krofx/host/statement_view.h"
#include "krofx/reader/reading.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// What a host writes down of what it is shown.
class Notes {
 public:
  explicit Notes(const OfxText& text) : m_text(&text) {}

  // What each getter gives of a view.
  template <class View, class... Results>
  void AddAll(const View& view, Results (View::*... getters)() const) {
    (Add((view.*getters)()), ...);
    m_shown += "\n";
  }
  void Add(std::string_view text) {
    Write(Str(m_text->ToUtf8(KRString(std::string(text).c_str()))));
  }
  void Add(const std::optional<KRPrecisionInteger>& number) { Write(ToText(number, 2)); }
  void Add(const KRDateTime& date) {
    Write(ToText(date));
    Write(ToText(ToDay(date)));
    const std::optional<Instant> instant = ToInstant(date);
    if (instant) Write(std::to_string(instant->time_since_epoch().count()));
  }
  void Add(std::optional<bool> flag) { Write(flag ? std::to_string(*flag) : ""); }
  void Add(std::optional<s16> number) { Write(number ? std::to_string(*number) : ""); }
  void Add(const AccountView& account) {
    AddAll(account, &AccountView::Institution, &AccountView::Branch, &AccountView::Number,
           &AccountView::Type, &AccountView::Key);
    Write(std::to_string(account.IsCard()) + std::to_string(account.IsInvestment()));
  }
  void Write(std::string_view text) { m_shown.append(text) += ","; }

  const std::string& Shown() const { return m_shown; }

 private:
  const OfxText* m_text;
  std::string m_shown;
};

void Note(Notes& notes, const TransactionView& tx) {
  using View = TransactionView;
  notes.AddAll(tx, &View::Posted, &View::UserDate, &View::Available, &View::Type, &View::Amount,
               &View::Currency, &View::Rate, &View::OriginalCurrency, &View::OriginalRate,
               &View::Check, &View::Party, &View::City, &View::Memo, &View::Id, &View::Correction,
               &View::Corrects, &View::ServerId, &View::Reference, &View::IndustryCode,
               &View::PayeeId, &View::ToAccount);
}

void Note(Notes& notes, const InvestmentTransactionView& tx) {
  using View = InvestmentTransactionView;
  notes.AddAll(tx, &View::Traded, &View::Settled, &View::Kind, &View::Detail, &View::Security,
               &View::Ticker, &View::SecurityId, &View::SecurityIdType, &View::Units, &View::Price,
               &View::Total, &View::Currency, &View::Rate, &View::OriginalCurrency,
               &View::OriginalRate, &View::SecuritySubAccount, &View::MoneySubAccount,
               &View::FromSubAccount, &View::ToSubAccount, &View::Commission, &View::Fees,
               &View::Taxes, &View::Load, &View::Markup, &View::Markdown, &View::Withholding,
               &View::IsTaxExempt, &View::AccruedInterest, &View::Gain, &View::CostBasis,
               &View::OldUnits, &View::SplitNumerator, &View::SplitDenominator, &View::Direction,
               &View::SharesPerContract, &View::Party, &View::Memo, &View::Id, &View::RelatedId,
               &View::ServerId);
}

void Note(Notes& notes, const PositionView& position) {
  using View = PositionView;
  notes.AddAll(position, &View::Kind, &View::Security, &View::Ticker, &View::SecurityId,
               &View::SecurityIdType, &View::Direction, &View::SubAccount, &View::Units,
               &View::Price, &View::Value, &View::PriceDate, &View::Currency, &View::Rate,
               &View::Memo, &View::UnitsStreet, &View::UnitsUser, &View::ReinvestDividends,
               &View::ReinvestGains, &View::Secured);
}

void Note(Notes& notes, const StatementView& statement) {
  using View = StatementView;
  notes.AddAll(statement, &View::Account, &View::Currency, &View::From, &View::To, &View::Balance,
               &View::BalanceDate, &View::Available, &View::AvailableDate, &View::AsOf,
               &View::AvailableCash, &View::MarginBalance, &View::ShortBalance, &View::BuyingPower,
               &View::Note);
  for (const TransactionView each : statement.Transactions()) Note(notes, each);
  for (const InvestmentTransactionView each : statement.InvestmentTransactions()) Note(notes, each);
  for (const PositionView each : statement.Positions()) Note(notes, each);
}

template <class Views>
void NoteAll(Notes& notes, Views views) {
  for (const auto view : views) Note(notes, view);
}

// Looks at all that there is of a reading.
Outcome LookAtViews(const Reading& reading, const Failure& failure) {
  Notes notes(reading.texts[0]);
  {
    const FailingScope scope(failure);
    NoteAll(notes, Statements(reading));
    NoteAll(notes, Transactions(reading));
    NoteAll(notes, InvestmentTransactions(reading));
    NoteAll(notes, Positions(reading));
  }
  return {AlarmIsSet(), notes.Shown()};
}

// Goes through all objects below a root, and writes down their paths.
template <class Source>
Outcome LookAtPaths(const Source& source, const Failure& failure) {
  std::string shown;
  FailingScope scope(failure);
  for (const auto& found : Each<KRDataObj>(source)) {
    shown += PathOf(found, scope) + " " + std::to_string(found->GetMsgSetVersion()) + "\n";
  }
  scope.Pause();
  return {AlarmIsSet(), shown};
}

TEST(FailedAllocations, RaiseTheAlarmOverAViewOrLoseNothing) {
  ForExamples([](const std::string& text) {
    const Reading reading = Read(std::string_view(text));
    if (std::string_view(text).find("STMTRS>") == std::string_view::npos) return;
    Sweep([&](const Failure& failure) { return LookAtViews(reading, failure); });
  });
}

TEST(FailedAllocations, LeaveAPathWholeOrEmptyWithTheAlarmRaised) {
  ForExamples(
      [](const std::string& text) {
        const Reading reading = Read(std::string_view(text));
        Sweep([&](const Failure& failure) { return LookAtPaths(reading, failure); });
      },
      3);
}

// A walk takes memory where it is deeper than any text of OFX, which only files in files are.
TEST(FailedAllocations, RaiseTheAlarmOverADeepWalkOrLeaveNothingOut) {
  constexpr int kDepth = 60;
  KRFile root;
  KRFile* deepest = &root;
  for (int level = 0; level < kDepth; ++level) {
    // Two of one tag on each level: they are counted.
    for (int file = 0; file < 2; ++file) ASSERT_EQ(deepest->AppendSubfile(new KRFile), 1);
    deepest = deepest->GetSubfile(1);
  }
  Sweep([&](const Failure& failure) { return LookAtPaths(root, failure); });
}

}  // namespace
}  // namespace krofx::testing
