// Warnings of a conversion that are kept back until it is known whether it succeeds.

#ifndef KROFX_CORE_INTERNAL_HELD_WARNINGS_H_
#define KROFX_CORE_INTERNAL_HELD_WARNINGS_H_

#include <optional>

#include "krofx/core/export.h"
#include "krofx/core/parse_logger.h"

namespace krofx::internal {

/// Holds back the calling thread's warnings that name no tag, for code that warns better itself
/// when a conversion fails. Those of a conversion that succeeds are logged when it ends its life.
/// May be nested.
class KROFX_API HeldWarnings {
 public:
  HeldWarnings();
  HeldWarnings(const HeldWarnings&) = delete;
  HeldWarnings& operator=(const HeldWarnings&) = delete;
  ~HeldWarnings();

  /// Forgets what was held back.
  void Drop();

 private:
  friend class ::KRParseLogger;

  struct Held {
    KRParseWarning warning;
    KRString value;
    KRString tagText;
    KRDataObj* object;
  };

  // Takes a warning; false when it holds as many as a conversion gives.
  bool Take(KRParseWarning warning, const KRString& value, const KRString& tagText,
            KRDataObj* object);

  KRParseLogger* m_logger;
  HeldWarnings* m_outer = nullptr;
  std::optional<Held> m_held[2];
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_HELD_WARNINGS_H_
