// Base64, byte by byte: the coding itself. It allocates no memory.
//
// It does not use libcrypto, whose coding differs: the encoder breaks lines, and the decoder takes
// "-" for an end, allows blanks only in some places and counts in int. Checks that made up for the
// differences would be a whole decoder, except for the table.

#ifndef KROFX_SECURITY_INTERNAL_BASE64_CODING_H_
#define KROFX_SECURITY_INTERNAL_BASE64_CODING_H_

#include "krofx/core/types.h"

namespace krofx::internal {

/// The area that coded bytes are written to.
struct CodedOutput {
  char* at;
  char* end;

  /// Writes one byte.
  /// @return false when the area is full.
  bool Put(u32 byte) {
    if (at == end) return false;
    *at++ = static_cast<char>(byte & 0xff);
    return true;
  }
};

/// Encodes bytes one at a time.
class Base64Encoder {
 public:
  /// Takes one byte; writes a group after every third.
  /// @return false when there is no room.
  bool Take(unsigned char byte, CodedOutput& out);
  /// Writes the last group, filled up with "=".
  /// @return false when there is no room.
  bool Finish(CodedOutput& out);

 private:
  bool PutGroup(CodedOutput& out);

  u32 m_bits = 0;
  u32 m_bytes = 0;
};

/// Decodes text one character at a time.
class Base64Decoder {
 public:
  /// Takes one character; writes the bytes that are complete.
  /// @return false for a character that is not allowed here, and when there is no room.
  bool Take(unsigned char character, CodedOutput& out);
  /// @return whether all groups are complete.
  bool Finish() const { return m_characters == 0; }

 private:
  u32 m_bits = 0;
  // Characters of the open group, and how many of them are "=".
  u32 m_characters = 0;
  u32 m_padding = 0;
  bool m_ended = false;
};

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_BASE64_CODING_H_
