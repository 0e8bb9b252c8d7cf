// Which synchronisations there are, and what each needs.

#include "requests/update_request.h"

#include <algorithm>
#include <memory>

#include "requests/account_choice.h"
#include "requests/account_options.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

// What a synchronisation is about.
enum class About { kUser, kBankAccount, kBankOrCard, kInvestment };

struct Kind {
  KRTagID wrapper;
  std::string_view tag;
  std::string_view words;
  Service service;
  About about;
  bool OfferedSet::*offer;  // Null where the message set is offer enough.
};

constexpr Kind kKinds[] = {
    {KRTag_INTRASYNCRQ, "INTRASYNCRQ", "transfers", Service::kBank, About::kBankOrCard,
     &OfferedSet::transfers},
    {KRTag_RECINTRASYNCRQ, "RECINTRASYNCRQ", "recurring transfers", Service::kBank,
     About::kBankOrCard, &OfferedSet::recurring},
    {KRTag_STPCHKSYNCRQ, "STPCHKSYNCRQ", "stop checks", Service::kBank, About::kBankAccount,
     &OfferedSet::stopChecks},
    {KRTag_BANKMAILSYNCRQ, "BANKMAILSYNCRQ", "letters", Service::kBank, About::kBankOrCard,
     &OfferedSet::mail},
    {KRTag_INTERSYNCRQ, "INTERSYNCRQ", "transfers to other banks", Service::kInterbank,
     About::kBankAccount, &OfferedSet::transfers},
    {KRTag_RECINTERSYNCRQ, "RECINTERSYNCRQ", "recurring transfers to other banks",
     Service::kInterbank, About::kBankAccount, &OfferedSet::recurring},
    {KRTag_WIRESYNCRQ, "WIRESYNCRQ", "wires", Service::kWire, About::kBankAccount, nullptr},
    {KRTag_PMTSYNCRQ, "PMTSYNCRQ", "payments", Service::kBillPay, About::kBankAccount, nullptr},
    {KRTag_RECPMTSYNCRQ, "RECPMTSYNCRQ", "recurring payments", Service::kBillPay,
     About::kBankAccount, &OfferedSet::recurring},
    {KRTag_PAYEESYNCRQ, "PAYEESYNCRQ", "payees", Service::kBillPay, About::kUser, nullptr},
    {KRTag_PMTMAILSYNCRQ, "PMTMAILSYNCRQ", "letters on payments", Service::kBillPay, About::kUser,
     nullptr},
    {KRTag_INVMAILSYNCRQ, "INVMAILSYNCRQ", "letters", Service::kInvestment, About::kInvestment,
     &OfferedSet::mail},
    {KRTag_MAILSYNCRQ, "MAILSYNCRQ", "letters", Service::kMail, About::kUser, &OfferedSet::mail}};

KRTagID TagOf(const Account& account) {
  return account.kind == AccountKind::kCard         ? KRTag_CCACCTFROM
         : account.kind == AccountKind::kInvestment ? KRTag_INVACCTFROM
                                                    : KRTag_BANKACCTFROM;
}

bool IsAbout(const Kind& kind, const Account& account) {
  switch (kind.about) {
    case About::kBankAccount:
      return account.kind == AccountKind::kBank;
    case About::kBankOrCard:
      return account.kind != AccountKind::kInvestment;
    case About::kInvestment:
      return account.kind == AccountKind::kInvestment;
    case About::kUser:
      break;
  }
  return false;
}

std::unique_ptr<KRSyncRq> MakeSync(const Kind& kind, const std::string& token, bool again,
                                   const RequestMaker& maker) {
  auto sync = maker.Make<KRSyncRq>(kind.wrapper);
  const KRString text(token.c_str());
  if (again) {
    sync->SetRefresh(u16{1});
  } else if (sync->IsValidTag(KRTag_TOKEN2) != 0) {
    sync->SetToken2(text);
  } else {
    sync->SetToken(text);
  }
  sync->SetRejectIfMissing(u16{0});
  if (sync->IsValidTag(KRTag_INCIMAGES) != 0) {
    sync->SetIncImages(u16{0});
    sync->SetUseHTML(u16{0});
  }
  return sync;
}

}  // namespace

std::vector<UpdateQuestion> AddUpdates(Service service, const OfferedSet& offered,
                                       const std::vector<Account>& accounts,
                                       const SyncTokens& tokens, bool again, RequestMaker& maker) {
  std::vector<UpdateQuestion> added;
  const auto add = [&](const Kind& kind, const Account* account) {
    UpdateQuestion question{std::string(kind.tag), std::nullopt, ""};
    question.key = SyncTokens::KeyOf(maker.GetVersion(), question.wrapper, account);
    auto sync = MakeSync(kind, tokens.Get(question.key), again, maker);
    if (account != nullptr) {
      // Cards have no such synchronisation in the first version.
      if (sync->IsValidTag(TagOf(*account)) == 0) return;
      sync->SetAccount(MakeAccount(*account, maker).release());
      question.account = *account;
    }
    maker.Add(std::move(sync), service);
    added.push_back(std::move(question));
  };
  for (const Kind& kind : kKinds) {
    if (kind.service != service || (kind.offer != nullptr && !(offered.*kind.offer))) continue;
    if (kind.about == About::kUser) add(kind, nullptr);
    for (const Account& account : accounts) {
      if (IsAbout(kind, account)) add(kind, &account);
    }
  }
  return added;
}

std::string_view WordsOfUpdates(const std::string& wrapper) {
  const auto* const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                         [&](const Kind& kind) { return kind.tag == wrapper; });
  return found == std::end(kKinds) ? std::string_view(wrapper) : found->words;
}

}  // namespace krofx::command
