// Reading the header lines before the body.
//
// A header line is "name: value" up to the line's end: the next line feed or, in a text without
// any, the next carriage return. A comment may come before the colon or after the value. The first
// '<' that does not open a comment begins the body.

#include <algorithm>
#include <string_view>

#include "krofx/core/parse_logger.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/item_scanner.h"
#include "krofx/parse/internal/text_source.h"
#include "krofx/values/data_conversion.h"

using krofx::internal::BackOverWhite;
using krofx::internal::LogWarning;
using krofx::internal::SearchMemory;
using krofx::internal::SkipWhite;
using krofx::internal::WithText;

namespace {

// The parts of the line at a position that decide what kind of line it is. Each search can run to
// the end of the text, so its result is remembered.
struct Line {
  s32 end = 0;           // Position of its line end.
  s32 colon = 0;         // The next ':', on this line or a later one.
  bool opens = false;    // Whether it has a '<',
  s32 open = 0;          // at this position,
  bool comment = false;  // which opens a comment
  s32 close = 0;         // that closes here, on this line or a later one.

  // False when no line is left that could be a header line.
  template <class Text>
  bool Find(const Text& text, s32 position, SearchMemory& searches) {
    if (!searches.lineFeed.Find(text, position, '\n', end) &&
        !searches.carriageReturn.Find(text, position, '\r', end)) {
      return false;
    }
    if (!searches.colon.Find(text, position, ':', colon)) return false;
    opens = searches.tagOpen.Find(text, position, '<', open) && open < end;
    comment = opens && text.At(open + 1) == '!' && searches.tagClose.Find(text, open, '>', close);
    return true;
  }

  // The position after the line and after a comment on it.
  s32 Next() const { return comment ? std::max(end, close) + 1 : end + 1; }
};

// Copies the text from `start` up to `end`, without white space around it. False when it is too
// long for a string.
template <class Text>
bool TakeTrimmed(const Text& text, s32 start, s32 end, KRString& out) {
  start = SkipWhite(text, start);
  end = std::max(start, end);
  end = std::max(start, BackOverWhite(text, end));
  if (end - start > KRString::kMaxLength) return false;
  text.View(start, static_cast<u16>(end - start), [&out](std::string_view view) {
    return out.Assign(view.data(), static_cast<u16>(view.size()));
  });
  return true;
}

}  // namespace

template <class Text>
bool KRParseEngine::ReadHeader(const Text& text, KRHeaderTag& tag, KRString& value,
                               KRString& name) {
  Line line;
  while (line.Find(text, m_headerPos, m_searches)) {
    if (line.comment && std::min(line.open, line.close) < line.colon) {
      m_headerPos = line.close + 1;
      continue;
    }
    if (line.opens && !line.comment) return false;

    const s32 start = SkipWhite(text, m_headerPos);
    if (line.end < line.colon) {
      m_headerPos = line.end + 1;
      if (start >= line.end) return false;
      continue;
    }
    m_itemPosition = start;
    m_headerPos = line.Next();
    const s32 valueEnd = line.comment ? line.open : line.end;
    if (TakeTrimmed(text, start, line.colon, name) &&
        TakeTrimmed(text, line.colon + 1, valueEnd, value)) {
      tag = KRHeaderTag_None;
      KRDataConversion::StringToHeaderTag(name, tag);
      return true;
    }
    // A part of a header could be taken for a whole one, so the line is left out.
    LogWarning(KRPW_TOOLONG, KRString(), KRString(), KRTag_None, nullptr);
  }
  return false;
}

u16 KRParseEngine::GetHeader(KRHeaderTag& tag, KRString& value, KRString* name) {
  KRString unasked;
  KRString& takesName = name != nullptr ? *name : unasked;
  takesName = "";
  const bool read = WithText(*m_buffer, m_searches, [&](const auto& text) {
    return ReadHeader(text, tag, value, takesName);
  });
  if (!read) takesName = "";
  return read ? 1 : 0;
}
