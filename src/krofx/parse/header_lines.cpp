// The stream of header lines in front of the body.
//
// A header line is "name: value" up to the line's end: the next line feed or, in a text without
// any, the next carriage return. A comment may stand before the colon or behind the value. The
// first '<' that opens no comment begins the body.

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

// What stands on the line at a position, as far as the kind of line depends on it. All searches run
// on to the end of the text if need be, so they are remembered.
struct Line {
  s32 end = 0;           // Position of its line end.
  s32 colon = 0;         // The next ':', on this line or behind it.
  bool opens = false;    // A '<' stands on it,
  s32 open = 0;          // here,
  bool comment = false;  // and opens a comment
  s32 close = 0;         // that closes here, on this line or behind it.

  // False when no line is left that could be a header's.
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

  // The position behind the line and behind a comment on it.
  s32 Behind() const { return comment ? std::max(end, close) + 1 : end + 1; }
};

// Takes what stands from `start` up to `end`, without white space around it.
// Gives false when that is too long for a string.
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
    m_headerPos = line.Behind();
    const s32 valueEnd = line.comment ? line.open : line.end;
    if (TakeTrimmed(text, start, line.colon, name) &&
        TakeTrimmed(text, line.colon + 1, valueEnd, value)) {
      tag = KRHeaderTag_None;
      KRDataConversion::StringToHeaderTag(name, tag);
      return true;
    }
    // Half a header might pass for a whole one, so the line is left out.
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
