// The text of an element by its tag.

#ifndef KROFX_COMMAND_INPUT_ELEMENT_VALUE_H_
#define KROFX_COMMAND_INPUT_ELEMENT_VALUE_H_

#include <string>
#include <string_view>

#include "input/element_tree.h"

namespace krofx::command {

/// @return the value of the first child of this tag; empty when there is none.
inline std::string ValueOf(const Element& element, std::string_view tag) {
  const Element* const found = element.Find(tag);
  return std::string(found == nullptr ? "" : found->value);
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_ELEMENT_VALUE_H_
