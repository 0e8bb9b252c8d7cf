// Numbers the aggregates of a tree to name their paths, and asks each what it lacks.

#include "krofx/reader/missing.h"

#include <algorithm>
#include <utility>

#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/model/data_object.h"
#include "krofx/reader/records/choices.h"
#include "krofx/reader/records/path_log.h"
#include "krofx/values/utility.h"

namespace krofx {

namespace {

using internal::FindMissedChoices;
using internal::ListedTags;
using internal::MissedChoice;

// An aggregate has at most this many tags.
constexpr std::size_t kMaxTags = 96;
// A longer list of alternatives does not help.
constexpr std::size_t kMaxAlternatives = 12;

// An aggregate with those that it is in.
struct Node {
  KRDataObj& object;
  const Node* parent;
  unsigned number;  // Among those of its tag; 0 for the only one, and for what has no name.
  bool isNamed;     // A file has no tag in the text.
};

// How many children have a tag, and how many of them were met.
struct TagCount {
  KRTagID tag;
  unsigned all;
  unsigned met;
};

TagCount* FindCount(List<TagCount>& counts, KRTagID tag) {
  TagCount* const found = std::find_if(counts.begin(), counts.end(),
                                       [tag](const TagCount& each) { return each.tag == tag; });
  return found == counts.end() ? nullptr : found;
}

KRString PathOf(const Node& node) {
  KRString path = node.parent == nullptr ? KRString() : PathOf(*node.parent);
  if (node.isNamed) {
    internal::AddToPath(path, KRUtility::ObjectToString(&node.object), node.number);
  }
  return path;
}

// The tags that an object could have and does not; none when there are too many to help.
bool FindAlternatives(const KRDataObj& object, List<KRTagID>& alternatives) {
  KRArrayOfTags tags;
  object.GetArrayOfValidTags(tags);
  for (u16 index = 0; index < tags.count; ++index) {
    const KRTagID tag = tags.table[index].tag;
    if (object.IsValidTag(tag) == 0 || object.ValidateTag(tag) != 0) continue;
    if (!alternatives.Append(tag)) return false;
  }
  if (alternatives.size() > kMaxAlternatives) alternatives.Clear();
  return true;
}

// Whether a tag that is named as missing is one among several that may be there in its place.
bool IsChoice(const List<MissedChoice>& choices, KRTagID tag) {
  return std::any_of(choices.begin(), choices.end(), [tag](const MissedChoice& choice) {
    return std::find(choice.tags.begin(), choice.tags.end(), tag) != choice.tags.end();
  });
}

class MissingFinder {
 public:
  // Looks through an aggregate and all below it; false when memory is exhausted.
  bool Look(const Node& node) {
    if (IsChecked(node) && node.object.AllRequiredPresent() == 0 && !Describe(node)) return false;
    List<TagCount> counts;
    const u16 children = node.object.GetNumberOfChildren();
    for (u16 index = 0; index < children; ++index) {
      KRDataObj* const child = node.object.GetChild(index);
      if (child == nullptr) continue;
      TagCount* const count = FindCount(counts, child->GetType());
      if (count != nullptr) ++count->all;
      if (count == nullptr && !counts.Append({child->GetType(), 1, 0})) return false;
    }
    for (u16 index = 0; index < children; ++index) {
      KRDataObj* const child = node.object.GetChild(index);
      TagCount* const count = child == nullptr ? nullptr : FindCount(counts, child->GetType());
      if (count == nullptr) continue;
      const bool isNamed = dynamic_cast<KRFile*>(child) == nullptr;
      const unsigned number = count->all == 1 || !isNamed ? 0 : ++count->met;
      if (!Look({*child, &node, number, isNamed})) return false;
    }
    return true;
  }
  List<MissingTag> Take() { return std::move(m_missing); }

 private:
  // Only a file with a body of OFX must have headers.
  static bool IsChecked(const Node& node) {
    return node.isNamed || dynamic_cast<KRFileOFX*>(&node.object) != nullptr;
  }

  bool Describe(const Node& node) {
    List<MissedChoice> choices;
    if (!FindMissedChoices(node.object, choices)) return false;
    for (const MissedChoice& choice : choices) {
      if (choice.advice.IsEmpty() != 0) {
        for (const KRTagID tag : choice.tags) {
          if (!AddTag(node, tag)) return false;
        }
        continue;
      }
      MissingTag missing;
      for (const KRTagID tag : choice.tags) {
        if (!missing.choices.Append(tag)) return false;
      }
      missing.sentence = choice.advice;
      if (!Add(node, std::move(missing))) return false;
    }
    std::size_t count = 0;
    for (KRTagID tag = node.object.GetFirstMissingRequiredTag(KRTag_None);
         tag != KRTag_None && count < kMaxTags; ++count) {
      if (!IsChoice(choices, tag) && !AddTag(node, tag)) return false;
      tag = node.object.GetFirstMissingRequiredTag(tag);
    }
    return count != 0 || !choices.empty() || AddUnknown(node);
  }

  bool AddTag(const Node& node, KRTagID tag) {
    MissingTag missing;
    missing.tag = tag;
    missing.tagText = KRUtility::TagToString(tag);
    missing.sentence = "<";
    missing.sentence += missing.tagText;
    missing.sentence += "> is missing";
    return Add(node, std::move(missing));
  }

  // What is incomplete by a rule that is not in a table.
  bool AddUnknown(const Node& node) {
    MissingTag missing;
    if (!FindAlternatives(node.object, missing.choices)) return false;
    missing.sentence = "it is incomplete: a choice that must be made is not";
    if (!missing.choices.empty()) {
      missing.sentence += "; it lacks one or more of ";
      missing.sentence += ListedTags(missing.choices, ", ");
    }
    return Add(node, std::move(missing));
  }

  bool Add(const Node& node, MissingTag missing) {
    missing.path = PathOf(node);
    // What is found is named whole or not at all.
    return !m_memory.HasFailed() && m_missing.Append(std::move(missing));
  }

  const internal::AllocationWatch m_memory;
  List<MissingTag> m_missing;
};

}  // namespace

List<MissingTag> FindMissing(const KRDataObj& root) {
  // The questions that objects are asked change nothing, though some are not const.
  auto& object = const_cast<KRDataObj&>(root);
  MissingFinder finder;
  const bool isNamed = dynamic_cast<KRFile*>(&object) == nullptr;
  if (!finder.Look({object, nullptr, 0, isNamed})) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return finder.Take();
}

}  // namespace krofx
