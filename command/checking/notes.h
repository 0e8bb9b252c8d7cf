// Warnings and mendings as they may be shown: reports end up in logs and with people who help.

#ifndef KROFX_COMMAND_CHECKING_NOTES_H_
#define KROFX_COMMAND_CHECKING_NOTES_H_

#include <string>
#include <vector>

#include "input/parsed_file.h"
#include "output/json.h"

namespace krofx::command {

/// @param path the aggregates around the tag, such as "OFX/BANKMSGSRSV1/STMTTRNRS[2]".
/// @return the tag, without the number of a card that damage has put into it.
std::string ShownTag(const std::string& tag, const std::string& path);

/// @param path the aggregates around the element.
/// @param file what it is in.
/// @return the value of an element, without what is not shown of its tag.
std::string ShownValue(const std::string& value, const std::string& tag, const std::string& path,
                       const ParsedFile& file);

/// A mending, fit for output.
struct ShownMending {
  const char* kind;  ///< Its English name, such as "decimal-comma".
  unsigned number;   ///< The number of its kind.
  std::string tag;
  std::string path;
  std::string was;
  std::string taken;
  krofx::Place place;  ///< Line 0 for what has no place.
};

/// @return what was mended in a file, in its order.
std::vector<ShownMending> ShownMendings(const ParsedFile& file);

/// @return a mending in one line, such as `2:5: mended: decimal-comma <TRNAMT> "-11,76" ->
///         "-11.76"`.
std::string TextOf(const ShownMending& mending);

/// Mendings as JSON, in the form that docs/json.md describes.
Json JsonOf(const std::vector<ShownMending>& mendings);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_CHECKING_NOTES_H_
