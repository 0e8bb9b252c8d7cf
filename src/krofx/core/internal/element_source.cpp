// The elements that the object factory makes.

#include "krofx/core/internal/element_source.h"

#include "krofx/core/internal/hooks.h"

namespace krofx::internal {

template <>
u16* MakeElement<u16>() {
  return hooks.newUShort();
}

template <>
KRString* MakeElement<KRString>() {
  return hooks.newString();
}

template <>
KRParseException* MakeElement<KRParseException>() {
  return hooks.newParseException();
}

}  // namespace krofx::internal
