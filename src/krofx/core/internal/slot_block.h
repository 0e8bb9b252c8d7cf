// The pointer block of every array: slots that hold an element or null.
//
// Growth is announced in the steps that the array's owner chose, but the memory grows by
// doubling, so that filling a long array costs no reallocation per step. Copies of a block share
// its memory; they know of each other, so that growth of one reaches all and the elements are
// destroyed once, with the last of them.
//
// An element may be borrowed: it belongs to someone else, and the block never destroys it. The
// lowest bit of its pointer, which is free in the address of anything aligned, is the mark.

#ifndef KROFX_CORE_INTERNAL_SLOT_BLOCK_H_
#define KROFX_CORE_INTERNAL_SLOT_BLOCK_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Whether the first allocation of an array raises the fire alarm when it fails.
enum class GrowthAlarm : bool { kSilent, kRaised };

/// A growing block of untyped slots. What a slot holds belongs to whoever typed it.
class KROFX_API SlotBlock {
 public:
  /// The highest index that can be used, so that the number of entries fits its 16 bits.
  static constexpr u16 kMaxIndex = 65534;

  /// Takes no memory. `initialSize` and `growStep` of 0 become 1.
  SlotBlock(u16 initialSize, u16 growStep, GrowthAlarm alarm) noexcept;
  /// Shares the source's slots.
  SlotBlock(const SlotBlock& source) noexcept;
  /// Blocks are released, with a way to destroy the elements, before they take another's slots.
  SlotBlock& operator=(const SlotBlock&) = delete;
  /// The slots must have been released, unless another block shares them.
  ~SlotBlock() { Unlink(); }

  u16 Allocated() const { return m_allocated; }
  u16 Entries() const { return m_entries; }
  u16 InitialSize() const { return m_initialSize; }
  u16 GrowStep() const { return m_growStep; }
  /// Whether another block uses the same slots.
  bool IsShared() const { return m_nextSharer != this; }

  /// What the slot holds; null at or above the entries.
  void* Get(u16 index) const { return index < m_entries ? Bare(m_slots[index]) : nullptr; }
  /// As Get, but for every slot that is allocated; `index` must be below Allocated().
  void* At(u16 index) const { return Bare(m_slots[index]); }
  /// Stores into a slot; `index` must be below Allocated(). Raises the entries to hold it.
  void Put(u16 index, void* element) {
    m_slots[index] = element;
    RaiseEntries(index);
  }
  /// As Put, for an element that stays someone else's.
  void PutBorrowed(u16 index, void* element) {
    Put(index, reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(element) | kBorrowed));
  }
  /// Nulls the slots of borrowed elements, and drops entries without an element from the end.
  void DropBorrowed();
  /// Grows so that `index` has a slot, puts `element` there and destroys what it held, unless that
  /// is the same.
  /// @return false, with nothing changed, when the element is null or there can be no such index.
  bool Store(u16 index, void* element, void (*destroy)(void*));
  /// Makes `index` an entry.
  void RaiseEntries(u16 index) {
    if (index >= m_entries) m_entries = static_cast<u16>(index + 1);
  }

  /// One step of growth: the initial size first, the grow step later, up to 65535 slots; new slots
  /// are null. The fire alarm is raised by a failure of the first step alone, and only if it was
  /// asked for.
  /// @return false when memory is exhausted or the block is full, and then nothing changes.
  bool GrowOneStep();
  /// Steps until `index` has a slot.
  /// @return false when it cannot have one.
  bool GrowTo(u16 index);

  /// Takes the element out of its place: the later ones move down.
  /// @return false above the entries.
  bool Remove(u16 index);
  /// Nulls one allocated slot and changes nothing else.
  /// @return false when there is no such slot.
  bool Empty(u16 index);
  /// Nulls all slots and forgets the entries; the memory stays.
  void Clear();

  /// Gives the slots back and starts anew. The elements go through `destroy`, unless another block
  /// shares them or they are borrowed.
  void Release(void (*destroy)(void*));
  /// Becomes a copy of `source`, sharing its slots. This block must have been released.
  void ShareWith(const SlotBlock& source);

 private:
  static constexpr std::uintptr_t kBorrowed = 1;

  static bool IsBorrowed(const void* slot) {
    return (reinterpret_cast<std::uintptr_t>(slot) & kBorrowed) != 0;
  }
  static void* Bare(void* slot) {
    return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(slot) & ~kBorrowed);
  }

  bool Reserve(u16 slots);
  void Unlink();

  void** m_slots = nullptr;
  mutable SlotBlock* m_nextSharer = this;
  u16 m_allocated = 0;
  u16 m_entries = 0;
  u16 m_initialSize;
  u16 m_growStep;
  u16 m_capacity = 0;
  GrowthAlarm m_alarm;
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_SLOT_BLOCK_H_
