// What a data object holds, as a plain tree of tags and typed values.
//
// The tree is what the object itself would write: it is made by building the object with a builder
// that keeps the parts instead of the text. So any aggregate can be shown without knowledge of its
// class, in wire order, and one that the library learns later needs nothing here. Passwords never
// get into the tree.

#ifndef KROFX_COMMAND_INPUT_ELEMENT_TREE_H_
#define KROFX_COMMAND_INPUT_ELEMENT_TREE_H_

#include <string>
#include <string_view>
#include <vector>

#include "krofx/krofx.h"
#include "output/masking.h"

namespace krofx::command {

/// How a value is meant.
enum class ValueKind {
  kText,     ///< Text or a keyword.
  kAmount,   ///< An exact decimal, with all the places that it was given with.
  kDate,     ///< A date, in the form of ISO 8601.
  kInteger,  ///< A whole number.
  kBoolean,  ///< "true" or "false".
  kBlank,    ///< A payroll value that says that it is blank, in words.
};

/// An aggregate with its children, or an element with its value.
struct Element {
  std::string_view tag;
  KRTagID id = KRTag_None;
  bool isAggregate = false;
  ValueKind kind = ValueKind::kText;
  Disclosure disclosure = Disclosure::kAll;
  std::string value;
  std::vector<Element> children;

  /// The first child of this tag, or null.
  const Element* Find(std::string_view childTag) const;
};

/// Takes apart what `object` holds: the children of the result are its members, or, for a file, its
/// bodies.
/// @param text the text that the object was read from, whose character set its values are in; null
///        for one that was not read.
Element ReadElements(KRDataObj& object, const krofx::OfxText* text = nullptr);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_ELEMENT_TREE_H_
