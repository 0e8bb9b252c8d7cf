// The part of every request that is the same: checks of what was given, the sign-on with its
// password, the wrapper and the file.

#include "requests/request_maker.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "banks/client_id.h"
#include "banks/password.h"
#include "banks/password_command.h"
#include "input/built_text.h"
#include "input/parsed_file.h"
#include "krofx/host/build_reason.h"
#include "output/characters.h"
#include "output/messages.h"
#include "requests/arguments.h"

namespace krofx::command {

namespace {

constexpr char kPasswordVariable[] = "KROFX_PASSWORD";

// In the place of a problem.
constexpr char kComplainedOf[] = " ";

// User and password of an anonymous sign-on, as the OFX standard writes it.
constexpr char kAnonymous[] = "anonymous00000000000000000000000";

// In the code page 1252, where the last one is the blank at which no line breaks.
constexpr std::string_view kBlanks = " \t\r\n\xA0";

bool HasBlankAround(std::string_view text) {
  return !text.empty() && (kBlanks.find(text.front()) != std::string_view::npos ||
                           kBlanks.find(text.back()) != std::string_view::npos);
}

}  // namespace

std::string FindLoss(std::string_view password) {
  if (!HasBlankAround(password)) return "";
  return "the password has a blank at its start or its end, which would be lost on the way";
}

KRString Now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  ::gmtime_r(&now, &parts);
  char text[32] = "";
  std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &parts);
  return KRString(text);
}

void RequestMaker::Fail(ExitStatus exitStatus, const std::string& problem) {
  if (!m_problem.empty()) return;
  m_problem = problem;
  m_exitStatus = exitStatus;
}

void RequestMaker::GiveUp(ExitStatus exitStatus) { Fail(exitStatus, kComplainedOf); }

std::string RequestMaker::Encode(const std::string& option, const std::string& given) {
  // Only a letter has lines.
  if (HasControlCharacter(given, option == "--text" ? "\t\n\r" : "")) {
    Fail(option + " has a control character");
  }
  std::string bytes;
  if (!ToCodePage1252(given, bytes)) {
    Fail(option + " has a character that the request's character set, Windows 1252, does not have");
  }
  if (bytes.find_first_not_of(kBlanks) == std::string::npos) {
    Fail(option + " has nothing but blanks; give a text, or leave it out");
  }
  return bytes;
}

std::size_t RequestMaker::MostCharacters(const KRString& text) {
  return std::min(text.SpecLength(), KRString::kMaxLength);
}

std::size_t RequestMaker::MostCharacters(const KREMailMsgBody& text) {
  return std::size_t{text.SpecLength()} + KREMailMsgBody::kTolerance;
}

bool RequestMaker::RequireLength(const std::string& option, const std::string& text,
                                 std::size_t most) {
  if (text.size() <= most) return true;
  Fail(option + " has " + std::to_string(text.size()) + " characters; OFX takes no more than " +
       std::to_string(most));
  return false;
}

void RequestMaker::Require(const std::string& option, const KRString& held,
                           const std::string& given) {
  if (held.IsValid() != 0 && given == static_cast<const char*>(held)) return;
  Fail(option + " cannot be used as it is given");
}

std::string RequestMaker::CheckAmount(const std::string& option, const std::string& given) {
  const std::string problem = FindAmountProblem(given);
  return problem.empty() ? "" : option + " " + given + ": " + problem;
}

KRString RequestMaker::TakeDate(const std::string& option, const std::string& given) {
  const std::string date = ToOfxDate(given);
  if (date.empty()) FailForDate(option, given);
  return KRString(date.c_str());
}

void RequestMaker::FailForDate(const std::string& option, const std::string& given) {
  Fail(DescribeNoDate(option, given));
}

void RequestMaker::RequireOrder(const std::string& from, const std::string& to) {
  if (from.empty() || to.empty() || !IsLater(ToOfxDate(from), ToOfxDate(to))) return;
  Fail("--from " + from + " is after --to " + to);
}

