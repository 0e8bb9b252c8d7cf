// A request that is sent for the sake of what comes after it, and whose reply is not shown.

#ifndef KROFX_COMMAND_EXCHANGE_REPLY_KEEPER_H_
#define KROFX_COMMAND_EXCHANGE_REPLY_KEEPER_H_

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "exchange/exchange.h"
#include "requests/request_use.h"
#include "requests/sign_on_options.h"

namespace krofx::command {

/// Sends a request and keeps the reply.
class ReplyKeeper : public RequestUse {
 public:
  explicit ReplyKeeper(ExchangeOptions options) : m_options(std::move(options)) {}

  void AddOptions(const Subcommand&) override {}
  const char* GetFooter() const override { return ""; }
  ExitStatus Prepare() override;
  std::string Where(const std::string& institution) const override;
  ExitStatus Use(KRBuffer& text) override;
  void TakeBank(const Bank& bank) override { FillExchange(m_options, bank); }

  /// The reply's text; null when there was none, which was complained of.
  std::unique_ptr<KRBuffer> TakeReply() { return std::move(m_reply); }
  /// What messages call the server.
  std::string GetShownUrl() const { return m_exchange.GetShownUrl(); }

 private:
  ExchangeOptions m_options;
  Exchange m_exchange{m_options};
  std::unique_ptr<KRBuffer> m_reply;
};

/// A server as a prompt names it: the institution, and where it is.
std::string NameServer(const std::string& institution, const std::string& url);

/// Asks an institution for the user's accounts there.
/// @param accounts takes them.
/// @return kExitClean, or another exit status after a complaint.
ExitStatus AskForAccounts(const SignOnOptions& signOn, const ExchangeOptions& options,
                          std::vector<Account>& accounts);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_REPLY_KEEPER_H_
