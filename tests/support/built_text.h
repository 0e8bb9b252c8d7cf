// What a builder wrote, for tests of what writes.

#ifndef KROFX_TESTS_SUPPORT_BUILT_TEXT_H_
#define KROFX_TESTS_SUPPORT_BUILT_TEXT_H_

#include <functional>
#include <ostream>
#include <string>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"

namespace krofx::testing {

/// Writes through a builder and gives the status.
using WriteFunction = std::function<KRBuildStatus(KRBuilder&)>;

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

/// Builds `root` into a buffer of its own.
inline Outcome BuildRoot(KRBuilder& builder, KRDataObj* root, KRBuildStringOpt option) {
  KRBuffer buffer(0, 0);
  const KRBuildStatus status = builder.Build(&buffer, root, option, 0);
  return {status, Content(buffer)};
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_BUILT_TEXT_H_
