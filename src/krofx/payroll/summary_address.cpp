// The address in a tax summary, which is a part of the object: there is always exactly one.

#include "krofx/model/internal/aggregate.h"
#include "krofx/payroll/taxes.h"

// A second address in a text is read into the same object, where an ordinary child would be
// replaced.
KRParseStatus KREmployeeTaxSummary::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (entry->tagID == KRTag_N_ADDRINFO) {
    return PushAndSetObject(&m_addrInfo, KRTag_N_ADDRINFO);
  }
  return KRDataObj::HandleTagStart(entry);
}

u16 KREmployeeTaxSummary::SetMsgSetVersion(u16 version) {
  m_addrInfo.SetMsgSetVersion(version);
  return KRDataObj::SetMsgSetVersion(version);
}

// An address that is not present is not a child, so that no search looks for missing tags in it.
KRDataObj* KREmployeeTaxSummary::GetChild(u16 index) const {
  if (index > 0) return KRDataObj::GetChild(static_cast<u16>(index - 1));
  if (ValidateTag(KRTag_N_ADDRINFO) == 0) return nullptr;
  return const_cast<KRAddrInfo*>(&m_addrInfo);
}

u16 KREmployeeTaxSummary::GetNumberOfChildren() const {
  const u16 others = KRDataObj::GetNumberOfChildren();
  return others == 0xffff ? others : static_cast<u16>(others + 1);
}

u16 KREmployeeTaxSummary::SetAddrInfo(KRAddrInfo* address) {
  if (address == nullptr) return 0;
  u16 copied = 1;
  if (address != &m_addrInfo) {
    copied = m_addrInfo.DeepCopyFrom(address);
    m_addrInfo.SetType(KRTag_N_ADDRINFO);
    m_addrInfo.SetMsgSetVersion(GetMsgSetVersion());
    delete address;
  }
  return copied == 0 ? copied : SetTag(KRTag_N_ADDRINFO);
}
