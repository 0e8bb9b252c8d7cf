// The header lines that say where the body of a reply ends.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_REPLY_FRAMING_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_REPLY_FRAMING_H_

#include <cstdint>
#include <string_view>

namespace krofx::internal {

/// Reads Content-Length and Transfer-Encoding from the header lines of one reply, one line at a
/// time, as libcurl does. What libcurl reads in another way than other readers could end a body too
/// early without an error, so it is refused.
class ReplyFraming {
 public:
  /// Reads the next line of the header, with or without its line end.
  /// @return false when the end of the body is in doubt: such a line is folded, there is a blank
  ///         before its colon, a length is not of digits only, or two lengths differ.
  bool Take(std::string_view line);
  /// @return whether the body comes in chunks, the last of which shows that it is whole.
  bool IsChunked() const { return m_isChunked; }

 private:
  bool TakeLength(std::string_view value);

  bool m_isChunked = false;
  bool m_hasLength = false;
  std::uint64_t m_length = 0;
  // Whether the line before was one of the two headers: a line that begins with a blank goes on
  // with it.
  bool m_canBeFolded = false;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_REPLY_FRAMING_H_
