// What an institution offers, by its profile.

#ifndef KROFX_COMMAND_BANKS_PROFILE_H_
#define KROFX_COMMAND_BANKS_PROFILE_H_

#include <memory>
#include <string>
#include <vector>

#include "banks/bank.h"
#include "banks/password_rules.h"
#include "banks/services.h"

namespace krofx::command {

class ParsedFile;

/// A version of a message set.
struct SetName {
  std::string family;  ///< See FamilyOf.
  u16 version = 0;

  bool operator==(const SetName&) const = default;
};

/// One version of a message set that an institution offers.
struct OfferedSet {
  SetName name;
  std::string url;         ///< Where its requests go; may be empty.
  std::string realm;       ///< Whose passwords sign on to it.
  bool encrypted = false;  ///< Passwords are encrypted within OFX, besides TLS.
  std::string syncMode;    ///< FULL or LITE.
  bool transfers = false;  ///< They can be ordered.
  bool recurring = false;  ///< So can transfers or payments again and again.
  bool stopChecks = false;
  bool mail = false;  ///< It takes letters or sends them.

  /// It tells of each thing once, and so never again.
  bool TellsOnce() const { return syncMode == "LITE"; }
};

/// A profile.
struct Profile {
  KRDateTime day;  ///< When it last changed, as the institution says it.
  std::vector<OfferedSet> sets;
  std::vector<PasswordRules> realms;
  /// It lists sets of the second version, which only a profile in that version describes.
  bool namesSecondVersion = false;

  /// @return what it offers of a service in a version; null for nothing.
  const OfferedSet* Find(Service service, u16 version) const;
  const OfferedSet* Find(const SetName& name) const;
  /// @return the rules for passwords of a realm; null when it has none.
  const PasswordRules* FindRules(const std::string& realm) const;
  /// @return its day as 2025-11-15.
  std::string DayText() const;
};

/// @return the profile in a reply; null when there is none.
std::shared_ptr<const Profile> ReadProfile(const ParsedFile& reply);

/// @return the message sets of a request, except that of the sign-on.
std::vector<SetName> ListSets(const ParsedFile& request);

/// @return whether the sign-on of a reply says that the profile has changed since this one.
bool NamesNewerProfile(const ParsedFile& reply, const Profile& profile);

/// Why nothing may be sent to an address in the profile of a bank: it must be as safe as the bank's
/// own, and on a host that the user named.
/// @return empty when it may be sent there.
std::string FindAddressProblem(const Bank& bank, const std::string& address);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_PROFILE_H_
