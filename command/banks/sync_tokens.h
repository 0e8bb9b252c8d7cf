// How far a bank's news were fetched: the token of each synchronisation.

#ifndef KROFX_COMMAND_BANKS_SYNC_TOKENS_H_
#define KROFX_COMMAND_BANKS_SYNC_TOKENS_H_

#include <map>
#include <string>

#include "banks/bank.h"
#include "krofx/core/types.h"

namespace krofx::command {

/// The tokens of one bank, by what they are of.
class SyncTokens {
 public:
  /// Reads those that are kept. Those of another address, institution or user than the bank has now
  /// are not taken.
  explicit SyncTokens(const Bank& bank);

  /// @return what a token is of.
  /// @param wrapper the tag of the request, such as INTRASYNCRQ.
  /// @param account null when it is of no account.
  static std::string KeyOf(u16 version, const std::string& wrapper, const Account* account);

  /// @return the token to ask with: "0", which asks for all, when none is kept.
  std::string Get(const std::string& key) const;
  /// Notes a newer token; Save keeps it.
  void Set(const std::string& key, const std::string& token) { m_tokens[key] = token; }
  /// Keeps all, for the user's eyes only.
  /// @return empty, or what went wrong.
  std::string Save() const;

 private:
  const Bank& m_bank;
  std::map<std::string, std::string> m_tokens;
};

/// Removes the tokens of a bank.
void ForgetTokens(const std::string& bankName);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_SYNC_TOKENS_H_
