// Reads profiles out of replies, and judges the addresses in them.

#include "banks/profile.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "banks/url.h"
#include "input/element_value.h"
#include "input/parsed_file.h"
#include "output/characters.h"

namespace krofx::command {

namespace {

constexpr std::string_view kEncrypted = "TYPE1";
// How the tags of what a message set has in the second version end.
constexpr std::string_view kSecondVersion = "MSGSETV2";

int NumberOf(const Element& element, std::string_view tag) {
  const Element* const found = element.Find(tag);
  int number = 0;
  if (found == nullptr) return 0;
  std::from_chars(found->value.data(), found->value.data() + found->value.size(), number);
  return number;
}

bool IsTrue(const Element& element, std::string_view tag) {
  return ValueOf(element, tag) == "true";
}

// What of a message set is offered, where that is said.
void ReadParts(const Element& version, OfferedSet& set) {
  const Element* const transfers = version.Find("XFERPROF");
  set.transfers = transfers != nullptr;
  // A bill-pay service says how long before its date a payment is made from its model.
  set.recurring = (transfers != nullptr && IsTrue(*transfers, "CANRECUR")) ||
                  NumberOf(version, "MODELWND") > 0 || IsTrue(version, "NORV.CANRECUR");
  set.stopChecks = version.Find("STPCHKPROF") != nullptr;
  const Element* const letters = version.Find("EMAILPROF");
  set.mail =
      (letters != nullptr && (IsTrue(*letters, "CANEMAIL") || IsTrue(*letters, "CANNOTIFY"))) ||
      IsTrue(version, "MAILSUP") || IsTrue(version, "CANEMAIL");
}

void ReadSets(const Element& list, std::vector<OfferedSet>& sets) {
  for (const Element& family : list.children) {
    for (const Element& version : family.children) {
      const Element* const core = version.Find("MSGSETCORE");
      if (core == nullptr || version.tag.empty()) continue;
      OfferedSet set;
      set.name.family = family.tag;
      // The tag is what wraps requests of the version.
      set.name.version = static_cast<u16>(version.tag.back() - '0');
      set.url = ValueOf(*core, "URL");
      if (set.url.empty()) set.url = ValueOf(*core, "URL2");
      set.realm = ValueOf(*core, "SIGNONREALM");
      set.encrypted = ValueOf(*core, "OFXSEC") == kEncrypted;
      set.syncMode = ValueOf(*core, "SYNCMODE");
      ReadParts(version, set);
      sets.push_back(std::move(set));
    }
  }
}

void ReadRealms(const Element& list, std::vector<PasswordRules>& realms) {
  for (const Element& each : list.children) {
    if (each.tag != "SIGNONINFO") continue;
    PasswordRules rules;
    rules.realm = ValueOf(each, "SIGNONREALM");
    rules.least = NumberOf(each, "MIN");
    rules.most = NumberOf(each, "MAX");
    rules.characters = ValueOf(each, "CHARTYPE");
    rules.caseMatters = IsTrue(each, "CASESEN");
    rules.special = IsTrue(each, "SPECIAL");
    rules.spaces = IsTrue(each, "SPACES");
    rules.canChange = IsTrue(each, "PINCH");
    rules.mustChange = IsTrue(each, "CHGPINFIRST");
    realms.push_back(std::move(rules));
  }
}

// Calls a function with each message set of each response.
template <class Function>
void ForEachSet(const ParsedFile& reply, Function function) {
  for (const OfxFile& each : reply.GetOfxFiles()) {
    const auto* const file = dynamic_cast<const KRFileRs*>(each.file);
    if (file == nullptr) continue;
    for (u16 index = 0; index < file->GetNumberOfResponse(); ++index) {
      const KRResponse& response = *file->GetResponse(index);
      for (u16 set = 0; set < response.GetNumMessageSet(); ++set) {
        function(*response.GetMessageSet(set), each);
      }
    }
  }
}

}  // namespace

const OfferedSet* Profile::Find(Service service, u16 version) const {
  return Find(SetName{std::string(FamilyOf(service)), version});
}

const OfferedSet* Profile::Find(const SetName& name) const {
  const auto found = std::find_if(sets.begin(), sets.end(),
                                  [&name](const OfferedSet& each) { return each.name == name; });
  return found == sets.end() ? nullptr : &*found;
}

const PasswordRules* Profile::FindRules(const std::string& realm) const {
  const auto found =
      std::find_if(realms.begin(), realms.end(),
                   [&realm](const PasswordRules& each) { return each.realm == realm; });
  return found == realms.end() ? nullptr : &*found;
}

std::string Profile::DayText() const {
  char text[32] = "";
  std::snprintf(text, sizeof text, "%04u-%02u-%02u", unsigned{day.GetYear()},
                unsigned{day.GetMonth()}, unsigned{day.GetDay()});
  return text;
}

std::shared_ptr<const Profile> ReadProfile(const ParsedFile& reply) {
  std::shared_ptr<Profile> profile;
  ForEachSet(reply, [&profile](const KRMessageSetRs& set, const OfxFile& file) {
    for (u16 index = 0; index < set.GetNumTrans() && profile == nullptr; ++index) {
      auto* const found = dynamic_cast<KRProfileRs*>(set.GetTrans(index)->GetActualTrans());
      if (found == nullptr) continue;
      profile = std::make_shared<Profile>();
      profile->day = found->GetDtProfUp();
      TextArena arena;
      const Element& element = ReadElements(*found, arena, file.text);
      if (const Element* const sets = element.Find("MSGSETLIST")) ReadSets(*sets, profile->sets);
      const Element* const realms = element.Find("SIGNONINFOLIST");
      if (realms != nullptr) ReadRealms(*realms, profile->realms);
    }
  });
  if (profile == nullptr) return nullptr;
  for (const krofx::Mending& mending : reply.GetMendings()) {
    profile->namesSecondVersion |= ToText(mending.tag).ends_with(kSecondVersion);
  }
  return profile;
}

std::vector<SetName> ListSets(const ParsedFile& request) {
  std::vector<SetName> names;
  for (const OfxFile& each : request.GetOfxFiles()) {
    const auto* const file = dynamic_cast<const KRFileRq*>(each.file);
    for (u16 index = 0; file != nullptr && index < file->GetNumberOfRequest(); ++index) {
      const KRRequest& body = *file->GetRequest(index);
      for (u16 set = 0; set < body.GetNumMessageSet(); ++set) {
        // BANKMSGSRQV1 is of version 1 of BANKMSGSET.
        const std::string tag =
            KRTagDictionary::TheKRTagDictionary()->GetTagString(body.GetMessageSet(set)->GetType());
        const std::size_t end = tag.rfind("RQV");
        if (end == std::string::npos || tag.starts_with("SIGNON")) continue;
        names.push_back({tag.substr(0, end) + "ET", static_cast<u16>(tag.back() - '0')});
      }
    }
  }
  return names;
}

bool NamesNewerProfile(const ParsedFile& reply, const Profile& profile) {
  bool newer = false;
  ForEachSet(reply, [&](const KRMessageSetRs& set, const OfxFile&) {
    const KRSignOnRs* const signOn = set.GetSignOnRs();
    if (signOn == nullptr || signOn->ValidateTag(KRTag_DTPROFUP) == 0) return;
    newer |= (signOn->GetDtProfUp() > profile.day) != 0;
  });
  return newer;
}

std::string FindAddressProblem(const Bank& bank, const std::string& address) {
  const Url url(address);
  const Url own(bank.url);
  if (url.Text() == own.Text()) return "";
  if (url.scheme != "https" && (url.scheme != "http" || own.scheme != "http")) {
    return "it is not https";
  }
  if (url.hasUser) return "it has a user in it";
  if (url.host.empty()) return "it is not an address that can be used";
  const std::string host = LowerAscii(url.host);
  const bool known = host == LowerAscii(own.host) ||
                     std::any_of(bank.hosts.begin(), bank.hosts.end(),
                                 [&](const auto& each) { return LowerAscii(each) == host; });
  if (known) return "";
  return "it is on another host than the bank's own address; if you trust it, add hosts = [\"" +
         url.host + "\"] to [" + bank.name + "] in banks.toml";
}

}  // namespace krofx::command
