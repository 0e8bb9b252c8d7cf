// Finding header fields by their names.

#include "krofx/reader/header/header.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "krofx/core/internal/byte_search.h"
#include "krofx/parse/internal/end_tag_index.h"
#include "krofx/reader/characters/charset.h"
#include "krofx/reader/characters/trimmed.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/records/recorder.h"
#include "krofx/reader/structure/aggregate_role.h"
#include "krofx/reader/tags/scanner.h"
#include "krofx/values/data_conversion.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

struct FieldName {
  KRHeaderTag tag;
  std::string_view name;
  std::string_view usual;
};

constexpr FieldName kNames[] = {
    {KRHeaderTag_OFXHEADER, "OFXHEADER", "100"},
    {KRHeaderTag_DATA, "DATA", "OFXSGML"},
    {KRHeaderTag_VERSION, "VERSION", "102"},
    {KRHeaderTag_SECURITY, "SECURITY", "NONE"},
    {KRHeaderTag_ENCODING, "ENCODING", "USASCII"},
    {KRHeaderTag_CHARSET, "CHARSET", "1252"},
    {KRHeaderTag_COMPRESSION, "COMPRESSION", "NONE"},
    {KRHeaderTag_OLDFILEUID, "OLDFILEUID", "NONE"},
    {KRHeaderTag_NEWFILEUID, "NEWFILEUID", "NONE"},
};

bool IsNameCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_' || c == '.';
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

bool StartsWithoutCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualsWithoutCase(text.substr(0, start.size()), start);
}

// Reads the header in front of a body.
class HeaderReader {
 public:
  HeaderReader(const WorkingText& text, Recorder& recorder, Header& header)
      : m_text(text), m_recorder(recorder), m_header(header) {}

  bool Read(std::string_view front) {
    const std::size_t xml = FindInstruction(front, "OFX");
    if (const std::size_t at = FindInstruction(front, "xml"); at != std::string_view::npos) {
      m_header.xmlEncoding = Attribute(Instruction(front, at), "encoding");
      m_declared = true;
    }
    if (xml != std::string_view::npos) {
      m_header.form = TextForm::kOfx2;
      return ReadFields2(front, xml);
    }
    if (m_declared) m_header.form = TextForm::kOfx2;
    return ReadFields1(front);
  }

 private:
  bool Note(MendingKind kind, const char* at, std::string_view tag, std::string_view was,
            std::string_view taken = {}) {
    const auto position = static_cast<std::size_t>(at - m_text.Bytes().data());
    return m_recorder.Note(kind, {m_text.ToOriginal(position), PathLog::kNoPath}, tag, was, taken);
  }

  // OFX 2

  static std::size_t FindInstruction(std::string_view front, std::string_view name) {
    for (std::size_t at = front.find("<?"); at != std::string_view::npos;
         at = front.find("<?", at + 1)) {
      const std::string_view rest = front.substr(at + 2);
      if (StartsWithoutCase(rest, name) && rest.size() > name.size() &&
          !IsNameCharacter(rest[name.size()])) {
        return at;
      }
    }
    return std::string_view::npos;
  }

  static std::string_view Instruction(std::string_view front, std::size_t at) {
    return front.substr(at, front.find('>', at) - at);
  }

  // The value of an attribute, in either quotes or in none; empty when there is none.
  static std::string_view Attribute(std::string_view tag, std::string_view name) {
    for (std::size_t at = 1; at + name.size() < tag.size(); ++at) {
      if (!IsWhite(tag[at - 1]) && tag[at - 1] != '"' && tag[at - 1] != '\'') continue;
      if (!StartsWithoutCase(tag.substr(at), name)) continue;
      std::string_view rest = tag.substr(at + name.size());
      while (!rest.empty() && IsWhite(rest.front())) rest.remove_prefix(1);
      if (rest.empty() || rest.front() != '=') continue;
      rest.remove_prefix(1);
      while (!rest.empty() && IsWhite(rest.front())) rest.remove_prefix(1);
      if (rest.empty()) return {};
      const char quote = rest.front();
      if (quote == '"' || quote == '\'') return rest.substr(1, rest.find(quote, 1) - 1);
      return rest.substr(0, rest.find_first_of(" \t\r\n?"));
    }
    return {};
  }

  bool ReadFields2(std::string_view front, std::size_t at) {
    const std::string_view instruction = Instruction(front, at);
    for (const FieldName& field : kNames) {
      m_header.fields[field.tag] = Trimmed(Attribute(instruction, field.name));
    }
    const std::string_view before =
        Trimmed(front.substr(0, std::min(front.find('<'), front.size())));
    return before.empty() || Note(MendingKind::kTextInFront, before.data(), {}, before);
  }

  // OFX 1

