// A request that is sent, to the address that the command line, the bank or its profile says.

#ifndef KROFX_COMMAND_EXCHANGE_EXCHANGE_USE_H_
#define KROFX_COMMAND_EXCHANGE_EXCHANGE_USE_H_

#include <string>
#include <utility>

#include "exchange/exchange.h"
#include "requests/request_use.h"

namespace krofx::command {

/// What all uses have in common that send a request.
class ExchangeUse : public RequestUse {
 public:
  explicit ExchangeUse(ExchangeOptions options = {}) : m_options(std::move(options)) {}

  ExitStatus Prepare() override { return m_exchange.Prepare(Direction::kSend); }
  std::string Where(const std::string& institution) const override;
  void TakeBank(const Bank& bank) override { FillExchange(m_options, bank); }
  ProfileAnswer FindProfile(const SignOnOptions& signOn) override;
  void SetAddress(const std::string& url) override { m_options.url = url; }

 protected:
  ExchangeOptions m_options;
  Exchange m_exchange{m_options};
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_EXCHANGE_USE_H_
