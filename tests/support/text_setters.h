// The text setters that classes inherit, for a test of all of them. text_setters.py writes the
// list.

#ifndef KROFX_TESTS_SUPPORT_TEXT_SETTERS_H_
#define KROFX_TESTS_SUPPORT_TEXT_SETTERS_H_

#include <memory>
#include <vector>

#include "krofx/core/string.h"
#include "krofx/model/data_object.h"

namespace krofx::testing {

/// A setter of a base class, called on an object of a derived class.
struct TextSetter {
  /// Derived class, base class and setter.
  const char* name;
  std::unique_ptr<KRDataObj> (*make)();
  u16 (*set)(KRDataObj& object, const KRString& text);
  const KRString& (*get)(const KRDataObj& object);
};

/// Makes an object for TextSetter.
template <class Object>
std::unique_ptr<KRDataObj> MakeObject() {
  return std::make_unique<Object>();
}

/// All of them.
const std::vector<TextSetter>& InheritedTextSetters();

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_TEXT_SETTERS_H_
