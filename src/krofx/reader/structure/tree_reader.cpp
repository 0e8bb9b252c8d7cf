// The walk over the tags of a text, and what is done with those that fit.

#include "krofx/reader/structure/tree_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/internal/passwords.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/model/value_kinds.h"
#include "krofx/reader/characters/charset.h"
#include "krofx/values/data_conversion.h"
#include "krofx/values/internal/keyword_table.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

TreeReader::TreeReader(const WorkingText& text, TagDictionary& dictionary, const Charset& charset,
                       bool xml, Recorder& recorder)
    : m_text(text),
      m_dictionary(dictionary),
      m_charset(charset),
      m_xml(xml),
      m_recorder(recorder),
      m_scanner(text.Bytes(), dictionary, xml),
      m_places(m_scanner),
      m_feed(text.Bytes(), dictionary),
      m_survey(text.Bytes(), dictionary, charset) {}

// Levels

u16 TreeReader::PushObject(KRDataObj* object) {
  if (KRParser::PushObject(object) == 0) return 0;
  Level& level = Current();
  level.Begin(object, m_openingRow, m_openingImplicit, m_openingFirst, m_openingWritten);
  m_openingWritten = KRTag_None;
  Level& parent = m_levels[GetDepth() - 1];
  if (Sibling* const sibling = FindSibling(parent, object->GetType())) {
    level.number = ++sibling->count;
    if (sibling->count > 1 && sibling->first != PathLog::kNoPath) m_paths.NotAlone(sibling->first);
  }
  m_deepest = GetDepth();
  if (m_watcher != nullptr) m_watcher->OnOpened(GetDepth(), *object, level.number, m_at);
  return 1;
}

u16 TreeReader::PopObject() {
  if (GetDepth() < 1) return 0;
  const Level& level = Current();
  Level& parent = m_levels[GetDepth() - 1];
  parent.lastClosed = level.object;
  parent.lastClosedRow = level.row;
  return KRParser::PopObject();
}

TreeReader::Sibling* TreeReader::FindSibling(Level& level, KRTagID tag) {
  for (u8 index = 0; index < level.siblingCount; ++index) {
    if (level.siblings[index].tag == tag) return &level.siblings[index];
  }
  if (level.siblingCount == kMostSiblings) return nullptr;
  level.siblings[level.siblingCount] = {tag, 0, PathLog::kNoPath};
  return &level.siblings[level.siblingCount++];
}

s32 TreeReader::NodeOf(s16 depth) {
  if (depth < 1) return PathLog::kNoPath;
  Level& level = m_levels[depth];
  if (level.node != PathLog::kNoPath) return level.node;
  const KRTagID type = level.object->GetType();
  level.node = m_paths.Add(NodeOf(static_cast<s16>(depth - 1)), type, level.number);
  Sibling* const sibling = FindSibling(m_levels[depth - 1], type);
  if (sibling != nullptr && level.number == 1 && level.node != PathLog::kNoPath) {
    sibling->first = level.node;
    if (sibling->count > 1) m_paths.NotAlone(level.node);
  }
  return level.node;
}

Spot TreeReader::At(u32 position) {
  return {m_text.ToOriginal(position), NodeOf(GetDepth()), IsAmongPasswords()};
}

// Whether an open aggregate is one that passwords are in.
bool TreeReader::IsAmongPasswords() const {
  return std::any_of(m_levels + 1, m_levels + GetDepth() + 1,
                     [](const Level& level) { return HoldsPasswords(level.object->GetType()); });
}

// Says that what is closed inside the aggregate at a depth is complete.
void TreeReader::CompleteTo(s16 depth) {
  if (m_watcher != nullptr) {
    for (; m_deepest > depth; --m_deepest) {
      m_watcher->OnComplete(m_deepest, *m_levels[m_deepest].object);
    }
  }
  m_deepest = depth;
}

std::string_view TreeReader::TagName(KRTagID tag) const {
  const char* const name = m_dictionary.GetTagString(tag);
  return name == nullptr ? std::string_view() : name;
}

