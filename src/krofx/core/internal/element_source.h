// How arrays make and destroy the elements that they own.

#ifndef KROFX_CORE_INTERNAL_ELEMENT_SOURCE_H_
#define KROFX_CORE_INTERNAL_ELEMENT_SOURCE_H_

#include <new>
#include <type_traits>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRString;
class KRParseException;

namespace krofx::internal {

/// Makes an element for an array.
/// @return the element; null when memory is exhausted, or when the type has no default constructor.
template <class T>
T* MakeElement() {
  if constexpr (std::is_default_constructible_v<T>) {
    return new (std::nothrow) T();
  } else {
    return nullptr;
  }
}

/// @name Elements that the object factory makes
/// A host can substitute its own classes for these, so the object model makes them
/// (krofx/core/internal/hooks.h).
/// @{
template <>
KROFX_API u16* MakeElement<u16>();
template <>
KROFX_API KRString* MakeElement<KRString>();
template <>
KROFX_API KRParseException* MakeElement<KRParseException>();
/// @}

/// Destroys an element of an array.
template <class T>
void DestroyElement(T* element) {
  delete element;
}

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_ELEMENT_SOURCE_H_
