// Which values are never shown, and which only by their last characters.
//
// One rule for all outputs. Passwords are not shown in any way. Numbers that identify a person
// (social security and tax numbers, the number of a bill-pay account), the numbers of cards, and in
// a payroll the numbers of all accounts are shown by their last four characters, unless the user
// asks for all. The numbers of bank and investment accounts are shown: they name what a statement
// is of, and without them two statements could not be distinguished.

#ifndef KROFX_COMMAND_OUTPUT_MASKING_H_
#define KROFX_COMMAND_OUTPUT_MASKING_H_

#include <string>
#include <string_view>

#include "krofx/core/tags.h"

namespace krofx::command {

/// How much of a value is shown.
enum class Disclosure {
  kAll,       ///< All of it.
  kPersonal,  ///< The last four characters; nothing of four or fewer.
  kCard,      ///< The last four characters.
};

/// What is in the place of a password.
inline constexpr std::string_view kNotShown = "(not shown)";

/// @return whether a tag holds a password, which is not shown in any way.
bool IsPassword(KRTagID tag);

/// @return whether passwords are direct elements of an aggregate. In a damaged file one of them can
///         have become a part of any text in it.
bool HoldsPasswords(KRTagID aggregate);

/// @return how much of an element is shown, by its tag and that of the aggregate that it is in.
Disclosure DisclosureOf(std::string_view tag, std::string_view aggregate, bool inPayroll);

/// The same of a text that a warning or a mending quotes: what is found among the elements of a
/// card may be its number, whatever its tag.
Disclosure DisclosureOfNote(std::string_view tag, std::string_view aggregate, bool inPayroll);

/// @return whether an aggregate is an account, by the end of its tag.
bool IsAccount(std::string_view aggregate);

/// @return a tag that a warning or a mending names. One that OFX does not have may have lost its
///         end, so that among the elements of a card the number follows in it, which is left out.
std::string TagWithoutNumber(std::string_view tag, std::string_view aggregate);

/// @param value in UTF-8.
/// @return the value with a star for each character that is not shown.
std::string Masked(std::string_view value, Disclosure disclosure);

/// @return whether there may be the name of a tag of passwords in a text. Quick, and true for some
///         texts that have none.
bool MayNamePassword(std::string_view text);

/// @return the text up to the tag of a password, whole or damaged, if there is one in it. In a
///         damaged file that tag can have become part of a text, with the password after it.
std::string WithoutPassword(std::string_view text);

/// @return the text up to its first bracket or line end: a text among passwords that has one has
///         other elements in it.
std::string FirstLineWithoutTags(std::string_view text);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_MASKING_H_
