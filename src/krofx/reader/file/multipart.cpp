// Multipart texts that the MIME parser does not read whole: it ends at the first part with a
// warning, passes over parts whose first header is not their content type, and counts the positions
// of bodies in 16 bits.

#include "krofx/reader/file/multipart.h"

#include <algorithm>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/thread.h"
#include "krofx/reader/characters/trimmed.h"
#include "krofx/reader/file/file_reader.h"
#include "krofx/reader/file/text_bounds.h"
#include "krofx/reader/header/header.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

// The last position of a text that the MIME parser counts.
constexpr std::size_t kLastOfParser = 65535;

bool Assign(KRString& target, std::string_view text) {
  return text.empty() || target.Assign(text.data(), static_cast<u16>(text.size())) != 0;
}

// After the line that begins at `at`.
std::size_t NextLine(std::string_view bytes, std::size_t at) {
  const std::size_t end = bytes.find('\n', at);
  return end == std::string_view::npos ? bytes.size() : end + 1;
}

// Header lines, up to a blank line.
class HeaderLines {
 public:
  HeaderLines(std::string_view bytes, std::size_t from) : m_bytes(bytes), m_next(from) {}

  // Moves to the next field; a line that begins with a blank goes on with the one before it.
  bool Next() {
    if (m_next >= m_bytes.size()) return false;
    std::size_t end = NextLine(m_bytes, m_next);
    const std::string_view first = m_bytes.substr(m_next, end - m_next);
    // The body of a part begins with the blank line, as it does for the MIME parser.
    if (Trimmed(first).empty()) return false;
    const std::size_t colon = first.find(':');
    if (colon == std::string_view::npos || first.front() == '<') return false;
    while (end < m_bytes.size() && (m_bytes[end] == ' ' || m_bytes[end] == '\t')) {
      end = NextLine(m_bytes, end);
    }
    m_name = Trimmed(first.substr(0, colon));
    m_value = Trimmed(m_bytes.substr(m_next + colon + 1, end - m_next - colon - 1));
    m_next = end;
    return true;
  }

  std::string_view Name() const { return m_name; }
  std::string_view Value() const { return m_value; }
  // Where the headers end.
  std::size_t Position() const { return m_next; }

 private:
  std::string_view m_bytes;
  std::size_t m_next;
  std::string_view m_name;
  std::string_view m_value;
};

// The boundary that a content type names.
std::string_view BoundaryOf(std::string_view type) {
  constexpr std::string_view kWord = "boundary";
  for (std::size_t at = 0; at + kWord.size() < type.size(); ++at) {
    if (!EqualsWithoutCase(type.substr(at, kWord.size()), kWord)) continue;
    std::string_view rest = Trimmed(type.substr(at + kWord.size()));
    if (!rest.starts_with('=')) continue;
    rest = Trimmed(rest.substr(1));
    if (rest.starts_with('"')) return rest.substr(1, rest.find('"', 1) - 1);
    return rest.substr(0, rest.find_first_of("; \t\r\n"));
  }
  return {};
}

// A boundary line: two hyphens, the boundary in any case of letters, and two more at the last.
bool IsBoundary(std::string_view line, std::string_view boundary, bool& last) {
  line = Trimmed(line);
  if (!line.starts_with("--")) return false;
  line.remove_prefix(2);
  if (line.size() < boundary.size() ||
      !EqualsWithoutCase(line.substr(0, boundary.size()), boundary)) {
    return false;
  }
  line.remove_prefix(boundary.size());
  last = line == "--";
  return line.empty() || last;
}

}  // namespace

bool HasAllParts(std::string_view text, KRFile& file) {
  HeaderLines lines(text, 0);
  std::string_view boundary;
  while (lines.Next()) {
    if (boundary.empty()) boundary = BoundaryOf(lines.Value());
  }
  if (boundary.empty()) return file.GetNumberOfSubfiles() == 0;
  std::size_t parts = 0;  // That have begun.
  bool last = false;
  for (std::size_t at = lines.Position(); at < text.size() && !last;) {
    const std::size_t next = NextLine(text, at);
    if (IsBoundary(text.substr(at, next - at), boundary, last)) {
      if (parts > 0 && next > kLastOfParser) {
        KRFile* const part = file.GetSubfile(static_cast<u16>(parts - 1));
        if (part != nullptr && part->GetType() == KRTag_MIME) return false;
      }
      if (!last && ++parts > file.GetNumberOfSubfiles()) return false;
    }
    at = next;
  }
  return parts == file.GetNumberOfSubfiles();
}

