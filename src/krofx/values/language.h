// The language of a sign-on or of a profile, as its three-letter code.

#ifndef KROFX_VALUES_LANGUAGE_H_
#define KROFX_VALUES_LANGUAGE_H_

#include "krofx/core/export.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"

/// A language: a value that holds the text of a three-letter code. The text is not checked against
/// a list of languages, and a text that is too long is stored whole.
class KROFX_API KRLanguage : public krofx::internal::HeapObject {
 public:
  /// A language without a text.
  KRLanguage() = default;
  /// Takes the text.
  explicit KRLanguage(const KRString& text);

  /// Takes the text; the limit of three characters stays.
  KRLanguage& operator=(const KRString& text);

  /// @return the text, which belongs to this object.
  const KRString3& GetString() const { return m_text; }
  /// @return 1 when the text is no longer than three characters.
  u16 IsValid() const;

  /// @return 1 when both texts are the same, including case.
  u16 operator==(const KRLanguage& other) const;
  /// @return the negation of operator==.
  u16 operator!=(const KRLanguage& other) const;

 private:
  KRString3 m_text;
};

#endif  // KROFX_VALUES_LANGUAGE_H_
