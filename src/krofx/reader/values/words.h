// The menders of words: booleans, keywords, currencies and languages.

#ifndef KROFX_READER_VALUES_WORDS_H_
#define KROFX_READER_VALUES_WORDS_H_

#include "krofx/reader/values/value_mender.h"

namespace krofx::internal {

/// Takes a word for yes or no as Y or N.
bool MendBoolean(const DoubtfulValue& value, MendedValue& out);
/// Takes the type of a transaction that OFX does not have as OTHER, unless it is one of OFX once
/// blanks, hyphens and underscores are out of it.
bool MendTransactionType(const DoubtfulValue& value, MendedValue& out);
/// Takes blanks, hyphens and underscores out of a keyword.
bool MendKeyword(const DoubtfulValue& value, MendedValue& out);
/// Takes a word for nothing as absent.
bool MendNoWord(const DoubtfulValue& value, MendedValue& out);
/// Leaves out a language that is no code. To be asked first: the objects take any text.
bool MendLanguage(const DoubtfulValue& value, MendedValue& out);
/// The same for a currency.
bool MendCurrency(const DoubtfulValue& value, MendedValue& out);

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_WORDS_H_