  // The first field from `from` on, by name and colon; kNone when there is none.
  static const FieldName* FindField(std::string_view front, std::size_t from, std::size_t& at,
                                    std::size_t& value) {
    for (std::size_t colon = front.find(':', from); colon != std::string_view::npos;
         colon = front.find(':', colon + 1)) {
      std::size_t end = colon;
      while (end > from && IsBlank(front[end - 1])) --end;
      for (const FieldName& field : kNames) {
        if (end < from + field.name.size()) continue;
        const std::size_t start = end - field.name.size();
        if (!EqualsWithoutCase(front.substr(start, field.name.size()), field.name)) continue;
        // "Content-Encoding" is a field of a web server.
        if (start > 0 && (front[start - 1] == '-' || front[start - 1] == '_')) continue;
        at = start;
        value = colon + 1;
        return &field;
      }
    }
    return nullptr;
  }

  // Where the value of a field ends that may go up to `end`: at the end of its line, or where
  // another field begins that OFX does not have.
  static std::size_t ValueEnd(std::string_view front, std::size_t value, std::size_t end) {
    while (value < end && IsBlank(front[value])) ++value;
    std::size_t at = value;
    while (at < end && !IsWhite(front[at]) && front[at] != '<') ++at;
    return at;
  }

  bool ReadFields1(std::string_view front) {
    std::size_t at = 0;
    std::size_t value = 0;
    std::size_t first = std::string_view::npos;
    std::size_t passed = 0;
    bool inOrder = true;
    const FieldName* field = FindField(front, 0, at, value);
    while (field != nullptr) {
      std::size_t nextAt = front.size();
      std::size_t nextValue = 0;
      const FieldName* const next = FindField(front, value, nextAt, nextValue);
      const std::size_t end = ValueEnd(front, value, next == nullptr ? front.size() : nextAt);
      if (first == std::string_view::npos) {
        first = at;
        if (!TakeFront(front.substr(0, at))) return false;
      } else {
        const std::string_view between = front.substr(passed, at - passed);
        if (!TakeBetween(between, inOrder)) return false;
      }
      // Of two fields of one name the last counts, as for the parser.
      const std::string_view given = Trimmed(front.substr(value, end - value));
      if (!given.empty()) m_header.fields[field->tag] = given;
      passed = end;
      field = next;
      at = nextAt;
      value = nextValue;
    }
    if (first == std::string_view::npos) return TakeMissing(front);
    return TakeAfter(front.substr(passed), inOrder) && TakeForm(front.substr(first));
  }

  // What is in front of the first field; an XML declaration or a comment is no text.
  bool TakeFront(std::string_view before) {
    std::string_view text = Trimmed(before);
    if (text.starts_with("<?") || text.starts_with("<!")) text = {};
    if (!text.empty()) return Note(MendingKind::kTextInFront, text.data(), {}, text);
    return before.empty() || m_declared ||
           Note(MendingKind::kHeaderLayout, before.data(), {}, before);
  }

  // What is between two fields: a line end when all is in order.
  bool TakeBetween(std::string_view between, bool& inOrder) {
    const std::string_view text = Trimmed(between);
    const bool lineEnd =
        text.empty() && (std::count(between.begin(), between.end(), '\n') == 1 || between == "\r");
    if (!text.empty()) return TakeUnknown(text);
    if (!lineEnd && inOrder) {
      inOrder = false;
      return Note(MendingKind::kHeaderLayout, between.data(), {}, between);
    }
    return true;
  }

  // Fields of other names, and whatever else has come between.
  bool TakeUnknown(std::string_view text) {
    const std::size_t colon = text.find(':');
    const std::string_view name =
        colon == std::string_view::npos ? std::string_view() : Trimmed(text.substr(0, colon));
    return Note(MendingKind::kHeaderFieldUnknown, text.data(), name, text);
  }

  // What is between the last field and the body: a blank line when all is in order.
  bool TakeAfter(std::string_view after, bool inOrder) {
    const std::string_view text = Trimmed(after.substr(0, std::min(after.find('<'), after.size())));
    if (!text.empty() && !TakeUnknown(text)) return false;
    const std::size_t lines =
        static_cast<std::size_t>(std::max(std::count(after.begin(), after.end(), '\n'),
                                          std::count(after.begin(), after.end(), '\r')));
    return lines >= 2 || !inOrder || Note(MendingKind::kHeaderLayout, after.data(), {}, {});
  }

  bool TakeForm(std::string_view header) {
    if (!m_declared) return true;
    return Note(MendingKind::kHeaderForm, header.data(), {}, "OFXHEADER:100", "OFX 2");
  }

  bool TakeMissing(std::string_view front) {
    const std::string_view text = Trimmed(front.substr(0, std::min(front.find('<'), front.size())));
    if (!text.empty() && !Note(MendingKind::kTextInFront, text.data(), {}, text)) return false;
    return Note(MendingKind::kHeaderMissing, front.data() + front.size(), {}, {});
  }

