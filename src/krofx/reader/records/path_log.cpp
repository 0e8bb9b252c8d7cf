// Making the texts of paths.

#include "krofx/reader/records/path_log.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "krofx/model/parser.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

void AddToPath(KRString& path, const char* name, unsigned number) {
  if (path.IsEmpty() == 0) path += '/';
  path += name;
  if (number == 0) return;
  char text[16];
  std::snprintf(text, sizeof text, "[%u]", number);
  path += text;
}

s32 PathLog::Add(s32 parent, KRTagID tag, u32 number) {
  if (!m_nodes.Append({parent, tag, number, number == 1})) {
    m_failed = true;
    return kNoPath;
  }
  return static_cast<s32>(m_nodes.size() - 1);
}

// Looks for an object below another, and adds those on the way to it.
s32 PathLog::AddBelow(s32 parent, KRDataObj& object, const KRDataObj* wanted, int depth) {
  const u16 count = object.GetNumberOfChildren();
  for (u16 index = 0; index < count; ++index) {
    KRDataObj* const child = object.GetChild(index);
    if (child == nullptr) continue;
    const std::size_t before = m_nodes.size();
    const s32 node = Add(parent, child->GetType(), 1);
    if (node == kNoPath) return kNoPath;
    const s32 found = child == wanted ? node
                      : depth == 0    ? kNoPath
                                      : AddBelow(node, *child, wanted, depth - 1);
    if (found == kNoPath) {
      while (m_nodes.size() > before) m_nodes.RemoveLast();
      continue;
    }
    u32 siblings = 0;
    for (u16 other = 0; other < count; ++other) {
      KRDataObj* const sibling = object.GetChild(other);
      if (sibling == nullptr || sibling->GetType() != child->GetType()) continue;
      ++siblings;
      if (other == index) m_nodes[before].number = siblings;
    }
    m_nodes[before].alone = siblings == 1;
    return found;
  }
  return kNoPath;
}

s32 PathLog::AddTo(KRDataObj& root, const KRDataObj* object) {
  return object == &root ? kNoPath : AddBelow(kNoPath, root, object, KRParser::kMaxDepth);
}

// Adds those of the wanted objects that are below another, and what is on the way to them.
// @param any whether there are any.
bool PathLog::AddAllBelow(s32 parent, KRDataObj& object, std::span<WantedObject> wanted, int depth,
                          bool& any) {
  struct Siblings {
    KRTagID tag;
    u32 count;
    s32 first;
  };
  List<Siblings> all;
  for (u16 index = 0; index < object.GetNumberOfChildren(); ++index) {
    KRDataObj* const child = object.GetChild(index);
    if (child == nullptr) continue;
    const KRTagID tag = child->GetType();
    Siblings* siblings = std::find_if(all.begin(), all.end(),
                                      [tag](const Siblings& each) { return each.tag == tag; });
    if (siblings == all.end()) {
      if (!all.Append({tag, 0, kNoPath})) return false;
      siblings = &all.back();
    }
    const std::size_t before = m_nodes.size();
    const s32 node = Add(parent, tag, ++siblings->count);
    if (node == kNoPath) return false;
    const auto same = std::equal_range(wanted.begin(), wanted.end(), WantedObject{child, 0});
    for (auto each = same.first; each != same.second; ++each) each->node = node;
    bool found = same.first != same.second;
    if (depth > 0 && !AddAllBelow(node, *child, wanted, depth - 1, found)) return false;
    while (!found && m_nodes.size() > before) m_nodes.RemoveLast();
    if (found && siblings->count == 1) siblings->first = node;
    any = any || found;
  }
  for (const Siblings& each : all) {
    if (each.count > 1 && each.first != kNoPath) NotAlone(each.first);
  }
  return true;
}

bool PathLog::AddAll(KRDataObj& root, std::span<WantedObject> wanted) {
  bool any = false;
  return AddAllBelow(kNoPath, root, wanted, KRParser::kMaxDepth, any);
}

KRString PathLog::PathOf(s32 node) const {
  s32 nodes[KRParser::kMaxDepth + 2];
  std::size_t depth = 0;
  for (; node != kNoPath && depth < std::size(nodes); ++depth) {
    nodes[depth] = node;
    node = m_nodes[static_cast<std::size_t>(node)].parent;
  }
  KRString path;
  while (depth > 0) {
    const Node& each = m_nodes[static_cast<std::size_t>(nodes[--depth])];
    AddToPath(path, KRUtility::TagToString(each.tag), each.alone ? 0 : each.number);
  }
  return path;
}

}  // namespace krofx::internal
