// What CURRENCY and ORIGCURRENCY say.

#ifndef KROFX_HOST_CURRENCY_TEXT_H_
#define KROFX_HOST_CURRENCY_TEXT_H_

#include <optional>
#include <string_view>

#include "krofx/host/view_range.h"
#include "krofx/messages/signon/signon.h"

namespace krofx::internal {

/// @return the symbol of a currency; empty for null.
inline std::string_view SymbolOf(const KRCurrency* currency) {
  if (currency == nullptr) return {};
  return TextIf(currency->HasCurrencySymbol(), currency->GetCurrencySymbol());
}

/// @return the rate of a currency; nothing for null.
inline std::optional<KRPrecisionInteger> RateOf(const KRCurrency* currency) {
  if (currency == nullptr || currency->HasCurrencyRate() == 0) return std::nullopt;
  return currency->GetCurrencyRate();
}

}  // namespace krofx::internal

#endif  // KROFX_HOST_CURRENCY_TEXT_H_
