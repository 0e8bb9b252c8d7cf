// What the enumerations of krofx/values/keywords.h share: a table of texts, a search in it that
// ignores case, and traits through which other code converts an enumeration without knowing its
// class.
//
// The data of each enumeration is generated into a KeywordData; the operations on it are written
// once, here.

#ifndef KROFX_VALUES_INTERNAL_KEYWORD_TABLE_H_
#define KROFX_VALUES_INTERNAL_KEYWORD_TABLE_H_

#include <iterator>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRString;

namespace krofx::internal {

/// How the builder's operation for an enumeration writes its keyword.
enum class KeywordWriter {
  None,      ///< There is no such operation.
  Direct,    ///< Straight into the buffer.
  Text,      ///< Through AddString, unescaped.
  Tolerant,  ///< Through AddString, escaped, and no failure is reported.
};

/// The data of the enumeration E: its texts in the order of its values. Generated.
template <class E>
struct KeywordData;

/// An enumeration that has a keyword table.
template <class E>
concept KeywordEnum = requires {
  KeywordData<E>::kTexts;
};

/// A keyword table that does not depend on the type of the enumeration, for code that is driven by
/// tables.
struct KeywordTable {
  const std::string_view* texts;  ///< The keywords, each ended by a NUL.
  u16 count;                      ///< Number of keywords.
  u16 readFrom;                   ///< The first value that a text is compared with.
  bool logsOutOfRange;            ///< Whether a value beyond the table logs a warning.
};

/// Compares two texts without regard to the case of the letters A to Z.
/// @return whether they are equal.
KROFX_API bool EqualsWithoutCase(std::string_view a, std::string_view b) noexcept;

/// Finds the value of a keyword, without regard to case and without a warning.
/// @return the value; -1 when no keyword matches.
KROFX_API s32 FindKeyword(const KeywordTable& table, std::string_view text) noexcept;

/// Finds the value of a keyword, without regard to case.
/// @return 1; 0, with `value` unchanged, after a KRPW_BADFORMAT warning, when no keyword matches.
KROFX_API u16 KeywordFromText(const KeywordTable& table, const KRString& text, u32& value);

/// Assigns the keyword of a value to `out`.
/// @return 1; 0, with `out` unchanged, for a value beyond the table, after a KRPW_BADFORMAT warning
///         if the table's logsOutOfRange is set.
KROFX_API u16 KeywordToText(const KeywordTable& table, u32 value, KRString& out);

/// Conversions of the enumeration E, with the data of its KeywordData.
template <KeywordEnum E>
struct KeywordTraits : KeywordData<E> {
  using Data = KeywordData<E>;

  /// Number of keywords.
  static constexpr u16 kCount = std::size(Data::kTexts);
  /// The table, for code that does not know E.
  static constexpr KeywordTable kTable{Data::kTexts, kCount, Data::kReadFrom,
                                       Data::kLogsOutOfRange};

  /// See KeywordFromText. When nothing matches, `out` becomes None if the enumeration has one.
  static u16 FromText(const KRString& text, E& out) {
    u32 value = 0;
    if (KeywordFromText(kTable, text, value)) {
      out = static_cast<E>(value);
      return 1;
    }
    if constexpr (requires { Data::kNone; }) out = Data::kNone;
    return 0;
  }

  /// See KeywordToText.
  static u16 ToText(E value, KRString& out) {
    return KeywordToText(kTable, static_cast<u32>(value), out);
  }
};

/// Base of the conversion classes: two conversions with a table that the caller supplies.
class KROFX_API KeywordConversion {
 public:
  /// Assigns entry `value` of `table` to `out`.
  /// @param low,high the first and the last entry that `value` may be.
  /// @return 1; 0, with `out` unchanged, after a KRPW_BADFORMAT warning, for a value outside `low`
  ///         to `high`.
  static u16 EnumToString(u16 value, KRString& out, u16 low, u16 high,
                          const char* const* const table);
  /// Finds `text` in the entries `low` to `high` of `table`, without regard to case.
  /// @return 1; 0, with `out` unchanged, after a KRPW_BADFORMAT warning, when none matches.
  static u16 StringToEnum(const KRString& text, u16& out, u16 low, u16 high,
                          const char* const* const table);
};

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_KEYWORD_TABLE_H_
