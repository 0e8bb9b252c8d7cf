// KRDigest: the digest of a buffer or a text.

#include "krofx/security/digest.h"

#include "krofx/core/string.h"
#include "krofx/security/internal/buffer_view.h"
#include "krofx/security/internal/toolkit.h"

using krofx::internal::BindAlgorithm;
using krofx::internal::ByteView;
using krofx::internal::CreateAlgorithmObject;
using krofx::internal::DestroyAlgorithmObject;
using krofx::internal::DigestFinal;
using krofx::internal::DigestInit;
using krofx::internal::DigestUpdate;
using krofx::internal::RoomIn;
using krofx::internal::TakeContent;
using krofx::internal::ViewOf;

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

KRDigest::~KRDigest() { DestroyAlgorithmObject(m_algorithm); }

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
  DestroyAlgorithmObject(m_algorithm);
  m_algorithm = CreateAlgorithmObject();
  const bool ready = BindAlgorithm(m_algorithm, m_chooser) == 0 && DigestInit(m_algorithm) == 0;
  return ready ? KRSecStatus_Success : KRSecStatus_DigestSetupFailed;
}

KRSecStatus KRDigest::DigestData() {
  ByteView input = ViewOf(m_inputData);
  if (m_inputData == nullptr && m_inputString != nullptr) {
    input = {*m_inputString, m_inputString->GetStrLength()};
  }
  if (input.data == nullptr) return KRSecStatus_DigestFailed;
  // Initialised again, so that nothing from a failed digest is left.
  if (DigestInit(m_algorithm) != 0 || DigestUpdate(m_algorithm, input.data, input.length) != 0) {
    return KRSecStatus_DigestFailed;
  }
  char* const out = RoomIn(m_output, kMaxDigest);
  u32 written = 0;
  if (out == nullptr || DigestFinal(m_algorithm, out, kMaxDigest, &written) != 0) {
    return KRSecStatus_DigestFailed;
  }
  TakeContent(m_output, written);
  return KRSecStatus_Success;
}
