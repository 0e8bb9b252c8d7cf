// The steps from part to part of a text, and what is said in them.

#include "krofx/stream/internal/mended_text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/reader/file/text_menders.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

// Smaller windows cost more than they save.
constexpr u32 kLeastWindow = 256;
constexpr u32 kMostWindow = 1u << 30;

ReadOptions OptionsOf(const StreamOptions& options) {
  ReadOptions read;
  read.mend = options.mend;
  read.maxRecords = options.maxRecords;
  return read;
}

}  // namespace

MendedText::MendedText(const StreamOptions& options, ByteSource& source, WantedClasses& wanted,
                       OfxText& text, StreamListener* listener)
    : m_usual(std::clamp(options.window, kLeastWindow, kMostWindow)),
      m_most(std::clamp(options.largestItem, kLeastWindow, kMostWindow)),
      m_checkRequired(options.checkRequired),
      m_source(source),
      m_wanted(wanted),
      m_text(text),
      m_listener(listener),
      m_options(OptionsOf(options)),
      m_recorder(m_reading, m_options),
      m_window(source, m_usual, m_most) {
  m_recorder.SetWatcher(this);
}

void MendedText::Stop() {
  if (m_track.has_value()) m_track->Clear();
}

// How it ends

bool MendedText::End(KRParseStatus status, const char* problem) {
  // Without memory a text can look damaged.
  if (status != KRParseStatus_Fatal && KRGetFireAlarm() != KRFireAlarm_None) return EndOfMemory();
  m_state = State::kEnded;
  m_problem = problem;
  // Without memory for the sentence nobody would know what happened.
  m_status = *problem != '\0' && m_problem.IsEmpty() != 0 ? KRParseStatus_Fatal : status;
  m_text.status = m_status;
  m_step = StreamStep::kEnded;
  return false;
}

bool MendedText::EndOfMemory() {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return End(KRParseStatus_Fatal, "memory was exhausted while reading");
}

bool MendedText::Forbid() {
  End(KRParseStatus_Invalid, "it was read up to damage that must not be mended: ");
  if (m_recorder.Forbidden() != nullptr) m_problem += m_recorder.Forbidden()->sentence;
  return KRGetFireAlarm() == KRFireAlarm_None ? false : EndOfMemory();
}

void MendedText::EndReading() {
  const bool isLost = m_reader->IsLost();
  const KRParseStatus status = m_reader->End();
  if (m_recorder.HasFailed() || m_track->HasFailed() || KRGetFireAlarm() != KRFireAlarm_None) {
    EndOfMemory();
  } else if (isLost) {
    End(KRParseStatus_Fatal,
        "what damage in it means depends on what is further away than the stream looks; "
        "krofx::Read reads it");
  } else if (m_recorder.Forbidden() != nullptr) {
    Forbid();
  } else if (status == KRParseStatus_Fatal) {
    End(status,
        "a list that is kept has more than 65535 entries, which is the most that a list takes; "
        "take its elements from the stream");
  } else {
    const bool any = status == KRParseStatus_Accepted && m_recorder.AnyInText();
    End(any ? KRParseStatus_Warnings : status, "");
  }
}

// What is said

Place MendedText::PlaceOf(std::size_t offset) {
  if (offset == Spot::kNowhere) return {};
  if (m_elementDepth != 0) return m_track->PlaceOf(m_elementDepth);
  // These were found before the window was there.
  if (m_facts.hasControl && offset == m_facts.control.offset) return m_facts.control;
  if (m_facts.high.Any() && offset == m_facts.firstHigh.offset) return m_facts.firstHigh;
  return m_window.PlaceOf(offset);
}

KRString MendedText::CurrentPath() const {
  if (!m_reader.has_value()) return {};
  return m_track->PathTo(m_elementDepth != 0 ? m_elementDepth : m_reader->GetDepth());
}

void MendedText::OnMending(Mending& mending) {
  mending.place = PlaceOf(mending.place.offset);
  // The search for control characters runs ahead of the reading, so the path is not theirs.
  if (mending.kind != MendingKind::kControlCharacter) mending.path = CurrentPath();
  if (m_listener != nullptr) m_listener->OnMending(mending);
}

