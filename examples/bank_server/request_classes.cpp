// How each part of a request is answered.
//
// KRDataObj::ProcessRequest does nothing and does not visit children, so every part of a request
// that needs an answer has a class of the bank's own here. The request signs on and visits its
// message sets, a set visits its transactions, and a transaction lets its payload answer. A payload
// without a class of its own is answered with the status for an unsupported request.

#include "request_classes.h"

#include <memory>

#include "answers.h"
#include "server_impl.h"

namespace bank_server {
namespace {

// Accepts or refuses the sign-on, and answers it.
KRSignOnRs* SignOn(Exchange& exchange, KRSignOnRq& request, u16 version) {
  exchange.user = exchange.bank.SignOn(request.GetUserId(), request.GetUserPass());
  KRSignOnRs* answer = Factory().NewSignOnRs(version);
  answer->SetStatus(MakeStatus(version, exchange.user != nullptr ? kDone : kSignOnInvalid));
  answer->SetDtServer(exchange.now);
  answer->SetLanguage("ENG");
  if (exchange.user != nullptr) {
    const std::unique_ptr<KRProfileRs> profile(MakeProfile(version, exchange.bank));
    answer->SetDtProfUp(profile->GetDtProfUp());
    answer->SetDtAcctUp(Bank::kAccountsDay);
  }
  KRFI* institution = Factory().NewFI(version);
  institution->SetOrg(Bank::kOrganisation);
  institution->SetFId(Bank::kOrganisationId);
  answer->SetFI(institution);
  return answer;
}

class OwnRequest : public KRRequest {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    Exchange& exchange = server->Now();
    // The sign-on is processed before everything else, wherever it is in the text.
    for (u16 index = 0; index < GetNumMessageSet(); ++index) {
      KRMessageSetRq& set = *GetMessageSet(index);
      if (set.GetSignOnRq() == nullptr) continue;
      const u16 version = set.GetMsgSetVersion();
      KRMessageSetRs* answer = MakeSet(version, AnswerTag(set.GetType()));
      answer->SetSignOnRs(SignOn(exchange, *set.GetSignOnRq(), version));
      exchange.response->AppendMessageSet(answer);
    }
    for (u16 index = 0; index < GetNumMessageSet(); ++index) {
      GetMessageSet(index)->ProcessRequest(server);
    }
    for (const auto& [version, cusips] : exchange.securities) {
      const KRTagID tag = version == 2 ? KRTag_SECLISTMSGSRSV2 : KRTag_SECLISTMSGSRSV1;
      SetOf(exchange, version, tag)->SetSecList(MakeSecurities(version, exchange.bank, cusips));
    }
    return 1;
  }

  // The message set of a tag in the answer, made if there is none yet.
  static KRMessageSetRs* SetOf(Exchange& exchange, u16 version, KRTagID tag) {
    KRResponse& response = *exchange.response;
    for (u16 index = 0; index < response.GetNumMessageSet(); ++index) {
      if (response.GetMessageSet(index)->GetType() == tag) return response.GetMessageSet(index);
    }
    KRMessageSetRs* made = MakeSet(version, tag);
    response.AppendMessageSet(made);
    return made;
  }

 private:
  static KRMessageSetRs* MakeSet(u16 version, KRTagID tag) {
    KRMessageSetRs* made = Factory().NewMessageSetRs(version);
    made->SetType(tag);
    return made;
  }
};

class OwnMessageSet : public KRMessageSetRq {
 public:
  // Synchronisations that this bank does not have are ignored.
  u16 ProcessRequest(const ServerImpl* server) override {
    Exchange& exchange = server->Now();
    for (u16 index = 0; index < GetNumTrans(); ++index) {
      KRTransRq& transaction = *GetTrans(index);
      KRTransRs* answer = Factory().NewTransRs(GetMsgSetVersion());
      answer->SetType(AnswerTag(transaction.GetType()));
      exchange.transaction = answer;
      transaction.ProcessRequest(server);
      OwnRequest::SetOf(exchange, GetMsgSetVersion(), AnswerTag(GetType()))->AppendTrans(answer);
    }
    for (u16 index = 0; exchange.user != nullptr && index < GetNumSync(); ++index) {
      KRSyncRs* const answer =
          MakeSync(GetMsgSetVersion(), *GetSync(index), *exchange.user, exchange.bank);
      if (answer == nullptr) continue;
      OwnRequest::SetOf(exchange, GetMsgSetVersion(), AnswerTag(GetType()))->AppendSync(answer);
    }
    return 1;
  }
};

class OwnTransaction : public KRTransRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    Exchange& exchange = server->Now();
    KRTransRs& answer = *exchange.transaction;
    // Every answer must have an identifier, even if its request has none.
    answer.SetTransUserID(GetTransUserID().IsEmpty() != 0 ? KRString("0") : GetTransUserID());
    if (GetClientCookie().IsEmpty() == 0) answer.SetClientCookie(GetClientCookie());

