// Writes what the views show of a file, for a comparison with the rows of the command:
//
//     krofx_view_rows statements|transactions|positions FILE
//
// A row is its columns, "name=value", with an end of its own after each column and each row, since
// texts can have line ends; what is empty is left out.

#include <krofx/host.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace {

using OptionalNumber = std::optional<KRPrecisionInteger>;

class Line {
 public:
  explicit Line(const krofx::OfxText& text) : m_text(&text) {}

  void Add(std::string_view name, std::string_view value) {
    if (value.empty()) return;
    const KRString text = m_text->ToUtf8(KRString(std::string(value).c_str()));
    m_line += std::string(name) + "=" + static_cast<const char*>(text) + kColumnEnd;
  }
  void Add(std::string_view name, const OptionalNumber& number) {
    // With the places that the file gives, as the command writes numbers.
    if (number) Add(name, krofx::ToText(*number, number->Decimal()));
  }
  void Add(std::string_view name, const KRDateTime& date) { Add(name, krofx::ToText(date)); }
  void Add(std::string_view name, std::optional<bool> flag) {
    if (flag) Add(name, std::string_view(*flag ? "true" : "false"));
  }
  ~Line() { std::printf("%s%c", m_line.c_str(), kRowEnd); }

 private:
  static constexpr char kColumnEnd = '\x1f';
  static constexpr char kRowEnd = '\x1e';

  const krofx::OfxText* m_text;
  std::string m_line;
};

void AddAccount(Line& line, const krofx::AccountView& account) {
  line.Add(account.IsInvestment() ? "broker_id" : "bank_id", account.Institution());
  line.Add("branch_id", account.Branch());
  line.Add("account_id", account.Number());
  line.Add("account_type", account.Type());
}

// A currency is a column of its own only where the row says it.
void AddCurrency(Line& line, std::string_view currency, const OptionalNumber& rate,
                 const krofx::StatementView& statement) {
  if (rate || currency != statement.Currency()) line.Add("currency", currency);
  line.Add("rate", rate);
}

void Show(Line& line, const krofx::TransactionView& tx, const krofx::StatementView& statement) {
  line.Add("posted", tx.Posted());
  line.Add("user_date", tx.UserDate());
  line.Add("available", tx.Available());
  line.Add("type", tx.Type());
  line.Add("amount", tx.Amount());
  AddCurrency(line, tx.Currency(), tx.Rate(), statement);
  line.Add("original_currency", tx.OriginalCurrency());
  line.Add("original_rate", tx.OriginalRate());
  line.Add("check", tx.Check());
  line.Add("name", tx.Party());
  line.Add("memo", tx.Memo());
  line.Add("id", tx.Id());
  line.Add("correction", tx.Correction());
  line.Add("corrects", tx.Corrects());
  line.Add("server_id", tx.ServerId());
  line.Add("reference", tx.Reference());
  line.Add("sic", tx.IndustryCode());
  line.Add("payee_id", tx.PayeeId());
  line.Add("payee_city", tx.City());
  line.Add("to_bank", tx.ToAccount().Institution());
  line.Add("to_account", tx.ToAccount().Number());
}

