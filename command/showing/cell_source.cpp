// Reads the paths of the layouts.

#include "showing/cell_source.h"

#include <unordered_map>

namespace krofx::command {

namespace {

KRTagID IdOf(std::string_view tag) {
  KRTagID id = KRTag_None;
  if (tag == "*") return id;
  KRTagDictionary::TheKRTagDictionary()->GetTagID(tag.data(), static_cast<u16>(tag.size()), &id,
                                                  KRCaseType_Exact);
  return id;
}

TagPath TagsOf(std::string_view text, char separator) {
  TagPath tags;
  while (!text.empty()) tags.push_back(IdOf(TakePart(text, separator)));
  return tags;
}

CellSource::Path PathOf(std::string_view text) {
  CellSource::Path path;
  path.all = text.ends_with('+');
  if (path.all) text.remove_suffix(1);
  path.steps = TagsOf(TakePart(text, '>'), '/');
  path.leadsToSecurity = !text.empty();
  path.ofSecurity = TagsOf(text, '/');
  return path;
}

CellSource SourceOf(std::string_view text) {
  CellSource source;
  if (text == ".") {
    source.kind = CellSource::Kind::kOwnTag;
  } else if (text == "*.") {
    source.kind = CellSource::Kind::kFirstAggregate;
  } else if (text.ends_with('=')) {
    source.kind = CellSource::Kind::kSum;
    const std::size_t slash = text.rfind('/');
    source.summed = TagsOf(text.substr(0, slash), ',');
    source.summand = IdOf(text.substr(slash + 1, text.size() - slash - 2));
  } else {
    while (!text.empty()) source.paths.push_back(PathOf(TakePart(text, '|')));
  }
  return source;
}

}  // namespace

std::string_view TakePart(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  return part;
}

const Element* FindPath(const Element& element, std::span<const KRTagID> path) {
  if (path.empty()) return &element;
  const KRTagID tag = path.front();
  for (const Element& child : element.children) {
    if (tag != KRTag_None && child.id != tag) continue;
    if (const Element* const found = FindPath(child, path.subspan(1))) return found;
  }
  return nullptr;
}

bool IsOneOf(KRTagID tag, std::span<const KRTagID> tags) {
  for (const KRTagID each : tags) {
    if (each == KRTag_None || each == tag) return true;
  }
  return false;
}

const std::vector<CellSource>& SourcesOf(std::span<const FieldSpec> fields) {
  static thread_local std::unordered_map<const FieldSpec*, std::vector<CellSource>> known;
  const auto [place, isNew] = known.try_emplace(fields.data());
  if (isNew) {
    for (const FieldSpec& field : fields) place->second.push_back(SourceOf(field.path));
  }
  return place->second;
}

RowSource RowSourceOf(std::string_view path) {
  RowSource source;
  const std::size_t last = path.rfind('/');
  if (last != std::string_view::npos) {
    source.parent = TagsOf(path.substr(0, last), '/');
    path.remove_prefix(last + 1);
  }
  source.rows = TagsOf(path, '|');
  return source;
}

std::vector<CellSource> SubjectSourcesOf(std::string_view paths) {
  std::vector<CellSource> sources;
  while (!paths.empty()) sources.push_back(SourceOf(TakePart(paths, ' ')));
  return sources;
}

}  // namespace krofx::command
