// Reading from element to element, and refilling the window between.

#include "krofx/stream/internal/stream_run.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/parse/internal/text_source.h"
#include "krofx/reader/file/clean_parser.h"
#include "krofx/reader/file/file_reader.h"
#include "krofx/reader/file/text_bounds.h"

namespace krofx::internal {

namespace {

// Less is no window: the short way of the parser leaves the last bytes of it alone.
constexpr u32 kLeastWindow = 4096;
constexpr u32 kMostWindow = 1u << 30;
// The kind of nearly every text is clear from these bytes.
constexpr std::size_t kFirstPart = 4096;

// Why a text could not be read to its end; empty when it could.
const char* WhyItEnded(KRParseStatus status, bool inAggregate) {
  switch (status) {
    case KRParseStatus_Accepted:
    case KRParseStatus_Warnings:
      return "";
    case KRParseStatus_Fatal:
      return KRGetFireAlarm() != KRFireAlarm_None
                 ? "memory was exhausted while reading"
                 : "a list that is kept has more than 65535 entries, which is the most that a list "
                   "takes; take its elements from the stream";
    case KRParseStatus_EndTagMismatch:
      return "an end tag in it is not that of the aggregate that is open";
    case KRParseStatus_StackFull:
      return "aggregates in it are open inside each other more deeply than OFX has them";
    default:
      return inAggregate ? "it breaks off inside an aggregate, or a tag in it is refused"
                         : "it has no body of OFX, or a header in it is refused";
  }
}

}  // namespace

ReadWarning RecordOf(const KRParseException& warning) {
  ReadWarning record;
  record.warning = warning.m_warning;
  record.tag = warning.m_tag;
  record.tagText = warning.m_tagText;
  record.value = warning.m_valueText;
  return record;
}

StreamRun::StreamRun(const StreamOptions& options)
    : m_options(options),
      m_window(std::clamp(options.window, kLeastWindow, kMostWindow),
               std::clamp(options.largestItem, kLeastWindow, kMostWindow)),
      m_track(m_wanted),
      m_records(options.maxRecords),
      m_parser(m_window, m_lines, m_track, m_records) {
  m_element.m_run = this;
}

void StreamRun::Want(IsOfClass is, bool list) {
  if (list ? m_wanted.AddList(is) : m_wanted.Add(is)) return;
  Fail(KRParseStatus_Fatal, "memory was exhausted");
}

void StreamRun::WantTag(KRTagID tag) {
  if (!m_wanted.AddTag(tag)) Fail(KRParseStatus_Fatal, "memory was exhausted");
}

void StreamRun::Fail(KRParseStatus status, const char* problem) {
  m_problem = problem;
  // Without memory for the sentence nobody would know what happened.
  m_status = *problem != '\0' && m_problem.IsEmpty() != 0 ? KRParseStatus_Fatal : status;
  m_state = StreamState::kEnded;
}

bool StreamRun::Feed(std::string_view piece) {
  if (m_state == StreamState::kEnded || !m_source.TakesPiece()) return false;
  m_source.SetBytes(piece, false);
  m_state = StreamState::kReading;
  return true;
}

void StreamRun::SetListener(StreamListener* listener) {
  m_listener = listener;
  m_records.SetListener(listener);
}

void StreamRun::ReadInPlace(KRBuffer& buffer) {
  m_plain = &buffer;
  m_window.Borrow(buffer);
}

void StreamRun::Stop() {
  m_track.Drop();
  if (m_mended != nullptr) m_mended->Stop();
  const bool any = m_records.Any() || (m_mended != nullptr && m_mended->AnyRecords());
  if (m_state != StreamState::kEnded && any) m_status = KRParseStatus_Warnings;
  m_state = StreamState::kEnded;
  LeavePiece();
}

// Looks at what is left of a piece, which the host may free now.
void StreamRun::LeavePiece() {
  if (m_state != StreamState::kEnded || !m_source.HasPiece()) return;
  m_hasMoreTags = HasMoreTags();
  m_source.DropPiece();
}

KRParseStatus StreamRun::Status() const {
  const bool any = m_records.Any() || (m_mended != nullptr && m_mended->AnyRecords());
  const bool warned = m_status == KRParseStatus_Accepted && any;
  return warned ? KRParseStatus_Warnings : m_status;
}

void StreamRun::End(KRParseStatus status) {
  if (m_problem.IsEmpty() != 0) {
    Fail(status, WhyItEnded(status, m_parser.GetDepth() > 0));
  } else {
    m_state = StreamState::kEnded;
    m_status = status;
  }
  m_text.status = m_status;
}

// Chooses the root by what is in the window. False when that is not enough yet.
bool StreamRun::Begin() {
  if (!m_window.HasWholeHeaders()) return false;
  bool isNamed = false;
  m_text.kind = FindKind(m_window.Beginning(kFirstPart), isNamed);
  if (!isNamed) m_text.kind = FindKind(m_window.Text(), isNamed);
  if (!isNamed && !m_window.IsEnded() && !m_window.IsAtLimit()) return false;
  m_begun = true;
  if (m_text.kind == TextKind::kMultipart) {
    Fail(KRParseStatus_Invalid, "it is a multipart text, whose parts have to be taken apart first");
  } else if (!MakeRoot(m_text)) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    End(KRParseStatus_Fatal);
  } else {
    m_parser.Begin(*m_text.root, m_options.checkRequired);
  }
  return true;
}

