// Bytes as base64 text, and back.
//
// The text has the alphabet A-Z a-z 0-9 + / with "=" to fill the last group of four characters.
// Encoding writes no line breaks. Decoding skips carriage return, line feed, blank and tab wherever
// they stand, and refuses any other character, a group that is not whole, and "=" anywhere but at
// the end, where one or two may stand. Bits that are left over before "=" are ignored.

#ifndef KROFX_SECURITY_BASE64_H_
#define KROFX_SECURITY_BASE64_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/security/algorithm.h"
#include "krofx/security/status.h"

/// Encodes bytes. One object serves for any number of inputs; each output replaces the one before.
///
/// An algorithm that cannot be had shows in the first use, not in the constructor. Inputs stay the
/// caller's and need only live through the call that they are given to.
class KROFX_API KREncode : public krofx::internal::HeapObject {
 public:
  /// Ready for input, with base64.
  KREncode();
  /// Ready for input.
  explicit KREncode(int (*chooser)(unsigned char**));
  /// Encodes a buffer at once. A failure shows in the output alone, which is empty then.
  KREncode(KRBuffer* input, int (*chooser)(unsigned char**));
  KREncode(const KREncode&) = delete;
  KREncode& operator=(const KREncode&) = delete;
  virtual ~KREncode();

  /// Encodes the whole content of a buffer, wherever its cursor stands.
  /// @return KRSecStatus_Success, or KRSecStatus_EncodingFailed for null, for a buffer that lost
  ///         its memory, for this object's own output, for 2 GB or more, and when the algorithm or
  ///         the memory is not to be had.
  KRSecStatus SetInputData(KRBuffer* input);
  /// The text, without a terminator, with the cursor at its start. It belongs to this object and
  /// lives as long. After a failure its content means nothing.
  KRBuffer* GetOutputData() { return &m_output; }

 private:
  KRSecStatus Initialize();
  KRSecStatus EncodeData();

  KRBuffer* m_inputData = nullptr;
  KRAlgorithmChooser m_chooser;
  krofx::internal::AlgorithmObject* m_algorithm = nullptr;
  KRBuffer m_output;
};

/// Decodes text. One object serves for any number of inputs; each output replaces the one before.
///
/// An algorithm that cannot be had shows in the first use, not in the constructor. Inputs stay the
/// caller's and need only live through the call that they are given to.
class KROFX_API KRDecode : public krofx::internal::HeapObject {
 public:
  /// Ready for input, with base64.
  KRDecode();
  /// Ready for input.
  explicit KRDecode(int (*chooser)(unsigned char**));
  /// Decodes a buffer at once. A failure shows in the output alone, which is not to be used then.
  KRDecode(KRBuffer* input, int (*chooser)(unsigned char**));
  KRDecode(const KRDecode&) = delete;
  KRDecode& operator=(const KRDecode&) = delete;
  virtual ~KRDecode();

  /// Decodes the whole content of a buffer, wherever its cursor stands.
  /// @return KRSecStatus_Success, or KRSecStatus_DecodingFailed for null, for a text that is no
  ///         base64, for a buffer that lost its memory, for this object's own output, and when the
  ///         algorithm or the memory is not to be had.
  KRSecStatus SetInputData(KRBuffer* input);
  /// The bytes, with the cursor at their start. They belong to this object and live as long. After
  /// a failure the content means nothing.
  KRBuffer* GetOutputData() { return &m_output; }

 private:
  KRSecStatus Initialize();
  KRSecStatus DecodeData();

  KRBuffer* m_inputData = nullptr;
  KRAlgorithmChooser m_chooser;
  krofx::internal::AlgorithmObject* m_algorithm = nullptr;
  KRBuffer m_output;
};

#endif  // KROFX_SECURITY_BASE64_H_
