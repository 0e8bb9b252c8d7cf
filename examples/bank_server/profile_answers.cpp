// The bank's profile, a user's accounts, and the words for a status.

#include "answers.h"

#include <fstream>
#include <iterator>

namespace bank_server {
namespace {

struct Wording {
  s32 code;
  const char* text;
};
constexpr Wording kWordings[] = {
    {kUpToDate, "You have the latest already"},
    {kGeneralError, "This bank cannot do that"},
    {kAccountNotFound, "There is no such account"},
    {kSourceNotFound, "There is no such account to transfer from"},
    {kDestinationNotFound, "There is no such account to transfer to"},
    {kInvalidAmount, "The amount must be above zero, in whole cents"},
    {kDateTooFar, "Transfers are made at once, not at a later day"},
    {kDuplicateRequest, "This transfer was made already"},
    {kInvalidDateRange, "The last day is before the first"},
    {kUnknownElement, "There is no such security"},
    {kInsufficientFunds, "There is not enough in the account"},
    {kSignOnInvalid, "User and password do not fit"},
    {kPasswordUnchanged, "The password stays as it is"},
};

// What every message set contains. In a profile of the second version all entries have its tags.
KRMessageSetCore* MakeCore(u16 version, s32 ver, const Bank& bank) {
  KRMessageSetCore* core = Factory().NewMessageSetCore(version);
  core->SetVer(ver);
  core->SetURL(Text(bank.Url()));
  core->SetURL2(Text(bank.Url()));
  core->SetOFXSec(KROFXSecurity_NONE);
  core->SetTranspSec("Y");
  core->SetSignOnRealm(Bank::kRealm);
  core->AppendLanguage("ENG");
  core->SetSyncMode(KRSyncMode_LITE);
  core->SetRespFileEr("N");
  core->SetServiceProviderName("Harbor Federal");
  return core;
}

void Describe(KRMessageSetVersion&) {}

void Describe(KRSignUpMessageSetBase& set) {
  KRWebEnroll* web = Factory().NewWebEnroll(set.GetMsgSetVersion());
  web->SetURL("https://harborfed.example/enroll");
  web->SetURL2("https://harborfed.example/enroll");
  set.SetWebEnroll(web);
  set.SetChgUserInfo("N");
  set.SetAvailAccts("Y");
  set.SetActivationRequest("N");
  set.SetPreauth("N");
}

void Describe(KRBankMessageSetV1& set) {
  const u16 version = set.GetMsgSetVersion();
  set.SetClosingAvail("N");
  KRXferProfile* transfers = Factory().NewXferProfile(version);
  transfers->SetTimeProcessEnd("235900");
  transfers->SetCanSched("N");
  transfers->SetCanRecur("N");
  transfers->SetCanModXfers("N");
  transfers->SetCanModMdls("N");
  transfers->SetModelWnd("0");
  transfers->SetDaysWith("0");
  transfers->SetDefaultDaysToPay("0");
  set.SetXferProf(transfers);
  KREMailProfile* mail = Factory().NewEMailProfile(version);
  mail->SetCanEMail("N");
  mail->SetCanNotify("N");
  set.SetEMailProf(mail);
}

void Describe(KRCreditCardMessageSetV1& set) { set.SetClosingAvail("N"); }

void Describe(KRInvStmtMsgSetV1& set) {
  set.SetTranDnld("Y");
  set.SetOODnld("N");
  set.SetPosDnld("Y");
  set.SetBalDnld("Y");
  set.SetCanEMail("N");
}

void Describe(KRSecListMsgSetV1& set) { set.SetSecListRqDnld("Y"); }

// One family: its first version, and in a profile of the second version also the second.
template <class First, class Second>
void AppendFamily(KRMessageSetList& list, const Bank& bank, KRTagID family,
                  First* (KRDataObjFactory::*newFirst)(u16),
                  Second* (KRDataObjFactory::*newSecond)(u16)) {
  const u16 version = list.GetMsgSetVersion();
  KRMessageSetProfile* entry = Factory().NewMessageSetProfile(version);
  entry->SetType(family);
  const auto append = [&](auto* made, s32 ver) {
    made->SetMsgSetVersion(version);
    made->SetMsgSetCore(MakeCore(version, ver, bank));
    Describe(*made);
    entry->AppendMessageSetVersion(made);
  };
  append((Factory().*newFirst)(version), 1);
  if (version == 2) append((Factory().*newSecond)(version), 2);
  list.AppendMessageSetProfile(entry);
}

KRMessageSetList* MakeMessageSets(u16 version, const Bank& bank) {
  using F = KRDataObjFactory;
  KRMessageSetList* list = Factory().NewMessageSetList(version);
  AppendFamily(*list, bank, KRTag_SIGNONMSGSET, &F::NewSignOnMessageSetV1,
               &F::NewSignOnMessageSetV2);
  AppendFamily(*list, bank, KRTag_SIGNUPMSGSET, &F::NewSignUpMessageSetV1,
               &F::NewSignUpMessageSetV2);
  AppendFamily(*list, bank, KRTag_BANKMSGSET, &F::NewBankMessageSetV1, &F::NewBankMessageSetV2);
  AppendFamily(*list, bank, KRTag_CREDITCARDMSGSET, &F::NewCreditCardMessageSetV1,
               &F::NewCreditCardMessageSetV2);
  AppendFamily(*list, bank, KRTag_INVSTMTMSGSET, &F::NewInvStmtMsgSetV1, &F::NewInvStmtMsgSetV2);
  AppendFamily(*list, bank, KRTag_SECLISTMSGSET, &F::NewSecListMsgSetV1, &F::NewSecListMsgSetV2);
  AppendFamily(*list, bank, KRTag_PROFMSGSET, &F::NewProfileMessageSetV1,
               &F::NewProfileMessageSetV2);
  return list;
}

// The state of a service, for which each version has its own tag.
template <class Info>
Info* Active(Info* info) {
  info->SetSvcStatus("ACTIVE");
  info->SetSvcStatus2("ACTIVE");
  return info;
}

template <class Info>
Info* WithTransfers(Info* info) {
  info->SetSupTxDl("Y");
  info->SetXferSrc("Y");
  info->SetXferDest("Y");
  return info;
}

KRAccountInfoBase* MakeInfo(u16 version, const Account& account) {
  if (account.IsCard()) {
    KRCCAccount* card = Factory().NewCCAccount(version);
    card->SetAccountID(Text(account.number));
    KRCCAccountInfo* info = WithTransfers(Active(Factory().NewCCAccountInfo(version)));
    info->SetCCAcctFrom(card);
    return info;
  }
  KRBankAccount* inBank = Factory().NewBankAccount(version);
  inBank->SetBankID(Text(account.bank));
  inBank->SetAccountID(Text(account.number));
  inBank->SetAccountType(Text(account.type));
  inBank->SetAccountType2(Text(account.type));
  KRBankAccountInfo* info = WithTransfers(Active(Factory().NewBankAccountInfo(version)));
  info->SetBankAcctFrom(inBank);
  return info;
}

KRAccountInfoBase* MakeInfo(u16 version, const InvestmentAccount& account) {
  KRInvAcctFrom* from = Factory().NewInvAcctFrom(version);
  from->SetBrokerID(Text(account.broker));
  from->SetAccountID(Text(account.number));
  KRInvAcctInfo* info = Active(Factory().NewInvAcctInfo(version));
  info->SetInvAcctFrom(from);
  info->SetUSProductType(KRUSProductType_NORMAL);
  info->SetChecking("N");
  return info;
}

KRProfileRs* MakeOwnProfile(u16 version, const Bank& bank) {
  KRSignOnInfo* rules = Factory().NewSignOnInfo(version);
  rules->SetSignOnRealm(Bank::kRealm);
  rules->SetMin("6");
  rules->SetMax("32");
  rules->SetCharType(KRCharacterType_ALPHAORNUMERIC);
  rules->SetCaseSen("Y");
  rules->SetSpecial("Y");
  rules->SetSpaces("N");
  rules->SetPinChange("Y");
  rules->SetChangePinFirst("N");
  KRSignOnInfoList* realms = Factory().NewSignOnInfoList(version);
  realms->AppendSignOnInfo(rules);

  KRProfileRs* profile = Factory().NewProfileRs(version);
  profile->SetMsgSetList(MakeMessageSets(version, bank));
  profile->SetSignOnInfoList(realms);
  profile->SetDtProfUp(Bank::kProfileDay);
  profile->SetFIName("Harbor Federal Bank");
  profile->SetAddress1("12 Quay Street");
  profile->SetCity("Port Ellis");
  profile->SetState("ME");
  profile->SetPostalCode("04401");
  profile->SetCountry("USA");
  return profile;
}

// The profile in a file with an OFX response; null when there is none of this version.
KRProfileRs* ReadProfile(u16 version, const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(in), {});
  KRBuffer buffer(0, 0);
  if (buffer.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK) return nullptr;
  KRFileRs file;
  KRSimpleParser parser;
  parser.Parse(&buffer, &file, 0);
  const KRResponse* const response = file.GetResponse(0);
  for (u16 set = 0; response != nullptr && set < response->GetNumMessageSet(); ++set) {
    const KRMessageSetRs& transactions = *response->GetMessageSet(set);
    for (u16 index = 0; index < transactions.GetNumTrans(); ++index) {
      auto* const found =
          dynamic_cast<KRProfileRs*>(transactions.GetTrans(index)->GetActualTrans());
      if (found == nullptr || found->GetMsgSetVersion() != version) continue;
      KRProfileRs* const profile = Factory().NewProfileRs(version);
      profile->DeepCopyFrom(found);
      return profile;
    }
  }
  return nullptr;
}

}  // namespace

