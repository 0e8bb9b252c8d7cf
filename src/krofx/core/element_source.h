// Where arrays get their elements from when they must make one themselves.
//
// A host can substitute its own classes through the object factory, which lies in a layer above
// this one. The object model therefore puts the factory's functions in here when it is set up;
// until then the elements are made directly.

#ifndef KROFX_CORE_ELEMENT_SOURCE_H_
#define KROFX_CORE_ELEMENT_SOURCE_H_

#include <new>
#include <type_traits>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

class KRString;
class KRParseException;

namespace krofx::internal {

/// The makers of the elements that core itself knows. Each gives null when memory is exhausted.
struct ElementSource {
  u16* (*newUShort)();
  KRString* (*newString)();
  KRParseException* (*newParseException)();
};

/// The makers in force, to be read or replaced. Replace them before other threads run.
KROFX_API ElementSource& Elements();

/// Makes an element for an array: through the makers in force where there is one for the type, and
/// directly otherwise. Null when memory is exhausted, or when the type has no default.
template <class T>
T* MakeElement() {
  if constexpr (std::is_default_constructible_v<T>) {
    return new (std::nothrow) T();
  } else {
    return nullptr;
  }
}

template <>
inline u16* MakeElement<u16>() {
  return Elements().newUShort();
}

template <>
inline KRString* MakeElement<KRString>() {
  return Elements().newString();
}

template <>
inline KRParseException* MakeElement<KRParseException>() {
  return Elements().newParseException();
}

/// Destroys an element of an array, a class through its destructor.
template <class T>
void DestroyElement(T* element) {
  delete element;
}

}  // namespace krofx::internal

#endif  // KROFX_CORE_ELEMENT_SOURCE_H_
