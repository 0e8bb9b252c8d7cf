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
  explicit ByteBlock(std::uint64_t bytes) : m_bytes(bytes) {}

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
  static constexpr std::uint64_t kOnes = 0x0101010101010101;
  static constexpr std::uint64_t kHighBits = 0x8080808080808080;

  std::uint64_t m_bytes;
};

/// @param test says whether a ByteBlock has what is looked for. A blank must never be that: the
///        last bytes of a text are filled up with blanks.
/// @return whether a text has it.
template <class Test>
bool HasAny(std::string_view text, Test test) {
  std::uint64_t bytes = 0;
  for (; text.size() >= sizeof bytes; text.remove_prefix(sizeof bytes)) {
    std::memcpy(&bytes, text.data(), sizeof bytes);
    if (test(ByteBlock(bytes))) return true;
  }
  if (text.empty()) return false;
  char last[sizeof bytes] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  for (std::size_t index = 0; index < text.size(); ++index) last[index] = text[index];
  std::memcpy(&bytes, last, sizeof bytes);
  return test(ByteBlock(bytes));
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_BYTE_SCAN_H_
