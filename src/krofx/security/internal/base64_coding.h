// Base64, byte by byte: the coding itself, without memory of its own.
//
// It is written here because what libcrypto has is another coding: its encoder breaks lines, its
// decoder takes "-" for an end, allows blanks only in some places and counts in int. Checks in
// front of it would be the whole decoder, but for the table below.

#ifndef KROFX_SECURITY_INTERNAL_BASE64_CODING_H_
#define KROFX_SECURITY_INTERNAL_BASE64_CODING_H_

#include "krofx/core/types.h"

namespace krofx::internal {

/// Where coded bytes go: an area with an end.
struct CodedOutput {
  char* at;
  char* end;

  /// Puts one byte. False when the area is full.
  bool Put(u32 byte) {
    if (at == end) return false;
    *at++ = static_cast<char>(byte & 0xff);
    return true;
  }
};

/// Turns bytes into text, as they come.
class Base64Encoder {
 public:
  /// Takes one byte; writes a group with every third. False when there is no room.
  bool Take(unsigned char byte, CodedOutput& out);
  /// Writes the last group, filled with "=". False when there is no room.
  bool Finish(CodedOutput& out);

 private:
  bool PutGroup(CodedOutput& out);

  u32 m_bits = 0;
  u32 m_bytes = 0;
};

/// Turns text into bytes, as it comes.
class Base64Decoder {
 public:
  /// Takes one character; writes what is whole. False for a character that must not stand here, and
  /// when there is no room.
  bool Take(unsigned char character, CodedOutput& out);
  /// Whether all groups are whole.
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
