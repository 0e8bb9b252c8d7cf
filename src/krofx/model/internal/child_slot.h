// Where an aggregate keeps one child that it holds by pointer.
//
// A slot owns its child. A copied slot borrows the child of its source and never deletes it, so
// that shallow copies of aggregates can be destroyed safely.

#ifndef KROFX_MODEL_INTERNAL_CHILD_SLOT_H_
#define KROFX_MODEL_INTERNAL_CHILD_SLOT_H_

#include <cstdint>

#include "krofx/model/data_object.h"

namespace krofx::internal {

/// One child by pointer, owned unless the slot is a copy.
class KROFX_API ChildSlot {
 public:
  ChildSlot() = default;
  ChildSlot(const ChildSlot& other) : m_bits(other.m_bits == 0 ? 0 : other.m_bits | kBorrowed) {}
  ChildSlot& operator=(const ChildSlot& other) {
    if (this != &other && Get() != other.Get()) {
      Set(nullptr);
      m_bits = other.m_bits == 0 ? 0 : other.m_bits | kBorrowed;
    }
    return *this;
  }
  ~ChildSlot() {
    if (m_bits != 0) Set(nullptr);
  }

  /// @return the child, null when there is none.
  KRDataObj* Get() const { return reinterpret_cast<KRDataObj*>(m_bits & ~kBorrowed); }

  /// @return whether there is a child that belongs to the slot that this one was copied from.
  bool IsBorrowed() const { return (m_bits & kBorrowed) != 0; }

  /// Deletes the owned child and takes ownership of `child`. Setting the child that is already
  /// there makes the slot its owner.
  void Set(KRDataObj* child);

  /// Gives up the child without deleting it. The caller owns it if the slot did.
  KRDataObj* Release() {
    KRDataObj* child = Get();
    m_bits = 0;
    return child;
  }

 private:
  // Objects are aligned, so the lowest bit of their address is free for the mark.
  static constexpr std::uintptr_t kBorrowed = 1;

  std::uintptr_t m_bits = 0;
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_CHILD_SLOT_H_
