// The steps of a strict stream.

#include "krofx/stream/internal/element_parser.h"

#include <cstddef>

#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/model/internal/repeated_figures.h"
#include "krofx/parse/internal/parse_run.h"
#include "krofx/values/internal/passed_commas.h"

namespace krofx::internal {

namespace {

// As DeleteAll, which costs something for an empty log too.
void Empty(KRParseLogger& log) {
  if (log.GetAnyParseExceptionsLogged() != 0 || log.Entries() != 0) log.DeleteAll();
}

}  // namespace

ElementParser::ElementParser(EngineWindow& window, LineCounter& lines, ElementTrack& track,
                             RecordKeeper& records)
    : m_window(window), m_lines(lines), m_track(track), m_records(records) {
  SetPlainClass(typeid(ElementParser));
  SetWarningObserver(this);
}

u16 ElementParser::PushObject(KRDataObj* object) {
  if (KRSimpleParser::PushObject(object) == 0) return 0;
  m_track.OnOpened(*object, GetCurrentOffset());
  return 1;
}

u16 ElementParser::PopObject() {
  if (KRSimpleParser::PopObject() == 0) return 0;
  m_track.OnClosed();
  return 1;
}

void ElementParser::OnWarning(const KRParseException& warning, s32 position) {
  ReadWarning record = RecordOf(warning);
  if (position >= 0) {
    const std::size_t offset = m_window.Base() + static_cast<std::size_t>(position);
    // In the order of the text, which costs one pass over it.
    m_track.FindPlaces(m_lines, m_window.Text(), m_window.Base());
    record.place = m_lines.Find(m_window.Text(), m_window.Base(), offset);
    record.path = m_track.Path();
  }
  if (m_track.HasAhead()) {
    m_records.Defer(std::move(record));
  } else {
    m_records.Add(std::move(record));
  }
}

void ElementParser::Begin(KRFile& root, bool checkRequired) {
  m_root = &root;
  m_checkRequired = checkRequired;
  m_track.Begin(root, checkRequired);
  KRParseLogger* const log = Open(&m_window.Buffer(), &root);
  if (log == nullptr) {
    End(KRParseStatus_Fatal);
    return;
  }
  // Nobody asks the records for their object and offset.
  log->SetBuffer(nullptr);
  log->SetParser(nullptr);
}

StreamStep ElementParser::End(KRParseStatus status) {
  m_pass.reset();
  if (m_checkRequired && status != KRParseStatus_Fatal) WarnOfMissingTag(m_root);
  const bool warned = m_records.Any() || GetAnyParseExceptionsLogged() != 0;
  if (status == KRParseStatus_Accepted && warned) status = KRParseStatus_Warnings;
  if (KRGetFireAlarm() != KRFireAlarm_None) status = KRParseStatus_Fatal;
  m_status = status;
  m_root = nullptr;
  return StreamStep::kEnded;
}

StreamStep ElementParser::Next() {
  if (m_root == nullptr) return StreamStep::kEnded;
  KRParseLogger* const log = KRParseLogger::TheKRParseLogger();
  if (log == nullptr) return End(KRParseStatus_Fatal);
  // The host may have used the thread's log since.
  const u16 enabled = log->GetLoggingEnabled();
  log->EnableLogging(1);
  Empty(*log);
  const std::size_t commas = PassedCommas();
  const std::size_t repeats = RepeatedFigures();
  StreamStep step;
  {
    Run run(*this, *log, m_window.Engine());
    step = Step();
  }
  m_hasCommas = m_hasCommas || PassedCommas() != commas;
  m_hasRepeats = m_hasRepeats || RepeatedFigures() != repeats;
  Empty(*log);
  log->EnableLogging(enabled);
  return step;
}

StreamStep ElementParser::Step() {
  KRParseStatus status = KRParseStatus_Accepted;
  if (!m_headersRead) {
    status = ReadHeaders(m_window.Engine(), *m_root);
    m_headersRead = true;
    m_window.BeginBody();
    if (status != kGoOn) return End(status);
    m_pass.emplace(*this, m_window.Engine(), &m_track);
  }
  for (;;) {
    if (m_track.Element() != nullptr) {
      WarnOfLacking();
      return StreamStep::kElement;
    }
    m_records.AddDeferred();
    if (MayReadOn()) {
      m_fed = m_pass->Feed<FeedUse::kStream>();
      m_isAlarmed = !m_track.Settle() || KRGetFireAlarm() != KRFireAlarm_None;
      if (m_track.TakeAhead()) continue;
    }
    if (!MayReadOn()) {
      if (m_isAlarmed) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
      return End(m_fed);
    }
    if (!m_window.HasWholeTag(*this)) {
      m_pass->SettleValue();
      return StreamStep::kNeedsMore;
    }
    const bool goesOn = m_pass->TakeTag(status);
    if (!goesOn || KRGetFireAlarm() != KRFireAlarm_None) return End(status);
    m_track.TakeAhead();
  }
}

// Whether the last feed, all of whose elements are handed out, can be continued.
bool ElementParser::MayReadOn() const { return m_fed == kGoOn && !m_isAlarmed; }

// The check of the whole tree no longer finds what an element lacks.
void ElementParser::WarnOfLacking() {
  KRDataObj* const object = m_track.Lacking();
  if (object == nullptr) return;
  const KRTagID missing = object->GetFirstMissingRequiredTag(KRTag_None);
  AppendParseException(KRPW_MISSINGTAG, KRString(), KRString(), missing, object);
}

}  // namespace krofx::internal
