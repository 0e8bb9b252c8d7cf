// Data objects and helpers for tests of writing: an object that writes whatever a test gives it,
// and the resulting text.

#ifndef KROFX_TESTS_SUPPORT_BUILD_OBJECTS_H_
#define KROFX_TESTS_SUPPORT_BUILD_OBJECTS_H_

#include <functional>
#include <string>
#include <utility>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/core/string.h"
#include "krofx/model/data_object.h"

namespace krofx::testing {

/// Writes through a builder and gives the status.
using WriteFunction = std::function<KRBuildStatus(KRBuilder&)>;

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

/// What a buffer holds.
inline std::string Content(KRBuffer& buffer) {
  const char* data = buffer.GetBufferPtr();
  return data == nullptr ? std::string() : std::string(data, buffer.GetBufferSize());
}

/// How a build ended and what it wrote.
struct Outcome {
  KRBuildStatus status;
  std::string text;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "status " << outcome.status << ", text \"" << outcome.text << '"';
}

/// Builds an object that writes by `write`, with a builder of the caller's.
inline Outcome Write(KRBuilder& builder, const WriteFunction& write,
                     KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  KRBuffer buffer(0, 0);
  WritingObject root(write);
  const KRBuildStatus status = builder.Build(&buffer, &root, option, 0);
  return {status, Content(buffer)};
}

/// The same with a builder of its own.
inline Outcome Write(const WriteFunction& write,
                     KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  KRBuilder builder;
  return Write(builder, write, option);
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_BUILD_OBJECTS_H_
