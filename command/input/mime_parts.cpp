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
    const bool base64 = WordOf(HeaderOf(*file, "content-transfer-encoding")) == "base64";
    parts.push_back({file, SafeLine(type), name, base64});
  }
  return parts;
}

std::vector<std::string_view> FindBodies(std::string_view text, std::string_view boundary) {
  const std::string line = "--" + std::string(boundary);
  // The place after the next line of the boundary that begins at or after one.
  const auto findLine = [&](std::size_t at) {
    for (; (at = text.find(line, at)) != std::string_view::npos; ++at) {
      if (at == 0 || text[at - 1] == '\n') return at;
    }
    return at;
  };
  std::vector<std::string_view> bodies;
  std::size_t start = findLine(0);
  while (start != std::string_view::npos) {
    start += line.size();
    if (text.substr(start).starts_with("--")) break;
    const std::size_t end = findLine(start);
    std::string_view part = text.substr(start, end == std::string_view::npos ? end : end - start);
    // Its headers end at the first empty line.
    part.remove_prefix(std::min(part.find('\n'), part.size()));
    const std::size_t plain = part.find("\n\n");
    const std::size_t returned = part.find("\n\r\n");
    part.remove_prefix(
        std::min({plain == std::string_view::npos ? plain : plain + 2,
                  returned == std::string_view::npos ? returned : returned + 3, part.size()}));
    bodies.push_back(part);
    start = end;
  }
  return bodies;
}

}  // namespace krofx::command