void MendedText::OnWarning(ReadWarning& warning) {
  warning.place = PlaceOf(warning.place.offset);
  warning.path = CurrentPath();
  const std::size_t base = m_window.Base();
  if (warning.place.line != 0 && warning.place.offset >= base) {
    m_recorder.LookAtTag(warning, m_window.Original(), warning.place.offset - base);
  }
  if (m_listener != nullptr) m_listener->OnWarning(warning);
}

// The check of the whole tree no longer finds what an element lacks.
void MendedText::OnElement(s16 depth, KRDataObj& element) {
  if (!m_checkRequired) return;
  KRDataObj* const object = m_missing.Find(element);
  if (object == nullptr) return;
  const KRTagID missing = object->GetFirstMissingRequiredTag(KRTag_None);
  const char* const name = m_dictionary->GetTagString(missing);
  m_elementDepth = depth;
  m_recorder.Warn(KRPW_MISSINGTAG, {m_track->PlaceOf(depth).offset, PathLog::kNoPath}, missing,
                  name == nullptr ? "" : name, {});
  m_elementDepth = 0;
}

// The window

bool MendedText::Fill() {
  switch (m_window.Fill()) {
    case TextWindow::Filled::kYes:
      return m_window.Show() || EndOfMemory();
    case TextWindow::Filled::kLater:
      m_step = StreamStep::kNeedsMore;
      return false;
    case TextWindow::Filled::kNoMemory:
      return EndOfMemory();
    default:
      End(KRParseStatus_Invalid, "it cannot be read: ");
      m_problem += std::strerror(errno);
      return false;
  }
}

// Pieces are judged as they come: which ones have come must not make a difference.
bool MendedText::Extend() { return m_source.CanGoTo() && m_window.Extend(); }

void MendedText::ShowElements(Visitor& visitor) {
  const auto show = [this, &visitor](TextWindow& window) {
    Scanner scanner({}, *m_dictionary, false);
    for (;;) {
      scanner.SetText(window.Text().Bytes());
      ScannedTag tag;
      u32 position = 0;
      for (;;) {
        position = scanner.Position();
        scanner.ForgetEnd();
        scanner.Next(tag);
        if (window.IsPart() && scanner.HasMetEnd()) break;
        if (tag.type == ScannedTag::Type::kEndOfText) return true;
        if (tag.entry == nullptr || tag.text.IsEmpty()) continue;
        visitor.OnElement(tag.entry->tagID, scanner.View(tag.text));
      }
      if (&window == &m_window) return true;
      if (position != 0) {
        window.Slide(position);
      } else if (!window.Grow()) {
        return true;
      }
      if (window.Fill() != TextWindow::Filled::kYes || !window.Show()) return false;
    }
  };
  if (!m_source.CanGoTo()) {
    m_isJudged = true;
    show(m_window);
    return;
  }
  const std::size_t position = m_source.Position();
  TextWindow window(m_source, m_usual, m_most, m_facts.end);
  if (m_window.IsConverted()) window.ConvertFrom(0, m_ofBytes);
  const bool shown = m_source.GoTo(0) && window.Fill() == TextWindow::Filled::kYes &&
                     window.Show() && show(window);
  if (!m_source.GoTo(position) || !shown) m_track->SetFailed();
}

// The body

// Goes on to the next part of the text.
bool MendedText::MoveOn() {
  if (!m_isBetweenParts) {
    const u32 position = m_reader->Position();
    m_reader->LeavePart();
    if (position != 0) {
      m_window.Slide(position);
    } else if (!m_window.Grow()) {
      return End(KRParseStatus_Fatal,
                 "something in it is longer than what is looked at as a whole");
    }
  }
  m_isBetweenParts = true;
  if (!Fill()) return false;
  m_isBetweenParts = false;
  m_reader->EnterPart();
  return Agrees();
}

// Whether a part of what comes in pieces is as the parts before it made it look.
bool MendedText::Agrees() {
  if (m_source.CanGoTo()) return true;
  const std::string_view bytes = m_window.Original();
  const std::size_t last = bytes.rfind('>');
  const std::size_t control = FindControlCharacter(bytes);
  if (last != std::string_view::npos && control < last &&
      !m_recorder.Note(MendingKind::kControlCharacter,
                       {m_window.Base() + control, PathLog::kNoPath}, {}, {}, {})) {
    return Forbid();
  }
  if (!AgreesInCharset()) return false;
  const ValueSurvey here(m_window.Text().Bytes(), *m_dictionary, m_charset);
  if (!m_isJudged || m_reader->Survey().AgreesWith(here)) return true;
  return End(KRParseStatus_Invalid,
             "its numbers or dates are not written in one way, so that what came before was "
             "judged too early; read it as a whole");
}

