// The lines that a transport writes to the host's log.
//
// A line is as long as it needs to be: URLs and certificate IDs are shown whole. What must not be
// seen is masked before it gets here.

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

/// Formats a line as printf does and hands it to the access object's log, with no extra text. A
/// null access object logs nothing. Without memory a line is cut behind 2047 characters.
KROFX_API void LogLine(KRNetAccess* access, u16 level, char const* format, ...)
    __attribute__((format(printf, 3, 4)));

/// A URL as it may stand in a log: the password of its user is stars, one for each character.
class KROFX_API LoggableUrl {
 public:
  /// `url` must live as long as the object does. Without memory for the masked copy the whole text
  /// is "***".
  explicit LoggableUrl(char const* url);
  LoggableUrl(LoggableUrl const&) = delete;
  LoggableUrl& operator=(LoggableUrl const&) = delete;
  ~LoggableUrl();

  /// The text to show.
  char const* Text() const { return m_text; }

 private:
  char const* m_text;
  char* m_copy = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_LOG_LINE_H_