KRParseStatus FileReader::ReadMultipart(OfxText& text, std::size_t from, std::size_t end) {
  const std::string_view bytes = Bytes().substr(0, end);
  HeaderLines lines(bytes, from);
  std::string_view boundary;
  while (lines.Next()) {
    if (boundary.empty()) boundary = BoundaryOf(lines.Value());
    KRString name;
    KRString value;
    if (!Assign(name, lines.Name().substr(0, 255)) ||
        !Assign(value, lines.Value().substr(0, 4096))) {
      return KRParseStatus_Fatal;
    }
    text.root->HandleHeader(KRHeaderTag_None, value, &name);
  }
  KRString stored;
  if (!Assign(stored, boundary.substr(0, 255)) || text.root->SetBoundary(stored) == 0) {
    return KRParseStatus_Fatal;
  }

  KRParseStatus status = KRParseStatus_Accepted;
  std::size_t part = std::string_view::npos;
  bool last = false;
  for (std::size_t at = lines.Position(); at < end && !last;) {
    const std::size_t next = NextLine(bytes, at);
    if (IsBoundary(bytes.substr(at, next - at), boundary, last)) {
      if (part != std::string_view::npos) status = GraverStatus(status, ReadPart(text, part, at));
      part = next;
    }
    at = next;
    if (status == KRParseStatus_Fatal) return status;
  }
  if (part == std::string_view::npos) {
    text.root.reset();
    return KRParseStatus_Invalid;
  }
  if (last) return status;
  // The rest is a part too, whose end is missing.
  if (!m_recorder.Note(MendingKind::kMultipartDamage, {end, PathLog::kNoPath}, {}, {}, {})) {
    return KRParseStatus_Invalid;
  }
  return GraverStatus(GraverStatus(status, ReadPart(text, part, end)), KRParseStatus_Warnings);
}

KRParseStatus FileReader::ReadPart(OfxText& text, std::size_t from, std::size_t end) {
  const std::string_view bytes = Bytes().substr(0, end);
  OfxText part;
  u32 body = 0;
  const bool isOfx = FindBody(bytes.substr(from), *m_dictionary, body);
  part.kind = isOfx ? FindKind(bytes.substr(from + body)) : TextKind::kMultipart;
  if (!MakeRoot(part)) return KRParseStatus_Fatal;
  HeaderLines lines(bytes, from);
  while (lines.Next()) {
    // The header of OFX itself is the text's.
    if (isOfx && EqualsWithoutCase(lines.Name(), "OFXHEADER")) break;
    KRString name;
    KRString value;
    if (!Assign(name, lines.Name().substr(0, 255)) ||
        !Assign(value, lines.Value().substr(0, 4096))) {
      return KRParseStatus_Fatal;
    }
    part.root->HandleHeader(KRHeaderTag_None, value, &name);
    from = lines.Position();
  }
  from = std::max(from, isOfx ? from : lines.Position());
  KRParseStatus status = KRParseStatus_Accepted;
  if (isOfx) {
    while (from < end && IsWhite(bytes[from])) ++from;
    status = ReadMending(part, from, end);
    if (text.charset.IsEmpty() != 0) {
      text.charset = part.charset;
      text.version = part.version;
      text.form = part.form;
    }
  } else {
    const std::string_view content = bytes.substr(from);
    KRString stored;
    if (content.size() > KRString::kMaxLength) {
      m_recorder.Warn(KRPW_TOOLONG, {from, PathLog::kNoPath}, KRTag_None, {}, {});
    } else if (!Assign(stored, content) || part.root->SetMIMEBody(stored) == 0) {
      return KRParseStatus_Fatal;
    }
  }
  if (part.root == nullptr) return status;
  part.root->SetParent(text.root.get());
  if (text.root->AppendSubfile(part.root.get()) == 0) return KRParseStatus_Fatal;
  static_cast<void>(part.root.release());
  return status;
}

}  // namespace krofx::internal
