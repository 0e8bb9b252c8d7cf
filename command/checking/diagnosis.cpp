// Counts lines and columns, and numbers the aggregates of a tree to name their paths.

#include "checking/diagnosis.h"

#include <algorithm>
#include <utility>

#include "checking/choices.h"

namespace krofx::command {

namespace {

constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);
// An aggregate has at most this many tags.
constexpr std::size_t kMaxTags = 96;
// A longer list of alternatives does not help.
constexpr std::size_t kMaxAlternatives = 12;

std::vector<std::string> AlternativesOf(KRDataObj& object) {
  std::vector<std::string> alternatives;
  KRArrayOfTags tags;
  object.GetArrayOfValidTags(tags);
  for (u16 index = 0; index < tags.count; ++index) {
    const KRTagID tag = tags.table[index].tag;
    if (object.IsValidTag(tag) == 0 || object.ValidateTag(tag) != 0) continue;
    alternatives.push_back(ToText(KRUtility::TagToString(tag)));
  }
  if (alternatives.size() > kMaxAlternatives) alternatives.clear();
  return alternatives;
}

// Whether a tag that is named as missing is one among several that may be there in its place.
bool IsChoice(const std::vector<MissedChoice>& choices, KRTagID tag) {
  return std::any_of(choices.begin(), choices.end(), [tag](const MissedChoice& choice) {
    return std::find(choice.ids.begin(), choice.ids.end(), tag) != choice.ids.end();
  });
}

}  // namespace

LineFinder::LineFinder(const KRBuffer* text) {
  if (text == nullptr || text->GetBufferPtr() == nullptr) return;
  const std::string_view all(text->GetBufferPtr(), text->GetBufferSize());
  for (std::size_t index = 0; index < all.size(); ++index) {
    const bool pair = all[index] == '\r' && index + 1 < all.size() && all[index + 1] == '\n';
    if (all[index] == '\n' || (all[index] == '\r' && !pair)) m_starts.push_back(index + 1);
  }
}

Place LineFinder::Find(s32 position) const {
  const auto offset = static_cast<std::size_t>(position);
  const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), offset);
  return {static_cast<std::size_t>(next - m_starts.begin()), offset - *(next - 1) + 1};
}

ObjectPaths::ObjectPaths(const ParsedFile& file) {
  for (KRFile* root : file.GetOfxFiles()) Add(root, kNoParent, 0);
}

void ObjectPaths::Add(KRDataObj* object, std::size_t parent, unsigned number) {
  const std::size_t self = m_nodes.size();
  m_nodes.push_back({object, parent, number});
  m_index.emplace(object, self);
  // How many children have a tag, and how many were met.
  struct Count {
    unsigned all = 0;
    unsigned met = 0;
  };
  std::unordered_map<u32, Count> counts;
  const u16 children = object->GetNumberOfChildren();
  for (u16 index = 0; index < children; ++index) {
    if (KRDataObj* const child = object->GetChild(index)) ++counts[child->GetType()].all;
  }
  for (u16 index = 0; index < children; ++index) {
    KRDataObj* const child = object->GetChild(index);
    if (child == nullptr) continue;
    Count& count = counts[child->GetType()];
    Add(child, self, count.all == 1 ? 0 : ++count.met);
  }
}

std::string ObjectPaths::Find(const KRDataObj* object) const {
  const auto found = m_index.find(object);
  if (found == m_index.end()) return "";
  std::string path;
  for (std::size_t index = found->second; index != kNoParent; index = m_nodes[index].parent) {
    const Node& node = m_nodes[index];
    if (node.parent == kNoParent) break;  // The file itself has no tag in the text.
    std::string step = ToText(KRUtility::ObjectToString(node.object));
    if (node.number > 0) step.append("[").append(std::to_string(node.number)).append("]");
    if (!path.empty()) step.append("/").append(path);
    path = std::move(step);
  }
  return path;
}

std::vector<MissingTag> ObjectPaths::FindMissing() const {
  std::vector<MissingTag> missing;
  for (const Node& node : m_nodes) {
    if (node.object->AllRequiredPresent() != 0) continue;
    const std::string path = Find(node.object);
    const std::vector<MissedChoice> choices = FindMissedChoices(*node.object);
    for (const MissedChoice& choice : choices) {
      missing.push_back({path, "", choice.tags, choice.advice});
    }
    std::size_t count = 0;
    for (KRTagID tag = node.object->GetFirstMissingRequiredTag(KRTag_None);
         tag != KRTag_None && count < kMaxTags; ++count) {
      if (!IsChoice(choices, tag)) {
        missing.push_back({path, ToText(KRUtility::TagToString(tag)), {}, ""});
      }
      tag = node.object->GetFirstMissingRequiredTag(tag);
    }
    if (count == 0 && choices.empty()) {
      missing.push_back({path, "", AlternativesOf(*node.object), ""});
    }
  }
  return missing;
}

}  // namespace krofx::command
