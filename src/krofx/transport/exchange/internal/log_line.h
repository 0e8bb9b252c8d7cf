// The lines that a transport writes to the host's log.
//
// Lines are not cut: URLs and certificate IDs are shown whole. Callers mask secrets with
// LoggableUrl first.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRNetAccess;

namespace krofx::internal {

/// The level of lines that may interest a user.
inline constexpr u16 kLogImportant = 1;
/// The level of details.
inline constexpr u16 kLogDetail = 3;

/// Formats a line as printf does and passes it to the log of the access object, with no extra text.
/// Control characters in it become '?'. A null access object logs nothing. When memory is exhausted
/// a line is cut after 2047 characters.
KROFX_API void LogLine(KRNetAccess* access, u16 level, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

/// A URL for a log. User, password and fragment are replaced by stars, one for each character, and
/// so is everything that could be a user or a password: all text before the last '@', also after
/// the path has begun; text in the place of a port that is none; and text in which an '@' or a
/// colon may be escaped or in another form, such as U+FF20. The name of a file is shown, except
/// what is between a colon and the last '@'.
class KROFX_API LoggableUrl {
 public:
  /// `url` must outlive the object. When there is no memory for the masked copy the text is "***".
  explicit LoggableUrl(const char* url);
  LoggableUrl(const LoggableUrl&) = delete;
  LoggableUrl& operator=(const LoggableUrl&) = delete;
  ~LoggableUrl();

  /// @return the text to show.
  const char* Text() const { return m_text; }

 private:
  const char* m_text;
  char* m_copy = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_
