// Texts and cells as JSON.

#ifndef KROFX_COMMAND_SHOWING_JSON_CELLS_H_
#define KROFX_COMMAND_SHOWING_JSON_CELLS_H_

#include <string>
#include <string_view>

#include "showing/document.h"

namespace krofx::command {

/// Appends a text, in quotes.
void AppendJson(std::string& out, std::string_view text);

/// Appends the value of a cell that is there. Amounts are texts, since a reader's floating point
/// would not keep them.
void AppendJson(std::string& out, const Cell& cell);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_JSON_CELLS_H_
