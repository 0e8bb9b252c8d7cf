// All securities of a list at once, whatever their kind.

#include "krofx/messages/investment/securities.h"

u16 KRSecList::FillSecInfoList(KRDynamicArrayDataObj& securities) {
  m_view.Empty();
  const auto borrow = [this](const auto& array) {
    for (u16 index = 0; index < array.Entries(); ++index) {
      if (array.Get(index) != nullptr && m_view.Add(array.Get(index)) == 0) return false;
    }
    return true;
  };
  const bool complete = borrow(m_debtInfo) && borrow(m_mfInfo) && borrow(m_optInfo) &&
                        borrow(m_otherInfo) && borrow(m_stockInfo);
  if (!complete) m_view.Empty();
  securities = m_view.Get();
  return complete ? 1 : 0;
}