bool TreeReader::Note(MendingKind kind, u32 position, std::string_view tag, std::string_view was,
                      std::string_view taken) {
  // What was read without an answer is not said.
  if (m_isLost) return false;
  const s32 path = m_recorder.Keeps(kind, tag) ? NodeOf(GetDepth()) : PathLog::kNoPath;
  const Spot spot{m_text.ToOriginal(position), path, IsAmongPasswords()};
  return m_recorder.Note(kind, spot, tag, was, taken) || StopForbidden();
}

bool TreeReader::Stop(KRParseStatus status) {
  m_status = status;
  return false;
}

// The walk

KRParseStatus TreeReader::Read(KRFile& root, u32 body) {
  Begin(root, body, nullptr, nullptr);
  while (Step() == TreeStep::kGoesOn) {
  }
  return End();
}

void TreeReader::Begin(KRFile& root, u32 body, TreeWatcher* watcher, TextSupply* supply) {
  m_root = &root;
  m_watcher = watcher;
  m_supply = supply;
  m_survey.SetWholeText(supply);
  if (supply != nullptr) m_places.SetText(m_text.Bytes(), supply->IsPart());
  m_log = KRParseLogger::TheKRParseLogger();
  if (m_log == nullptr) {
    Stop(KRParseStatus_Fatal);
    return;
  }
  m_log->SetBuffer(nullptr);
  m_log->SetParser(this);
  SetRoot(&root);
  m_levels[0] = Level();
  m_levels[0].object = &root;
  m_scanner.GoTo(body);
}

TreeStep TreeReader::Step() {
  if (m_status != KRParseStatus_Accepted) return TreeStep::kEnded;
  FeedElements();
  const u32 position = m_scanner.Position();
  ScannedTag tag;
  m_scanner.ForgetEnd();
  m_scanner.Next(tag);
  if (m_scanner.HasMetEnd() && m_supply != nullptr && m_supply->IsPart()) {
    m_scanner.GoTo(position);
    return TreeStep::kNeedsMore;
  }
  m_at = tag.at;
  bool going = ReadTag(tag);
  if (m_recorder.HasFailed() || m_places.HasFailed() || m_isLost) going = Stop(KRParseStatus_Fatal);
  return going && !m_ended ? TreeStep::kGoesOn : TreeStep::kEnded;
}

KRParseStatus TreeReader::End() {
  if (m_log == nullptr) return KRParseStatus_Fatal;
  CompleteTo(GetDepth());
  // Whatever is still open stays as it is; the objects keep no pointer to this parser in use.
  while (GetDepth() > 0) KRParser::PopObject();
  WarnOfMissing(*m_root);
  m_recorder.EndTree(m_paths);
  m_log->DeleteAll();
  return m_status;
}

void TreeReader::LeavePart() {
  m_partBeginsLine = BeginsLine(Position());
  const std::size_t count = std::min(m_endsSilently.size(), kLongestName);
  if (count != 0) std::memmove(m_silentName, m_endsSilently.data(), count);
  m_endsSilently = {m_silentName, count};
}

void TreeReader::EnterPart() {
  m_scanner.SetText(m_text.Bytes());
  m_places.SetText(m_text.Bytes(), m_supply->IsPart());
  m_feed.SetText(m_text.Bytes());
}

// Sees more of the text, for a question that what is there does not answer. Without more the
// reading ends: nothing is guessed.
bool TreeReader::LookFurther() {
  if (m_isLost || m_supply == nullptr || !m_supply->Extend()) {
    m_isLost = true;
    return false;
  }
  m_scanner.Extend(m_text.Bytes());
  m_places.SetText(m_text.Bytes(), m_supply->IsPart());
  m_feed.SetText(m_text.Bytes());
  return true;
}

// Takes the elements that come next as long as they are in order.
void TreeReader::FeedElements() {
  const Level& level = Current();
  // What has lost its start tag, or goes on, is looked at element by element.
  if (level.implicit || level.joined) return;
  u32 position = m_scanner.Position();
  while (IsWhite(m_text.At(position))) ++position;
  if (m_text.At(position) != '<') return;
  std::string_view last;
  const u32 next = m_feed.Run(*level.object, position, last);
  if (next == position) return;
  m_scanner.GoTo(next);
  m_endsSilently = last;
}

