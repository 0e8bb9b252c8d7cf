// Cells as JSON. Only sources that write JSON row by row include this: the headers of the library
// are slow to compile.

#ifndef KROFX_COMMAND_SHOWING_JSON_CELLS_H_
#define KROFX_COMMAND_SHOWING_JSON_CELLS_H_

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string_view>

#include "showing/document.h"

namespace krofx::command {

/// Writes a text.
template <class Writer>
void WriteText(Writer& writer, std::string_view text) {
  writer.String(text.data() == nullptr ? "" : text.data(),
                static_cast<rapidjson::SizeType>(text.size()));
}

/// Writes the name of a member.
template <class Writer>
void WriteKey(Writer& writer, std::string_view key) {
  writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
}

/// Writes a member that is a text.
template <class Writer>
void WriteMember(Writer& writer, std::string_view key, std::string_view text) {
  WriteKey(writer, key);
  WriteText(writer, text);
}

/// Writes the value of a cell that is there. Amounts are texts, since a reader's floating point
/// would not keep them.
template <class Writer>
void WriteCell(Writer& writer, const Cell& cell) {
  switch (cell.kind) {
    case ValueKind::kBoolean:
      writer.Bool(cell.text == "true");
      return;
    case ValueKind::kBlank:
      writer.Null();
      return;
    case ValueKind::kInteger:
      writer.RawValue(cell.text.data(), cell.text.size(), rapidjson::kNumberType);
      return;
    default:
      WriteText(writer, cell.text);
  }
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_JSON_CELLS_H_
