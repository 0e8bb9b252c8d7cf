// KREncode and KRDecode, from a buffer to a buffer. What they share is written once, for both
// directions.

#include "krofx/security/base64.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "krofx/security/internal/buffer_view.h"
#include "krofx/security/internal/toolkit.h"

using krofx::internal::AlgorithmObject;
using krofx::internal::BindAlgorithm;
using krofx::internal::ByteView;
using krofx::internal::CodeFinal;
using krofx::internal::CodeUpdate;
using krofx::internal::CreateAlgorithmObject;
using krofx::internal::DecodeFinal;
using krofx::internal::DecodeInit;
using krofx::internal::DecodeUpdate;
using krofx::internal::DestroyAlgorithmObject;
using krofx::internal::EncodeFinal;
using krofx::internal::EncodeInit;
using krofx::internal::EncodeUpdate;
using krofx::internal::RoomIn;
using krofx::internal::TakeContent;
using krofx::internal::ViewOf;

namespace {

// One direction.
struct Direction {
  int (*init)(AlgorithmObject*);
  CodeUpdate update;
  CodeFinal final;
  // The most bytes of output for a number of bytes of input.
  std::uint64_t (*room)(u32);
};

// Twice the input is enough for two bytes or more; one byte needs a group of four.
constexpr Direction kEncode = {EncodeInit, EncodeUpdate, EncodeFinal,
                               [](u32 input) { return input == 1 ? 4 : std::uint64_t{2} * input; }};
constexpr Direction kDecode = {DecodeInit, DecodeUpdate, DecodeFinal,
                               [](u32 input) { return std::uint64_t{input}; }};

// Replaces the algorithm object by a new one that is ready for the direction.
bool SetUp(AlgorithmObject*& algorithm, KRAlgorithmChooser chooser, const Direction& direction) {
  DestroyAlgorithmObject(algorithm);
  algorithm = CreateAlgorithmObject();
  return BindAlgorithm(algorithm, chooser) == 0 && direction.init(algorithm) == 0;
}

// Codes the whole input into the output.
bool Code(AlgorithmObject* algorithm, const KRBuffer* input, KRBuffer& output,
          const Direction& direction) {
  // An output that is also the input would be overwritten while it is read.
  if (input == &output) return false;
  const ByteView bytes = ViewOf(input);
  if (bytes.data == nullptr) return false;
  const std::uint64_t needed = direction.room(bytes.length);
  if (needed > std::numeric_limits<u32>::max()) return false;
  const auto room = static_cast<u32>(needed);
  char* const out = RoomIn(output, room);
  u32 written = 0;
  u32 rest = 0;
  // Initialised again, so that nothing from a failed use is left.
  if (out == nullptr || direction.init(algorithm) != 0 ||
      direction.update(algorithm, out, room, &written, bytes.data, bytes.length) != 0 ||
      direction.final(algorithm, out + written, room - written, &rest) != 0) {
    return false;
  }
  TakeContent(output, written + rest);
  return true;
}

}  // namespace

KREncode::KREncode() : KREncode(KRChooseBase64) {}

KREncode::KREncode(int (*chooser)(unsigned char**)) : m_chooser(chooser), m_output(0, 0) {
  Initialize();
}

KREncode::KREncode(KRBuffer* input, int (*chooser)(unsigned char**)) : KREncode(chooser) {
  SetInputData(input);
}

KREncode::~KREncode() { DestroyAlgorithmObject(m_algorithm); }

KRSecStatus KREncode::SetInputData(KRBuffer* input) {
  m_inputData = input;
  return EncodeData();
}

KRSecStatus KREncode::Initialize() {
  return SetUp(m_algorithm, m_chooser, kEncode) ? KRSecStatus_Success
                                                : KRSecStatus_EncoderSetupFailed;
}

KRSecStatus KREncode::EncodeData() {
  return Code(m_algorithm, m_inputData, m_output, kEncode) ? KRSecStatus_Success
                                                           : KRSecStatus_EncodingFailed;
}

KRDecode::KRDecode() : KRDecode(KRChooseBase64) {}

KRDecode::KRDecode(int (*chooser)(unsigned char**)) : m_chooser(chooser), m_output(0, 0) {
  Initialize();
}

KRDecode::KRDecode(KRBuffer* input, int (*chooser)(unsigned char**)) : KRDecode(chooser) {
  SetInputData(input);
}

KRDecode::~KRDecode() { DestroyAlgorithmObject(m_algorithm); }

KRSecStatus KRDecode::SetInputData(KRBuffer* input) {
  m_inputData = input;
  return DecodeData();
}

KRSecStatus KRDecode::Initialize() {
  return SetUp(m_algorithm, m_chooser, kDecode) ? KRSecStatus_Success
                                                : KRSecStatus_DecoderSetupFailed;
}

KRSecStatus KRDecode::DecodeData() {
  return Code(m_algorithm, m_inputData, m_output, kDecode) ? KRSecStatus_Success
                                                           : KRSecStatus_DecodingFailed;
}
