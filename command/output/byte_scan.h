// Finds out whether a text needs any care, eight bytes at a time. Most texts need none, and are
// looked at for each cell of each row that is written.

#ifndef KROFX_COMMAND_OUTPUT_BYTE_SCAN_H_
#define KROFX_COMMAND_OUTPUT_BYTE_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace krofx::command {

/// Eight bytes of a text, each of which is compared. The answers are those of all of them.
class ByteBlock {
 public:
  /// @return the eight bytes at a place.
  static ByteBlock Of(const char* at) {
    ByteBlock block;
    std::memcpy(&block.m_bytes, at, sizeof block.m_bytes);
    return block;
  }

  /// @return whether one of the bytes is `sought`.
  bool Has(char sought) const {
    const std::uint64_t zeros = m_bytes ^ (kOnes * static_cast<unsigned char>(sought));
    return ((zeros - kOnes) & ~zeros & kHighBits) != 0;
  }
  /// @return whether one of the bytes is below a blank: a control character.
  bool HasControl() const { return ((m_bytes - kOnes * ' ') & ~m_bytes & kHighBits) != 0; }
  /// @return whether one of the bytes is no printable character of ASCII.
  bool HasOdd() const { return HasControl() || (((m_bytes + kOnes) | m_bytes) & kHighBits) != 0; }

 private:
  ByteBlock() = default;

  static constexpr std::uint64_t kOnes = 0x0101010101010101;
  static constexpr std::uint64_t kHighBits = 0x8080808080808080;

  std::uint64_t m_bytes = 0;
};

/// @param test says whether a ByteBlock has what is looked for. A blank must never be that: the
///        bytes of a short text are filled up with blanks.
/// @return whether a text has it.
template <class Test>
bool HasAny(std::string_view text, Test test) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (; end - at > 8; at += 8) {
    if (test(ByteBlock::Of(at))) return true;
  }
  // The last bytes are taken with some of those before them, if there are any.
  if (text.size() >= 8) return test(ByteBlock::Of(end - 8));
  char last[8] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  if (text.size() >= 4) {
    std::memcpy(last, at, 4);
    std::memcpy(last + 4, end - 4, 4);
  } else if (at != end) {
    last[0] = *at;
    last[1] = at[text.size() / 2];
    last[2] = end[-1];
  }
  return test(ByteBlock::Of(last));
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_BYTE_SCAN_H_
