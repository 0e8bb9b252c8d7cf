// KRDigest: a buffer or a text in, a digest out.

#include "krofx/security/digest.h"

#include "krofx/core/string.h"
#include "krofx/security/internal/buffer_view.h"
#include "krofx/security/internal/toolkit.h"

using krofx::internal::ByteView;

namespace {
constexpr u32 kMaxDigest = 20;
}

KRDigest::KRDigest(int (*chooser)(unsigned char**)) : m_chooser(chooser), m_output(kMaxDigest, 0) {
  Initialize();
}

KRDigest::KRDigest(KRBuffer* input, int (*chooser)(unsigned char**)) : KRDigest(chooser) {
  SetInputData(input);
}

KRDigest::KRDigest(const KRString* input, int (*chooser)(unsigned char**)) : KRDigest(chooser) {
  SetInputStr(input);
}

KRDigest::~KRDigest() { krofx::internal::DestroyAlgorithmObject(m_algorithm); }

KRSecStatus KRDigest::SetInputData(KRBuffer* input) {
  m_inputString = nullptr;
  m_inputData = input;
  return DigestData();
}

KRSecStatus KRDigest::SetInputStr(const KRString* input) {
  m_inputData = nullptr;
  m_inputString = input;
  return DigestData();
}

KRSecStatus KRDigest::Initialize() {
  krofx::internal::DestroyAlgorithmObject(m_algorithm);
  m_algorithm = krofx::internal::CreateAlgorithmObject();
  const bool ready = krofx::internal::BindAlgorithm(m_algorithm, m_chooser) == 0 &&
                     krofx::internal::DigestInit(m_algorithm) == 0;
  return ready ? KRSecStatus_Success : KRSecStatus_DigestSetupFailed;
}

KRSecStatus KRDigest::DigestData() {
  ByteView input = krofx::internal::ViewOf(m_inputData);
  if (m_inputData == nullptr && m_inputString != nullptr) {
    input = {*m_inputString, m_inputString->GetStrLength()};
  }
  if (input.data == nullptr) return KRSecStatus_DigestFailed;
  // What a failed digest took in must not count in this one.
  if (krofx::internal::DigestInit(m_algorithm) != 0 ||
      krofx::internal::DigestUpdate(m_algorithm, input.data, input.length) != 0) {
    return KRSecStatus_DigestFailed;
  }
  char* const out = krofx::internal::RoomIn(m_output, kMaxDigest);
  u32 written = 0;
  if (out == nullptr || krofx::internal::DigestFinal(m_algorithm, out, kMaxDigest, &written) != 0) {
    return KRSecStatus_DigestFailed;
  }
  krofx::internal::TakeContent(m_output, written);
  return KRSecStatus_Success;
}
