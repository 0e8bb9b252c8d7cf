// The pointer block of every array: slots that hold an element or null.
//
// Allocated() grows in the steps that the array's owner chose, but the memory grows by doubling, so
// that filling a long array does not reallocate at each step. Copies of a block share its memory
// and are linked in a ring, so that the growth of one reaches all, and the elements are destroyed
// once, with the last copy.
//
// An element may be borrowed: it belongs to something else, and the block never destroys it. It is
// marked in the lowest bit of its pointer, which is 0 in every aligned address.

#ifndef KROFX_CORE_INTERNAL_SLOT_BLOCK_H_
#define KROFX_CORE_INTERNAL_SLOT_BLOCK_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Whether the first allocation of an array raises the fire alarm when it fails.
enum class GrowthAlarm : bool { kSilent, kRaised };

/// A growing block of untyped slots. The typed array above it knows how to destroy the elements.
class KROFX_API SlotBlock {
 public:
  /// The highest index that can be used, so that the number of entries fits its 16 bits.
  static constexpr u16 kMaxIndex = 65534;

  /// Takes no memory. `initialSize` and `growStep` of 0 become 1.
  SlotBlock(u16 initialSize, u16 growStep, GrowthAlarm alarm) noexcept;
  /// Shares the source's slots.
  SlotBlock(const SlotBlock& source) noexcept;
  /// Not available: a block must be released, which needs a way to destroy elements, before
  /// ShareWith.
  SlotBlock& operator=(const SlotBlock&) = delete;
  /// The slots must have been released, unless another block shares them.
  ~SlotBlock() { Unlink(); }

  u16 Allocated() const { return m_allocated; }
  u16 Entries() const { return m_entries; }
  u16 InitialSize() const { return m_initialSize; }
  u16 GrowStep() const { return m_growStep; }
  /// @return whether another block uses the same slots.
  bool IsShared() const { return m_nextSharer != this; }

  /// @return what the slot holds; null at or above the entries.
  void* Get(u16 index) const { return index < m_entries ? Bare(m_slots[index]) : nullptr; }
  /// As Get, but for every slot that is allocated; `index` must be below Allocated().
  void* At(u16 index) const { return Bare(m_slots[index]); }
  /// Stores into a slot, without destroying what it held; `index` must be below Allocated(). Makes
  /// `index` an entry.
  void Put(u16 index, void* element) {
    m_slots[index] = element;
    RaiseEntries(index);
  }
  /// As Put, for a borrowed element.
  void PutBorrowed(u16 index, void* element) {
    Put(index, reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(element) | kBorrowed));
  }
  /// Empties the slots of borrowed elements, and removes empty entries from the end.
  void DropBorrowed();
  /// Grows so that `index` has a slot, puts `element` there and destroys what the slot held, unless
  /// it is the same element.
  /// @return false, with nothing changed, when the element is null, memory is exhausted, or `index`
  ///         is above kMaxIndex.
  bool Store(u16 index, void* element, void (*destroy)(void*));
  /// Raises the number of entries, if necessary, so that `index` is one.
  void RaiseEntries(u16 index) {
    if (index >= m_entries) m_entries = static_cast<u16>(index + 1);
  }

  /// Grows by one step: the initial size first, the grow step later, up to 65535 slots. New slots
  /// are null. The fire alarm is raised only when the first step fails, and only by a block of
  /// GrowthAlarm::kRaised.
  /// @return false when memory is exhausted or the block is full, and then nothing changes.
  bool GrowOneStep();
  /// Grows step by step until `index` has a slot.
  /// @return false when it cannot have one.
  bool GrowTo(u16 index);

  /// Removes the entry at `index` without destroying its element; the later ones move down.
  /// @return false when `index` is not below the number of entries.
  bool Remove(u16 index);
  /// Sets one allocated slot to null and changes nothing else.
  /// @return false when there is no such slot.
  bool Empty(u16 index);
  /// Sets all slots to null and the number of entries to 0; the memory stays.
  void Clear();

  /// Frees the slots and starts empty. The elements are passed to `destroy`, unless another block
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
