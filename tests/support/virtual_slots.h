// The slot of a virtual operation in its class, on which hosts that were compiled earlier depend.

#ifndef KROFX_TESTS_SUPPORT_VIRTUAL_SLOTS_H_
#define KROFX_TESTS_SUPPORT_VIRTUAL_SLOTS_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#define KROFX_TESTS_KNOW_SLOTS 1

/// Counts from 0. A pointer to a virtual member holds its offset in the table, plus 1.
template <class Member>
std::ptrdiff_t SlotOf(Member member) {
  std::ptrdiff_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

/// Expects operations to follow one another from slot `first` on. A destructor takes two
/// slots.
template <class... Members>
void ExpectSlotsInOrder(std::ptrdiff_t first, Members... members) {
  const std::ptrdiff_t slots[] = {SlotOf(members)...};
  for (std::ptrdiff_t slot : slots) EXPECT_EQ(slot, first++);
}

#endif

#endif  // KROFX_TESTS_SUPPORT_VIRTUAL_SLOTS_H_