  const WorkingText& m_text;
  Recorder& m_recorder;
  Header& m_header;
  bool m_declared = false;
};

bool IsKnown(KRHeaderTag tag, std::string_view value) {
  KRString text;
  text.Assign(value.data(), static_cast<u16>(std::min<std::size_t>(value.size(), 255)));
  text.MakeUpper();
  switch (tag) {
    case KRHeaderTag_OFXHEADER:
      return text == "100";
    case KRHeaderTag_DATA:
      return text == "OFXSGML";
    case KRHeaderTag_VERSION:
      return text == "102" || text == "151";
    case KRHeaderTag_COMPRESSION:
      return text == "NONE";
    default:
      return value.size() <= KRString::kMaxLength;
  }
}

// The value of a header field that is true of the texts of the tree. What the file declares
// stays when it is true and the strict parser knows it.
std::string_view TrueCharset(KRHeaderTag tag, const Header& header, const Charset& charset,
                             bool ascii) {
  const std::string_view encoding = header.Field(KRHeaderTag_ENCODING);
  const std::string_view declared = header.Field(KRHeaderTag_CHARSET);
  const bool saysUtf8 = EqualsWithoutCase(encoding, "UTF-8");
  const bool utf8 = charset.IsUtf8() && (saysUtf8 || !ascii);
  if (tag == KRHeaderTag_ENCODING) {
    if (!utf8) return "USASCII";
    return saysUtf8 ? encoding : "UTF-8";
  }
  if (utf8) return saysUtf8 && declared == "1252" ? declared : "NONE";
  const bool windows = ascii || std::string_view(charset.Name()) == "WINDOWS-1252";
  return windows || declared.empty() ? "1252" : declared;
}

}  // namespace

bool FindBody(std::string_view text, const TagDictionary& dictionary, u32& body) {
  Scanner scanner(text, dictionary, false);
  ScannedTag tag;
  for (scanner.Next(tag); tag.type != ScannedTag::Type::kEndOfText; scanner.Next(tag)) {
    if (tag.type != ScannedTag::Type::kStart || !IsOfEnvelope(tag.Id())) continue;
    body = tag.at;
    return true;
  }
  return false;
}

bool HasSecondVersion(std::string_view text) {
  return text.find("MSGSRSV2>") != std::string_view::npos ||
         text.find("MSGSRQV2>") != std::string_view::npos;
}

bool ReadHeader(const WorkingText& text, Recorder& recorder, Header& header) {
  header.base = text.Bytes().data();
  HeaderReader reader(text, recorder, header);
  return reader.Read(text.Bytes().substr(0, header.body));
}

KRParseStatus GiveHeader(const WorkingText& text, const Header& header, const Charset& charset,
                         bool ascii, Recorder& recorder, KRFile& file) {
  const bool any = std::any_of(std::begin(header.fields), std::end(header.fields),
                               [](std::string_view field) { return !field.empty(); });
  const auto isSecondVersion = [&] {
    return header.isSecondVersion.has_value() ? *header.isSecondVersion
                                              : HasSecondVersion(text.Bytes());
  };
  for (const FieldName& field : kNames) {
    const std::string_view value = header.Field(field.tag);
    const bool isCharset = field.tag == KRHeaderTag_ENCODING || field.tag == KRHeaderTag_CHARSET;
    std::string_view taken = value;
    if (isCharset) {
      taken = TrueCharset(field.tag, header, charset, ascii);
    } else if (value.empty() || !IsKnown(field.tag, value)) {
      taken = field.tag == KRHeaderTag_VERSION && isSecondVersion() ? "151" : field.usual;
    }
    // Headers of OFX 2 have other versions and fewer fields, which is no fault of theirs.
    const bool differs = !isCharset && taken != value;
    const bool isFault = header.form == TextForm::kOfx1 ? any && (value.empty() || differs)
                                                        : value.size() > KRString::kMaxLength;
    if (isFault) {
      const std::size_t at =
          value.empty() ? header.body : static_cast<std::size_t>(value.data() - header.base);
      const MendingKind kind =
          value.empty() ? MendingKind::kHeaderFieldMissing : MendingKind::kHeaderValue;
      if (!recorder.Note(kind, {text.ToOriginal(at), PathLog::kNoPath}, field.name, value, taken)) {
        return KRParseStatus_Invalid;
      }
    }
    KRString stored;
    stored.Assign(taken.data(), static_cast<u16>(taken.size()));
    if (file.SetHeader(field.tag, stored) == 0) return KRParseStatus_Fatal;
  }
  return KRParseStatus_Accepted;
}

}  // namespace krofx::internal
