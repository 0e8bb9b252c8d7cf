// Making, replacing and copying payloads.

#include "krofx/envelope/internal/payload.h"

#include "krofx/envelope/internal/replaced_payloads.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

std::size_t& ReplacedPayloads() {
  static thread_local std::size_t count = 0;
  return count;
}

KRParseStatus Payload::Make(Side side, KRTagID tag) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  if (factory == nullptr) return KRParseStatus_Fatal;
  const PayloadRoute* route = FindPayload(side, tag);
  if (route == nullptr) return KRParseStatus_Invalid;
  KRDataObj* made = route->create(*factory);
  if (made == nullptr) return KRParseStatus_Fatal;
  if (KRDataObj* held = m_slot.Get()) {
    if (m_replaced.Append(held) == 0) {
      delete made;
      return KRParseStatus_Fatal;
    }
    m_slot.Release();
    ++ReplacedPayloads();
  }
  m_slot.Set(made);
  return KRParseStatus_Accepted;
}

u16 Payload::CopyFrom(const Payload& source) { return CopyChild(m_slot, source.m_slot.Get()); }

}  // namespace krofx::internal
