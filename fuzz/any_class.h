// Choosing one of all classes.

#ifndef KROFX_FUZZ_ANY_CLASS_H_
#define KROFX_FUZZ_ANY_CLASS_H_

#include <vector>

#include "support/every_class.h"
#include "target.h"

namespace krofx::fuzz {

/// A class of those with tables. They are found at the first call.
inline const krofx::testing::AnyClass& ChooseClass(Choices& choices) {
  static const std::vector<krofx::testing::AnyClass> classes = [] {
    std::vector<krofx::testing::AnyClass> found;
    for (const auto& [name, any] : krofx::testing::FindEveryClass()) found.push_back(any);
    return found;
  }();
  // Two bytes, however many classes there are.
  return classes[choices.Below(65536) % classes.size()];
}

}  // namespace krofx::fuzz

#endif  // KROFX_FUZZ_ANY_CLASS_H_
