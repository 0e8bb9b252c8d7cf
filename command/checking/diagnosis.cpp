// Asks the library what is missing.

#include "checking/diagnosis.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace krofx::command {

namespace {

MissingTag TextOf(const krofx::MissingTag& missing, std::string path) {
  MissingTag text;
  text.path = std::move(path);
  text.tag = ToText(missing.tagText);
  for (const KRTagID tag : missing.choices) {
    text.alternatives.push_back(ToText(KRUtility::TagToString(tag)));
  }
  text.sentence = ToText(missing.sentence);
  return text;
}

// The path of what is missing in an element of a list. One for itself has no number.
std::string PathIn(const ListStream::List& list, const StreamElement& element,
                   const std::string& below) {
  std::string number;
  for (const ListStream::Kind& kind : list.kinds) {
    if (kind.tag == element.Tag() && kind.count > 1) {
      number = "[" + std::to_string(element.Number()) + "]";
    }
  }
  const std::size_t end = std::min(below.find('/'), below.size());
  return list.path + "/" + below.substr(0, end) + number + below.substr(end);
}

void FindInElements(const ListStream& stream, MissingTags& all) {
  const std::size_t most = all.listed.size() + ReadOptions().maxRecords;
  StreamOptions options;
  options.checkRequired = false;
  options.maxRecords = 0;
  ListStream::Cursor cursor(stream, options);
  while (const StreamElement* const element = cursor.Next()) {
    for (const krofx::MissingTag& missing : krofx::FindMissing(element->Object())) {
      if (all.listed.size() == most) {
        ++all.unlisted;
        continue;
      }
      const ListStream::List& list = stream.Lists().at(cursor.List());
      all.listed.push_back(TextOf(missing, PathIn(list, *element, ToText(missing.path))));
    }
  }
}

}  // namespace

MissingTags FindMissing(const ParsedFile& file) {
  MissingTags all;
  for (const OfxFile& each : file.GetOfxFiles()) {
    for (const krofx::MissingTag& missing : krofx::FindMissing(*each.file)) {
      all.listed.push_back(TextOf(missing, ToText(missing.path)));
    }
  }
  const std::shared_ptr<const ListStream>& stream = file.GetStream();
  if (stream != nullptr && stream->HasMissing()) FindInElements(*stream, all);
  return all;
}

}  // namespace krofx::command
