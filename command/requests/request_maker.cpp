// The part of every request that is the same, and the accounts and dates that several share.

#include <cstdlib>
#include <ctime>

#include "input/parsed_file.h"
#include "output/built_text.h"
#include "output/messages.h"
#include "requests/password.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

constexpr char kPasswordVariable[] = "KROFX_PASSWORD";

// User and password of a sign-on of nobody, as the OFX standard writes it.
constexpr char kAnonymous[] = "anonymous00000000000000000000000";

}  // namespace

KRString Now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  ::gmtime_r(&now, &parts);
  char text[32] = "";
  std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &parts);
  return KRString(text);
}

void AddSignOnOptions(CLI::App& request, SignOnOptions& options,
                      const std::shared_ptr<RequestUse>& use) {
  options.use = use;
  const char* const kGroup = "Sign-on";
  const auto add = [&](const char* name, auto& value, const char* help) {
    return request.add_option(name, value, help)->group(kGroup);
  };
  add("--org", options.organisation, "The institution's name in OFX")->required();
  add("--fid", options.institutionId, "The institution's number in OFX");
  add("--user", options.user,
      options.mayBeAnonymous ? "The user's name at the institution; without it nobody signs on"
                             : "The user's name at the institution")
      ->required(!options.mayBeAnonymous);
  add("--app-id", options.applicationId, "Name of the application, up to 5 characters");
  add("--app-version", options.applicationVersion, "Version of the application, such as 100");
  add("--language", options.language, "Language of answers, three letters");
  add("--country", options.country, "Country, three letters (V2 only)");
  CLI::Option* const descriptor =
      add("--password-fd", options.passwordFd, "Read the password from this open file")
          ->check(CLI::NonNegativeNumber);
  add("--password-env", options.passwordVariable,
      "Take the password from this environment variable")
      ->excludes(descriptor);
  request.add_flag("--v2", options.secondVersion, "Use the second version of the message sets");
  use->AddOptions(request);
  request.footer(
      std::string(
          "The password comes from --password-fd, from --password-env, from the variable\n"
          "KROFX_PASSWORD, or from a prompt, in this order; there is no option for it, since\n"
          "everybody on the machine can see the arguments of a command.\n") +
      use->GetFooter());
}

void RequestMaker::Fail(const std::string& problem) {
  if (m_problem.empty()) m_problem = problem;
}

void RequestMaker::Require(const char* option, const KRString& held, const std::string& given) {
  if (held.IsValid() == 0) {
    Fail(std::string(option) + " has " + std::to_string(given.size()) +
         " characters; OFX takes no more than " + std::to_string(held.SpecLength()));
  } else if (ToText(held) != given) {
    Fail(std::string(option) + " cannot be used as it is given");
  }
}

void RequestMaker::AddPassword(KRSignOnRq& signOn) {
  if (IsAnonymous()) {
    signOn.SetUserPass(KRString(kAnonymous));
    return;
  }
  Password password;
  std::string problem;
  if (m_options.passwordFd >= 0) {
    problem = password.ReadFrom(m_options.passwordFd);
  } else if (!m_options.passwordVariable.empty()) {
    problem = password.TakeFromEnvironment(m_options.passwordVariable.c_str());
  } else if (std::getenv(kPasswordVariable) != nullptr) {
    problem = password.TakeFromEnvironment(kPasswordVariable);
  } else {
    problem = password.Ask();
  }
  if (!problem.empty()) return Fail(problem);
  KRUserPassword secret;  // Wipes its memory.
  secret = password.Get();
  if (signOn.SetUserPass(secret) != 1) Fail("the password cannot be used");
}

std::unique_ptr<KRMessageSetRq> RequestMaker::MakeSignOn() {
  auto signOn = Make<KRSignOnRq>(KRTag_SONRQ);
  signOn->SetDtClient(Now());
  const std::string user = IsAnonymous() ? kAnonymous : m_options.user;
  signOn->SetUserId(user.c_str());
  Require("--user", signOn->GetUserId(), user);
  signOn->SetLanguage(KRString(m_options.language.c_str()));
  if (signOn->GetLanguage().IsValid() == 0) Fail("--language is no code of three letters");
  if (!m_options.country.empty()) {
    if (GetVersion() == 1) Fail("--country needs --v2");
    signOn->SetCountry(m_options.country.c_str());
    if (GetVersion() == 2) Require("--country", signOn->GetCountry(), m_options.country);
  }
  auto institution = Make<KRFI>(KRTag_FI);
  institution->SetOrg(m_options.organisation.c_str());
  Require("--org", institution->GetOrg(), m_options.organisation);
  if (!m_options.institutionId.empty()) {
    institution->SetFId(m_options.institutionId.c_str());
    Require("--fid", institution->GetFId(), m_options.institutionId);
  }
  signOn->SetFI(institution.release());
  signOn->SetAppId(m_options.applicationId.c_str());
  Require("--app-id", signOn->GetAppId(), m_options.applicationId);
  signOn->SetAppVer(m_options.applicationVersion);
  if (m_problem.empty()) AddPassword(*signOn);

  auto set = Make<KRMessageSetRq>(GetVersion() == 1 ? KRTag_SIGNONMSGSRQV1 : KRTag_SIGNONMSGSRQV2);
  set->SetSignOnRq(signOn.release());
  return set;
}