KRStatus* MakeStatus(u16 version, s32 code) {
  KRStatus* status = Factory().NewStatus(version);
  status->SetCode(code);
  const bool good = code == kDone || code == kUpToDate;
  status->SetSeverity(good ? KRStatusSeverity_INFO : KRStatusSeverity_ERROR);
  for (const Wording& wording : kWordings) {
    if (wording.code != code) continue;
    status->SetMessageText(wording.text);
    status->SetMessage2Text(wording.text);
  }
  return status;
}

KRProfileRs* MakeProfile(u16 version, const Bank& bank) {
  KRProfileRs* const given = ReadProfile(version, bank.ProfileFile());
  return given != nullptr ? given : MakeOwnProfile(version, bank);
}

KRAccountInfoRs* MakeAccountList(u16 version, const User& user) {
  KRAccountInfoRs* list = Factory().NewAccountInfoRs(version);
  list->SetDtAcctUp(Bank::kAccountsDay);
  const auto append = [&](const auto& accounts) {
    for (const auto& account : accounts) {
      KRAccountInfo* entry = Factory().NewAccountInfo(version);
      entry->SetDescription(Text(account.description));
      entry->AppendAccountInfoBase(MakeInfo(version, account));
      list->AppendAccountInfo(entry);
    }
  };
  append(user.accounts);
  append(user.investments);
  return list;
}

}  // namespace bank_server
