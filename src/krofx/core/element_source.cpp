// The makers of elements as they are before the object model replaces them.

#include "krofx/core/element_source.h"

#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"

namespace krofx::internal {

ElementSource& Elements() {
  static ElementSource source = {
      []() { return NewCell<u16>(); },
      []() { return new KRString; },
      []() { return new KRParseException; },
  };
  return source;
}

}  // namespace krofx::internal
