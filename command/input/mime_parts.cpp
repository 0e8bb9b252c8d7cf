// Collects attachments, and makes names for them that stay in their folder.

#include "input/mime_parts.h"

#include <algorithm>
#include <cctype>

#include "input/parsed_file.h"
#include "output/characters.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

constexpr std::size_t kMaxName = 100;
constexpr std::string_view kWhite = " \t\r\n";

std::string HeaderOf(const KRFile& file, const char* name) {
  KRString key(name);
  const KRMIMEHeader* const header = file.GetMIMEHeader(&key);
  return header == nullptr ? "" : ToText(header->value);
}

// The value of a parameter, as in "image/png; name=\"a.png\"".
std::string ParameterOf(const std::string& header, const std::string& name) {
  const std::size_t found = LowerAscii(header).find(name + "=");
  if (found == std::string::npos) return "";
  std::string value = header.substr(found + name.size() + 1);
  if (value.starts_with('"')) {
    value.erase(0, 1);
    return value.substr(0, value.find('"'));
  }
  return value.substr(0, value.find_first_of("; \t"));
}

// The value of a header without its parameters, in small letters.
std::string WordOf(const std::string& header) {
  std::string word = LowerAscii(header.substr(0, header.find(';')));
  word.erase(word.find_last_not_of(" \t") + 1);
  word.erase(0, word.find_first_not_of(" \t"));
  return word;
}

// Leaves letters, digits and a few marks of the last step of a path. A leading point or hyphen goes
// too, so that the name is neither a hidden file nor an option.
std::string SafeName(const std::string& text) {
  const std::size_t step = text.find_last_of("/\\:");
  std::string name;
  for (const char c : step == std::string::npos ? text : text.substr(step + 1)) {
    const bool plain =
        std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '_' || c == '-';
    if (!plain || (name.empty() && (c == '.' || c == '-'))) continue;
    name += c;
  }
  return name.substr(0, kMaxName);
}

const char* ExtensionFor(const std::string& type) {
  struct Known {
    const char* type;
    const char* extension;
  };
  static constexpr Known kKnown[] = {{"text/plain", ".txt"},     {"text/html", ".html"},
                                     {"image/png", ".png"},      {"image/jpeg", ".jpg"},
                                     {"image/gif", ".gif"},      {"application/x-ofx", ".ofx"},
                                     {"application/pdf", ".pdf"}};
  for (const Known& known : kKnown) {
    if (type == known.type) return known.extension;
  }
  return ".bin";
}

// A line of the boundary. Without one, `start` and `end` are both the end of the text.
struct BoundaryLine {
  std::size_t start;
  std::size_t end;
  bool isLast;
};

// Finds the next line of the boundary, from the start of a line on. As in the reader, its letters
// are of any case, white space may surround it, and only the last one has more: two hyphens.
BoundaryLine FindLine(std::string_view text, std::string_view wanted, std::size_t at) {
  while (at < text.size()) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    std::string_view line = text.substr(at, end - at);
    line.remove_prefix(std::min(line.find_first_not_of(kWhite), line.size()));
    line = line.substr(0, line.find_last_not_of(kWhite) + 1);
    if (line.starts_with("--") && LowerAscii(line.substr(0, wanted.size())) == wanted) {
      const std::string_view rest = line.substr(wanted.size());
      if (rest.empty() || rest == "--") return {at, end, !rest.empty()};
    }
    at = end;
  }
  return {text.size(), text.size(), false};
}

// What follows the headers of a part and their empty line. Where that line is missing, the body
// begins at the first line that cannot be a header, so that none of it is lost.
std::string_view WithoutHeaders(std::string_view part) {
  for (bool goesOn = false; !part.empty(); goesOn = true) {
    const std::size_t size = std::min(part.find('\n'), part.size() - 1) + 1;
    const std::string_view line = part.substr(0, size);
    const bool isMore = goesOn && (line.front() == ' ' || line.front() == '\t');
    const bool isEmpty = line.find_first_not_of(kWhite) == std::string_view::npos;
    if (!isMore && !isEmpty && line.find(':') == std::string_view::npos) break;
    part.remove_prefix(size);
    if (!isMore && isEmpty) break;
  }
  return part;
}

}  // namespace

std::vector<Part> FindParts(KRFile& multipart) {
  std::vector<Part> parts;
  for (u16 index = 0; index < multipart.GetNumberOfSubfiles(); ++index) {
    KRFile* const file = multipart.GetSubfile(index);
    if (file == nullptr) continue;
    const std::string contentType = HeaderOf(*file, "content-type");
    std::string type = WordOf(contentType);
    if (type.empty()) type = "text/plain";
    std::string name = SafeName(ParameterOf(HeaderOf(*file, "content-disposition"), "filename"));
    if (name.empty()) name = SafeName(ParameterOf(contentType, "name"));
    if (name.empty()) name = SafeName(HeaderOf(*file, "content-location"));
    if (name.empty()) name = "part-" + std::to_string(index + 1) + ExtensionFor(type);
    parts.push_back(
        {file, SafeLine(type), name, WordOf(HeaderOf(*file, "content-transfer-encoding"))});
  }
  return parts;
}

std::vector<std::string_view> FindBodies(std::string_view text, std::string_view boundary) {
  const std::string line = "--" + LowerAscii(boundary);
  std::vector<std::string_view> bodies;
  for (BoundaryLine begin = FindLine(text, line, 0); begin.end > begin.start && !begin.isLast;) {
    const BoundaryLine next = FindLine(text, line, begin.end);
    bodies.push_back(WithoutHeaders(text.substr(begin.end, next.start - begin.end)));
    begin = next;
  }
  return bodies;
}

}  // namespace krofx::command
