// Reads the paths of the layouts.

#include "showing/cell_source.h"

#include <algorithm>
#include <unordered_map>

namespace krofx::command {

namespace {

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

bool IsComposed(const CellSource& source) {
  return source.kind != CellSource::Kind::kPaths ||
         std::any_of(source.paths.begin(), source.paths.end(),
                     [](const CellSource::Path& path) { return path.all; });
}

// The edge of a tag, or the place where it would be.
auto Seek(auto& edges, KRTagID tag) {
  return std::lower_bound(edges.begin(), edges.end(), tag,
                          [](const auto& edge, KRTagID wanted) { return edge.tag < wanted; });
}

}  // namespace

KRTagID IdOf(std::string_view tag) {
  KRTagID id = KRTag_None;
  if (tag == "*") return id;
  KRTagDictionary::TheKRTagDictionary()->GetTagID(tag.data(), static_cast<u16>(tag.size()), &id,
                                                  KRCaseType_Exact);
  return id;
}

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

std::size_t PathTree::Add(std::span<const KRTagID> path) {
  std::size_t at = 0;
  for (const KRTagID tag : path) {
    std::vector<Edge>& edges = m_nodes[at].edges;
    const auto place = Seek(edges, tag);
    if (place != edges.end() && place->tag == tag) {
      at = place->to;
      continue;
    }
    at = m_nodes.size();
    edges.insert(place, {tag, at});
    m_nodes.emplace_back();
  }
  m_nodes[at].paths.push_back(m_count);
  return m_count++;
}

void PathTree::Find(const Element& element, Found& found) const {
  found.elements.assign(m_count, nullptr);
  found.paths.clear();
  Note(m_nodes.front(), element, found);
  if (!m_nodes.front().edges.empty()) Walk(element, m_nodes.front(), found);
}

void PathTree::Note(const Node& node, const Element& element, Found& found) {
  for (const std::size_t path : node.paths) {
    if (found.elements[path] != nullptr) continue;
    found.elements[path] = &element;
    found.paths.push_back(path);
  }
}

void PathTree::Walk(const Element& element, const Node& node, Found& found) const {
  const std::vector<Edge>& edges = node.edges;
  for (const Element& child : element.children) {
    // The null tag is the first one, and any tag.
    if (edges.front().tag == KRTag_None) Follow(edges.front(), child, found);
    const auto place = Seek(edges, child.id);
    if (place != edges.end() && place->tag == child.id) Follow(*place, child, found);
  }
}

void PathTree::Follow(const Edge& edge, const Element& child, Found& found) const {
  const Node& node = m_nodes[edge.to];
  Note(node, child, found);
  if (!node.edges.empty()) Walk(child, node, found);
}

const std::vector<CellSource>& SourcesOf(std::span<const FieldSpec> fields) {
  static thread_local std::unordered_map<const FieldSpec*, std::vector<CellSource>> known;
  const auto [place, isNew] = known.try_emplace(fields.data());
  if (isNew) {
    for (const FieldSpec& field : fields) place->second.push_back(SourceOf(field.path));
  }
  return place->second;
}

const ColumnSources& ColumnSourcesOf(std::span<const FieldSpec> columns) {
  static thread_local std::unordered_map<const FieldSpec*, ColumnSources> known;
  const auto [place, isNew] = known.try_emplace(columns.data());
  ColumnSources& sources = place->second;
  if (isNew) {
    sources.columns = SourcesOf(columns);
    for (std::size_t column = 0; column < sources.columns.size(); ++column) {
      CellSource& source = sources.columns[column];
      const bool isComposed = IsComposed(source);
      if (isComposed) sources.composed.push_back(column);
      for (CellSource::Path& path : source.paths) {
        path.number = sources.paths.Add(path.steps);
        sources.choices.push_back({column, isComposed ? nullptr : &path});
      }
    }
  }
  return sources;
}

RowPath RowPathOf(std::string_view path) {
  RowPath source;
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
