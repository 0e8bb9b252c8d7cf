// A request that is sent for the sake of what comes after it, and whose reply is not shown.

#ifndef KROFX_COMMAND_EXCHANGE_REPLY_KEEPER_H_
#define KROFX_COMMAND_EXCHANGE_REPLY_KEEPER_H_

#include <memory>
#include <string>
#include <vector>

#include "exchange/exchange_use.h"
#include "requests/sign_on_options.h"

namespace krofx::command {

/// Sends a request and keeps the reply.
class ReplyKeeper : public ExchangeUse {
 public:
  using ExchangeUse::ExchangeUse;

  void AddOptions(const Subcommand&) override {}
  const char* GetFooter() const override { return ""; }
  ExitStatus Use(KRBuffer& text) override;

  /// @return the reply's text; null when there was none, which was reported.
  std::unique_ptr<KRBuffer> TakeReply() { return std::move(m_reply); }
  /// @return whether the server may have got the request, whatever came of it.
  bool MayHaveArrived() const { return m_exchange.MayHaveArrived(); }
  /// @return what messages call the server.
  std::string GetShownUrl() const { return m_exchange.GetShownUrl(); }

 private:
  std::unique_ptr<KRBuffer> m_reply;
};

/// Asks an institution for the user's accounts there.
/// @param accounts takes them.
/// @return kExitClean, or another exit status after a complaint.
ExitStatus AskForAccounts(const SignOnOptions& signOn, const ExchangeOptions& options,
                          std::vector<Account>& accounts);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_REPLY_KEEPER_H_
