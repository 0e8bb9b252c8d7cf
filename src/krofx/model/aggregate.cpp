// The walks over an aggregate's table. See aggregate.h for the whole picture.

#include "krofx/model/internal/aggregate.h"

#include "krofx/build/builder.h"
#include "krofx/core/internal/held_warnings.h"
#include "krofx/core/thread.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/repeated_figures.h"
#include "krofx/model/internal/required_bits.h"
#include "krofx/model/internal/row_access.h"

namespace krofx::internal {

namespace {

template <class Visit>
void ForEachChildMember(const KRDataObj& object, const AggregateTable& table, u8 first,
                        Visit visit) {
  for (u8 i = first; i < table.childRowCount; ++i) {
    const Row& row = table.rows[table.childRows[i]];
    visit(row, MemberOfConst(row, object));
  }
}

u16 EntriesOf(const Row& row, const void* member) {
  return IsArray(row) ? row.array->entries(member) : static_cast<u16>(1);
}

u8 CountPresent(const Presence& presence, const KRTagID* tags, u8 count) {
  u8 present = 0;
  for (u8 i = 0; i < count; ++i) {
    if (presence.Has(tags[i])) ++present;
  }
  return present;
}

bool Holds(const Presence& presence, const Rule& rule) {
  const u8 conditions = rule.condition == RuleCondition::kAlways
                            ? u8{0}
                            : CountPresent(presence, rule.conditionTags, rule.conditionCount);
  return RuleHolds(rule, conditions, CountPresent(presence, rule.tags, rule.count));
}

// SetTag, without a second search for the tag when the row's position is that of the bit.
void Note(KRDataObj& object, const AggregateTable& table, const Row& row, KRTagID tag) {
  const auto position = static_cast<u16>(&row - table.rows);
  if (position < table.valid.count && UsesOwnTable(object, table) &&
      (table.valid.table[position].versions & object.GetMsgSetVersion()) != 0) {
    if (ObjectAccess::BitAt(object, position) && IsFigure(*row.value)) ++RepeatedFigures();
    ObjectAccess::SetBitAt(object, position);
  } else {
    if (IsFigure(*row.value) && object.ValidateTag(tag) != 0) ++RepeatedFigures();
    object.SetTag(tag);
  }
}

}  // namespace

std::size_t& RepeatedFigures() {
  static thread_local std::size_t count = 0;
  return count;
}

bool RuleHolds(const Rule& rule, int conditions, int present) {
  if (rule.condition != RuleCondition::kAlways) {
    const bool any = conditions != 0;
    if (any != (rule.condition == RuleCondition::kWhenAny)) return true;
  }
  switch (rule.kind) {
    case RuleKind::kNone:
      return present == 0;
    case RuleKind::kAtMostOne:
      return present <= 1;
    case RuleKind::kExactlyOne:
      return present == 1;
    case RuleKind::kAtLeastOne:
      return present >= 1;
    case RuleKind::kAll:
      return present == rule.count;
    case RuleKind::kExclusiveOr:
      return present % 2 == 1;
  }
  return false;
}

Presence::Presence(const KRDataObj& object)
    : m_object(object), m_version(object.GetMsgSetVersion()) {
  if (object.GetArrayOfValidTags(m_valid) == 0) m_valid = KRArrayOfTags();
}

bool Presence::Has(KRTagID tag) const {
  const int position = FindTagRow(m_valid, tag, m_version);
  return position >= 0 && position < PresenceBits::kCount &&
         ObjectAccess::BitAt(m_object, position);
}

KRDataObj* CreateElement(CreateChild create) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : create(*factory);
}

const Row* FindRow(const AggregateTable& table, KRTagID tag) {
  const int position = table.valid.index != nullptr ? table.valid.index->Find(tag)
                                                    : FindTagRow(table.valid, tag, 0xffff);
  if (position >= 0) return &table.rows[position];
  for (u8 i = 0; i < table.unlistedCount; ++i) {
    if (table.unlistedTags[i] == tag) return &table.rows[table.valid.count + i];
  }
  return nullptr;
}

namespace {

// Stores a text into a row's member.
StoreResult Read(KRDataObj& object, const Row& row, KRTagID tag, const KRString& text) {
  if (!row.warnsOnce) return row.value->fromText(object, tag, row.member(object), text);
  HeldWarnings warnings;
  const StoreResult result = row.value->fromText(object, tag, row.member(object), text);
  if (result == StoreResult::kBadFormat) warnings.Drop();
  return result;
}

}  // namespace

KRParseStatus HandleElement(KRDataObj& object, const AggregateTable& table,
                            const KRTagDictionaryEntry& entry, const KRString& text) {
  const Row* row = FindRow(table, entry.tagID);
  if (row == nullptr || row->value == nullptr) return KRParseStatus_Invalid;
  switch (Read(object, *row, entry.tagID, text)) {
    case StoreResult::kStored:
      Note(object, table, *row, entry.tagID);
      return KRParseStatus_Accepted;
    case StoreResult::kNoText:
      return KRParseStatus_Accepted;
    case StoreResult::kNoValue:
      return KRParseStatus_Invalid;
    case StoreResult::kBadFormat:
      LogWarning(KRPW_BADFORMAT, text, KRString(), entry.tagID, &object);
      return row->lenient ? KRParseStatus_Accepted : KRParseStatus_Invalid;
    case StoreResult::kCannotStore:
      LogWarning(KRPW_NULLPOINTER, text, KRString(), entry.tagID, &object);
      return KRParseStatus_Fatal;
  }
  return KRParseStatus_Invalid;
}

