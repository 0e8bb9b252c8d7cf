// Growable arrays of owned elements: the base class of all arrays, and their one implementation.
//
// A repeated OFX element or aggregate lives in an array. Each array class derives from
// krofx::internal::ElementArray and holds one type of element, so that the type of a field says
// what it holds:
//
//   class KRDynamicArrayRequest : public krofx::internal::ElementArray<KRRequest> {
//    public:
//     using ElementArray::ElementArray;
//
//    protected:
//     KRRequest* NewElement() const override;  // asks the object factory
//   };
//
// A slot in use may hold null: the number of entries is the highest index in use plus 1, not the
// number of elements.

#ifndef KROFX_CORE_ARRAY_H_
#define KROFX_CORE_ARRAY_H_

#include <new>

#include "krofx/core/export.h"
#include "krofx/core/internal/element_source.h"
#include "krofx/core/internal/slot_block.h"
#include "krofx/core/memory.h"
#include "krofx/core/status.h"
#include "krofx/core/types.h"

class KRBuilder;
enum KRTagID : u32;

/// Base of all arrays of owned elements. An array takes no memory until its first element, and
/// grows in the steps that its owner chose: the initial size first, then the grow step each time.
///
/// Copies share the elements of the array that they were made from. The elements live until the
/// last array that shares them is destroyed; what one array sets, the others see.
class KROFX_API KRDynamicArray : public krofx::internal::HeapObject {
 public:
  /// An empty array. `initialSize` is the number of slots of the first allocation and `growStep`
  /// the number added at each later one; 0 becomes 1 in either.
  KRDynamicArray(u16 initialSize, u16 growStep);
  /// An untyped array cannot destroy the elements that it holds, so only the typed arrays can be
  /// assigned.
  KRDynamicArray& operator=(const KRDynamicArray&) = delete;
  virtual ~KRDynamicArray();

  /// @return 1 when a caller may make the array grow to `index`; in this class always.
  virtual u16 OkToAlloc(u16 index) const;
  /// Writes the elements under `tag`.
  /// @return in this class KRBuildStatus_NoArrayWriter: it does not know how to write elements.
  virtual KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const;

  /// @return the highest index in use, plus 1.
  u16 Entries() const { return m_block.Entries(); }
  /// @return the number of slots that the growth so far has made.
  u16 Allocated() const { return m_block.Allocated(); }
  /// @return the slots of the first allocation.
  u16 InitialSize() const { return m_block.InitialSize(); }
  /// @return the slots added at each later allocation.
  u16 GrowStep() const { return m_block.GrowStep(); }
  /// @return whether a copy of this array, or the array that this is a copy of, uses the same
  ///         elements.
  bool IsShared() const { return m_block.IsShared(); }

  /// Makes room for `index` and counts it as in use, without an element.
  /// @return 1; 0 when memory is exhausted or `index` is 65535, and then the array is unchanged.
  u16 AllocatedTo(u16 index);
  /// Takes the element at `index` out; the later ones move down. The element is not destroyed: it
  /// then belongs to the caller, who gets it with Get before this call.
  /// @return 1; 0 when `index` is not below the number of entries.
  u16 UnSet(u16 index);
  /// Empties all slots without destroying the elements, and keeps the memory. For elements that
  /// something else owns.
  void Clear();

 protected:
  /// As the public constructor. `alarm` says whether a failed first allocation raises the fire
  /// alarm.
  KRDynamicArray(u16 initialSize, u16 growStep, krofx::internal::GrowthAlarm alarm);
  /// Shares the source's elements.
  KRDynamicArray(const KRDynamicArray& source) = default;

  /// Grows by one step. If the first allocation fails the fire alarm is raised; a later failure
  /// raises none.
  /// @return 1; 0 when it failed, and then nothing has changed.
  u16 Reallocate() { return m_block.GrowOneStep() ? 1 : 0; }

  /// The slots.
  krofx::internal::SlotBlock m_block;
};

namespace krofx::internal {

/// Sets the calling thread's fire alarm: an element could not be made.
KROFX_API void RaiseElementAlarm();

/// An array of owned elements of type T: a class, or a plain integer, each allocated by itself.
template <class T>
class KROFX_API ElementArray : public KRDynamicArray {
 public:
  using KRDynamicArray::KRDynamicArray;

  /// Shares the source's elements.
  ElementArray(const ElementArray& source) = default;
  /// Destroys the elements that the array held, unless a copy shares them, and shares the source's
  /// elements.
  ElementArray& operator=(const ElementArray& source) {
    if (this != &source) {
      m_block.Release(&Destroy);
      m_block.ShareWith(source.m_block);
    }
    return *this;
  }
  /// Destroys the elements, unless a copy shares them.
  ~ElementArray() override { m_block.Release(&Destroy); }

