// The forms in which documents are shown.

#ifndef KROFX_COMMAND_SHOWING_RENDERERS_H_
#define KROFX_COMMAND_SHOWING_RENDERERS_H_

#include <string>
#include <string_view>
#include <vector>

#include "showing/document.h"
#include "showing/row_writer.h"

namespace krofx::command {

/// Aligned tables for people.
std::string RenderText(const std::vector<Document>& documents);

/// The stable form that docs/json.md describes.
std::string RenderJson(const std::vector<Document>& documents);

/// All rows of the tables with this key, each after the other.
void AppendRows(std::string& out, const Document& document, std::string_view tableKey,
                RowWriter& writer);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_RENDERERS_H_
