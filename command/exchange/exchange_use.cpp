// Names the server of an exchange, and finds its profile.

#include "exchange/exchange_use.h"

#include "banks/url.h"
#include "exchange/profile_asker.h"
#include "requests/sign_on_options.h"

namespace krofx::command {

std::string ExchangeUse::Where(const std::string& institution) const {
  return institution + " (" + Url(m_options.url).host + ")";
}

ProfileAnswer ExchangeUse::FindProfile(const SignOnOptions& signOn) {
  // What the bank's profile says is not said of another address.
  if (m_options.url != signOn.bank->url) return {};
  return krofx::command::FindProfile(signOn, m_options);
}

}  // namespace krofx::command