  /// @return the element, still the array's; null when the slot is empty or at or above the
  ///         entries.
  T* Get(u16 index) const { return static_cast<T*>(m_block.Get(index)); }

  /// Puts `element` at `index`, growing the array as needed, and destroys what was there. On
  /// success the array owns it.
  /// @return 1; 0, with the array as it was and the element still the caller's, when it is null,
  ///         memory is exhausted, or `index` is 65535.
  virtual u16 Set(u16 index, T* element) { return m_block.Store(index, element, &Destroy) ? 1 : 0; }
  /// As Set, at the index after the last entry.
  virtual u16 Append(T* element) { return Set(Entries(), element); }
  /// Puts a new element with a copy of `value` at `index`, and destroys what was there.
  /// @return 1; 0, with the array as it was, when memory is exhausted or `index` is 65535.
  virtual u16 SetVal(u16 index, T value) {
    if (!m_block.GrowTo(index)) return 0;
    T* element = NewElement();
    if (element == nullptr) {
      RaiseElementAlarm();
      return 0;
    }
    *element = value;
    return m_block.Store(index, element, &Destroy) ? 1 : 0;
  }

  /// @return the element at `index`, which is made if the slot is empty. When that fails the fire
  ///         alarm is raised and the reference is to a spare element of the thread, which belongs
  ///         to no array and is made anew at each failure. Code that must detect the failure uses
  ///         Get and Set.
  T& operator[](u16 index) {
    if (m_block.GrowTo(index)) {
      void* held = m_block.At(index);
      if (held == nullptr) {
        held = NewElement();
        if (held != nullptr) m_block.Put(index, held);
      }
      if (held != nullptr) {
        m_block.RaiseEntries(index);
        return *static_cast<T*>(held);
      }
    }
    RaiseElementAlarm();
    return Spare();
  }

  /// Destroys all elements, unless a copy shares them, and gives the memory back. The array can be
  /// used again.
  virtual void DeleteAll() { m_block.Release(&Destroy); }

 protected:
  /// Makes an element for SetVal and [].
  /// @return the element; null when memory is exhausted.
  virtual T* NewElement() const { return MakeElement<T>(); }

 private:
  static void Destroy(void* element) { DestroyElement(static_cast<T*>(element)); }

  static T& Spare() {
    alignas(T) static thread_local unsigned char storage[sizeof(T)];
    static thread_local T* spare = nullptr;
    if (spare != nullptr) spare->~T();
    spare = ::new (static_cast<void*>(storage)) T();
    return *spare;
  }
};

/// An array of owned elements without virtual operations, for buffers and certificates. UnSet
/// leaves the slot empty instead of moving the later elements down.
template <class T>
class KROFX_API PlainArray {
 public:
  /// An empty array; 0 becomes 1 in either argument.
  PlainArray(u16 initialSize, u16 growStep)
      : m_block(initialSize, growStep, GrowthAlarm::kRaised) {}
  PlainArray(const PlainArray&) = delete;
  PlainArray& operator=(const PlainArray&) = delete;
  /// Destroys the elements.
  ~PlainArray() { m_block.Release(&Destroy); }

  /// @return the highest index in use, plus 1.
  u16 Entries() const { return m_block.Entries(); }
  /// @return the number of slots that the growth so far has made.
  u16 Allocated() const { return m_block.Allocated(); }
  /// @return the element, still the array's; null when the slot is empty or at or above the
  ///         entries.
  T* Get(u16 index) const { return static_cast<T*>(m_block.Get(index)); }

  /// Puts `element` at `index`, growing the array as needed, and destroys what was there. On
  /// success the array owns it.
  /// @return 1; 0, with the array as it was and the element still the caller's, when it is null,
  ///         memory is exhausted, or `index` is 65535.
  u16 Set(u16 index, T* element) { return m_block.Store(index, element, &Destroy) ? 1 : 0; }
  /// Empties the slot at `index` without destroying its element; the number of entries stays.
  /// @return 1; 0 when the array has no such slot.
  u16 UnSet(u16 index) { return m_block.Empty(index) ? 1 : 0; }
  /// Empties all slots without destroying the elements, and keeps the memory.
  void Clear() { m_block.Clear(); }

 protected:
  /// Grows by one step. When that fails the fire alarm is raised and nothing else changes.
  void Reallocate() { m_block.GrowOneStep(); }

 private:
  static void Destroy(void* element) { DestroyElement(static_cast<T*>(element)); }

  SlotBlock m_block;
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_ARRAY_H_
