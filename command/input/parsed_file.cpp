// Parses one input, multipart or not, and collects its warnings with their places.

#include "input/parsed_file.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>

#include "input/foreign_format.h"
#include "input/input_files.h"
#include "krofx/envelope/mime_parser.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

// A list of the library takes this many entries.
constexpr u16 kListLimit = 65535;

// What the library's conversions of dates put in the place of a tag.
constexpr std::string_view kOperations[] = {"ConvertStringToKRTime", "ConvertStringToKRDateTime",
                                            "ExtractTimeZone", "SetTimeZone (time zone mismatch"};

// Copies each warning when it is raised: a parse of a multipart text keeps only those of its last
// part.
class WarningCollector : public KRWarningObserver {
 public:
  WarningCollector(std::string_view text, std::vector<Warning>& warnings)
      : m_text(text), m_warnings(warnings) {}

  void OnWarning(const KRParseException& warning, s32 position) override {
    KRString name;
    warning.WarningString(name);
    Warning copy{ToText(name), TagOf(warning, position), ToText(warning.m_valueText),
                 warning.m_object, position};
    // A conversion and the element that it is for may warn about one value.
    if (m_warnings.empty() || !IsSame(m_warnings.back(), copy)) {
      m_warnings.push_back(std::move(copy));
    }
  }

 private:
  // Most warnings name their tag by its number alone. Those of conversions name an operation of the
  // library instead; what they are about is the tag at their place.
  std::string TagOf(const KRParseException& warning, s32 position) const {
    const char* const known = KRTagDictionary::TheKRTagDictionary()->GetTagString(warning.m_tag);
    std::string tag = ToText(warning.m_tagText);
    if (tag.empty()) return known == nullptr ? "" : known;
    if (std::find(std::begin(kOperations), std::end(kOperations), tag) == std::end(kOperations)) {
      return tag;
    }
    if (position < 0 || static_cast<std::size_t>(position) >= m_text.size()) return "";
    const std::string_view rest = m_text.substr(static_cast<std::size_t>(position));
    return std::string(rest.starts_with('<') ? rest.substr(1, rest.find('>') - 1) : "");
  }

  static bool IsSame(const Warning& left, const Warning& right) {
    return left.name == right.name && left.tag == right.tag && left.value == right.value &&
           left.object == right.object && left.position == right.position;
  }

  std::string_view m_text;
  std::vector<Warning>& m_warnings;
};

bool EqualsWithoutCase(char left, char right) {
  return std::toupper(static_cast<unsigned char>(left)) == right;
}

std::size_t FindWithoutCase(std::string_view text, std::string_view upperCase) {
  const std::string_view::const_iterator found =
      std::search(text.begin(), text.end(), upperCase.begin(), upperCase.end(), EqualsWithoutCase);
  return found == text.end() ? std::string_view::npos
                             : static_cast<std::size_t>(found - text.begin());
}

// A request has a sign-on request in it, and it comes first. What has neither is taken for a
// response.
bool IsRequest(std::string_view text) {
  const std::size_t request = FindWithoutCase(text, "<SONRQ");
  if (request != std::string_view::npos) {
    return FindWithoutCase(text.substr(0, request), "<SONRS") == std::string_view::npos;
  }
  return FindWithoutCase(text, "<SONRS") == std::string_view::npos &&
         FindWithoutCase(text, "MSGSRQV") != std::string_view::npos;
}

bool IsMultipart(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  return FindWithoutCase(line, "CONTENT-TYPE:") == 0 &&
         FindWithoutCase(line, "MULTIPART/") != std::string_view::npos;
}

// As long as it lives, new objects take tags of all versions: the parts of a multipart text come
// from the factory, whose default knows the first version alone.
class AllVersions {
 public:
  AllVersions() { KRDataObj::SetFactory(&m_factory); }
  ~AllVersions() { KRDataObj::SetFactory(nullptr); }
  AllVersions(const AllVersions&) = delete;
  AllVersions& operator=(const AllVersions&) = delete;

 private:
  KRDataObjFactory m_factory{0xffff};
};

bool IsOfx(KRFile& file) {
  return file.GetType() == KRTag_OFXFILERQ || file.GetType() == KRTag_OFXFILERS;
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
  return {buffer.GetBufferPtr() == nullptr ? "" : buffer.GetBufferPtr(), buffer.GetBufferSize()};
}

std::string ToText(const KRString& string) {
  return std::string(static_cast<const char*>(string), string.GetStrLength());
}