    KRDataObj* incomplete = this;
    if (exchange.user == nullptr) {
      server->Answer(kSignOnInvalid);
    } else if (GetActualTrans() == nullptr ||
               KRUtility::AllRequiredPresent(&incomplete, nullptr) == 0) {
      server->Answer(kGeneralError);
    } else {
      GetActualTrans()->ProcessRequest(server);
      if (answer.ValidateTag(KRTag_STATUS) == 0) server->Answer(kGeneralError);
    }
    return 1;
  }
};

class OwnPinChangeRq : public KRPinChangeRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    User& user = *server->Now().user;
    if (user.id != static_cast<const char*>(GetUserId()) || user.accounts.empty()) {
      server->Answer(kPasswordUnchanged);
      return 1;
    }
    user.password = static_cast<const char*>(GetNewUserPass());
    KRPinChangeRs* answer = Factory().NewPinChangeRs(GetMsgSetVersion());
    answer->SetUserId(GetUserId());
    answer->SetDtChanged(server->Now().now);
    server->Answer(kDone, answer);
    return 1;
  }
};

class OwnProfileRq : public KRProfileRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    KRProfileRs* const profile = MakeProfile(GetMsgSetVersion(), server->Now().bank);
    if (DayOf(GetDtProfUp()) >= DayOf(profile->GetDtProfUp())) {
      delete profile;
      server->Answer(kUpToDate);
    } else {
      server->Answer(kDone, profile);
    }
    return 1;
  }
};

class OwnAccountInfoRq : public KRAccountInfoRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    if (DayOf(GetDtAcctUp()) >= DayOf(Bank::kAccountsDay)) {
      server->Answer(kUpToDate);
    } else {
      server->Answer(kDone, MakeAccountList(GetMsgSetVersion(), *server->Now().user));
    }
    return 1;
  }
};

// Requests for a bank account and for a card are answered alike; the answer repeats the account of
// the request.
void AnswerStatement(const ServerImpl& server, const KRGenericStatementRq& request,
                     KRGenericStatementRs* answer) {
  const Exchange& exchange = server.Now();
  Account* account = Bank::Find(*exchange.user, *request.GetAccount());
  const KRIncTransaction* wanted = request.GetIncTran();
  const bool include = wanted != nullptr && wanted->GetInclude() != 0;
  Days days;
  if (account == nullptr) {
    delete answer;
    server.Answer(kAccountNotFound);
  } else if (include && !WantedDays(*wanted, exchange.now, days)) {
    delete answer;
    server.Answer(kInvalidDateRange);
  } else {
    KRAccount* named = KRAccount::NewAcctFrom(request.GetAccount()->GetType());
    named->DeepCopyFrom(request.GetAccount());
    answer->SetAccount(named);
    FillStatement(*answer, *account, include ? &days : nullptr, exchange.now);
    server.Answer(kDone, answer);
  }
}

class OwnBankStatementRq : public KRBankStatementRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    AnswerStatement(*server, *this, Factory().NewBankStatementRs(GetMsgSetVersion()));
    return 1;
  }
};

class OwnCardStatementRq : public KRCCStatementRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    AnswerStatement(*server, *this, Factory().NewCCStatementRs(GetMsgSetVersion()));
    return 1;
  }
};

class OwnTransferRq : public KRIntraRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    Exchange& exchange = server->Now();
    KRXferInfo& info = *GetXferInfo();
    Account* from = Bank::Find(*exchange.user, *info.GetAccountFrom());
    Account* to = Bank::Find(*exchange.user, *info.GetAccountTo());
    const bool later =
        info.ValidateTag(KRTag_DTDUE) != 0 && DayOf(info.GetDtDue()) > DayOf(exchange.now);
    if (from == nullptr) {
      server->Answer(kSourceNotFound);
    } else if (to == nullptr || to == from) {
      server->Answer(kDestinationNotFound);
    } else if (later) {
      server->Answer(kDateTooFar);
    } else {
      const Transfer made =
          exchange.bank.Book(*from, *to, info.GetTranAmount(), exchange.now, *exchange.user,
                             std::string(exchange.transaction->GetTransUserID()));
      server->Answer(made.code, made.code == kDone ? Confirm(made, info, exchange.now) : nullptr);
    }
    return 1;
  }

 private:
  KRIntraRs* Confirm(const Transfer& made, KRXferInfo& info, const KRDateTime& now) {
    const u16 version = GetMsgSetVersion();
    KRIntraRs* answer = Factory().NewIntraRs(version);
    answer->SetCurrencyDefault(Bank::kCurrency);
    answer->SetServerTransactionID(Text(made.serverId));
    answer->SetServerTransactionID2(Text(made.serverId));
    KRXferInfo* copy = Factory().NewXferInfo(version);
    copy->DeepCopyFrom(&info);
    answer->SetXferInfo(copy);
    answer->SetDtPosted(now);
    return answer;
  }
};

