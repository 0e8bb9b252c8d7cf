// Character sets: which characters the bytes of a text are. All that are known are iconv's.

#ifndef KROFX_READER_CHARACTERS_CHARSET_H_
#define KROFX_READER_CHARACTERS_CHARSET_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/string.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A character set in which the characters of ASCII are single bytes of their own value, so that a
/// text can be scanned for tags as it is. Not to be used by two threads at once.
class Charset {
 public:
  /// The most bytes that a character has.
  static constexpr std::size_t kLongest = 8;

  /// US-ASCII. A byte above 127 is no character.
  Charset() = default;
  Charset(const Charset&) = delete;
  Charset& operator=(const Charset&) = delete;
  ~Charset() { Close(); }

  /// What Open came to.
  enum class Opened : u8 { kYes, kUnknown, kNoMemory };
  /// Makes this the character set of a name, in any case of letters, such as "UTF-8" or
  /// "WINDOWS-1252".
  /// @return kUnknown, with the set as it was, for a name that iconv does not know, and for a set
  ///         that has other characters in place of those of ASCII.
  Opened Open(std::string_view name);

  /// @return the name, in capital letters.
  const char* Name() const { return m_name; }
  bool IsUtf8() const { return m_kind == Kind::kUtf8; }

  /// Reads the first character of a text that is not empty.
  /// @param code takes the character; U+FFFD when the bytes are none.
  /// @return how many bytes it has, at least 1.
  std::size_t Decode(std::string_view text, char32_t& code) const;
  /// Writes a character.
  /// @param out room for kLongest bytes.
  /// @return how many bytes; 0 when the set does not have it.
  std::size_t Encode(char32_t code, char* out) const;

 private:
  enum class Kind : u8 { kAscii, kUtf8, kTable, kIconv };

  void Close();
  bool FillTable();
  bool TakeLastTable();
  void KeepTable();

  Kind m_kind = Kind::kAscii;
  char m_name[32] = "US-ASCII";
  // The characters of the bytes from 128 on, for a set of single bytes; 0 for none.
  char32_t m_table[128] = {};
  // iconv's handles, for a set of several bytes a character.
  void* m_decoder = nullptr;
  void* m_encoder = nullptr;
};

/// Writes a character in UTF-8.
/// @param out room for 4 bytes.
/// @return how many bytes; 0 for what is no character.
std::size_t EncodeUtf8(char32_t code, char* out);
/// Reads the first character of a text in UTF-8 that is not empty; as Charset::Decode.
std::size_t DecodeUtf8(std::string_view text, char32_t& code);
/// @return whether a text has bytes above 127.
bool HasHighBytes(std::string_view text);

}  // namespace krofx::internal

#endif  // KROFX_READER_CHARACTERS_CHARSET_H_