void RequestMaker::RequireNoBlanks(const std::string& option, const std::string& given) {
  std::string bytes;
  if (!ToCodePage1252(given, bytes) || !HasBlankAround(bytes)) return;
  Fail(option + " has a blank at its start or its end");
}

void RequestMaker::RequireCode(const char* option, const std::string& given, const char* example) {
  const bool letters = given.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  if (given.size() == 3 && letters) return;
  Fail(std::string(option) + " " + given + " is not a code of three capital letters, such as " +
       example);
}

// What the command line names comes first, then what the bank is described with. A variable that is
// meant for one bank is not sent to another that has its own.
std::string RequestMaker::ReadPassword(Password& password) const {
  if (m_options.passwordFd >= 0) return password.ReadFrom(m_options.passwordFd);
  if (!m_options.passwordVariable.empty()) {
    return password.TakeFromEnvironment(m_options.passwordVariable.c_str());
  }
  if (m_options.bank.has_value() && !m_options.bank->passwordCommand.empty()) {
    return ReadFromCommand(m_options.bank->passwordCommand, password);
  }
  if (m_options.bank.has_value() && m_options.bank->keyring &&
      ReadFromKeyring(m_options.bank->name, password)) {
    return {};
  }
  if (m_options.takesVariable && std::getenv(kPasswordVariable) != nullptr) {
    return password.TakeFromEnvironment(kPasswordVariable);
  }
  return password.Ask("Password of " + m_options.user + " at " +
                      m_options.use->Where(m_options.organisation));
}

void RequestMaker::TakePassword() {
  Password& password = *m_options.password;
  if (!m_problem.empty() || *password.Get() != '\0') return;
  const ExitStatus prepared = m_options.use->Prepare();
  if (prepared != kExitClean) return GiveUp(prepared);
  const std::string problem = ReadPassword(password);
  if (password.WasCancelled()) return Fail(kExitCancelled, problem);
  if (!problem.empty()) Fail(kExitUnusable, problem);
}

void RequestMaker::AddPassword(KRSignOnRq& signOn) {
  if (IsAnonymous()) {
    signOn.SetUserPass(KRString(kAnonymous));
    return;
  }
  TakePassword();
  if (!m_problem.empty()) return;
  const char* const password = m_options.password->Get();
  const std::string loss = FindLoss(password);
  if (!loss.empty()) return Fail(kExitUnusable, loss);
  const std::string broken = m_rules == nullptr ? "" : FindBrokenRule(*m_rules, password);
  if (!broken.empty()) {
    return Fail(kExitSignOnRefused, "the password cannot be right: by the profile of " +
                                        m_options.bank->name + " " + broken);
  }
  KRUserPassword secret;  // Wipes its memory.
  secret = password;
  if (signOn.SetUserPass(secret) != 1) Fail(kExitUnusable, "the password cannot be used");
}

std::unique_ptr<KRSignOnRq> RequestMaker::MakeSignOn() {
  auto signOn = Make<KRSignOnRq>(KRTag_SONRQ);
  signOn->SetDtClient(Now());
  SetIdentifier("--user", IsAnonymous() ? kAnonymous : m_options.user, *signOn,
                &KRSignOnRq::SetUserId, &KRSignOnRq::GetUserId);
  RequireCode("--language", m_options.language, "ENG");
  signOn->SetLanguage(KRString(m_options.language.c_str()));
  if (!m_options.country.empty()) {
    if (GetVersion() == 1) Fail("--country needs --v2");
    RequireCode("--country", m_options.country, "USA");
    signOn->SetCountry(m_options.country.c_str());
  }
  auto institution = Make<KRFI>(KRTag_FI);
  SetIdentifier("--org", m_options.organisation, *institution, &KRFI::SetOrg, &KRFI::GetOrg);
  SetIdentifier("--fid", m_options.institutionId, *institution, &KRFI::SetFId, &KRFI::GetFId);
  signOn->SetFI(institution.release());
  SetIdentifier("--app-id", m_options.applicationId, *signOn, &KRSignOnRq::SetAppId,
                &KRSignOnRq::GetAppId);
  signOn->SetAppVer(static_cast<u16>(m_options.applicationVersion));
  return signOn;
}

