// What an aggregate must choose among its tags, and how the choice was missed.

#ifndef KROFX_COMMAND_CHECKING_CHOICES_H_
#define KROFX_COMMAND_CHECKING_CHOICES_H_

#include <string>
#include <vector>

#include "krofx/model/data_object.h"

namespace krofx::command {

/// A choice that an aggregate has missed, or tags that are needed beside others that it has.
struct MissedChoice {
  std::string advice;  ///< What to do, such as "exactly one of <A> and <B> must be there".
  std::vector<std::string> tags;  ///< Among which the choice is.
  std::vector<KRTagID> ids;       ///< The same as numbers.
};

/// The choices that an aggregate has missed, in the order of its rules.
std::vector<MissedChoice> FindMissedChoices(const KRDataObj& object);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_CHOICES_H_