void Show(Line& line, const krofx::InvestmentTransactionView& tx,
          const krofx::StatementView& statement) {
  line.Add("traded", tx.Traded());
  line.Add("settled", tx.Settled());
  line.Add("type", tx.Kind());
  line.Add("detail", tx.Detail());
  line.Add("security", tx.Security());
  line.Add("ticker", tx.Ticker());
  line.Add("security_id", tx.SecurityId());
  line.Add("units", tx.Units());
  line.Add("price", tx.Price());
  line.Add("total", tx.Total());
  AddCurrency(line, tx.Currency(), tx.Rate(), statement);
  line.Add("original_currency", tx.OriginalCurrency());
  line.Add("original_rate", tx.OriginalRate());
  line.Add("security_sub_account", tx.SecuritySubAccount());
  line.Add("money_sub_account", tx.MoneySubAccount());
  line.Add("from_sub_account", tx.FromSubAccount());
  line.Add("to_sub_account", tx.ToSubAccount());
  line.Add("commission", tx.Commission());
  line.Add("fees", tx.Fees());
  line.Add("taxes", tx.Taxes());
  line.Add("load", tx.Load());
  line.Add("markup", tx.Markup());
  line.Add("markdown", tx.Markdown());
  line.Add("withholding", tx.Withholding());
  line.Add("tax_exempt", tx.IsTaxExempt());
  line.Add("accrued_interest", tx.AccruedInterest());
  line.Add("gain", tx.Gain());
  line.Add("cost_basis", tx.CostBasis());
  line.Add("old_units", tx.OldUnits());
  line.Add("split_numerator", tx.SplitNumerator());
  line.Add("split_denominator", tx.SplitDenominator());
  line.Add("direction", tx.Direction());
  if (const auto shares = tx.SharesPerContract()) {
    line.Add("shares_per_contract", std::to_string(*shares));
  }
  line.Add("name", tx.Party());
  line.Add("memo", tx.Memo());
  line.Add("id", tx.Id());
  line.Add("related_id", tx.RelatedId());
  line.Add("server_id", tx.ServerId());
}

void Show(Line& line, const krofx::PositionView& position, const krofx::StatementView& statement) {
  line.Add("type", position.Kind());
  line.Add("security", position.Security());
  line.Add("ticker", position.Ticker());
  line.Add("security_id", position.SecurityId());
  line.Add("security_id_type", position.SecurityIdType());
  line.Add("direction", position.Direction());
  line.Add("sub_account", position.SubAccount());
  line.Add("units", position.Units());
  line.Add("price", position.Price());
  line.Add("value", position.Value());
  AddCurrency(line, position.Currency(), position.Rate(), statement);
  line.Add("price_date", position.PriceDate());
  line.Add("memo", position.Memo());
  line.Add("units_street", position.UnitsStreet());
  line.Add("units_user", position.UnitsUser());
  line.Add("reinvest_dividends", position.ReinvestDividends());
  line.Add("reinvest_gains", position.ReinvestGains());
  line.Add("secured", position.Secured());
}

void Show(Line& line, const krofx::StatementView& statement) {
  AddAccount(line, statement.Account());
  line.Add("account_key", statement.Account().Key());
  line.Add("currency", statement.Currency());
  line.Add("from", statement.From());
  line.Add("to", statement.To());
  line.Add("ledger_balance", statement.Balance());
  line.Add("ledger_date", statement.BalanceDate());
  line.Add("available_balance", statement.Available());
  line.Add("available_date", statement.AvailableDate());
  line.Add("date", statement.AsOf());
  line.Add("available_cash", statement.AvailableCash());
  line.Add("margin_balance", statement.MarginBalance());
  line.Add("short_balance", statement.ShortBalance());
  line.Add("buying_power", statement.BuyingPower());
  line.Add("marketing", statement.Note());
}

template <class Rows>
void ShowAll(Rows rows, const krofx::OfxText& text, const krofx::StatementView& statement) {
  for (const auto row : rows) {
    Line line(text);
    Show(line, row, statement);
    AddAccount(line, statement.Account());
    line.Add("statement_currency", statement.Currency());
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 64;
  const std::string_view table = arguments[1];
  const krofx::Reading reading = krofx::ReadFile(arguments[2]);
  for (const krofx::OfxText& text : reading.texts) {
    for (const krofx::StatementView statement : krofx::Statements(text.root.get())) {
      if (table == "statements") {
        Line line(text);
        Show(line, statement);
      } else if (table == "positions") {
        ShowAll(statement.Positions(), text, statement);
      } else if (statement.Account().IsInvestment()) {
        ShowAll(statement.InvestmentTransactions(), text, statement);
      } else {
        ShowAll(statement.Transactions(), text, statement);
      }
    }
  }
  return 0;
}