ParsedFile::ParsedFile(const std::string& name) : m_name(DisplayName(name)) {
  m_text = ReadInput(name, m_problem);
  if (m_text == nullptr) return;
  Parse();
  m_problem = FindProblem();
}

ParsedFile::ParsedFile(std::string_view name, std::unique_ptr<KRBuffer> text)
    : m_name(SafeLine(name)), m_text(std::move(text)) {
  Parse();
  m_problem = FindProblem();
}

void ParsedFile::Parse() {
  const std::string_view text = ViewOf(*m_text);
  WarningCollector collector(text, m_warnings);
  if (IsMultipart(text)) {
    m_kind = "multipart";
    const AllVersions allVersions;
    m_root = std::make_unique<KRFile>();
    KRMIMEParser parser;
    parser.SetWarningObserver(&collector);
    m_status = parser.Parse(m_text.get(), m_root.get(), 1);
    // The status is that of the last part; the warnings are those of all.
    if (m_status == KRParseStatus_Accepted && !m_warnings.empty())
      m_status = KRParseStatus_Warnings;
    return;
  }
  const bool request = IsRequest(text);
  m_kind = request ? "request" : "response";
  // Files that are made directly, not by a factory, take all versions.
  if (request) {
    m_root = std::make_unique<KRFileRq>();
  } else {
    m_root = std::make_unique<KRFileRs>();
  }
  KRSimpleParser parser;
  parser.SetWarningObserver(&collector);
  m_status = parser.Parse(m_text.get(), m_root.get(), 1);
}

std::vector<KRFile*> ParsedFile::GetOfxFiles() const {
  std::vector<KRFile*> files;
  if (m_root == nullptr) return files;
  if (IsOfx(*m_root)) files.push_back(m_root.get());
  for (u16 index = 0; index < m_root->GetNumberOfSubfiles(); ++index) {
    KRFile* const part = m_root->GetSubfile(index);
    if (part != nullptr && IsOfx(*part)) files.push_back(part);
  }
  return files;
}

std::string ParsedFile::GetMeaning() const {
  if (m_root == nullptr) return "not read";
  switch (m_status) {
    case KRParseStatus_Accepted:
      return "clean";
    case KRParseStatus_Warnings:
      return "read, with warnings";
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
  const bool isRead = m_status == KRParseStatus_Accepted || m_status == KRParseStatus_Warnings;
  const char* const foreign = isRead ? nullptr : DescribeForeignFormat(text);
  if (foreign != nullptr) return foreign;
  if (m_status == KRParseStatus_Fatal) {
    if (KRDataObj* const full = FindFullList(m_root.get())) {
      return "<" + ToText(KRUtility::ObjectToString(full)) +
             "> has more than 65535 entries, which is the most that a list takes; the first 65535 "
             "were read. Ask for a shorter span of time";
    }
    return "memory was exhausted while reading";
  }
  const std::vector<KRFile*> files = GetOfxFiles();
  const bool hasBody = std::any_of(files.begin(), files.end(),
                                   [](KRFile* file) { return file->GetNumberOfChildren() > 0; });
  if (isRead) {
    if (hasBody || m_kind == "multipart") return "";
    return "there is no <OFX> in it; it is not an OFX file, or it was cut off after the header";
  }
  if (m_kind == "multipart" && m_root->GetNumberOfSubfiles() == 0) {
    return "no part was found; the boundary of the header does not occur in the text";
  }
  if (m_status == KRParseStatus_Invalid && !hasBody && m_kind != "multipart") {
    return "the OFX header is missing or wrong (OFXHEADER, DATA, VERSION and so on, one a line)";
  }
  if (m_status == KRParseStatus_Invalid) {
    return m_warnings.empty() ? "the text ends too early: aggregates are still open; download it "
                                "again"
                              : "it was read up to a header, tag or value that is not acceptable, "
                                "or it ends too early";
  }
  return "it was read only in part, " + GetMeaning().substr(sizeof "stopped: " - 1);
}

std::string ParsedFile::GetProblemWithAdvice() const {
  const bool hasPlace = std::any_of(m_warnings.begin(), m_warnings.end(),
                                    [](const Warning& warning) { return warning.position >= 0; });
  return m_problem.empty() || !hasPlace ? m_problem
                                        : m_problem + "; \"krofx check\" names the place";
}

ExitStatus ParsedFile::GetVerdict() const {
  if (!m_problem.empty()) return kExitUnusable;
  return m_status == KRParseStatus_Accepted && m_warnings.empty() ? kExitClean : kExitWarnings;
}

}  // namespace krofx::command
