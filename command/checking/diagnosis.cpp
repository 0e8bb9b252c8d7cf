// Numbers the aggregates of a tree to name their paths.

#include "checking/diagnosis.h"

#include <algorithm>
#include <unordered_map>
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

ObjectPaths::ObjectPaths(const ParsedFile& file) {
  for (const OfxFile& each : file.GetOfxFiles()) Add(each.file, kNoParent, 0);
}

void ObjectPaths::Add(KRDataObj* object, std::size_t parent, unsigned number) {
  const std::size_t self = m_nodes.size();
  m_nodes.push_back({object, parent, number});
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

std::string ObjectPaths::PathOf(std::size_t node) const {
  std::string path;
  for (std::size_t index = node; index != kNoParent; index = m_nodes[index].parent) {
    const Node& step = m_nodes[index];
    if (step.parent == kNoParent) break;  // The file itself has no tag in the text.
    std::string name = ToText(KRUtility::ObjectToString(step.object));
    if (step.number > 0) name.append("[").append(std::to_string(step.number)).append("]");
    if (!path.empty()) name.append("/").append(path);
    path = std::move(name);
  }
  return path;
}

std::vector<MissingTag> ObjectPaths::FindMissing() const {
  std::vector<MissingTag> missing;
  for (std::size_t index = 0; index < m_nodes.size(); ++index) {
    const Node& node = m_nodes[index];
    if (node.object->AllRequiredPresent() != 0) continue;
    const std::string path = PathOf(index);
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
