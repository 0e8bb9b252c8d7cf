// Reports as JSON.

#include "checking/notes.h"
#include "checking/report.h"
#include "checking/summary.h"
#include "output/json.h"
#include "output/safe_text.h"

namespace krofx::command {

Json JsonOf(const Report& report) {
  const ParsedFile& file = report.file;
  Json warnings = Json::Array();
  for (const Warning& warning : report.warnings) {
    Json each = Json::Object();
    each.Set("name", warning.name)
        .Set("tag", SafeText(ShownTag(warning.tag, warning.path)))
        .Set("value", SafeText(ShownValue(warning.value, warning.tag, warning.path, file)))
        .Set("path", warning.path);
    if (warning.place.line > 0) {
      each.Set("line", warning.place.line)
          .Set("column", warning.place.column)
          .Set("offset", warning.place.offset);
    }
    warnings.Append(std::move(each));
  }
  Json missing = Json::Array();
  for (const MissingTag& each : report.missing.listed) {
    Json object = Json::Object();
    object.Set("path", each.path);
    if (each.tag.empty()) {
      Json alternatives = Json::Array();
      for (const std::string& alternative : each.alternatives) alternatives.Append(alternative);
      object.Set("alternatives", std::move(alternatives));
      object.Set("advice", each.sentence);
    } else {
      object.Set("tag", each.tag);
    }
    missing.Append(std::move(object));
  }
  Json object = Json::Object();
  object.Set("file", file.GetName())
      .Set("exit", static_cast<int>(report.verdict))
      .Set("kind", file.GetKind())
      .Set("status", static_cast<unsigned>(file.GetStatus()))
      .Set("meaning", file.GetMeaning());
  if (!file.GetProblem().empty()) object.Set("problem", file.GetProblem());
  object.Set("summary", SummaryOf(report))
      .Set("warnings", std::move(warnings))
      .Set("mendings", JsonOf(ShownMendings(file)))
      .Set("missing", std::move(missing));
  if (report.missing.unlisted > 0) object.Set("missing_unlisted", report.missing.unlisted);
  return object;
}

}  // namespace krofx::command