KRMessageSetRq& RequestMaker::SetFor(Service service) {
  const KRTagID messageSet = RequestSetOf(service, m_version);
  const auto set = std::find_if(m_sets.begin(), m_sets.end(), [messageSet](const auto& each) {
    return each->GetType() == messageSet;
  });
  if (set != m_sets.end()) return **set;
  m_sets.push_back(Make<KRMessageSetRq>(messageSet));
  return *m_sets.back();
}

void RequestMaker::Add(std::unique_ptr<KRTransBase> payload, Service service, KRTagID wrapperTag) {
  if (wrapperTag == KRTag_None) wrapperTag = KRTransRq::MsgIDToTranWrapper(payload->GetType());
  auto wrapper = Make<KRTransRq>(wrapperTag);
  char id[37] = "";
  KRUtility::GenerateTransactionID(id);
  wrapper->SetTransUserID(id);
  wrapper->SetActualTrans(payload.release());
  SetFor(service).AppendTrans(wrapper.release());
}

void RequestMaker::Add(std::unique_ptr<KRSyncRq> sync, Service service) {
  SetFor(service).AppendSync(sync.release());
}

ExitStatus RequestMaker::Finish(std::unique_ptr<KRTransBase> payload, Service service,
                                KRTagID wrapper) {
  Add(std::move(payload), service, wrapper);
  return Finish();
}

ExitStatus RequestMaker::Finish() {
  auto signOn = MakeSignOn();
  if (m_problem.empty()) {
    const ExitStatus prepared = m_options.use->Prepare();
    if (prepared != kExitClean) return prepared;
    AddPassword(*signOn);
  }
  auto text = std::make_unique<KRBuffer>(4096, 4096);
  if (text == nullptr) Fail(kExitUnusable, krofx::ReasonOf(KRBuildStatus_Fatal));
  if (m_problem.empty()) {
    KRMessageSetRq& first = SetFor(Service::kSignOn);
    first.SetSignOnRq(signOn.release());
    // The sign-on comes first.
    std::stable_partition(m_sets.begin(), m_sets.end(),
                          [&first](const auto& each) { return each.get() == &first; });
    auto request = Make<KRRequest>(KRTag_OFX);
    for (auto& set : m_sets) request->AppendMessageSet(set.release());
    KRFileRq file;
    file.AddDefaultOFXHeaders(GetVersion());
    file.AppendRequest(request.release());
    const std::string problem = BuildText(file, *text);
    if (!problem.empty()) Fail(kExitUnusable, problem);
  }
  return m_problem.empty() ? HandOver(std::move(text)) : Report();
}

ExitStatus RequestMaker::Check() {
  MakeSignOn();
  return Report();
}

ExitStatus RequestMaker::Report() const {
  if (!m_problem.empty() && m_problem != kComplainedOf) Complain(m_options.subcommand, m_problem);
  return m_exitStatus;
}

ExitStatus RequestMaker::HandOver(std::unique_ptr<KRBuffer> text) {
  const bool sendsId = m_options.bank.has_value() && !IsAnonymous() &&
                       (m_options.bank->makesClientId || !m_options.bank->clientId.empty());
  if (sendsId) {
    std::string problem;
    const std::string id = ClientIdOf(*m_options.bank, problem);
    if (problem.empty()) text = WithClientId(*text, id);
    if (text == nullptr) problem = "not enough memory for the request";
    if (!problem.empty()) {
      Complain(m_options.subcommand, problem);
      return kExitUnusable;
    }
  }
  if (!m_order.empty()) Complain(m_options.subcommand, m_order);
  return m_options.use->Use(*text);
}

}  // namespace krofx::command