ExitStatus RequestMaker::Finish(std::unique_ptr<KRTransBase> payload, KRTagID messageSet,
                                KRTagID wrapperTag) {
  if (m_problem.empty()) {
    const ExitStatus prepared = m_options.use->Prepare();
    if (prepared != kExitClean) return prepared;
  }
  KRFileRq file;
  file.AddDefaultOFXHeaders(GetVersion());
  auto request = Make<KRRequest>(KRTag_OFX);
  request->AppendMessageSet(MakeSignOn().release());

  if (wrapperTag == KRTag_None) wrapperTag = KRTransRq::MsgIDToTranWrapper(payload->GetType());
  auto wrapper = Make<KRTransRq>(wrapperTag);
  char id[37] = "";
  KRUtility::GenerateTransactionID(id);
  wrapper->SetTransUserID(id);
  wrapper->SetActualTrans(payload.release());
  auto set = Make<KRMessageSetRq>(messageSet);
  set->AppendTrans(wrapper.release());
  request->AppendMessageSet(set.release());
  file.AppendRequest(request.release());

  KRBuffer text(4096, 4096);
  if (m_problem.empty()) m_problem = BuildText(file, true, text);
  if (!m_problem.empty()) {
    Complain("request", m_problem);
    return kExitUnusable;
  }
  return m_options.use->Use(text);
}

std::unique_ptr<KRBankAccount> MakeBankAccount(const BankAccountOptions& options,
                                               RequestMaker& maker) {
  const std::string prefix = "--" + options.prefix;
  auto account = maker.Make<KRBankAccount>(KRTag_BANKACCTFROM);
  account->SetBankID(options.bank.c_str());
  maker.Require((prefix + "bank").c_str(), account->GetBankID(), options.bank);
  if (!options.branch.empty()) {
    account->SetBranchID(options.branch.c_str());
    maker.Require((prefix + "branch").c_str(), account->GetBranchID(), options.branch);
  }
  account->SetAccountID(options.account.c_str());
  maker.Require((prefix + "account").c_str(), account->GetAccountID(), options.account);
  const KRString type(options.type.c_str());
  const u16 known =
      maker.GetVersion() == 1 ? account->SetAccountType(type) : account->SetAccountType2(type);
  if (known == 0) {
    maker.Fail(prefix + "type " + options.type + " is no account type of this version");
  }
  return account;
}

void AddBankAccountOptions(CLI::App& request, BankAccountOptions& options) {
  const std::string prefix = "--" + options.prefix;
  request.add_option(prefix + "account", options.account, "The account's number");
  request.add_option(prefix + "bank", options.bank, "The bank's routing number");
  request.add_option(prefix + "branch", options.branch, "The branch");
  request.add_option(prefix + "type", options.type,
                     "CHECKING (the default), SAVINGS, MONEYMRKT, CREDITLINE");
}

KRString DateArgument(std::string text) {
  std::erase(text, '-');
  return KRString(text.c_str());
}

std::unique_ptr<KRIncTransaction> MakeSpan(const std::string& from, const std::string& to,
                                           bool include, RequestMaker& maker) {
  auto span = maker.Make<KRIncTransaction>(KRTag_INCTRAN);
  if (!from.empty() && span->SetDtStart(DateArgument(from)) == 0) {
    maker.Fail("--from is no date; write it as 2026-01-31");
  }
  if (!to.empty() && span->SetDtEnd(DateArgument(to)) == 0) {
    maker.Fail("--to is no date; write it as 2026-01-31");
  }
  span->SetInclude(static_cast<u16>(include ? 1 : 0));
  return span;
}

}  // namespace krofx::command