bool TreeReader::ReadTag(ScannedTag& tag) {
  if (!TakeFront(tag) || !SayForm(tag)) return false;
  switch (tag.type) {
    case ScannedTag::Type::kStart:
      return TakeStart(tag);
    case ScannedTag::Type::kEnd:
      return TakeEnd(tag);
    default:
      return EndText(tag.at);
  }
}

bool TreeReader::TakeFront(const ScannedTag& tag) {
  if (tag.front.IsEmpty() || GetDepth() == 0) return true;
  return Note(MendingKind::kStrayText, tag.front.from, {}, Shown(tag.front));
}

// Says in which way a tag of OFX is written otherwise.
bool TreeReader::SayForm(const ScannedTag& tag) {
  if (tag.entry == nullptr) return true;
  if (tag.otherCase && !Note(MendingKind::kLetterCase, tag.at, tag.Name(), tag.name, tag.Name())) {
    return false;
  }
  // In XML all of these are in order.
  if (tag.otherForm && !m_xml &&
      !Note(MendingKind::kTagForm, tag.at, tag.Name(),
            m_text.Bytes().substr(tag.at, tag.after - tag.at), tag.Name())) {
    return false;
  }
  return true;
}

bool TreeReader::TakeStart(ScannedTag& tag) {
  m_endsSilently = {};
  if (tag.entry == nullptr) return SkipUnknown(tag);
  if (!TakeAsOtherAccount(tag) || !TakePayeeAsName(tag)) return false;
  const TagRole role = RoleOf(*GetCurrentObj(), tag.Id());
  if (Fits(role, tag) && !BelongsFurtherOut(tag, role)) return Take(tag, role);
  bool taken = false;
  if (!TakeInAncestor(tag, taken) || taken) return taken;
  if (!TakeWithMissingStart(tag, taken) || taken) return taken;
  if (!TakeElsewhere(tag, taken) || taken) return taken;
  return SkipMisplaced(tag);
}

bool TreeReader::Take(ScannedTag& tag, const TagRole& role) {
  const bool element =
      role.role == Role::kElement || (role.role == Role::kEither && !tag.text.IsEmpty());
  return element ? TakeElement(tag, role) : TakeAggregate(tag, role);
}

// Whether the tag is as its role has it: no text and end tag of its own follow an aggregate's.
bool TreeReader::Fits(const TagRole& role, const ScannedTag& tag) {
  if (role.role != Role::kAggregate) return role.role != Role::kNone;
  if (tag.text.IsEmpty()) return true;
  ScannedTag next;
  return !(m_text.At(tag.text.to) == '<' && m_scanner.ReadTag(tag.text.to, false, next) &&
           next.type == ScannedTag::Type::kEnd && next.Id() == tag.Id());
}

// Elements

