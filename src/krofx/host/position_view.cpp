// Looks in three places: the position, the aggregate around it, and the security list.

#include "krofx/host/position_view.h"

#include "krofx/host/currency_text.h"
#include "krofx/host/security_search.h"
#include "krofx/messages/investment/securities.h"

namespace krofx {

using internal::TextIf;

PositionView::PositionView(const Found<const KRInvPos>& found,
                           const internal::SecurityFinder& securities)
    : m_position(&*found), m_around(found.Parent()) {
  if (const KRSecID* const id = m_position->GetSecID()) m_security = securities.Find(*id);
  if (const auto* const statement = found.Ancestor<KRInvStmtRs>()) {
    m_currency = ToText(statement->GetCurDef());
  }
}

std::string_view PositionView::Kind() const { return internal::TagOf(m_around); }

std::string_view PositionView::Security() const {
  if (m_security == nullptr) return {};
  return TextIf(m_security->HasSecName(), m_security->GetSecName());
}

std::string_view PositionView::Ticker() const {
  if (m_security == nullptr) return {};
  return TextIf(m_security->HasTicker(), m_security->GetTicker());
}

std::string_view PositionView::SecurityId() const {
  const KRSecID* const id = m_position->GetSecID();
  return id == nullptr ? std::string_view() : TextIf(id->HasUniqueID(), id->GetUniqueID());
}

std::string_view PositionView::SecurityIdType() const {
  const KRSecID* const id = m_position->GetSecID();
  return id == nullptr ? std::string_view() : TextIf(id->HasUniqueIDType(), id->GetUniqueIDType());
}

std::string_view PositionView::Direction() const {
  return m_position->HasPosType() != 0 ? ToText(m_position->GetPosType()) : std::string_view();
}

std::string_view PositionView::SubAccount() const {
  return m_position->HasHeldInAcct() != 0 ? ToText(m_position->GetHeldInAcct())
                                          : std::string_view();
}

std::optional<KRPrecisionInteger> PositionView::Units() const {
  if (m_position->HasUnits() == 0) return std::nullopt;
  return m_position->GetUnits();
}

std::optional<KRPrecisionInteger> PositionView::Price() const {
  if (m_position->HasUnitPrice() == 0) return std::nullopt;
  return m_position->GetUnitPrice();
}

std::optional<KRPrecisionInteger> PositionView::Value() const {
  if (m_position->HasMktVal() == 0) return std::nullopt;
  return m_position->GetMktVal();
}

KRDateTime PositionView::PriceDate() const {
  return m_position->HasDtPriceAsOf() != 0 ? m_position->GetDtPriceAsOf() : KRDateTime();
}

std::string_view PositionView::Currency() const {
  const std::string_view own = internal::SymbolOf(m_position->GetCurrency());
  return own.empty() ? m_currency : own;
}

std::optional<KRPrecisionInteger> PositionView::Rate() const {
  return internal::RateOf(m_position->GetCurrency());
}

std::string_view PositionView::Memo() const {
  if (m_position->HasMemo() != 0) return ToText(m_position->GetMemo());
  return TextIf(m_position->HasMemo2(), m_position->GetMemo2());
}

std::optional<KRPrecisionInteger> PositionView::UnitsStreet() const {
  const auto* const stock = dynamic_cast<const KRPosStock*>(m_around);
  if (stock != nullptr && stock->HasUnitsStreet() != 0) return stock->GetUnitsStreet();
  const auto* const fund = dynamic_cast<const KRPosMF*>(m_around);
  if (fund != nullptr && fund->HasUnitsStreet() != 0) return fund->GetUnitsStreet();
  return std::nullopt;
}

std::optional<KRPrecisionInteger> PositionView::UnitsUser() const {
  const auto* const stock = dynamic_cast<const KRPosStock*>(m_around);
  if (stock != nullptr && stock->HasUnitsUser() != 0) return stock->GetUnitsUser();
  const auto* const fund = dynamic_cast<const KRPosMF*>(m_around);
  if (fund != nullptr && fund->HasUnitsUser() != 0) return fund->GetUnitsUser();
  return std::nullopt;
}

std::optional<bool> PositionView::ReinvestDividends() const {
  const auto* const stock = dynamic_cast<const KRPosStock*>(m_around);
  if (stock != nullptr && stock->HasReinvDiv() != 0) return stock->GetReinvDiv() != 0;
  const auto* const fund = dynamic_cast<const KRPosMF*>(m_around);
  if (fund != nullptr && fund->HasReinvDiv() != 0) return fund->GetReinvDiv() != 0;
  return std::nullopt;
}

std::optional<bool> PositionView::ReinvestGains() const {
  const auto* const fund = dynamic_cast<const KRPosMF*>(m_around);
  if (fund == nullptr || fund->HasReinvCG() == 0) return std::nullopt;
  return fund->GetReinvCG() != 0;
}

std::string_view PositionView::Secured() const {
  const auto* const option = dynamic_cast<const KRPosOpt*>(m_around);
  return option == nullptr || option->HasSecured() == 0 ? std::string_view()
                                                        : ToText(option->GetSecured());
}

}  // namespace krofx
