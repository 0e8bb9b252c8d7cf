// Values of JSON, one at a time. Most texts need no escapes, and are only put into quotes: an
// object for each of them would take longer than all else that is done with a row.

#include "showing/json_cells.h"

#include "output/byte_scan.h"
#include "output/json.h"

namespace krofx::command {

void AppendJson(std::string& out, std::string_view text) {
  const auto isSpecial = [](ByteBlock block) {
    return block.Has('"') || block.Has('\\') || block.HasControl();
  };
  if (HasAny(text, isSpecial)) {
    out += Json(std::string(text)).Text(0);
    return;
  }
  out += '"';
  out += text;
  out += '"';
}

void AppendJson(std::string& out, const Cell& cell) {
  switch (cell.kind) {
    case ValueKind::kBoolean:
    case ValueKind::kInteger:
      out += cell.text;
      return;
    case ValueKind::kBlank:
      out += "null";
      return;
    default:
      AppendJson(out, cell.text);
  }
}

}  // namespace krofx::command
