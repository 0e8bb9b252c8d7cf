// What is done with tags that do not fit where they are, and with a text that ends early.

#include <algorithm>

#include "krofx/envelope/file.h"
#include "krofx/reader/structure/tree_reader.h"

namespace krofx::internal {

// Whether the aggregate at a depth still has its own end tag ahead, before that of an ancestor and
// before the next one of its kind begins: then what does not fit in it is in the wrong place,
// and it is not its end tag that is missing.
bool TreeReader::EndsInside(s16 depth, s16 ancestor, u32 position) {
  constexpr u32 kNone = TagPlaces::kNone;
  constexpr u32 kBeyond = TagPlaces::kBeyond;
  const std::string_view name = NameOf(m_levels[depth]);
  u32 end = kNone;
  u32 start = kNone;
  u32 outer = kNone;
  do {
    end = m_places.NextEnd(name, position);
    if (end == kNone) return false;
    start = m_places.NextStart(name, position);
    if (end > start) return false;
    if (ancestor != 0) outer = m_places.NextEnd(NameOf(m_levels[ancestor]), position);
  } while (end == kBeyond && outer >= kBeyond && (start == kBeyond || outer == kBeyond) &&
           LookFurther());
  return end < outer;
}

// Whether a tag that fits in the current aggregate, which has one already and whose end tag is
// missing, is that of an aggregate around it.
bool TreeReader::BelongsFurtherOut(const ScannedTag& tag, const TagRole& role) {
  const KRTagID id = tag.Id();
  const auto holds = [id](KRDataObj& object, const TagRole& its) {
    return its.role == Role::kElement ? object.ValidateTag(id) != 0
                                      : SingleChild(object, id, its.row) != nullptr;
  };
  if (GetDepth() < 2 || !holds(*GetCurrentObj(), role) || Current().implicit) return false;
  const auto around = static_cast<s16>(GetDepth() - 1);
  KRDataObj& parent = *m_levels[around].object;
  const TagRole its = RoleOf(parent, id);
  return its.role == role.role && !holds(parent, its) && !EndsInside(GetDepth(), around, tag.at);
}

bool TreeReader::TakeInAncestor(ScannedTag& tag, bool& taken) {
  const KRTagID id = tag.Id();
  for (s16 depth = static_cast<s16>(GetDepth() - 1); depth >= 0; --depth) {
    const TagRole role = RoleOf(*m_levels[depth].object, id);
    if (!Fits(role, tag)) continue;
    for (s16 open = GetDepth(); open > depth; --open) {
      const Level& level = m_levels[open];
      const bool sameAgain = level.object->GetType() == id;
      if (!sameAgain && IsRepeated(level.row) && !level.implicit &&
          EndsInside(open, depth, tag.at)) {
        return true;
      }
    }
    if (!CloseDownTo(depth, tag.at, false)) return false;
    taken = true;
    return Take(tag, role);
  }
  return true;
}

// Whether a tag fits into an aggregate that was closed, and is not there yet.
bool TreeReader::BelongsIn(const Level& closed, const ScannedTag& tag) {
  KRDataObj& object = *closed.object;
  const TagRole role = RoleOf(object, tag.Id());
  if (!Fits(role, tag)) return false;
  if (role.role != Role::kElement) return true;
  if (object.ValidateTag(tag.Id()) != 0) return false;
  // The first tag of a repeated aggregate begins a new one.
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  return !IsRepeated(closed.row) || table == nullptr ||
         std::any_of(table->rows, role.row,
                     [](const Row& row) { return row.value != nullptr || row.create != nullptr; });
}

// Goes back into what was closed last, when the tag belongs there: an end tag came too early, or is
// that of an aggregate further out.
bool TreeReader::EnterLast(const ScannedTag& tag, bool& entered) {
  s16 target = GetDepth();
  for (s16 depth = GetDepth(); depth < kMaxDepth; ++depth) {
    const Level& closed = m_levels[depth + 1];
    if (closed.object == nullptr || m_levels[depth].lastClosed != closed.object) break;
    if (BelongsIn(closed, tag)) target = static_cast<s16>(depth + 1);
  }
  while (GetDepth() < target) {
    const KRTagID type = m_levels[GetDepth() + 1].object->GetType();
    if (!Note(MendingKind::kEarlyEnd, tag.at, TagName(type))) return false;
    if (!EnterAgain()) return Stop(KRParseStatus_StackFull);
    entered = true;
  }
  return true;
}

// The aggregate that is missing in an object around a tag: the one that can hold it, or, when there
// are several or it is none of them alone, the one whose end tag comes next and has no start.
KRTagID TreeReader::MissingAggregate(KRDataObj& object, KRTagID tag, u32 position) {
  const KRTagID type = object.GetType();
  Answer& answer = m_answers[(type * 31 + tag) % kAnswers];
  if (answer.type != type || answer.tag != tag || answer.version != object.GetMsgSetVersion()) {
    answer = {type, tag, object.GetMsgSetVersion(), AggregateAround(object, tag)};
  }
  if (answer.around != KRTag_None) return answer.around;
  KRArrayOfTags tags;
  object.GetArrayOfValidTags(tags);
  KRTagID nearest = KRTag_None;
  u32 end = EndOfOpen(position);
  // What is not there yet cannot be compared.
  const auto isUnknown = [&end](u32 childEnd, u32 childStart) {
    return childEnd == TagPlaces::kBeyond && childStart >= TagPlaces::kBeyond &&
           end >= TagPlaces::kBeyond &&
           (end == TagPlaces::kBeyond || childStart == TagPlaces::kBeyond);
  };
  for (u16 index = 0; index < tags.count; ++index) {
    const KRTagID child = tags.table[index].tag;
    const std::string_view name = TagName(child);
    u32 childEnd = m_places.NextEnd(name, position);
    u32 childStart = m_places.NextStart(name, position);
    const auto isNearest = [&] { return childEnd < end && childEnd <= childStart; };
    if (!isNearest() && !isUnknown(childEnd, childStart)) continue;
    if (child == tag || RoleOf(object, child).role != Role::kAggregate) continue;
    while (isUnknown(childEnd, childStart) && LookFurther()) {
      if (end == TagPlaces::kBeyond) end = EndOfOpen(position);
      childEnd = m_places.NextEnd(name, position);
      childStart = m_places.NextStart(name, position);
    }
    if (!isNearest()) continue;
    nearest = child;
    end = childEnd;
  }
  return nearest;
}

bool TreeReader::TakeWithMissingStart(ScannedTag& tag, bool& taken) {
  const KRTagID id = tag.Id();
  for (s16 depth = GetDepth(); depth >= 0; --depth) {
    if (depth < GetDepth()) {
      // Only what could not have been closed otherwise may be left for it.
      const Level& level = m_levels[depth + 1];
      if (!level.implicit && EndsInside(static_cast<s16>(depth + 1), depth, tag.at)) return true;
    }
    KRTagID around = KRTag_None;
    bool entered = false;
    if (depth == GetDepth() && !EnterLast(tag, entered)) return false;
    if (!entered) {
      around = MissingAggregate(*m_levels[depth].object, id, tag.at);
      if (around == KRTag_None) continue;
      if (!CloseDownTo(depth, tag.at, false)) return false;
    }
    while (!Fits(RoleOf(*GetCurrentObj(), id), tag)) {
      if (around == KRTag_None) around = MissingAggregate(*GetCurrentObj(), id, tag.at);
      if (around == KRTag_None || GetDepth() >= kMaxDepth) return true;
      const Row* const row = RoleOf(*GetCurrentObj(), around).row;
      KRDataObj* const held = SingleChild(*GetCurrentObj(), around, row);
      if (!Note(held != nullptr ? MendingKind::kJoined : MendingKind::kMissingStart, tag.at,
                TagName(around))) {
        return false;
      }
      if (held == nullptr && !IsRepeated(row) && !GiveOwnWrapper(around, tag.at)) return false;
      m_openingImplicit = true;
      if (held != nullptr) {
        if (!Enter(held, row)) return Stop(KRParseStatus_StackFull);
      } else if (const KRParseStatus status = Open(around, row); status != KRParseStatus_Accepted) {
        return Stop(status);
      }
      around = KRTag_None;
    }
    taken = true;
    return Take(tag, RoleOf(*GetCurrentObj(), id));
  }
  return true;
}

// Where the first of the open aggregates ends.
u32 TreeReader::EndOfOpen(u32 position) {
  u32 end = TagPlaces::kNone;
  for (s16 depth = GetDepth(); depth > 0; --depth) {
    end = std::min(end, m_places.NextEnd(NameOf(m_levels[depth]), position));
  }
  return end;
}

// Moves past a tag with all that is in it, if it ends before what it is in.
void TreeReader::SkipTo(const ScannedTag& tag) {
  m_endsSilently = tag.name;
  if (!tag.text.IsEmpty() || tag.selfClosed) return;
  u32 end = TagPlaces::kNone;
  u32 outer = TagPlaces::kNone;
  do {
    end = m_places.NextEnd(tag.name, tag.after);
    outer = EndOfOpen(tag.after);
  } while (end == TagPlaces::kBeyond && outer >= TagPlaces::kBeyond && LookFurther());
  if (m_isLost || end == TagPlaces::kNone || end > outer) return;
  m_scanner.GoTo(m_places.AfterNextEnd(tag.name, tag.after));
  m_endsSilently = {};
}

bool TreeReader::SkipUnknown(const ScannedTag& tag) {
  const MendingKind kind = tag.name.find('.') != std::string_view::npos ? MendingKind::kPrivateTag
                           : m_xml                                      ? MendingKind::kLaterTag
                                                                        : MendingKind::kUnknownTag;
  if (!Note(kind, tag.at, tag.name, Shown(tag.text))) return false;
  SkipTo(tag);
  return true;
}

bool TreeReader::SkipMisplaced(const ScannedTag& tag) {
  if (!Note(MendingKind::kMisplaced, tag.at, tag.Name(), Shown(tag.text))) return false;
  SkipTo(tag);
  return true;
}

bool TreeReader::EndText(u32 position) {
  m_ended = true;
  if (GetDepth() == 0 || (GetDepth() == 1 && m_levels[1].implicit))
    return CloseDownTo(0, position, true);
  if (!DropIncomplete(position)) return false;
  const bool open = !std::all_of(m_levels + 1, m_levels + GetDepth() + 1,
                                 [](const Level& level) { return level.implicit; });
  if (open && !Note(MendingKind::kCutOff, position, TagName(GetCurrentObj()->GetType()))) {
    return false;
  }
  return CloseDownTo(0, position, true);
}

namespace {

// Whether an aggregate lacks so much that it cannot be whole: something that the one before it has,
// or, when it is the first, two of the tags that are required.
bool IsCut(KRDataObj& object, const KRDataObj* before) {
  int missing = 0;
  for (KRTagID tag = object.GetFirstMissingRequiredTag(KRTag_None); tag != KRTag_None;
       tag = object.GetFirstMissingRequiredTag(tag)) {
    if (before != nullptr && before->ValidateTag(tag) != 0) return true;
    ++missing;
  }
  return before == nullptr && missing >= 2;
}

}  // namespace

// Takes the last of several aggregates out when the end of the text has cut it.
bool TreeReader::DropIncomplete(u32 position) {
  for (s16 depth = GetDepth(); depth > 1; --depth) {
    Level& level = m_levels[depth];
    if (!IsRepeated(level.row) || level.object->AllRequiredPresent() != 0) continue;
    KRDataObj& parent = *m_levels[depth - 1].object;
    void* const array = level.row->member(parent);
    const u16 entries = level.row->array->entries(array);
    const KRDataObj* const before =
        entries >= 2           ? level.row->array->get(array, static_cast<u16>(entries - 2))
        : m_watcher != nullptr ? m_watcher->TakenBefore(depth, array)
                               : nullptr;
    if (!IsCut(*level.object, before)) continue;
    if (!CloseDownTo(depth, position, true)) return false;
    if (!Note(MendingKind::kIncomplete, position, TagName(level.object->GetType()))) return false;
    const Row* const row = level.row;
    PopObject();
    m_levels[depth - 1].lastClosed = nullptr;
    m_deepest = static_cast<s16>(depth - 1);
    if (m_watcher != nullptr) m_watcher->OnDeleted(*level.object);
    row->array->truncate(array, static_cast<u16>(entries - 1));
  }
  return true;
}

}  // namespace krofx::internal
