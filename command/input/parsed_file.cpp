// Reads one input and says in words what came of it.

#include "input/parsed_file.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "input/foreign_format.h"
#include "input/input_files.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

// What the kind of a text is called.
const char* NameOf(krofx::TextKind kind) {
  switch (kind) {
    case krofx::TextKind::kRequest:
      return "request";
    case krofx::TextKind::kMultipart:
      return "multipart";
    default:
      return "response";
  }
}

bool IsOfx(KRFile& file) {
  return file.GetType() == KRTag_OFXFILERQ || file.GetType() == KRTag_OFXFILERS;
}

// The size of the smallest text that is not held.
std::size_t LeastStreamed(Holding holding) {
  switch (holding) {
    case Holding::kRows:
      return ListStream::kLeastSize;
    case Holding::kSummary:
      return std::size_t{256} * 1024;
    default:
      return static_cast<std::size_t>(-1);
  }
}

ListStream::Use UseOf(Reader reader, Holding holding) {
  if (reader == Reader::kStrict) return ListStream::Use::kStrict;
  return holding == Holding::kSummary ? ListStream::Use::kAllThatIsMissing
                                      : ListStream::Use::kMended;
}

// The first object whose list of children is as long as a list can be.
KRDataObj* FindFullList(KRDataObj* object) {
  if (object == nullptr) return nullptr;
  const u16 count = object->GetNumberOfChildren();
  if (count == kListLimit) return object;
  for (u16 index = 0; index < count; ++index) {
    if (KRDataObj* const found = FindFullList(object->GetChild(index))) return found;
  }
  return nullptr;
}

}  // namespace

std::string_view ViewOf(const KRBuffer& buffer) {
  // What has lost its memory still has a size.
  if (buffer.GetBufferPtr() == nullptr) return {};
  return {buffer.GetBufferPtr(), buffer.GetBufferSize()};
}

std::string ToText(const KRString& string) {
  return std::string(static_cast<const char*>(string), string.GetStrLength());
}

ParsedFile::ParsedFile(const std::string& name, Reader reader, Holding holding,
                       ListStream::MayStream mayStream)
    : m_name(DisplayName(name)) {
  ListStream::Way way{UseOf(reader, holding), mayStream};
  const std::size_t leastStreamed = LeastStreamed(holding);
  const bool isFile = IsLargePlainFile(name, leastStreamed);
  if (isFile && Survey(name, way)) return;
  m_text = ReadInput(name, m_problem);
  if (m_text == nullptr) return;
  const std::size_t size = m_text->GetBufferSize();
  const bool maySurvey = !isFile && size >= leastStreamed;
  if (maySurvey && Survey(name, way)) return;
  Parse(reader);
  // A small text can have a long list as well.
  way.isLong = m_reading.status == KRParseStatus_Fatal && size < ListStream::kLeastSize;
  if (way.isLong && holding != Holding::kAll && Survey(name, way)) return;
  m_problem = FindProblem();
}

bool ParsedFile::Survey(const std::string& name, const ListStream::Way& way) {
  ListStream::Surveyed surveyed = ListStream::Survey(name, m_text, way);
  if (surveyed.stream == nullptr) return false;
  m_reading = {};
  m_warnings.clear();
  KRFile* const root = surveyed.text.root.get();
  if (!m_reading.texts.Append(std::move(surveyed.text))) return false;
  m_reading.root = root;
  m_kind = NameOf(m_reading.texts.begin()->kind);
  m_stream = std::move(surveyed.stream);
  m_reading.status = surveyed.status;
  m_reading.warnings = std::move(surveyed.warnings);
  m_reading.mendings = std::move(surveyed.mendings);
  m_reading.unrecorded = surveyed.unrecorded;
  TakeWarnings();
  return true;
}

ParsedFile::ParsedFile(std::string_view name, std::unique_ptr<KRBuffer> text)
    : m_name(SafeLine(name)), m_text(std::move(text)) {
  if (m_text == nullptr) {
    m_problem = kNoMemoryToRead;
    return;
  }
  Parse(Reader::kMending);
  m_problem = FindProblem();
}

void ParsedFile::Parse(Reader reader) {
  krofx::ReadOptions options;
  options.strict = reader == Reader::kStrict;
  m_reading = krofx::Read(*m_text, options);
  if (m_reading.root != nullptr) m_kind = NameOf(m_reading.texts.begin()->kind);
  TakeWarnings();
}

void ParsedFile::TakeWarnings() {
  for (const krofx::ReadWarning& each : m_reading.warnings) {
    KRParseException exception;
    exception.m_warning = each.warning;
    KRString name;
    exception.WarningString(name);
    m_warnings.push_back({ToText(name), ToText(each.tagText), ToText(each.value), ToText(each.path),
                          each.place, krofx::SentenceOf(each.warning)});
  }
  // The status of a multipart text is that of its last part; the warnings are those of all.
  if (m_reading.status == KRParseStatus_Accepted && !m_warnings.empty()) {
    m_reading.status = KRParseStatus_Warnings;
  }
  const krofx::List<krofx::Mending>& mendings = m_reading.mendings;
  m_mayHaveMovedCards =
      m_reading.unrecorded != 0 ||
      std::any_of(mendings.begin(), mendings.end(), [](const krofx::Mending& mending) {
        return mending.kind == krofx::MendingKind::kAccountKind;
      });
}

