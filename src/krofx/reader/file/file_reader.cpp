// The passes over a text.

#include "krofx/reader/file/file_reader.h"

#include <algorithm>
#include <new>
#include <utility>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/reader/file/refusal.h"
#include "krofx/reader/file/text_bounds.h"
#include "krofx/reader/file/text_menders.h"
#include "krofx/reader/header/charset_choice.h"
#include "krofx/reader/header/header.h"
#include "krofx/reader/structure/tree_reader.h"

namespace krofx::internal {

namespace {

std::string_view BytesOf(const KRBuffer& buffer) {
  const char* const bytes = buffer.GetBufferPtr();
  constexpr u32 kMost = 0x7fffffff;
  const u32 size = std::min({buffer.GetBufferSize(), buffer.GetBufferAllocation(), kMost});
  return bytes == nullptr ? std::string_view() : std::string_view(bytes, size);
}

}  // namespace

bool MakeRoot(OfxText& text) {
  switch (text.kind) {
    case TextKind::kResponse:
      text.root.reset(new KRFileRs);
      break;
    case TextKind::kRequest:
      text.root.reset(new KRFileRq);
      break;
    case TextKind::kMultipart:
      text.root.reset(new KRFile);
      break;
  }
  return text.root != nullptr;
}

namespace {

bool AlarmIsSet() { return KRGetFireAlarm() != KRFireAlarm_None; }

}  // namespace

bool DescribeText(OfxText& text, std::string_view bytes) {
  const auto field = [&text](KRHeaderTag tag) {
    const KRString* const value = text.root->GetHeader(tag);
    return value == nullptr ? std::string_view() : std::string_view(*value, value->GetStrLength());
  };
  const std::string_view version = field(KRHeaderTag_VERSION).substr(0, 16);
  text.version.Assign(version.data(), static_cast<u16>(version.size()));
  Charset charset;
  ChosenCharset chosen;
  const DeclaredCharset declared{
      field(KRHeaderTag_ENCODING), field(KRHeaderTag_CHARSET), {}, false};
  if (!ChooseCharset(bytes, declared, charset, chosen)) return false;
  text.charset = charset.Name();
  return true;
}

KRParseStatus GraverStatus(KRParseStatus left, KRParseStatus right) {
  const auto weight = [](KRParseStatus status) {
    switch (status) {
      case KRParseStatus_Accepted:
        return 0;
      case KRParseStatus_Warnings:
        return 1;
      case KRParseStatus_Fatal:
        return 3;
      default:
        return 2;
    }
  };
  return weight(right) > weight(left) ? right : left;
}

FileReader::FileReader(KRBuffer& buffer, const ReadOptions& options)
    : m_buffer(buffer),
      m_options(options),
      m_recorder(m_reading, options),
      m_original(BytesOf(buffer)),
      m_file(m_original, 0) {}

Reading FileReader::Read() {
  KRSetFireAlarm(KRFireAlarm_None);
  const AllocationWatch memory;
  m_dictionary = KRTagDictionary::TheKRTagDictionary();
  KRParseLogger* const log = KRParseLogger::TheKRParseLogger();
  KRParseStatus status =
      m_dictionary == nullptr || log == nullptr ? KRParseStatus_Fatal : ReadTexts();
  if (status != KRParseStatus_Fatal || m_reading.root != nullptr) {
    m_recorder.FindPlaces(m_file, m_original);
  }
  // A text that the strict parser had no memory for must not be mended instead.
  if (memory.HasFailed() || m_recorder.HasFailed() || AlarmIsSet()) status = KRParseStatus_Fatal;
  m_reading.status = status;
  Describe(status);
  return std::move(m_reading);
}

KRParseStatus FileReader::ReadTexts() {
  m_recorder.BeginText();
  if (!m_options.strict) {
    const KRParseStatus status = MendWideCharacters(m_file, m_recorder);
    if (status != KRParseStatus_Accepted) return status;
  }
  KRParseStatus status = m_recorder.AnyInText() ? KRParseStatus_Warnings : KRParseStatus_Accepted;
  do {
    if (m_position != 0) m_recorder.BeginText();
    status = GraverStatus(status, ReadNext());
    const bool ended = m_reading.texts.empty() || status == KRParseStatus_Fatal ||
                       m_reading.texts.back().kind == TextKind::kMultipart;
    if (ended || m_options.strict) return status;
    if (!HasText(Bytes(), m_position, *m_dictionary)) return status;
  } while (m_reading.texts.size() < m_options.maxTexts);
  m_reading.problem = "there are more texts in it than are to be read; take it apart";
  return GraverStatus(status, KRParseStatus_Invalid);
}

KRParseStatus FileReader::ReadNext() {
  // The blanks between two texts are of neither.
  while (m_position != 0 && IsWhite(Bytes()[m_position])) ++m_position;
  const std::size_t from = m_position;
  OfxText text;
  text.place.offset = from;
  std::size_t end = from == 0 ? Bytes().size() : FindTextEnd(Bytes(), from);
  text.kind = FindKind(Bytes().substr(from, end - from));
  if (!MakeRoot(text)) return KRParseStatus_Fatal;

  OwnedBuffer copy;
  KRBuffer* const buffer = BufferOf(from, end, copy);
  if (buffer == nullptr) return KRParseStatus_Fatal;
  if (m_options.strict) {
    text.status = ReadStrictly(*buffer, text, from, m_recorder).status;
    m_position = end;
    if (!DescribeText(text, Bytes().substr(from, end - from))) text.status = KRParseStatus_Fatal;
  } else if (const StrictResult strict = TryStrictly(*buffer, text); strict.IsWhole()) {
    m_position = from + strict.end;
    const std::string_view judged =
        strict.mayHaveHighBytes ? Bytes().substr(from, strict.end) : std::string_view();
    if (!DescribeText(text, judged)) return KRParseStatus_Fatal;
  } else if (AlarmIsSet()) {
    text.status = KRParseStatus_Fatal;
  } else {
    copy.reset();
    const bool parts = text.kind == TextKind::kMultipart;
    if (!parts) end = FindTextEnd(Bytes(), from);
    m_position = end;
    if (!MakeRoot(text)) return KRParseStatus_Fatal;
    text.status = parts ? ReadMultipart(text, from, end) : ReadMending(text, from, end);
    // What holds nothing of OFX is no text.
    if (text.root == nullptr) return text.status;
  }
  const KRParseStatus status = text.status;
  if (!m_reading.texts.Append(std::move(text))) return KRParseStatus_Fatal;
  m_reading.root = m_reading.texts[0].root.get();
  return status;
}

// The strict parsers read from the start of a buffer to its end: a part of the file is copied.
KRBuffer* FileReader::BufferOf(std::size_t from, std::size_t end, OwnedBuffer& copy) {
  const bool whole = from == 0 && end == Bytes().size() && Bytes().data() == m_original.data();
  if (whole) return &m_buffer;
  const std::string_view bytes = Bytes().substr(from, end - from);
  copy.reset(new KRBuffer(static_cast<u32>(bytes.size()) + 1, 65536));
  const bool copied = copy != nullptr &&
                      copy->WriteLarge(bytes.data(), static_cast<u32>(bytes.size())) == KRBufferOK;
  return copied ? copy.get() : nullptr;
}

KRParseStatus FileReader::ReadMending(OfxText& text, std::size_t from, std::size_t end) {
  WorkingText working(Bytes().substr(from, end - from), from);
  for (const TextMender mend : TextMenders()) {
    const KRParseStatus status = mend(working, m_recorder);
    if (status != KRParseStatus_Accepted) return status;
  }
  return ReadForm(text, working);
}

KRParseStatus FileReader::ReadForm(OfxText& text, WorkingText& working) {
  Header header;
  if (!FindBody(working.Bytes(), *m_dictionary, header.body)) {
    text.root.reset();
    return KRParseStatus_Invalid;
  }
  if (!ReadHeader(working, m_recorder, header)) return KRParseStatus_Invalid;
  text.form = header.form;
  const std::string_view version = header.Field(KRHeaderTag_VERSION).substr(0, 16);
  text.version.Assign(version.data(), static_cast<u16>(version.size()));
  Charset charset;
  ChosenCharset chosen;
  KRParseStatus status = SettleCharset(working, header, m_recorder, charset, chosen);
  if (status != KRParseStatus_Accepted) return status;
  text.charset = charset.Name();
  status = GiveHeader(working, header, charset, chosen.ascii, m_recorder, *text.root);
  if (status != KRParseStatus_Accepted) return status;
  TreeReader reader(working, *m_dictionary, charset, header.form == TextForm::kOfx2, m_recorder);
  status = reader.Read(*text.root, header.body);
  if (status != KRParseStatus_Accepted) return status;
  return m_recorder.AnyInText() ? KRParseStatus_Warnings : KRParseStatus_Accepted;
}

void FileReader::Describe(KRParseStatus status) {
  if (status == KRParseStatus_Fatal) {
    m_reading.problem = AlarmIsSet()
                            ? "memory was exhausted while reading"
                            : "a list has more than 65535 entries, which is the most that a "
                              "list takes; the first 65535 were read. Ask for a shorter "
                              "span of time";
  } else if (m_recorder.Forbidden() != nullptr) {
    m_reading.problem = "it was read up to damage that must not be mended: ";
    m_reading.problem += m_recorder.Forbidden()->sentence;
  } else if (m_reading.root == nullptr && m_reading.problem.IsEmpty() != 0) {
    m_reading.problem = DescribeForeignFile(m_original);
  }
}

}  // namespace krofx::internal
