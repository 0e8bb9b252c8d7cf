// The place of a virtual operation in the table of its class, on which hosts that were compiled
// earlier depend.

#ifndef KROFX_TESTS_SUPPORT_VTABLE_PLACES_H_
#define KROFX_TESTS_SUPPORT_VTABLE_PLACES_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#define KROFX_TESTS_KNOW_VTABLES 1

/// Counts from 0. A pointer to a virtual member holds its offset in the table, plus 1.
template <class Member>
std::ptrdiff_t VtablePlaceOf(Member member) {
  std::ptrdiff_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

/// Expects operations to follow one another from place `first` on. A destructor takes two places.
template <class... Members>
void ExpectVtableOrder(std::ptrdiff_t first, Members... members) {
  const std::ptrdiff_t places[] = {VtablePlaceOf(members)...};
  for (std::ptrdiff_t place : places) EXPECT_EQ(place, first++);
}

#endif

#endif  // KROFX_TESTS_SUPPORT_VTABLE_PLACES_H_
