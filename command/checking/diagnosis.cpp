// Asks the library what is missing.

#include "checking/diagnosis.h"

#include <utility>

namespace krofx::command {

std::vector<MissingTag> FindMissing(const ParsedFile& file) {
  std::vector<MissingTag> all;
  for (const OfxFile& each : file.GetOfxFiles()) {
    for (const krofx::MissingTag& missing : krofx::FindMissing(*each.file)) {
      MissingTag& text = all.emplace_back();
      text.path = ToText(missing.path);
      text.tag = ToText(missing.tagText);
      for (const KRTagID tag : missing.choices) {
        text.alternatives.push_back(ToText(KRUtility::TagToString(tag)));
      }
      text.sentence = ToText(missing.sentence);
    }
  }
  return all;
}

}  // namespace krofx::command
