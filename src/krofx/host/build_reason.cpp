// One reason for each status.

#include "krofx/host/build_reason.h"

namespace krofx {

const char* ReasonOf(KRBuildStatus status) {
  switch (status) {
    case KRBuildStatus_Done:
      return "";
    case KRBuildStatus_Fatal:
      return "memory was exhausted";
    case KRBuildStatus_NoTextForm:
      return "a value has no text form";
    case KRBuildStatus_EmptyText:
      return "a text is empty";
    case KRBuildStatus_TooLong:
      return "a text is longer than OFX allows";
    case KRBuildStatus_TreeNotAllowed:
      return "two message sets of the same kind";
    case KRBuildStatus_NotValid:
      return "a text is not valid";
    case KRBuildStatus_MissingTag:
      return "something required is missing";
    default:
      return "it cannot be written";
  }
}

}  // namespace krofx