KRParseStatus MakeChild(KRDataObj& object, const Row& row, KRTagID tag, KRDataObj*& child) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  if (factory == nullptr) return KRParseStatus_Fatal;
  void* const member = row.member(object);
  auto* const slot = IsArray(row) ? nullptr : static_cast<ChildSlot*>(member);
  if (slot != nullptr && slot->Get() != nullptr) {
    LogWarning(KRPW_EXTRAAGG, KRString(), KRString(), tag, &object);
    slot->Set(nullptr);
  }
  child = row.create(*factory);
  if (child == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return KRParseStatus_Fatal;
  }
  if (slot != nullptr) {
    slot->Set(child);
  } else if (const u16 entries = row.array->entries(member);
             row.array->set(member, entries, child) == 0) {
    // Otherwise the array holds as many entries as 16 bits can count.
    if (entries <= SlotBlock::kMaxIndex) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    delete child;
    return KRParseStatus_Fatal;
  }
  return KRParseStatus_Accepted;
}

KRParseStatus HandleStart(KRDataObj& object, const AggregateTable& table,
                          const KRTagDictionaryEntry& entry) {
  const Row* row = FindRow(table, entry.tagID);
  if (row == nullptr || row->create == nullptr) return KRParseStatus_Invalid;
  KRDataObj* child = nullptr;
  const KRParseStatus status = MakeChild(object, *row, entry.tagID, child);
  return status == KRParseStatus_Accepted ? object.PushAndSetObject(child, entry.tagID) : status;
}

bool RuleHolds(const Presence& presence, const Rule& rule) { return Holds(presence, rule); }

u16 RulesHold(const Presence& presence, const AggregateTable& table) {
  for (u8 i = 0; i < table.ruleCount; ++i) {
    if (!Holds(presence, table.rules[i])) return 0;
  }
  return 1;
}

KRTagID MissingTagOf(const Presence& presence, const Rule& rule) {
  if (!rule.reported || Holds(presence, rule)) return KRTag_None;
  for (u8 i = 0; i < rule.count; ++i) {
    if (!presence.Has(rule.tags[i])) return rule.tags[i];
  }
  return rule.tags[0];
}

void PassVersionDown(KRDataObj& object, const AggregateTable& table, u16 version) {
  const auto pass = [version](const ChildSlot& slot) {
    if (KRDataObj* child = slot.Get()) child->SetMsgSetVersion(version);
  };
  LeadingSlots leading;
  if (table.leadingSlots != 0) table.slots(object, leading);
  for (u8 i = 0; i < table.leadingSlots; ++i) pass(*leading[i]);
  ForEachChildMember(object, table, table.leadingSlots,
                     [version, pass](const Row& row, void* member) {
                       if (!IsArray(row)) return pass(*static_cast<ChildSlot*>(member));
                       const u16 entries = row.array->entries(member);
                       for (u16 index = 0; index < entries; ++index) {
                         if (KRDataObj* child = row.array->get(member, index))
                           child->SetMsgSetVersion(version);
                       }
                     });
}

KRDataObj* ChildAt(const KRDataObj& object, const AggregateTable& table, u16 index) {
  if (index < table.leadingSlots) return SlotOf(table.rows[table.childRows[index]], object).Get();
  for (u8 i = 0; i < table.childRowCount; ++i) {
    const Row& row = table.rows[table.childRows[i]];
    const void* member = MemberOfConst(row, object);
    const u16 entries = EntriesOf(row, member);
    if (index < entries) {
      return IsArray(row) ? row.array->get(member, index)
                          : static_cast<const ChildSlot*>(member)->Get();
    }
    index = static_cast<u16>(index - entries);
  }
  return nullptr;
}

u16 CountChildren(const KRDataObj& object, const AggregateTable& table) {
  u32 count = table.leadingSlots;
  ForEachChildMember(
      object, table, table.leadingSlots,
      [&count](const Row& row, const void* member) { count += EntriesOf(row, member); });
  return static_cast<u16>(count < 0xffff ? count : 0xffff);
}

void NoteFailure(KRBuilder& builder, const KRDataObj& object) {
  if (builder.GetFailingObject() == nullptr) {
    builder.SetFailingObject(const_cast<KRDataObj*>(&object));
  }
}