// Whether there is nothing to mend in a text that can be read twice.
bool StreamRun::IsClean() {
  StreamOptions options = m_options;
  options.mends = false;
  options.checkRequired = true;
  options.maxRecords = 0;
  const std::unique_ptr<StreamRun> trial(new StreamRun(options));
  if (trial == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return false;
  }
  // It keeps what the stream keeps, and no more.
  trial->m_wanted = std::move(m_wanted);
  if (m_plain != nullptr) {
    trial->ReadInPlace(*m_plain);
  } else {
    trial->m_source = std::move(m_source);
  }
  const SilentLosses losses;
  bool isClean = true;
  while (isClean && trial->Next() != nullptr) {
    isClean = trial->Status() == KRParseStatus_Accepted && !losses.Any();
  }
  isClean = isClean && trial->Status() == KRParseStatus_Accepted && !losses.Any();
  trial->Stop();
  m_source = std::move(trial->m_source);
  m_wanted = std::move(trial->m_wanted);
  return isClean;
}

// A text that is clean is read as it is.
void StreamRun::ChooseReader() {
  m_isChosen = true;
  const bool canTry = m_plain != nullptr || m_source.CanGoTo();
  if (canTry && IsClean()) {
    if (m_plain == nullptr && !m_source.GoTo(0)) {
      Fail(KRParseStatus_Invalid, "it cannot be read a second time");
    }
    return;
  }
  if (KRGetFireAlarm() != KRFireAlarm_None) return End(KRParseStatus_Fatal);
  if (m_plain != nullptr) {
    const PlainText text(*m_plain);
    m_source.SetBytes({text.Bytes(), static_cast<std::size_t>(text.Size())}, true);
  } else if (canTry && !m_source.GoTo(0)) {
    return Fail(KRParseStatus_Invalid, "it cannot be read a second time");
  }
  m_mended.reset(new MendedText(m_options, m_source, m_wanted, m_text, m_listener));
  if (m_mended == nullptr) End(KRParseStatus_Fatal);
}

const StreamElement* StreamRun::NextMended() {
  switch (m_mended->Next()) {
    case StreamStep::kElement:
      m_state = StreamState::kReading;
      return &m_element;
    case StreamStep::kNeedsMore:
      m_state = StreamState::kHungry;
      return nullptr;
    default:
      Fail(m_mended->Status(), m_mended->Problem());
      return nullptr;
  }
}

const StreamElement* StreamRun::Next() {
  const StreamElement* const element = TakeNext();
  if (element == nullptr) LeavePiece();
  return element;
}

const StreamElement* StreamRun::TakeNext() {
  m_track.Drop();
  if (m_state == StreamState::kReading && m_parser.TakeAhead()) return &m_element;
  const AllocationWatch memory;
  const StreamElement* const element = ReadOn();
  if (!memory.HasFailed() || m_status == KRParseStatus_Fatal) return element;
  // What is missing may be the value of an element, or what makes a clean text look damaged.
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  Fail(KRParseStatus_Fatal, "memory was exhausted while reading");
  m_text.status = m_status;
  return nullptr;
}

