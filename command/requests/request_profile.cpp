// What a bank's profile decides about a request: its version, its address, and which passwords can
// be right.

#include <algorithm>

#include "banks/url.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

constexpr u16 kVersions[] = {2, 1};  // The best first.

bool Offers(const Profile& profile, Service service, u16 version) {
  return profile.Find(service, version) != nullptr;
}

// Whether a profile says anything of a service, in whatever version.
bool Names(const Profile& profile, Service service) {
  return std::any_of(std::begin(kVersions), std::end(kVersions),
                     [&](u16 version) { return Offers(profile, service, version); });
}

}  // namespace

// Those that the user leaves open to the bank's profile; else the one that the request has.
std::vector<u16> RequestMaker::OpenVersions() const {
  const std::optional<Bank>& bank = m_options.bank;
  const bool isOpen = bank.has_value() && bank->hasProfile && bank->version == 0;
  return isOpen && !m_options.secondVersion ? std::vector<u16>{1, 2} : std::vector<u16>{m_version};
}

bool RequestMaker::Try(const std::function<void(RequestMaker&)>& make) {
  std::string problem;
  for (const u16 version : OpenVersions()) {
    RequestMaker trial(m_options);
    trial.m_version = version;
    make(trial);
    trial.MakeSignOn();
    if (!trial.HasFailed()) {
      const ExitStatus prepared = m_options.use->Prepare();
      if (prepared != kExitClean) GiveUp(prepared);
      return prepared == kExitClean;
    }
    if (problem.empty()) problem = trial.m_problem;
  }
  Fail(problem);
  return false;
}

void RequestMaker::Concern(const std::vector<Service>& services) {
  if (!m_problem.empty() || !m_options.bank.has_value() || !m_options.bank->hasProfile) return;
  std::optional<ProfileAnswer>& answer = *m_options.profile;
  if (!answer.has_value()) answer = m_options.use->FindProfile(m_options);
  if (answer->exitStatus != kExitClean) {
    return GiveUp(answer->exitStatus);
  }
  m_profile = answer->profile;
  if (m_profile == nullptr) return;
  ChooseVersion(services);
  if (m_problem.empty()) ChooseAddress(services);
  if (m_problem.empty()) m_rules = FindRules(services);
}

// The highest version that the user leaves open and that the bank has for all services.
void RequestMaker::ChooseVersion(const std::vector<Service>& services) {
  const Bank& bank = *m_options.bank;
  const auto hasAll = [&](u16 version) {
    // A profile that leaves the sign-on out says nothing of its versions.
    return (!Names(*m_profile, Service::kSignOn) ||
            Offers(*m_profile, Service::kSignOn, version)) &&
           std::all_of(services.begin(), services.end(),
                       [&](Service each) { return Offers(*m_profile, each, version); });
  };
  const auto isOpen = [&](u16 version) {
    return m_options.secondVersion ? version == 2 : bank.version == 0 || bank.version == version;
  };
  for (const u16 version : kVersions) {
    if (!isOpen(version) || !hasAll(version)) continue;
    m_version = version;
    return;
  }
  for (const Service service : services) {
    if (Names(*m_profile, service)) continue;
    return Fail(kExitRefused, bank.name + " does not offer " + std::string(WordsOf(service)) +
                                  ", by its profile of " + m_profile->DayText());
  }
  Fail(kExitRefused, bank.name + " does not offer " + std::string(WordsOf(services.front())) +
                         " in version " + std::to_string(m_version) +
                         " of the message sets, by its profile of " + m_profile->DayText());
}

void RequestMaker::ChooseAddress(const std::vector<Service>& services) {
  const Bank& bank = *m_options.bank;
  std::string address;
  for (const Service service : services) {
    const OfferedSet& set = *m_profile->Find(service, m_version);
    if (set.encrypted) {
      return Fail(kExitUnusable, bank.name +
                                     " wants passwords encrypted within OFX (TYPE1), which this "
                                     "command cannot do");
    }
    const std::string& own = set.url.empty() ? bank.url : set.url;
    if (!address.empty() && own != address) {
      return Fail(bank.name + " has other addresses for " + std::string(WordsOf(service)) +
                  " than for " + std::string(WordsOf(services.front())) +
                  "; ask for one account at a time, with --account");
    }
    address = own;
  }
  const std::string problem = FindAddressProblem(bank, address);
  if (problem.empty()) return m_options.use->SetAddress(address);
  Fail(kExitUnusable, "nothing is sent to " + Url(address).Shown() + ", where the profile of " +
                          bank.name + " has " + std::string(WordsOf(services.front())) + ": " +
                          problem);
}

const PasswordRules* RequestMaker::FindRules(const std::vector<Service>& services) const {
  for (const Service service : {services.front(), Service::kSignOn}) {
    const OfferedSet* const set = m_profile->Find(service, m_version);
    const PasswordRules* const rules = set == nullptr ? nullptr : m_profile->FindRules(set->realm);
    if (rules != nullptr) return rules;
  }
  return nullptr;
}

}  // namespace krofx::command
