// The lines that a transport writes to the host's log.
//
// A line is as long as it needs to be: URLs and certificate IDs are shown whole. Secrets are masked
// before they get here, by LoggableUrl.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRNetAccess;

namespace krofx::internal {

/// The level of what a user may care about.
inline constexpr u16 kLogImportant = 1;
/// The level of details.
inline constexpr u16 kLogDetail = 3;

/// Formats a line as printf does and passes it to the log of the access object, with no extra text.
/// Control characters in it become '?'. A null access object logs nothing. Without memory a line is
/// cut after 2047 characters.
KROFX_API void LogLine(KRNetAccess* access, u16 level, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

/// A URL for a log: the password of its user is stars, one for each character. Where a text is not
/// plainly a URL with a user and a password, everything that could be a password is stars: all
/// before the last '@', and what is in the place of a port without being a number.
class KROFX_API LoggableUrl {
 public:
  /// `url` must live as long as the object does. Without memory for the masked copy the whole text
  /// is "***".
  explicit LoggableUrl(const char* url);
  LoggableUrl(const LoggableUrl&) = delete;
  LoggableUrl& operator=(const LoggableUrl&) = delete;
  ~LoggableUrl();

  /// The text to show.
  const char* Text() const { return m_text; }

 private:
  const char* m_text;
  char* m_copy = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_
