// The part of arrays that does not depend on the type of their elements.

#include "krofx/core/array.h"

#include "krofx/core/thread.h"

namespace krofx::internal {

void RaiseElementAlarm() { KRSetFireAlarm(KRFireAlarm_MemoryExhausted); }

}  // namespace krofx::internal

using krofx::internal::GrowthAlarm;

KRDynamicArray::KRDynamicArray(u16 initialSize, u16 growStep)
    : KRDynamicArray(initialSize, growStep, GrowthAlarm::kRaised) {}

KRDynamicArray::KRDynamicArray(u16 initialSize, u16 growStep, GrowthAlarm alarm)
    : m_block(initialSize, growStep, alarm) {}

KRDynamicArray::~KRDynamicArray() = default;

u16 KRDynamicArray::OkToAlloc(u16) const { return 1; }

KRBuildStatus KRDynamicArray::Build(KRBuilder*, KRTagID) const {
  return KRBuildStatus_NoArrayWriter;
}

u16 KRDynamicArray::AllocatedTo(u16 index) {
  if (!m_block.GrowTo(index)) return 0;
  m_block.RaiseEntries(index);
  return 1;
}

u16 KRDynamicArray::UnSet(u16 index) { return m_block.Remove(index) ? 1 : 0; }

void KRDynamicArray::Clear() { m_block.Clear(); }
