// Bytes as base64 text, and back.
//
// The text has the alphabet A-Z a-z 0-9 + / with "=" to fill the last group of four characters.
// Encoding writes no line breaks. Decoding skips carriage returns, line feeds, blanks and tabs
// everywhere, and refuses any other character, an incomplete group, and "=" anywhere except for one
// or two at the end. Bits that are left over before "=" are ignored.

#ifndef KROFX_SECURITY_BASE64_H_
#define KROFX_SECURITY_BASE64_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/security/algorithm.h"
#include "krofx/security/status.h"

/// Encodes bytes. An object can be used for any number of inputs; each output replaces the previous
/// one.
///
/// The first use fails, not the constructor, when the algorithm is not available. Inputs belong to
/// the caller and need only live until the call returns.
class KROFX_API KREncode : public krofx::internal::HeapObject {
 public:
  /// Ready for input, with base64.
  KREncode();
  /// Ready for input.
  explicit KREncode(int (*chooser)(unsigned char**));
  /// Encodes a buffer at once. A failure shows only in the output, which is then empty.
  KREncode(KRBuffer* input, int (*chooser)(unsigned char**));
  KREncode(const KREncode&) = delete;
  KREncode& operator=(const KREncode&) = delete;
  virtual ~KREncode();

  /// Encodes the whole content of a buffer, wherever its cursor is.
  /// @return KRSecStatus_Success, or KRSecStatus_EncodingFailed for null, for a buffer that lost
  ///         its memory, for this object's own output, for 2 GB or more, when the algorithm is not
  ///         available, and when memory is exhausted.
  KRSecStatus SetInputData(KRBuffer* input);
  /// @return the text, without a terminator, with the cursor at its start. It belongs to this
  ///         object. After a failure its content is unspecified.
  KRBuffer* GetOutputData() { return &m_output; }

 private:
  KRSecStatus Initialize();
  KRSecStatus EncodeData();

  KRBuffer* m_inputData = nullptr;
  KRAlgorithmChooser m_chooser;
  krofx::internal::AlgorithmObject* m_algorithm = nullptr;
  KRBuffer m_output;
};

/// Decodes text. An object can be used for any number of inputs; each output replaces the previous
/// one.
///
/// The first use fails, not the constructor, when the algorithm is not available. Inputs belong to
/// the caller and need only live until the call returns.
class KROFX_API KRDecode : public krofx::internal::HeapObject {
 public:
  /// Ready for input, with base64.
  KRDecode();
  /// Ready for input.
  explicit KRDecode(int (*chooser)(unsigned char**));
  /// Decodes a buffer at once. A failure shows only in the output, which must then not be used.
  KRDecode(KRBuffer* input, int (*chooser)(unsigned char**));
  KRDecode(const KRDecode&) = delete;
  KRDecode& operator=(const KRDecode&) = delete;
  virtual ~KRDecode();

  /// Decodes the whole content of a buffer, wherever its cursor is.
  /// @return KRSecStatus_Success, or KRSecStatus_DecodingFailed for null, for a text that is not
  ///         base64, for a buffer that lost its memory, for this object's own output, when the
  ///         algorithm is not available, and when memory is exhausted.
  KRSecStatus SetInputData(KRBuffer* input);
  /// @return the bytes, with the cursor at their start. They belong to this object. After a failure
  ///         the content is unspecified.
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