const StreamElement* StreamRun::ReadOn() {
  if (m_state == StreamState::kIdle) m_state = StreamState::kHungry;
  if (m_state != StreamState::kEnded && KRGetFireAlarm() != KRFireAlarm_None) {
    KRSetFireAlarm(KRFireAlarm_None);
  }
  if (m_state == StreamState::kEnded) return nullptr;
  if (m_options.mends && !m_isChosen) ChooseReader();
  if (IsMending() && m_state != StreamState::kEnded) return NextMended();
  while (m_state != StreamState::kEnded) {
    if (m_window.MayLook()) {
      m_window.Look();
      StreamStep step = StreamStep::kNeedsMore;
      if (m_begun || Begin()) {
        if (m_state == StreamState::kEnded) break;
        step = m_parser.Next();
      }
      if (step == StreamStep::kElement) {
        m_state = StreamState::kReading;
        return &m_element;
      }
      if (step == StreamStep::kEnded) {
        End(m_parser.Status());
        break;
      }
      m_window.AskForMore();
    }
    if (!Refill()) break;
  }
  return nullptr;
}

// False when there is nothing more for now, or at all.
bool StreamRun::Refill() {
  m_track.FindPlaces(m_lines, m_window.Text(), m_window.Base());
  m_lines.Pass(m_window.Text(), m_window.Base(), m_window.Base() + m_window.CountRead());
  m_window.Slide();
  m_track.SetBase(m_window.Base());
  if (m_window.Room().empty() && !m_window.Grow()) {
    const bool full = m_window.IsAtLimit();
    if (full) m_problem = "something in it is longer than what is looked at as a whole";
    End(KRParseStatus_Fatal);
    return false;
  }
  const std::span<char> room = m_window.Room();
  std::size_t count = 0;
  switch (m_source.Read(room, count)) {
    case ByteSource::Supply::kBytes: {
      // A text ends at its first NUL.
      const void* const nul = std::memchr(room.data(), '\0', count);
      if (nul != nullptr) {
        count = static_cast<std::size_t>(static_cast<const char*>(nul) - room.data());
        m_window.End();
      }
      m_window.Added(count);
      return true;
    }
    case ByteSource::Supply::kNone:
      m_window.End();
      return true;
    case ByteSource::Supply::kLater:
      m_state = StreamState::kHungry;
      return false;
    case ByteSource::Supply::kFailed:
      break;
  }
  m_problem = "it cannot be read: ";
  m_problem += std::strerror(errno);
  End(KRParseStatus_Invalid);
  return false;
}

KRDataObj& StreamRun::Element() const {
  return IsMending() ? *m_mended->Track().Element() : *m_track.Element();
}

std::size_t StreamRun::NumberOfElement() const {
  return IsMending() ? m_mended->Track().NumberOfElement() : m_track.NumberOfElement();
}

KRString StreamRun::PathOfElement() const {
  const AllocationWatch memory;
  KRString path = IsMending() ? m_mended->Track().Path() : m_track.Path();
  if (memory.HasFailed()) path = "";  // Half a path is that of something else.
  return path;
}

const KRAccount* StreamRun::AccountOfElement() const {
  return IsMending() ? m_mended->Track().AccountOfElement() : m_track.AccountOfElement();
}

KRDataObj* StreamRun::Around(u16 levels) const {
  return IsMending() ? m_mended->Track().Around(levels) : m_track.Around(levels);
}

const Place& StreamRun::PlaceOfElement() {
  if (IsMending()) return m_mended->Track().PlaceOfElement();
  m_track.FindPlaces(m_lines, m_window.Text(), m_window.Base());
  return m_track.PlaceOfElement();
}

// Finds out the character set of what is in memory. False without memory: it is tried again then.
bool StreamRun::Judge() {
  const std::size_t from = m_window.Base();
  const std::size_t to = from + m_window.Text().size();
  if (IsMending() || m_text.root == nullptr || (from == m_judgedFrom && to == m_judgedTo)) {
    return true;
  }
  const AllocationWatch memory;
  m_judgedFrom = kNowhere;
  if (!DescribeText(m_text, m_window.Text()) || memory.HasFailed()) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return false;
  }
  m_judgedFrom = from;
  m_judgedTo = to;
  return true;
}

const OfxText& StreamRun::JudgedText() {
  Judge();
  return m_text;
}

KRString StreamRun::ToUtf8(const KRString& text) {
  return Judge() ? m_text.ToUtf8(text) : KRString();
}

bool StreamRun::HasMoreTags() {
  if (m_state != StreamState::kEnded) return false;
  if (m_hasMoreTags) return true;
  if (IsMending()) return m_mended->HasMoreTags();
  if (m_track.HasAhead()) return true;
  if (m_window.Text().find('<', m_window.CountRead()) != std::string_view::npos) return true;
  // A NUL ends everything.
  return !m_window.IsEnded() && m_source.HasAhead('<', false);
}

}  // namespace krofx::internal
