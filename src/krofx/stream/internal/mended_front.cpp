// What is done before the body of a text is mended: what has to be known of the whole text, its
// header and its character set.

#include <algorithm>

#include "krofx/envelope/file.h"
#include "krofx/reader/file/file_reader.h"
#include "krofx/reader/file/refusal.h"
#include "krofx/reader/file/text_bounds.h"
#include "krofx/reader/file/text_menders.h"
#include "krofx/stream/internal/mended_text.h"

namespace krofx::internal {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

bool MendedText::FindStart() {
  for (;;) {
    if (!Fill()) return false;
    const std::string_view bytes = m_window.Original();
    if (HasWideCharacters(bytes)) {
      return End(KRParseStatus_Invalid,
                 "it is in UTF-16 or UTF-32, which a stream does not mend; krofx::Read reads it");
    }
    bool isNamed = false;
    m_text.kind = FindKind(bytes, isNamed);
    if (m_text.kind == TextKind::kMultipart) {
      return End(KRParseStatus_Invalid,
                 "it is a multipart text, whose parts have to be taken apart first");
    }
    const bool hasBody = FindBody(m_window.Text().Bytes(), *m_dictionary, m_header.body);
    if (hasBody && (isNamed || !m_window.IsPart() || m_window.IsAtLimit())) return true;
    if (m_window.IsPart() && m_window.Grow()) continue;
    End(KRParseStatus_Invalid, "");
    m_problem = DescribeForeignFile(bytes);
    return false;
  }
}

// What is in the window, up to the last tag that is all there: no character is cut.
std::string_view MendedText::WholeTags() const {
  const std::string_view bytes = m_window.Original();
  return m_window.IsPart() ? bytes.substr(0, bytes.rfind('>') + 1) : bytes;
}

bool MendedText::GatherAll() {
  const std::size_t body = m_window.Text().ToOriginal(m_header.body);
  bool gathered = false;
  if (m_source.CanGoTo()) {
    gathered = m_source.GoTo(0);
    TextParts parts(m_source, m_usual, m_most);
    gathered = gathered && GatherFacts(parts, body, m_facts) && m_window.Restart(m_facts.end);
    if (gathered) return Fill();
  } else {
    ByteSource first;
    first.SetBytes(WholeTags(), true);
    m_counted = WholeTags().size();
    TextParts parts(first, m_usual, m_most);
    gathered = GatherFacts(parts, body, m_facts);
    if (m_facts.end != TextWindow::kNoEnd) {
      m_window.EndAt(m_facts.end);
      if (!m_window.Show()) return EndOfMemory();
    }
  }
  return gathered || End(KRParseStatus_Invalid, "it cannot be read a second time");
}

bool MendedText::SettleCharset(ChosenCharset& chosen) {
  if (!ChooseCharset(m_facts.high, DeclaredIn(m_header), m_ofBytes, chosen)) return EndOfMemory();
  if (!SayCharset(m_window.Text(), m_header, m_ofBytes, chosen, m_facts.firstHigh.offset,
                  m_recorder)) {
    return Forbid();
  }
  bool isForeign = false;
  if (!m_ofBytes.IsUtf8()) {
    const std::size_t body = m_window.Text().ToOriginal(m_header.body);
    const std::size_t position = m_source.Position();
    ByteSource first;
    first.SetBytes(m_window.Original(), true);
    const bool all = m_source.CanGoTo();
    bool read = !all || m_source.GoTo(0);
    TextParts parts(all ? m_source : first, m_usual, m_most, m_facts.end);
    read = read &&
           FindForeignReference(parts, all ? body : body - m_window.Base(), m_ofBytes, isForeign);
    if (all) read = m_source.GoTo(position) && read;
    if (!read) return End(KRParseStatus_Invalid, "it cannot be read a second time");
  }
  if (m_charset.Open(isForeign ? "UTF-8" : m_ofBytes.Name()) != Charset::Opened::kYes) {
    return EndOfMemory();
  }
  if (!isForeign) return true;
  if (!chosen.ascii) {
    m_window.ConvertFrom(m_header.body, m_ofBytes);
    if (!m_window.Show()) return EndOfMemory();
  }
  chosen.ascii = false;
  return true;
}

bool MendedText::ReadFront() {
  // As it came: a mark after a control character, which the window leaves out, is a text in front.
  const std::string_view bytes = m_window.Original();
  if (bytes.starts_with(kByteOrderMark)) {
    // XML may begin with one.
    const bool xml = bytes.substr(kByteOrderMark.size()).starts_with("<?");
    if (!xml && !m_recorder.Note(MendingKind::kByteOrderMark, {}, {}, {}, {})) return Forbid();
    m_window.Slide(kByteOrderMark.size());
    if (!m_window.Show()) return EndOfMemory();
  }
  if (m_facts.hasControl &&
      !m_recorder.Note(MendingKind::kControlCharacter, {m_facts.control.offset, PathLog::kNoPath},
                       {}, {}, {})) {
    return Forbid();
  }
  const WorkingText& text = m_window.Text();
  if (!FindBody(text.Bytes(), *m_dictionary, m_header.body)) {
    return End(KRParseStatus_Invalid, "it was changed while it was read");
  }
  if (!MakeRoot(m_text)) return EndOfMemory();
  m_header.isSecondVersion = m_facts.isSecondVersion;
  if (!ReadHeader(text, m_recorder, m_header)) return Forbid();
  m_text.form = m_header.form;
  const std::string_view version = m_header.Field(KRHeaderTag_VERSION).substr(0, 16);
  m_text.version.Assign(version.data(), static_cast<u16>(version.size()));
  const auto keep = [](KRString& kept, std::string_view field) {
    kept.Assign(field.data(), static_cast<u16>(std::min<std::size_t>(field.size(), 255)));
  };
  const DeclaredCharset declared = DeclaredIn(m_header);
  keep(m_encoding, declared.encoding);
  keep(m_declaredSet, declared.charset);
  keep(m_xmlEncoding, declared.xmlEncoding);
  ChosenCharset chosen;
  if (!SettleCharset(chosen)) return false;
  m_text.charset = m_charset.Name();
  switch (GiveHeader(text, m_header, m_charset, chosen.ascii, m_recorder, *m_text.root)) {
    case KRParseStatus_Accepted:
      return true;
    case KRParseStatus_Fatal:
      return EndOfMemory();
    default:
      return Forbid();
  }
}

StreamStep MendedText::Begin() {
  if (!FindStart()) return m_step;
  m_recorder.BeginText();
  if (!GatherAll() || !ReadFront()) return m_step;
  m_track.emplace(m_wanted, m_window, static_cast<MendedTrack::Checker&>(*this));
  m_track->Begin(*m_text.root);
  m_reader.emplace(m_window.Text(), *m_dictionary, m_charset, m_header.form == TextForm::kOfx2,
                   m_recorder);
  m_reader->Begin(*m_text.root, m_header.body, &*m_track, this);
  m_state = State::kReading;
  return ReadOn();
}

}  // namespace krofx::internal