bool TreeReader::TakeElement(ScannedTag& tag, const TagRole& role) {
  m_endsSilently = tag.name;
  const KRTagID id = tag.Id();
  if (role.row != nullptr && role.row->value->form == ValueForm::kText) JoinBrackets(tag);
  if (tag.text.cut) ReadCutText(tag);
  if (tag.text.cut) {
    m_cut = true;
    return Note(MendingKind::kCutOff, tag.at, tag.Name(), Shown(tag.text));
  }
  if (tag.text.IsEmpty()) return Note(MendingKind::kEmptyElement, tag.at, tag.Name());
  // The next of several aggregates whose start tags are missing.
  Level& level = Current();
  if (level.implicit && IsRepeated(level.row) && level.object->ValidateTag(id) != 0) {
    const KRTagID type = level.object->GetType();
    const Row* const row = level.row;
    PopObject();
    m_openingImplicit = true;
    const KRParseStatus status = Open(type, row);
    if (status != KRParseStatus_Accepted) return Stop(status);
  }
  KRString value;
  switch (m_scanner.ReadText(tag.text, m_charset, value)) {
    case TextResult::kNoMemory:
      return Stop(KRParseStatus_Fatal);
    case TextResult::kTooLong:
      m_recorder.Warn(KRPW_TOOLONG, At(tag.at), id, tag.Name(), {});
      return true;
    case TextResult::kReplaced:
      if (!Note(MendingKind::kCharacterReference, tag.at, tag.Name(), Shown(tag.text),
                {value, value.GetStrLength()})) {
        return false;
      }
      break;
    default:
      break;
  }
  if (tag.text.bareLessThan && !Note(MendingKind::kBareLessThan, tag.text.from, tag.Name(),
                                     Shown(tag.text), {value, value.GetStrLength()})) {
    return false;
  }
  if (value.IsWhiteSpace() != 0) return Note(MendingKind::kEmptyElement, tag.at, tag.Name());
  if (level.joined && IsInsideSpan(tag, role, value)) return true;
  const HeldFigure before(*GetCurrentObj(), id, role);
  const bool read = MendValue(tag, role, value) && SayRepeated(tag, role, before);
  // The object has its copy; nothing else may keep a password.
  if (IsSecret(id)) value.Clear('*');
  return read;
}

// Whether the span of time of a list that was joined begins earlier, or ends later, already.
bool TreeReader::IsInsideSpan(const ScannedTag& tag, const TagRole& role, const KRString& value) {
  const KRTagID id = tag.Id();
  KRDataObj& object = *GetCurrentObj();
  if ((id != KRTag_DTSTART && id != KRTag_DTEND) || role.row == nullptr ||
      object.ValidateTag(id) == 0) {
    return false;
  }
  KRDateTime given;
  const bool isDate = KRDataConversion::StringToDateTime(value, given) != 0;
  m_log->DeleteAll();
  if (!isDate || role.row->value != &kDateTime) return false;
  const KRDateTime held = *static_cast<const StoredDate*>(role.row->member(object));
  return id == KRTag_DTSTART ? given >= held : given <= held;
}

// The last text of a text that breaks off: it may have lost its end, unless a tag has begun after
// it.
void TreeReader::ReadCutText(ScannedTag& tag) {
  const std::string_view text = Shown(tag.text);
  const std::size_t open = text.rfind('<');
  if (open == std::string_view::npos) return;
  for (const char c : text.substr(open + 1)) {
    const bool nameCharacter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                               (c >= '0' && c <= '9') || c == '.' || c == '/';
    if (!nameCharacter) return;
  }
  m_cut = true;
  tag.text.cut = false;
  tag.text.to = tag.text.from + static_cast<u32>(open);
  tag.text.to = m_scanner.EndOfContent(tag.text);
  tag.text.bareLessThan = Shown(tag.text).find('<') != std::string_view::npos;
}

bool TreeReader::Offer(const KRTagDictionaryEntry& entry, const KRString& value, u32 position) {
  const KRParseStatus status = GetCurrentObj()->HandleTagElement(&entry, value);
  if (status == KRParseStatus_Fatal) m_status = status;
  const bool taken = status == KRParseStatus_Accepted && !HasLoggedRefusal(entry.tagID);
  SayWarnings(position, !taken);
  return taken;
}

// Whether the current object has passed over a text of this element: some refuse one with a warning
// only.
bool TreeReader::HasLoggedRefusal(KRTagID tag) const {
  for (u16 index = 0; index < m_log->Entries(); ++index) {
    const KRParseException& warning = *m_log->Get(index);
    if (warning.m_warning == KRPW_BADFORMAT && warning.m_tag == tag) return true;
  }
  return false;
}

