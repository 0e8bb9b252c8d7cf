// The digest of a buffer or of a text.

#ifndef KROFX_SECURITY_DIGEST_H_
#define KROFX_SECURITY_DIGEST_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/security/algorithm.h"
#include "krofx/security/status.h"

class KRString;

/// Makes digests of up to 20 bytes, with SHA-1 by default. An object can be used for any number of
/// digests; each replaces the previous one.
///
/// The first digest fails, not the constructor, when the algorithm is not available. Inputs belong
/// to the caller and need only live until the call returns.
class KROFX_API KRDigest : public krofx::internal::HeapObject {
 public:
  /// Ready for input.
  explicit KRDigest(int (*chooser)(unsigned char**) = KRChooseSHA1);
  /// Digests a buffer at once. A failure shows only in the output, which is then empty.
  KRDigest(KRBuffer* input, int (*chooser)(unsigned char**));
  /// Digests a text at once. A failure shows only in the output, which is then empty.
  KRDigest(const KRString* input, int (*chooser)(unsigned char**));
  KRDigest(const KRDigest&) = delete;
  KRDigest& operator=(const KRDigest&) = delete;
  virtual ~KRDigest();

  /// Digests the whole content of a buffer, wherever its cursor is.
  /// @return KRSecStatus_Success, or KRSecStatus_DigestFailed for null, for a buffer that lost its
  ///         memory, when the algorithm is not available, and when memory is exhausted.
  KRSecStatus SetInputData(KRBuffer* input);
  /// Digests a text, without its terminator.
  /// @return as SetInputData.
  KRSecStatus SetInputStr(const KRString* input);
  /// @return the digest, 20 bytes with SHA-1, with the cursor at its start. It belongs to this
  ///         object. After a failure its content is unspecified.
  KRBuffer* GetOutputData() { return &m_output; }

 private:
  KRSecStatus Initialize();
  KRSecStatus DigestData();

  KRBuffer* m_inputData = nullptr;
  const KRString* m_inputString = nullptr;
  KRAlgorithmChooser m_chooser;
  krofx::internal::AlgorithmObject* m_algorithm = nullptr;
  KRBuffer m_output;
};

#endif  // KROFX_SECURITY_DIGEST_H_
