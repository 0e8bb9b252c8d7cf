// The kinds of damage that the reader mends: one line each, and this is the only place.
//
// A line is a kind's number, its C++ name, its English name, how often it is said, and a sentence.
// Numbers and names are promised to hosts and never change; a new kind takes a free number in its
// group. The damage itself is mended in one place each: see krofx/reader/file/text_menders.h,
// krofx/reader/structure/tree_reader.h and krofx/reader/values/value_mender.h.

#ifndef KROFX_READER_MENDING_KINDS_H_
#define KROFX_READER_MENDING_KINDS_H_

// clang-format off
// X(number, name in C++, name in English, Each or Once, sentence)
#define KROFX_MENDING_KINDS(X)                                                                                         \
  /* What is in front of the body. */                                                                                 \
  X(100, kHeaderMissing, "header-missing", Each, "there is no OFX header; the usual one was taken")                    \
  X(101, kHeaderLayout, "header-layout", Each, "the header is not one field a line with a blank line after it")        \
  X(102, kHeaderFieldMissing, "header-field-missing", Each, "a header field is missing; its usual value was taken")    \
  X(103, kHeaderFieldUnknown, "header-field-unknown", Each, "a header field that OFX does not have was left out")      \
  X(104, kHeaderValue, "header-value", Each, "a header field says what OFX does not know; its usual value was taken")  \
  X(105, kHeaderForm, "header-form", Each, "the header is not of the version of the body")                             \
  X(106, kTextInFront, "text-in-front", Each, "text in front of the OFX text was passed over")                         \
  X(107, kByteOrderMark, "byte-order-mark", Each, "a byte order mark was passed over")                                 \
  /* Characters. */                                                                                                    \
  X(200, kWideCharacters, "wide-characters", Each, "the text is in UTF-16 or UTF-32; it was read as UTF-8")            \
  X(201, kCharset, "charset", Each, "the header names another character set than the text is in")                      \
  X(202, kControlCharacter, "control-character", Once, "control characters were taken out")                            \
  X(203, kBareLessThan, "bare-less-than", Each, "a '<' that opens no tag was taken as a character")                    \
  X(204, kCharacterReference, "character-reference", Once, "a character reference that OFX does not have was replaced")\
  /* Amounts and other numbers. */                                                                                     \
  X(300, kDecimalComma, "decimal-comma", Each, "a comma was taken as the decimal sign")                                \
  X(301, kThousands, "thousands", Each, "signs between thousands were taken out of a number")                          \
  X(302, kAmbiguousSeparator, "ambiguous-separator", Each, "what a comma or a point means was judged by the other numbers of the text")\
  X(303, kAmountSign, "amount-sign", Each, "a sign that is after the number, or is written in another way, was moved") \
  X(304, kAmountDecoration, "amount-decoration", Each, "what does not belong to a number was taken out of it")         \
  X(305, kAmountAbsent, "amount-absent", Each, "a word or a sign for no number was taken as absent")                   \
  X(306, kNumberRefused, "number-refused", Each, "a text that is no number was left out")                              \
  X(307, kAmountUndecided, "amount-undecided", Each, "what a comma means cannot be known; the number was left out")    \
  X(308, kNumberZeros, "number-zeros", Each, "zeros that do not change a number were taken out of it")                 \
  X(309, kNumberExponent, "number-exponent", Each, "a number with an exponent was written out")                        \
  /* Dates and times. */                                                                                               \
  X(400, kDateAbsent, "date-absent", Each, "a date that means none was taken as absent")                          \
  X(401, kDateForm, "date-form", Each, "a date in another form was taken in the form of OFX")                          \
  X(402, kDateZone, "date-zone", Each, "a time zone in another form was taken in the form of OFX")                     \
  X(403, kDateRefused, "date-refused", Each, "a text that is no date was left out")                                    \
  X(404, kDateZoneLost, "date-zone-lost", Each, "a time zone that OFX cannot hold was left out of a date")             \
  X(405, kDateTimeLost, "date-time-lost", Each, "a time that does not exist was left out of a date")                   \
  X(406, kDateOrder, "date-order", Each, "what is the day of a date and what the month was judged by the other dates of the text")\
  /* Words. */                                                                                                         \
  X(500, kTransactionType, "transaction-type", Each, "a transaction type that OFX does not have was taken as OTHER")   \
  X(501, kBoolean, "boolean", Each, "a word for yes or no was taken as Y or N")                                        \
  X(502, kKeyword, "keyword", Each, "a word in another form was taken as a keyword of OFX")                            \
  X(503, kWordAbsent, "word-absent", Each, "a word for nothing was taken as absent")                                   \
  X(504, kKeywordRefused, "keyword-refused", Each, "a word that OFX does not have here was left out")                  \
  /* Tags and what they enclose. */                                                                                    \
  X(600, kEmptyElement, "empty-element", Once, "an element without a text was taken as absent")                        \
  X(601, kMissingEnd, "missing-end", Each, "an end tag is missing")                                                    \
  X(602, kStrayEnd, "stray-end", Each, "an end tag that closes nothing was passed over")                               \
  X(603, kCutOff, "cut-off", Each, "the text breaks off; what is whole was kept")                                      \
  X(604, kJoined, "joined", Each, "an aggregate that comes twice was joined")                                          \
  X(605, kReplaced, "replaced", Each, "an aggregate that comes twice was replaced by the second one")                  \
  X(606, kOwnWrapper, "own-wrapper", Each, "a second answer in one wrapper was given a wrapper of its own")            \
  X(607, kMissingStart, "missing-start", Each, "an aggregate is missing around what belongs into it")                  \
  X(608, kMisplaced, "misplaced", Each, "a tag that may not be here was left out with all that is in it")           \
  X(609, kStrayText, "stray-text", Each, "text that belongs to no element was left out")                               \
  X(610, kPrivateTag, "private-tag", Once, "a tag of an institution's own was left out")                               \
  X(611, kLaterTag, "later-tag", Once, "a tag of a later version of OFX was left out with all that is in it")          \
  X(612, kUnknownTag, "unknown-tag", Once, "a tag that OFX does not have was left out with all that is in it")         \
  X(613, kLetterCase, "letter-case", Once, "a tag in small letters was taken in capitals")                             \
  X(614, kTagForm, "tag-form", Once, "a tag with blanks, a prefix or attributes was taken without them")               \
  X(615, kTooDeep, "too-deep", Each, "an aggregate inside too many others was left out")                               \
  X(616, kIncomplete, "incomplete", Each, "an aggregate that the end of the text cut was left out")                    \
  X(617, kTextRefused, "text-refused", Each, "a text that its element does not take was left out")                     \
  X(618, kEarlyEnd, "early-end", Each, "an end tag came too early; what follows was put where it belongs")             \
  X(619, kMoved, "moved", Each, "an answer in the wrong message set was put into the one where it belongs")             \
  X(620, kAccountKind, "account-kind", Each, "an account of another kind was taken as the kind that belongs here")     \
  X(621, kPayeeText, "payee-text", Each, "a payee that is a text was taken as a name")                                 \
  X(622, kRepeatedElement, "repeated-element", Each, "an amount or a date comes twice with two values; the last one was taken")\
  /* The text as a whole. */                                                                                           \
  X(700, kMultipartDamage, "multipart", Each, "a multipart text whose parts are not in order was taken apart")
// clang-format on

#endif  // KROFX_READER_MENDING_KINDS_H_