// Takes what the objects have logged out of the log: says it, or, when it is about a text that is
// being mended, forgets it.
void TreeReader::SayWarnings(u32 position, bool refused) {
  const u16 count = m_log->Entries();
  if (count == 0) return;
  for (u16 index = 0; index < count && !refused; ++index) {
    const KRParseException& warning = *m_log->Get(index);
    // A second aggregate of a kind is spoken of by who opens it.
    if (warning.m_warning == KRPW_EXTRAAGG) continue;
    const std::string_view tagText(warning.m_tagText, warning.m_tagText.GetStrLength());
    const s32 path = m_recorder.KeepsWarning() ? NodeOf(GetDepth()) : PathLog::kNoPath;
    const Spot spot{m_text.ToOriginal(position), path, IsAmongPasswords()};
    m_recorder.Warn(warning.m_warning, spot, warning.m_tag,
                    tagText.empty() ? TagName(warning.m_tag) : tagText,
                    {warning.m_valueText, warning.m_valueText.GetStrLength()});
  }
  m_log->DeleteAll();
}

bool TreeReader::MendValue(const ScannedTag& tag, const TagRole& role, KRString& value) {
  const ValueForm form = role.row == nullptr ? ValueForm::kText : role.row->value->form;
  // The menders of decimals keep the kind of a payroll amount.
  const ValueForm asked = form == ValueForm::kPayrollAmount ? ValueForm::kDecimal : form;
  KRString text(value);
  MendedValue mended;
  const auto ask = [&](const ValueMender& mender) {
    MendedValue answer;
    const DoubtfulValue doubtful{{text, text.GetStrLength()}, form, tag.Id(), m_survey};
    if (!mender.mend(doubtful, answer)) return false;
    for (const MendingKind kind : answer.Kinds()) mended.Say(kind);
    text = answer.Text();
    return true;
  };
  const auto say = [&] {
    for (const MendingKind kind : mended.Kinds()) {
      if (!Note(kind, tag.at, tag.Name(), {value, value.GetStrLength()},
                {text, text.GetStrLength()})) {
        return false;
      }
    }
    return true;
  };
  // What must not be mended is not given to the object either.
  const auto may = [&] {
    for (const MendingKind kind : mended.Kinds()) {
      if (!m_recorder.May(kind, {m_text.ToOriginal(tag.at), PathLog::kNoPath})) {
        return StopForbidden();
      }
    }
    return true;
  };

  for (const ValueMender& mender : ValueMenders()) {
    if (mender.form == asked && mender.askedFirst && text.IsEmpty() == 0) ask(mender);
  }
  if (!may()) return false;
  if (text.IsEmpty() != 0) return say();
  if (Offer(*tag.entry, text, tag.at)) return say();
  for (const ValueMender& mender : ValueMenders()) {
    if (m_status != KRParseStatus_Accepted) return false;
    if (mender.form != asked || mender.askedFirst || !ask(mender)) continue;
    if (!may()) return false;
    if (text.IsEmpty() != 0 || Offer(*tag.entry, text, tag.at)) return say();
  }
  if (m_status != KRParseStatus_Accepted) return false;
  const MendingKind refused = IsNumber(form)             ? MendingKind::kNumberRefused
                              : IsMoment(form)           ? MendingKind::kDateRefused
                              : form == ValueForm::kText ? MendingKind::kTextRefused
                                                         : MendingKind::kKeywordRefused;
  return Note(refused, tag.at, tag.Name(), {value, value.GetStrLength()});
}

// Aggregates

KRParseStatus TreeReader::Open(KRTagID tag, const Row* row) {
  const KRTagDictionaryEntry entry{tag, m_dictionary.GetTagString(tag)};
  CompleteTo(GetDepth());
  // It may be replaced, and is gone then.
  Current().lastClosed = nullptr;
  m_openingRow = row;
  m_openingFirst = GetCurrentObj()->ValidateTag(tag) == 0;
  const KRParseStatus status = GetCurrentObj()->HandleTagStart(&entry);
  m_openingRow = nullptr;
  m_openingImplicit = false;
  m_openingFirst = true;
  return status;
}

bool TreeReader::EnterAgain() {
  Level closed = m_levels[GetDepth() + 1];
  if (KRParser::PushObject(closed.object) == 0) return false;
  Current() = closed;
  return true;
}