class OwnInvestmentRq : public KRInvStmtRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    Exchange& exchange = server->Now();
    const u16 version = GetMsgSetVersion();
    const InvestmentAccount* account = Bank::FindInvestment(*exchange.user, *GetInvAcctFrom());
    Days days;
    if (account == nullptr) {
      server->Answer(kAccountNotFound);
      return 1;
    }
    if (!WantedDays(*GetIncTran(), exchange.now, days)) {
      server->Answer(kInvalidDateRange);
      return 1;
    }
    KRInvAcctFrom* named = Factory().NewInvAcctFrom(version);
    named->DeepCopyFrom(GetInvAcctFrom());
    KRInvStmtRs* answer = Factory().NewInvStmtRs(version);
    answer->SetDtAsOf(exchange.now);
    answer->SetCurDef(Bank::kCurrency);
    answer->SetInvAcctFrom(named);
    if (GetIncTran()->GetInclude() != 0) {
      answer->SetInvTranList(MakeTrades(version, *account, days));
      for (const Trade& trade : account->trades) {
        if (days.Contain(trade.day) && !trade.security.empty()) {
          exchange.securities[version].insert(trade.security);
        }
      }
    }
    if (GetIncPos()->GetInclude() != 0) {
      answer->SetInvPosList(MakePositions(version, *account, exchange.bank));
      for (const Holding& holding : account->holdings) {
        exchange.securities[version].insert(holding.security);
      }
    }
    if (GetIncBal() != 0) answer->SetInvBal(MakeInvestmentBalance(version, *account));
    server->Answer(kDone, answer);
    return 1;
  }
};

class OwnSecurityListRq : public KRSecListRq {
 public:
  u16 ProcessRequest(const ServerImpl* server) override {
    Exchange& exchange = server->Now();
    std::set<std::string> found;
    for (u16 index = 0; index < GetNumSecRq(); ++index) {
      const Security* security = Find(exchange.bank, *GetSecRq(index));
      if (security == nullptr) {
        server->Answer(kUnknownElement);
        return 1;
      }
      found.insert(security->cusip);
    }
    exchange.securities[GetMsgSetVersion()].merge(found);
    server->Answer(kDone, Factory().NewSecListRs(GetMsgSetVersion()));
    return 1;
  }

 private:
  static const Security* Find(const Bank& bank, const KRSecRq& wanted) {
    const KRSecID* identity = wanted.GetSecID();
    return identity != nullptr ? bank.FindSecurity(std::string(identity->GetUniqueID()))
                               : bank.FindTicker(std::string(wanted.GetTicker()));
  }
};

}  // namespace

KRTagID AnswerTag(KRTagID request) {
  const KRTagDictionary& dictionary = *KRTagDictionary::TheKRTagDictionary();
  std::string name = dictionary.GetTagString(request);
  name.replace(name.rfind("RQ"), 2, "RS");
  KRTagID answer = KRTag_None;
  dictionary.GetTagID(name.c_str(), static_cast<u16>(name.size()), &answer, KRCaseType_Exact);
  return answer;
}

KRRequest* RequestFactory::NewRequest(u16 version) { return Make<OwnRequest>(version); }
KRMessageSetRq* RequestFactory::NewMessageSetRq(u16 version) {
  return Make<OwnMessageSet>(version);
}
KRTransRq* RequestFactory::NewTransRq(u16 version) { return Make<OwnTransaction>(version); }
KRPinChangeRq* RequestFactory::NewPinChangeRq(u16 version) { return Make<OwnPinChangeRq>(version); }
KRProfileRq* RequestFactory::NewProfileRq(u16 version) { return Make<OwnProfileRq>(version); }
KRAccountInfoRq* RequestFactory::NewAccountInfoRq(u16 version) {
  return Make<OwnAccountInfoRq>(version);
}
KRBankStatementRq* RequestFactory::NewBankStatementRq(u16 version) {
  return Make<OwnBankStatementRq>(version);
}
KRCCStatementRq* RequestFactory::NewCCStatementRq(u16 version) {
  return Make<OwnCardStatementRq>(version);
}
KRIntraRq* RequestFactory::NewIntraRq(u16 version) { return Make<OwnTransferRq>(version); }
KRInvStmtRq* RequestFactory::NewInvStmtRq(u16 version) { return Make<OwnInvestmentRq>(version); }
KRSecListRq* RequestFactory::NewSecListRq(u16 version) { return Make<OwnSecurityListRq>(version); }

}  // namespace bank_server

void ServerImpl::Answer(s32 code, KRTransBase* payload) const {
  KRTransRs& answer = *m_exchange.transaction;
  answer.SetStatus(bank_server::MakeStatus(answer.GetMsgSetVersion(), code));
  if (payload != nullptr) answer.SetActualTrans(payload);
}