bool ParsedFile::BreaksOff() const {
  const krofx::List<krofx::Mending>& mendings = m_reading.mendings;
  return std::any_of(mendings.begin(), mendings.end(), [](const krofx::Mending& mending) {
    return mending.kind == krofx::MendingKind::kCutOff;
  });
}

std::vector<OfxFile> ParsedFile::GetOfxFiles() const {
  std::vector<OfxFile> files;
  for (const krofx::OfxText& text : m_reading.texts) {
    if (text.root == nullptr) continue;
    if (IsOfx(*text.root)) files.push_back({text.root.get(), &text});
    for (u16 index = 0; index < text.root->GetNumberOfSubfiles(); ++index) {
      KRFile* const part = text.root->GetSubfile(index);
      if (part != nullptr && IsOfx(*part)) files.push_back({part, &text});
    }
  }
  return files;
}

std::string ParsedFile::CountNotes() const {
  std::string notes;
  for (const krofx::Mending& mending : m_reading.mendings) {
    if (mending.kind != krofx::MendingKind::kCutOff) continue;
    notes = "it breaks off in line " + std::to_string(mending.place.line);
    break;
  }
  const auto add = [&notes](std::size_t count, const char* one, const char* several) {
    if (count == 0) return;
    if (!notes.empty()) notes += ", ";
    notes += std::to_string(count) + " " + (count == 1 ? one : several);
  };
  add(m_reading.mendings.size(), "mending", "mendings");
  add(m_warnings.size(), "warning", "warnings");
  add(m_reading.unrecorded, "more", "more");
  return notes;
}

std::string ParsedFile::GetMeaning() const {
  if (m_reading.root == nullptr) return "not read";
  switch (m_reading.status) {
    case KRParseStatus_Accepted:
      return "clean";
    case KRParseStatus_Warnings:
      if (m_reading.mendings.size() == 0) return "read, with warnings";
      return m_warnings.empty() ? "read, with mendings" : "read, with mendings and warnings";
    case KRParseStatus_Fatal:
      return "stopped: memory or a list was exhausted";
    case KRParseStatus_Invalid:
      return "stopped: a header, tag or value is not acceptable, or the text ends too early";
    case KRParseStatus_EndTagMismatch:
      return "stopped: an end tag does not match the open aggregate";
    case KRParseStatus_StackFull:
      return "stopped: too many aggregates inside each other";
    default:
      return "stopped";
  }
}

std::string ParsedFile::FindProblem() const {
  const std::string_view text = ViewOf(*m_text);
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    return "it is empty; download it again";
  }
  const KRParseStatus status = m_reading.status;
  const bool isRead = status == KRParseStatus_Accepted || status == KRParseStatus_Warnings;
  // What exhausts memory or a list has been understood.
  const bool isForeign = !isRead && status != KRParseStatus_Fatal;
  const char* const foreign = isForeign ? DescribeForeignFormat(text) : nullptr;
  if (foreign != nullptr) return foreign;
  if (status == KRParseStatus_Fatal) {
    if (KRDataObj* const full = FindFullList(m_reading.root)) {
      return "<" + ToText(KRUtility::ObjectToString(full)) +
             "> has more than 65535 entries of one kind, which is more than can be held; the first "
             "65535 were read";
    }
    return "memory was exhausted while reading";
  }
  if (m_reading.problem.GetStrLength() > 0) return ToText(m_reading.problem);
  const std::vector<OfxFile> files = GetOfxFiles();
  const bool hasBody = std::any_of(files.begin(), files.end(), [](const OfxFile& each) {
    return each.file->GetNumberOfChildren() > 0;
  });
  if (isRead) {
    if (hasBody || m_kind == "multipart") return "";
    return "there is no <OFX> in it; it is not an OFX file, or it was cut off after the header";
  }
  if (m_kind == "multipart" && m_reading.root->GetNumberOfSubfiles() == 0) {
    return "no part was found; the boundary of the header does not occur in the text";
  }
  if (status == KRParseStatus_Invalid && !hasBody && m_kind != "multipart") {
    return "the OFX header is missing or wrong (OFXHEADER, DATA, VERSION and so on, one a line)";
  }
  if (status == KRParseStatus_Invalid) {
    return m_warnings.empty() ? "the text ends too early: aggregates are still open; download it "
                                "again"
                              : "it was read up to a header, tag or value that is not acceptable, "
                                "or it ends too early";
  }
  return "it was read only in part, " + GetMeaning().substr(sizeof "stopped: " - 1);
}

std::string ParsedFile::GetProblemWithAdvice() const {
  const bool hasPlace = std::any_of(m_warnings.begin(), m_warnings.end(),
                                    [](const Warning& warning) { return warning.place.line > 0; });
  return m_problem.empty() || !hasPlace ? m_problem
                                        : m_problem + "; \"krofx check --details\" names the place";
}

ExitStatus ParsedFile::GetVerdict() const {
  if (!m_problem.empty()) return kExitUnusable;
  return m_reading.status == KRParseStatus_Accepted && m_warnings.empty() ? kExitClean
                                                                          : kExitWarnings;
}

}  // namespace krofx::command