bool TreeReader::Enter(KRDataObj* child, const Row* row) {
  CompleteTo(GetDepth());
  m_openingRow = row;
  Sibling* const sibling = FindSibling(Current(), child->GetType());
  // It is the one that it was.
  if (sibling != nullptr && sibling->count > 0) --sibling->count;
  const bool entered = PushObject(child) != 0;
  Current().joined = true;
  m_openingRow = nullptr;
  m_openingImplicit = false;
  return entered;
}

bool TreeReader::TakeAggregate(const ScannedTag& tag, const TagRole& role) {
  const KRTagID id = tag.Id();
  if (GetDepth() >= kMaxDepth) {
    if (!Note(MendingKind::kTooDeep, tag.at, tag.Name())) return false;
    SkipTo(tag);
    return true;
  }
  KRDataObj* const held = SingleChild(*GetCurrentObj(), id, role.row);
  if (held != nullptr && IsList(*held)) {
    if (!Note(MendingKind::kJoined, tag.at, tag.Name())) return false;
    if (!Enter(held, role.row)) return Stop(KRParseStatus_StackFull);
  } else {
    if (held != nullptr && !Note(MendingKind::kReplaced, tag.at, tag.Name())) return false;
    // What a wrapper holds is no list.
    if (!IsRepeated(role.row) && !GiveOwnWrapper(id, tag.at)) return false;
    if (held != nullptr && m_watcher != nullptr &&
        SingleChild(*GetCurrentObj(), id, role.row) == held) {
      CompleteTo(GetDepth());
      m_watcher->OnDeleted(*held);
    }
    const KRParseStatus status = Open(id, role.row);
    SayWarnings(tag.at, false);
    if (status == KRParseStatus_Fatal) return Stop(status);
    if (status != KRParseStatus_Accepted) return SkipMisplaced(tag);
  }
  if (!tag.text.IsEmpty() && !Note(MendingKind::kStrayText, tag.text.from, {}, Shown(tag.text))) {
    return false;
  }
  if (tag.selfClosed) PopObject();
  return true;
}

// End tags

bool TreeReader::TakeEnd(const ScannedTag& tag) {
  const bool silent = EqualsWithoutCase(tag.name, m_endsSilently);
  m_endsSilently = {};
  if (silent) return true;
  if (tag.entry == nullptr) return Note(MendingKind::kStrayEnd, tag.at, tag.name);
  const KRTagID id = tag.Id();
  s16 depth = GetDepth();
  const auto ends = [id](const Level& level) {
    return level.object->GetType() == id || level.written == id;
  };
  while (depth > 0 && !ends(m_levels[depth])) --depth;
  if (depth == 0) {
    bool passed = false;
    if (!PassLeft(id, tag.at, passed)) return false;
    return passed || Note(MendingKind::kStrayEnd, tag.at, tag.Name());
  }
  if (!CloseDownTo(depth, tag.at, false)) return false;
  const KRTagID type = GetCurrentObj()->GetType();
  const KRTagDictionaryEntry own{type, m_dictionary.GetTagString(type)};
  GetCurrentObj()->HandleTagEnd(type == id ? tag.entry : &own);
  SayWarnings(tag.at, false);
  if (id == KRTag_OFX) m_ended = true;
  return true;
}

// Closes what is open inside the aggregate at a depth.
bool TreeReader::CloseDownTo(s16 depth, u32 position, bool silently) {
  while (GetDepth() > depth) {
    const Level& level = Current();
    if (!silently && !level.implicit &&
        !Note(MendingKind::kMissingEnd, position, TagName(level.object->GetType()))) {
      return false;
    }
    PopObject();
  }
  return true;
}

void TreeReader::WarnOfMissing(KRFile& root) {
  KRDataObj* object = &root;
  KRTagID missing = KRTag_None;
  if (KRUtility::AllRequiredPresent(&object, &missing) != 0) return;
  m_recorder.Warn(KRPW_MISSINGTAG, {Spot::kNowhere, m_paths.AddTo(root, object)}, missing,
                  missing == KRTag_None ? std::string_view() : TagName(missing), {});
}

}  // namespace krofx::internal
