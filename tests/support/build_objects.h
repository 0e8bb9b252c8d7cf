// A data object that writes what a test wants, for tests of what writes.

#ifndef KROFX_TESTS_SUPPORT_BUILD_OBJECTS_H_
#define KROFX_TESTS_SUPPORT_BUILD_OBJECTS_H_

#include <utility>

#include "krofx/model/data_object.h"
#include "support/built_text.h"

namespace krofx::testing {

/// An object whose members are what a test's function writes. Like every aggregate it records
/// itself as the failing object when its writing fails.
class WritingObject : public KRDataObj {
 public:
  explicit WritingObject(WriteFunction write = nullptr, KRTagID tag = KRTag_None)
      : KRDataObj(1), m_write(std::move(write)) {
    SetType(tag);
  }

  KRBuildStatus Build(KRBuilder* builder) const override {
    const KRBuildStatus status = m_write ? m_write(*builder) : KRBuildStatus_Done;
    if (status != KRBuildStatus_Done && builder->GetFailingObject() == nullptr) {
      builder->SetFailingObject(const_cast<WritingObject*>(this));
    }
    return status;
  }

 private:
  WriteFunction m_write;
};

/// Builds an object that writes by `write`, with a builder of the caller's.
inline Outcome Write(KRBuilder& builder, const WriteFunction& write,
                     KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  WritingObject root(write);
  return BuildRoot(builder, &root, option);
}

/// The same with a builder of its own.
inline Outcome Write(const WriteFunction& write,
                     KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  KRBuilder builder;
  return Write(builder, write, option);
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_BUILD_OBJECTS_H_
