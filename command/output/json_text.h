// What all JSON outputs share: the order of keys is kept, and the outermost object says which form
// it has.

#ifndef KROFX_COMMAND_OUTPUT_JSON_TEXT_H_
#define KROFX_COMMAND_OUTPUT_JSON_TEXT_H_

#include <nlohmann/json.hpp>
#include <string>

namespace krofx::command {

using Json = nlohmann::ordered_json;

/// The version of the forms. Keys may be added within a version; what is there keeps its meaning.
inline constexpr int kJsonVersion = 1;

/// The text of an output, a list of files, with a line end.
inline std::string JsonText(const char* format, Json files) {
  const Json all = {{"format", format}, {"version", kJsonVersion}, {"files", std::move(files)}};
  return all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_JSON_TEXT_H_
