// The three forms in which documents are shown.

#ifndef KROFX_COMMAND_SHOWING_RENDERERS_H_
#define KROFX_COMMAND_SHOWING_RENDERERS_H_

#include <string>
#include <string_view>
#include <vector>

#include "showing/document.h"

namespace krofx::command {

/// Aligned tables for people.
std::string RenderText(const std::vector<Document>& documents);

/// The stable form that docs/json.md describes.
std::string RenderJson(const std::vector<Document>& documents);

/// All rows of the tables with this key, under one header line. The first columns say which file,
/// kind of section and account a row belongs to.
std::string RenderCsv(const std::vector<Document>& documents, std::string_view tableKey);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_RENDERERS_H_
