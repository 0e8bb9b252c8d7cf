// The forms in which documents are shown.

#ifndef KROFX_COMMAND_SHOWING_RENDERERS_H_
#define KROFX_COMMAND_SHOWING_RENDERERS_H_

#include <string>
#include <string_view>

#include "output/text_form.h"
#include "output/text_output.h"
#include "showing/document.h"
#include "showing/row_writer.h"

namespace krofx::command {

/// Appends a document as aligned tables for people.
void AppendText(TextOutput& out, const Document& document, const TextForm& form);

/// @return the stable form that docs/json.md describes. Between two documents comes a comma.
std::string JsonHead();
void AppendJson(TextOutput& out, const Document& document);
/// @param any whether there was a document.
std::string JsonTail(bool any);

/// All rows of the tables with this key, each after the other.
void AppendRows(TextOutput& out, const Document& document, std::string_view tableKey,
                RowWriter& writer);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_RENDERERS_H_
