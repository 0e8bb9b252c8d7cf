// Holds back the warnings of a conversion until it has succeeded or failed.

#ifndef KROFX_CORE_INTERNAL_HELD_WARNINGS_H_
#define KROFX_CORE_INTERNAL_HELD_WARNINGS_H_

#include <optional>

#include "krofx/core/export.h"
#include "krofx/core/parse_logger.h"

namespace krofx::internal {

/// Holds back the calling thread's warnings that name no tag, for code that logs a better warning
/// itself when a conversion fails. The destructor logs what is still held. May be nested.
class KROFX_API HeldWarnings {
 public:
  HeldWarnings();
  HeldWarnings(const HeldWarnings&) = delete;
  HeldWarnings& operator=(const HeldWarnings&) = delete;
  ~HeldWarnings();

  /// Discards the warnings that are held back.
  void Drop();

 private:
  friend class ::KRParseLogger;

  struct Held {
    KRParseWarning warning;
    KRString value;
    KRString tagText;
    KRDataObj* object;
  };

  // More than the most that a conversion logs, which is four for a date with a bad zone.
  static constexpr int kMost = 8;

  // Takes a warning; false when it already holds the most.
  bool Take(KRParseWarning warning, const KRString& value, const KRString& tagText,
            KRDataObj* object);

  KRParseLogger* m_logger;
  HeldWarnings* m_outer = nullptr;
  std::optional<Held> m_held[kMost];
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_HELD_WARNINGS_H_
