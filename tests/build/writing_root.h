// A root that writes what a test wants.
//
// The builder uses data objects only through pointers, and these tests are linked without them. So
// the root is the test's own function, cast to a data object; tests/support/lower_hooks.cpp casts
// it back.

#ifndef KROFX_TESTS_BUILD_WRITING_ROOT_H_
#define KROFX_TESTS_BUILD_WRITING_ROOT_H_

#include "support/built_text.h"

namespace krofx::testing {

/// The root that writes by `write`, which must outlive it.
inline KRDataObj* RootOf(WriteFunction& write) { return reinterpret_cast<KRDataObj*>(&write); }

/// Builds a root that writes by `write`, with a builder of the caller's.
inline Outcome Write(KRBuilder& builder, WriteFunction write,
                     KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  return BuildRoot(builder, RootOf(write), option);
}

/// The same with a builder of its own.
inline Outcome Write(WriteFunction write, KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  KRBuilder builder;
  return Write(builder, std::move(write), option);
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_BUILD_WRITING_ROOT_H_
