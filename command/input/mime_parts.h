// The parts of a multipart text that are not OFX: attachments.

#ifndef KROFX_COMMAND_INPUT_MIME_PARTS_H_
#define KROFX_COMMAND_INPUT_MIME_PARTS_H_

#include <string>
#include <string_view>
#include <vector>

#include "krofx/krofx.h"

namespace krofx::command {

/// What a part says of itself.
struct Part {
  KRFile* file;
  std::string type;  ///< Its content type, without parameters.
  std::string name;  ///< A file name that is safe anywhere: no path, no leading point.
  /// How it says that its body travels, such as "base64", in small letters; empty for nothing.
  std::string encoding;
};

/// @return all parts of a multipart file, OFX or not, in order.
std::vector<Part> FindParts(KRFile& multipart);

/// @return the bodies of all parts of a multipart text, in order, each up to the line of the
///         boundary after it. A file has them too, but not those that end beyond the first 65,535
///         bytes of its text.
std::vector<std::string_view> FindBodies(std::string_view text, std::string_view boundary);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_MIME_PARTS_H_
