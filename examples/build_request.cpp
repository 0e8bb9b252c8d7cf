// Builds the request for a bank statement and prints its text, ready to be sent.
//
//   build_request 1|2 USER ACCOUNT START TIME      (OFX_PASSWORD holds the password)
//
// 1 or 2 is the version of the message sets, START the first day that is wanted, TIME the time of
// the request; both in the form 20260131 or 20260131120000.

#include <krofx/krofx.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Objects are made by the factory, so that a host's own classes are used.
KRDataObjFactory& Factory() { return *KRDataObj::GetFactory(); }

KRSignOnRq* MakeSignOn(u16 version, const char* user, const char* password, const char* time) {
  KRSignOnRq* signOn = Factory().NewSignOnRq(version);
  signOn->SetDtClient(KRString(time));
  signOn->SetUserId(KRString(user));
  signOn->SetUserPass(KRString(password));
  signOn->SetLanguage(KRString("ENG"));
  signOn->SetAppId(KRString("DEMO"));
  signOn->SetAppVer(static_cast<u16>(10));
  KRFI* institution = Factory().NewFI(version);
  institution->SetOrg(KRString("HARBORFED"));
  institution->SetFId(KRString("40711"));
  signOn->SetFI(institution);
  return signOn;
}

KRBankStatementRq* MakeStatement(u16 version, const char* number, const char* start) {
  KRBankAccount* account = Factory().NewBankAccount(version);
  account->SetBankID(KRString("211370545"));
  account->SetAccountID(KRString(number));
  // Each version has its own account types; only the setter for this version takes a value.
  if (version == 2) {
    account->SetAccountType2(KRBankAccountType2_CHECKING);
  } else {
    account->SetAccountType(KRBankAccountType_CHECKING);
  }
  KRIncTransaction* include = Factory().NewIncTransaction(version);
  include->SetDtStart(KRString(start));
  include->SetInclude(static_cast<u16>(1));
  KRBankStatementRq* statement = Factory().NewBankStatementRq(version);
  statement->SetBankAcctFrom(account);
  statement->SetIncTran(include);
  return statement;
}

// The tag of a message set says its version.
KRMessageSetRq* MakeSet(KRTagID tag, u16 version) {
  KRMessageSetRq* set = Factory().NewMessageSetRq(version);
  set->SetType(tag);
  return set;
}

}  // namespace

int main(int count, char** arguments) {
  const char* password = std::getenv("OFX_PASSWORD");
  const bool second = count == 6 && std::strcmp(arguments[1], "2") == 0;
  if (count != 6 || password == nullptr || (!second && std::strcmp(arguments[1], "1") != 0)) {
    std::fprintf(stderr,
                 "usage: build_request 1|2 USER ACCOUNT START TIME, with OFX_PASSWORD set\n");
    return 64;
  }
  const u16 version = second ? 2 : 1;

  KRTransRq* wrapper = Factory().NewTransRq(version);
  wrapper->SetType(KRTag_STMTTRNRQ);
  wrapper->SetTransUserID(KRString("1"));
  wrapper->SetActualTrans(MakeStatement(version, arguments[3], arguments[4]));

  // Message sets may be appended in any order: the sign-on is written first.
  KRMessageSetRq* bank = MakeSet(second ? KRTag_BANKMSGSRQV2 : KRTag_BANKMSGSRQV1, version);
  bank->AppendTrans(wrapper);
  KRMessageSetRq* first = MakeSet(second ? KRTag_SIGNONMSGSRQV2 : KRTag_SIGNONMSGSRQV1, version);
  first->SetSignOnRq(MakeSignOn(version, arguments[2], password, arguments[5]));
  KRRequest* request = Factory().NewRequest(version);
  request->AppendMessageSet(bank);
  request->AppendMessageSet(first);

  KRFileRq file;
  file.AddDefaultOFXHeaders(version);
  file.AppendRequest(request);

  KRBuffer buffer(0, 0);
  KRBuilder builder(KRBuildStringCrLfOpt_LF);
  const KRBuildStatus status = builder.Build(&buffer, &file, KRBuildStringOpt_Strict, 1);
  if (status != KRBuildStatus_Done) {
    std::fprintf(stderr, "the request cannot be built (status %u)\n", status);
    return 1;
  }
  std::fwrite(buffer.GetBufferPtr(), 1, buffer.GetBufferSize(), stdout);
  return 0;
}
