// Gives all securities of a list in one array, whatever their kind.

#include "krofx/messages/investment/securities.h"

namespace {

// Calls `visit(security)` for each security, in the order of the arrays.
template <class Visit, class... Arrays>
void ForEachSecurity(Visit visit, const Arrays&... arrays) {
  const auto walk = [&visit](const auto& array) {
    for (u16 index = 0; index < array.Entries(); ++index) {
      if (array.Get(index) != nullptr) visit(*array.Get(index));
    }
  };
  (walk(arrays), ...);
}

}  // namespace

u16 KRSecList::FillSecInfoList(KRDynamicArrayDataObj& securities) {
  const auto forEach = [this](auto visit) {
    ForEachSecurity(visit, m_debtInfo, m_mfInfo, m_optInfo, m_otherInfo, m_stockInfo);
  };
  u32 count = 0;
  forEach([&count](const KRDataObj&) { ++count; });
  if (!m_lender.MakeRoom(securities, count)) return 0;
  forEach([this, &securities](KRDataObj& security) { m_lender.Lend(securities, security); });
  return 1;
}
