// Converting a text of a tree to UTF-8.

#ifndef KROFX_READER_CHARACTERS_UTF8_TEXT_H_
#define KROFX_READER_CHARACTERS_UTF8_TEXT_H_

#include "krofx/core/string.h"

namespace krofx::internal {

/// What a conversion does beside converting.
enum class Conversion : u8 {
  kAsWritten,  ///< Nothing: for passwords.
  kAsMeant,    ///< Resolves references and sections, and leaves control characters out.
};

/// @param charset the name of the character set that it is in.
/// @param whole takes false when the text grows beyond what a string takes, and is cut. May be
/// null.
/// @return a text in UTF-8: see OfxText::ToUtf8.
KRString ConvertToUtf8(const KRString& text, const KRString& charset, Conversion conversion,
                       bool* whole = nullptr);

}  // namespace krofx::internal

#endif  // KROFX_READER_CHARACTERS_UTF8_TEXT_H_