namespace {

// Converts a text for a setter; a bad one gives one warning where its row says so.
StoreResult Convert(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* member,
                    const KRString& text) {
  const AggregateTable* table = ObjectAccess::TableOf(object);
  const Row* row = table == nullptr ? nullptr : FindRow(*table, tag);
  if (row == nullptr || !row->warnsOnce || row->value != &kind) {
    return kind.fromText(object, tag, member, text);
  }
  const StoreResult result = Read(object, *row, tag, text);
  if (result == StoreResult::kBadFormat) {
    LogWarning(KRPW_BADFORMAT, text, KRString(), tag, &object);
  }
  return result;
}

// The result of a setter that stored a text; `noted` is it when the member took the value.
template <class Note>
u16 ResultOf(StoreResult stored, KRDataObj& object, KRTagID tag, const KRString& text, Note noted) {
  switch (stored) {
    case StoreResult::kStored:
      return noted();
    case StoreResult::kNoText:
      return 3;
    case StoreResult::kNoValue:
    case StoreResult::kBadFormat:
      return 0;
    case StoreResult::kCannotStore:
      LogWarning(KRPW_NULLPOINTER, text, KRString(), tag, &object);
      return 0;
  }
  return 0;
}

}  // namespace

u16 SetFromText(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* member,
                const KRString& text) {
  return ResultOf(Convert(object, tag, kind, member, text), object, tag, text,
                  [&] { return object.SetTag(tag); });
}

u16 AppendFromText(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* array,
                   const KRString& text) {
  return ResultOf(Convert(object, tag, kind, array, text), object, tag, text, [&] {
    object.SetTag(tag);
    return u16{1};
  });
}

u16 NoteValue(KRDataObj& object, u16 stored, KRTagID tag) {
  if (stored != 0) return object.SetTag(tag);
  LogWarning(KRPW_NULLPOINTER, KRString(), KRString(), tag, &object);
  return 0;
}

u16 SetChild(KRDataObj& object, ChildSlot& slot, KRTagID tag, KRDataObj* child) {
  slot.Set(child);
  if (child == nullptr) object.ClearTag(tag);
  return object.SetTag(tag);
}

namespace {

// Calls `visit(tag)` for each tag that fills the slot.
template <class Visit>
void ForEachTagOf(KRDataObj& object, const ChildSlot& slot, Visit visit) {
  const AggregateTable* table = ObjectAccess::TableOf(object);
  if (table == nullptr) return;
  for (u16 position = 0; position < table->valid.count; ++position) {
    const Row& row = table->rows[position];
    if (row.shared && row.member(object) == &slot) visit(table->valid.table[position].tag);
  }
}

// The tag that setting a slot without a child to null is about; 0 when it could be several.
KRTagID TagOfEmpty(KRDataObj& object, const ChildSlot& slot) {
  KRTagID present = KRTag_None;
  KRTagID valid = KRTag_None;
  u16 validTags = 0;
  ForEachTagOf(object, slot, [&](KRTagID tag) {
    if (object.ValidateTag(tag) != 0 && present == KRTag_None) present = tag;
    if (object.IsValidTag(tag) == 0) return;
    valid = tag;
    ++validTags;
  });
  if (present != KRTag_None) return present;
  return validTags == 1 ? valid : KRTag_None;
}

}  // namespace

u16 SetSharedChild(KRDataObj& object, ChildSlot& slot, KRDataObj* child) {
  KRDataObj* named = child != nullptr ? child : slot.Get();
  const KRTagID tag = named != nullptr ? named->GetType() : TagOfEmpty(object, slot);
  bool fills = child == nullptr || ObjectAccess::TableOf(object) == nullptr;
  ForEachTagOf(object, slot, [&](KRTagID each) {
    fills = fills || (each == tag && object.IsValidTag(tag) != 0);
  });
  if (tag != KRTag_None && fills) return SetChild(object, slot, tag, child);
  slot.Set(child);
  if (child == nullptr) return 0;
  // It is written under no tag: one that stayed present would make the object seem complete.
  ForEachTagOf(object, slot, [&](KRTagID each) {
    if (object.ValidateTag(each) != 0) object.ClearTag(each);
  });
  return 0;
}

u16 ClearSharedChild(KRDataObj& object, ChildSlot& slot) {
  u16 cleared = 0;
  KRTagID first = KRTag_None;
  ForEachTagOf(object, slot, [&](KRTagID tag) {
    if (first == KRTag_None) first = tag;
    if (object.IsValidTag(tag) != 0) cleared |= object.ClearTag(tag);
  });
  return cleared != 0 || first == KRTag_None ? cleared : object.ClearTag(first);
}

bool BelongsElsewhere(const KRDataObj& object, const void* array, KRDataObj* child) {
  const AggregateTable* table = ObjectAccess::TableOf(object);
  if (table == nullptr || child == nullptr || child->GetType() == KRTag_None) return false;
  const Row* row = FindRow(*table, child->GetType());
  if (row != nullptr) return row->member != nullptr && MemberOfConst(*row, object) != array;
  // A child of no row is only kept, if its class is one that the array is for.
  const AggregateTable* own = ObjectAccess::TableOf(*child);
  if (own == nullptr || own->create == nullptr) return false;
  bool hasRows = false;
  for (u16 position = 0; position < table->valid.count; ++position) {
    const Row& other = table->rows[position];
    if (other.create == nullptr || MemberOfConst(other, object) != array) continue;
    if (other.create == own->create) return false;
    hasRows = true;
  }
  return hasRows;
}

}  // namespace krofx::internal
