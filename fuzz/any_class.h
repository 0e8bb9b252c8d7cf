// Choosing one of all classes, and copying its objects.

#ifndef KROFX_FUZZ_ANY_CLASS_H_
#define KROFX_FUZZ_ANY_CLASS_H_

#include <vector>

#include "support/every_class.h"
#include "target.h"

namespace krofx::fuzz {

/// A class of those with tables, the ones that exchanges hold first. They are found at the first
/// call.
inline const krofx::testing::AnyClass& ChooseClass(Choices& choices) {
  static const std::vector<krofx::testing::AnyClass> classes = [] {
    std::vector<krofx::testing::AnyClass> found;
    const krofx::testing::ClassMap held = krofx::testing::FindEveryClass();
    for (const auto& [name, any] : held) found.push_back(any);
    for (const auto& [name, any] : krofx::testing::FindEveryTable()) {
      if (!held.contains(name)) found.push_back(any);
    }
    return found;
  }();
  // Two bytes, however many classes there are.
  return classes[choices.Below(65536) % classes.size()];
}

/// Makes `to` a deep copy of another object of its class.
/// @return 1, or 0 when something could not be copied.
inline u16 CopyObject(KRDataObj& to, KRDataObj& from) {
  // A payload may hold more than its table describes.
  if (auto* const payload = dynamic_cast<KRTransBase*>(&to)) {
    return payload->DeepCopyFrom(dynamic_cast<KRTransBase*>(&from));
  }
  return krofx::internal::CopyAggregate(to, &from);
}

}  // namespace krofx::fuzz

#endif  // KROFX_FUZZ_ANY_CLASS_H_
