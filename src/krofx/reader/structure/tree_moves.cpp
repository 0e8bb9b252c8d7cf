// What is done with answers that are in the wrong message set, and with accounts of the wrong kind.
//
// One class serves every message set, and one every wrapper of a side: the type of the object says
// what it is. So a message set or a wrapper that holds nothing yet becomes the one that its content
// belongs to. Beside what it holds already, the content gets a place of its own.

#include <algorithm>

#include "krofx/envelope/envelope.h"
#include "krofx/envelope/message_set.h"
#include "krofx/messages/signon/status.h"
#include "krofx/reader/structure/tree_reader.h"

namespace krofx::internal {

namespace {

u16 CountChildren(KRDataObj& object) {
  u16 count = 0;
  for (u16 index = 0; index < object.GetNumberOfChildren() && count < 2; ++index) {
    if (object.GetChild(index) != nullptr) ++count;
  }
  return count;
}

bool IsWrapper(const KRDataObj& object) {
  return dynamic_cast<const KRTransRs*>(&object) != nullptr ||
         dynamic_cast<const KRTransRq*>(&object) != nullptr;
}

bool HasPayload(KRDataObj& wrapper) {
  const auto* const response = dynamic_cast<KRTransRs*>(&wrapper);
  const auto* const request = dynamic_cast<KRTransRq*>(&wrapper);
  return (response != nullptr && response->GetActualTrans() != nullptr) ||
         (request != nullptr && request->GetActualTrans() != nullptr);
}

}  // namespace

// A wrapper holds one payload. A second one is an answer of its own, whose wrapper was left out.
bool TreeReader::GiveOwnWrapper(KRTagID id, u32 position) {
  KRDataObj& wrapper = *GetCurrentObj();
  if (GetDepth() < 2 || id == KRTag_STATUS || !HasPayload(wrapper)) return true;
  if (!Note(MendingKind::kOwnWrapper, position, TagName(id))) return false;
  const Row* const row = Current().row;
  PopObject();
  const KRParseStatus status = OpenLike(wrapper, wrapper.GetType(), row);
  return status == KRParseStatus_Accepted || Stop(status);
}

// Opens a wrapper that identifies itself as another does.
KRParseStatus TreeReader::OpenLike(KRDataObj& wrapper, KRTagID type, const Row* row) {
  const KRParseStatus status = Open(type, row);
  if (status != KRParseStatus_Accepted) return status;
  auto* const response = dynamic_cast<KRTransRs*>(&wrapper);
  if (auto* const made = dynamic_cast<KRTransRs*>(GetCurrentObj());
      made != nullptr && response != nullptr) {
    made->SetTransUserID(response->GetTransUserID());
    ChildSlot copy;
    if (CopyChild(copy, response->GetStatus()) == 0) return KRParseStatus_Fatal;
    if (copy.Get() != nullptr) made->SetStatus(static_cast<KRStatus*>(copy.Release()));
  }
  auto* const request = dynamic_cast<KRTransRq*>(&wrapper);
  if (auto* const made = dynamic_cast<KRTransRq*>(GetCurrentObj());
      made != nullptr && request != nullptr) {
    made->SetTransUserID(request->GetTransUserID());
  }
  // What is wrong with an identifier was said where the text has it.
  m_log->DeleteAll();
  return KRParseStatus_Accepted;
}

// Makes a message set or a wrapper one of another type.
void TreeReader::Rename(s16 depth, KRTagID type) {
  Level& level = m_levels[depth];
  KRDataObj& parent = *m_levels[depth - 1].object;
  const KRTagID before = level.object->GetType();
  if (level.written == KRTag_None) level.written = before;
  level.object->SetType(type);
  // The first of its tag is the only one as long as it is open.
  if (level.first && parent.IsValidTag(before) != 0) parent.ClearTag(before);
  level.first = parent.ValidateTag(type) == 0;
  parent.SetTag(type);
}

// Closes what is open down to a depth, whose end tags may still come.
void TreeReader::Leave(s16 depth) {
  while (GetDepth() > depth) {
    const Level& level = Current();
    const KRTagID tag = level.written != KRTag_None ? level.written : level.object->GetType();
    if (!level.implicit && m_leftCount < kMaxDepth) m_left[m_leftCount++] = tag;
    PopObject();
  }
}

// Passes over the end tag of an aggregate that was left, and closes what was opened in its stead.
bool TreeReader::PassLeft(KRTagID tag, u32 position, bool& passed) {
  KRTagID* const end = m_left + m_leftCount;
  KRTagID* const found = std::find(m_left, end, tag);
  if (found == end) return true;
  passed = true;
  std::copy(found + 1, end, found);
  --m_leftCount;
  s16 depth = GetDepth();
  while (depth > 0 && !m_levels[depth].implicit) --depth;
  return depth == 0 || CloseDownTo(static_cast<s16>(depth - 1), position, false);
}

// Opens a message set in a request or response, or goes on in the one that is there.
bool TreeReader::OpenSet(const ScannedTag& tag, s16 body, KRTagID set) {
  Leave(body);
  m_openingImplicit = true;
  if (KRDataObj* const held = SingleChild(*GetCurrentObj(), set, nullptr)) {
    return Enter(held, nullptr) || Stop(KRParseStatus_StackFull);
  }
  const KRParseStatus status = Open(set, nullptr);
  SayWarnings(tag.at, false);
  return status == KRParseStatus_Accepted || Stop(status);
}

bool TreeReader::TakeWrapperElsewhere(const ScannedTag& tag, s16 body, const Home& home) {
  const auto inSet = static_cast<s16>(body + 1);
  if (!CloseDownTo(inSet, tag.at, false)) return false;
  const bool held = m_levels[body].object->ValidateTag(home.set) != 0;
  if (held || CountChildren(*m_levels[inSet].object) != 0) return OpenSet(tag, body, home.set);
  Rename(inSet, home.set);
  return true;
}

bool TreeReader::TakePayloadElsewhere(const ScannedTag& tag, s16 body, const Home& home) {
  const auto inSet = static_cast<s16>(body + 1);
  const auto inWrapper = static_cast<s16>(body + 2);
  // A sign-on or a synchronisation cannot become a wrapper.
  if (GetDepth() < inWrapper || !IsWrapper(*m_levels[inWrapper].object)) {
    if (!TakeWrapperElsewhere(tag, body, home)) return false;
    m_openingImplicit = true;
    const KRParseStatus status = Open(home.wrapper, nullptr);
    return status == KRParseStatus_Accepted || Stop(status);
  }
  if (!CloseDownTo(inWrapper, tag.at, false)) return false;
  KRDataObj& set = *m_levels[inSet].object;
  KRDataObj& wrapper = *m_levels[inWrapper].object;
  const bool inPlace = set.GetType() == home.set;
  const bool alone = CountChildren(set) == 1 && m_levels[body].object->ValidateTag(home.set) == 0;
  if (!HasPayload(wrapper) && (inPlace || alone)) {
    if (!inPlace) {
      // Which tags a set has depends on what it is.
      set.ClearTag(wrapper.GetType());
      Rename(inSet, home.set);
    }
    Rename(inWrapper, home.wrapper);
    return true;
  }
  if (!OpenSet(tag, body, home.set)) return false;
  m_openingImplicit = true;
  const KRParseStatus status = OpenLike(wrapper, home.wrapper, nullptr);
  return status == KRParseStatus_Accepted || Stop(status);
}

// Puts an answer, or a part of one, that is in the wrong message set where it belongs.
bool TreeReader::TakeElsewhere(ScannedTag& tag, bool& taken) {
  constexpr s16 kBody = 1;
  if (GetDepth() <= kBody) return true;
  const u16 version = m_levels[kBody + 1].object->GetMsgSetVersion();
  const Home home = HomeOf(*m_levels[kBody].object, tag.Id(), version);
  if (home.set == KRTag_None) return true;
  if (!Note(MendingKind::kMoved, tag.at, tag.Name(), NameOf(m_levels[kBody + 1]),
            TagName(home.set))) {
    return false;
  }
  taken = true;
  const bool open = home.wrapper == KRTag_None ? TakeWrapperElsewhere(tag, kBody, home)
                                               : TakePayloadElsewhere(tag, kBody, home);
  if (!open) return false;
  const TagRole role = RoleOf(*GetCurrentObj(), tag.Id());
  return Fits(role, tag) ? Take(tag, role) : SkipMisplaced(tag);
}

// Takes an account of a kind that the current object does not have as the kind that it has.
bool TreeReader::TakeAsOtherAccount(ScannedTag& tag) {
  KRDataObj& object = *GetCurrentObj();
  if (!IsAccount(tag.Id()) || RoleOf(object, tag.Id()).role != Role::kNone) return true;
  const KRTagID account = AccountInPlaceOf(object, tag.Id());
  if (account == KRTag_None) return true;
  if (!Note(MendingKind::kAccountKind, tag.at, tag.Name(), tag.Name(), TagName(account))) {
    return false;
  }
  m_openingWritten = tag.Id();
  KRTagID found;
  const std::string_view name = TagName(account);
  tag.entry =
      m_dictionary.GetTagID(name.data(), static_cast<u16>(name.size()), &found, KRCaseType_Exact);
  return true;
}

}  // namespace krofx::internal