bool MendedText::AgreesInCharset() {
  const auto view = [](const KRString& text) {
    return std::string_view(text, text.GetStrLength());
  };
  std::string_view bytes = WholeTags();
  bytes = bytes.substr(std::min(bytes.size(), m_counted - std::min(m_counted, m_window.Base())));
  m_counted = std::max(m_counted, m_window.Base() + bytes.size());
  if (!HasHighBytes(bytes)) return true;
  const bool wasAscii = !m_facts.high.Any();
  m_facts.high.Count(bytes);
  const DeclaredCharset declared{view(m_encoding), view(m_declaredSet), view(m_xmlEncoding),
                                 m_text.form == TextForm::kOfx2};
  Charset charset;
  ChosenCharset chosen;
  if (!ChooseCharset(m_facts.high, declared, charset, chosen)) return EndOfMemory();
  if (std::strcmp(charset.Name(), m_ofBytes.Name()) != 0) {
    return End(KRParseStatus_Invalid,
               "its characters are not written as its beginning says; read it as a whole");
  }
  if (!wasAscii || !m_charset.IsUtf8()) return true;
  // What is all in ASCII may be called anything.
  if (!EqualsWithoutCase(declared.encoding, "UTF-8")) {
    m_text.root->SetHeader(KRHeaderTag_ENCODING, "UTF-8");
    m_text.root->SetHeader(KRHeaderTag_CHARSET, "NONE");
  }
  if (!m_ofBytes.IsUtf8()) {
    m_window.ConvertFrom(0, m_ofBytes);
    if (!m_window.Show()) return EndOfMemory();
    m_reader->EnterPart();
  }
  return true;
}

StreamStep MendedText::ReadOn() {
  for (;;) {
    if (m_track->Next()) return StreamStep::kElement;
    if (m_state == State::kEnded) return StreamStep::kEnded;
    const u32 unread =
        m_window.Text().Size() - std::min(m_reader->Position(), m_window.Text().Size());
    const bool isLow = m_isBetweenParts || (m_window.IsPart() && m_reader->Position() != 0 &&
                                            unread < m_window.Room() / 4);
    TreeStep step = TreeStep::kNeedsMore;
    if (!isLow) step = m_reader->Step();
    if (step == TreeStep::kEnded || m_track->HasFailed()) {
      EndReading();
    } else if (step == TreeStep::kNeedsMore && !MoveOn()) {
      if (m_state != State::kEnded) return m_step;
      m_reader->End();
    }
  }
}

StreamStep MendedText::Next() {
  KRParseLogger* const log = KRParseLogger::TheKRParseLogger();
  m_dictionary = KRTagDictionary::TheKRTagDictionary();
  if (log == nullptr || m_dictionary == nullptr) {
    EndOfMemory();
    return m_step;
  }
  // The host may have used the thread's log since.
  const u16 enabled = log->GetLoggingEnabled();
  log->EnableLogging(1);
  log->DeleteAll();
  log->SetBuffer(nullptr);
  if (m_reader.has_value()) log->SetParser(&*m_reader);
  StreamStep step = m_state == State::kBeginning ? Begin()
                    : m_track.has_value()        ? ReadOn()
                                                 : StreamStep::kEnded;
  // A text may have been lost that no status speaks of.
  if (m_state != State::kEnded && KRGetFireAlarm() != KRFireAlarm_None) {
    EndOfMemory();
    step = m_step;
  }
  log->DeleteAll();
  log->SetParser(nullptr);
  log->EnableLogging(enabled);
  return step;
}

bool MendedText::HasMoreTags() {
  std::size_t from = m_window.OriginalEnd();
  if (m_source.CanGoTo()) {
    from = m_facts.end;
    if (from == TextWindow::kNoEnd || !m_source.GoTo(from)) return false;
  } else {
    const std::size_t position = m_reader.has_value() ? m_reader->Position() : 0;
    const std::size_t read = position < m_window.Text().Size()
                                 ? m_window.Text().ToOriginal(position) - m_window.Base()
                                 : m_window.Original().size();
    if (m_window.Original().find('<', read) != std::string_view::npos) return true;
  }
  return m_source.HasAhead('<', true);
}

}  // namespace krofx::internal
