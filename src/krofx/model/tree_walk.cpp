// The helpers of KRUtility that walk object trees: what is missing in a tree, the repair of one
// processor's invoices, and the search in an array of objects.

#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/child_walk.h"
#include "krofx/model/internal/missing_search.h"
#include "krofx/model/internal/presence_demand.h"
#include "krofx/model/internal/row_access.h"
#include "krofx/model/value_arrays.h"
#include "krofx/model/value_kinds.h"
#include "krofx/values/utility.h"

using krofx::internal::AggregateTable;
using krofx::internal::DemandOf;
using krofx::internal::FindRow;
using krofx::internal::FindUnmetRule;
using krofx::internal::ForEachChild;
using krofx::internal::IsMetByCondition;
using krofx::internal::kFixedText;
using krofx::internal::kNumber;
using krofx::internal::MissingSearch;
using krofx::internal::ObjectAccess;
using krofx::internal::Presence;
using krofx::internal::Row;
using krofx::internal::Rule;
using krofx::internal::RuleCondition;
using krofx::internal::RuleHolds;
using krofx::internal::RuleKind;
using krofx::internal::StoredNumber;
using krofx::internal::StoredText;
using krofx::internal::ValueKind;

namespace {

// See MissingSearch::Find.
KRDataObj* FindIncomplete(KRDataObj& object) { return MissingSearch().Find(object); }

// The value of a tag, whether it is noted as present or not; null when the tag has no value of this
// kind in the object's class.
template <class Member>
const Member* ValueBehind(KRDataObj& object, KRTagID tag, const ValueKind& kind) {
  const AggregateTable* table = ObjectAccess::TableOf(object);
  const Row* row = table == nullptr ? nullptr : FindRow(*table, tag);
  if (row == nullptr || row->value != &kind) return nullptr;
  return static_cast<const Member*>(row->member(object));
}

// Gives a text to an element of class `Text` that has none.
template <class Text>
void FillIn(KRDataObj& object, KRTagDictionaryEntry entry, const char* text) {
  const auto* held = ValueBehind<StoredText<Text>>(object, entry.tagID, kFixedText<Text>);
  const bool empty =
      held != nullptr ? held->Get().IsEmpty() != 0 : !object.ValidateTag(entry.tagID);
  if (empty) object.HandleTagElement(&entry, KRString(text));
}

// A rate that was never set is a valid 0; one that a host set may be out of range.
void MendRate(KRDataObj& object) {
  const KRTagDictionaryEntry entry{KRTag_DSCRATE, "DSCRATE"};
  const auto* rate = ValueBehind<StoredNumber<KRPercent>>(
      object, entry.tagID, kNumber<KRPercent, &KRBuilder::AddTagKRRate>);
  if (rate != nullptr && !static_cast<KRPercent>(*rate).IsValid())
    object.HandleTagElement(&entry, KRString("0.0"));
}

void Patch(KRDataObj& object) {
  if (!object.AllRequiredPresent()) {
    if (object.GetType() == KRTag_INVOICE) {
      FillIn<KRString80>(object, {KRTag_INVDESC, "INVDESC"}, "An invoice");
      FillIn<KRString32>(object, {KRTag_INVNO, "INVNO"}, "0");
    } else if (object.GetType() == KRTag_DISCOUNT) {
      FillIn<KRString80>(object, {KRTag_DSCDESC, "DSCDESC"}, "Discount applied");
      MendRate(object);
    }
  }
  ForEachChild(object, [](KRDataObj& child) {
    Patch(child);
    return true;
  });
}

}  // namespace

u16 krofx::internal::FindUnmetRule(const KRDataObj& object, const Rule* rules, u16 count, u16 index,
                                   KRUnmetRule& found) {
  const Presence presence(object);
  for (const Rule* rule = rules; rule != rules + count; ++rule) {
    if (RuleHolds(presence, *rule) || index-- != 0) continue;
    u16 present = 0;
    for (u8 tag = 0; tag < rule->count; ++tag) {
      if (presence.Has(rule->tags[tag])) ++present;
    }
    found = {DemandOf(rule->kind), rule->tags, rule->count, present};
    if (IsMetByCondition(*rule)) {
      found.count = static_cast<u16>(found.count + rule->conditionCount);
    }
    return 1;
  }
  return 0;
}

u16 KRUtility::AllRequiredPresent(KRDataObj** object, KRTagID* missing) {
  if (missing != nullptr) *missing = KRTag_None;
  if (object == nullptr || *object == nullptr) return 0;
  KRDataObj* const found = FindIncomplete(**object);
  if (found == nullptr) return 1;
  if (found != *object) {
    *object = found;
    if (missing != nullptr) *missing = found->GetFirstMissingRequiredTag(KRTag_None);
  }
  return 0;
}

KRTagID KRUtility::GetNextMissingRequiredTag(KRDataObj* object, KRDataObj** holder, KRTagID after) {
  KRDataObj* found = nullptr;
  KRTagID tag = KRTag_None;
  if (object != nullptr) {
    if (!object->AllRequiredPresent()) tag = object->GetFirstMissingRequiredTag(after);
    if (tag != KRTag_None) {
      found = object;
    } else {
      ForEachChild(*object, [&](KRDataObj& child) {
        if (FindIncomplete(child) != nullptr)
          tag = GetNextMissingRequiredTag(&child, &found, after);
        return tag == KRTag_None;
      });
    }
  }
  if (holder != nullptr) *holder = found;
  return tag;
}

u16 KRUtility::GetUnmetRule(const KRDataObj* object, u16 index, KRUnmetRule& rule) {
  const AggregateTable* table = object == nullptr ? nullptr : ObjectAccess::TableOf(*object);
  if (table == nullptr) return 0;
  if (table->unmetRule != nullptr) return table->unmetRule(*object, index, rule);
  return FindUnmetRule(*object, table->rules, table->ruleCount, index, rule);
}

u16 KRUtility::PatchCheckFreeOFX(KRDataObj** object, KRTagID* missing) {
  if (missing != nullptr) *missing = KRTag_None;
  if (object == nullptr || *object == nullptr) return 0;
  Patch(**object);
  return 1;
}

KRString KRUtility::ObjectToString(KRDataObj* object) {
  return object == nullptr ? KRString("OBJECT NULL") : TagToString(object->GetType());
}

u16 KRUtility::Find(const KRDynamicArrayDataObj* array, KRTagID tag, u16 start) {
  if (array == nullptr) return 0;
  const u32 entries = array->Entries();
  for (u32 position = start == 0 ? 1 : start; position <= entries; ++position) {
    KRDataObj* element = array->Get(static_cast<u16>(position - 1));
    if (element == nullptr) return 0;
    if (element->GetType() == tag) return static_cast<u16>(position);
  }
  return 0;
}
