// MIME in the engine: what a content type says, boundary lines, and the text between two of them.

#include <algorithm>
#include <string_view>

#include "krofx/parse/engine.h"
#include "krofx/parse/internal/item_scanner.h"
#include "krofx/parse/internal/text_source.h"

using krofx::internal::BackOverWhite;
using krofx::internal::CapitalLetter;
using krofx::internal::LastSearch;
using krofx::internal::WithText;

namespace {

// A text counts as OFX if a sign-on aggregate begins at most this far after the headers.
constexpr s32 kSignOnWithin = 200;
// The longest boundary that is read out of a content type.
constexpr s32 kMaxBoundary = 71;

std::string_view ViewOf(const KRString& string) { return {string, string.GetStrLength()}; }

bool Contains(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

// Whether `word` is at `place`, in exactly these letters.
template <class Text>
bool StandsAt(const Text& text, s32 place, std::string_view word) {
  for (const char character : word) {
    if (text.At(place++) != character) return false;
  }
  return true;
}

// Moves past the line at `position`.
template <class Text>
bool PassLine(const Text& text, s32& position) {
  s32 end;
  if (!text.Find(position, '\n', end)) return false;
  position = end + 1;
  return true;
}

template <class Text>
KRBoundStatus FindBoundary(const Text& text, std::string_view boundary, s32& position) {
  constexpr std::string_view kHyphens = "--";
  LastSearch hyphen;
  // Each line before two hyphens finds them again; they are compared only once.
  s32 refused = -1;
  for (;;) {
    s32 place;
    if (!text.Find(position, '\n', place)) return KRBoundStatus_None;
    if (!hyphen.Find(text, position, '-', place)) return KRBoundStatus_None;
    if (place != refused && StandsAt(text, place, kHyphens)) {
      place += 2;
      if (!boundary.empty() && text.At(place) == '\0') return KRBoundStatus_None;
      if (StandsAt(text, place, boundary)) {
        position = place + static_cast<s32>(boundary.size());
        const bool closing = StandsAt(text, position, kHyphens);
        if (closing) position += 2;
        PassLine(text, position);
        return closing ? KRBoundStatus_Closing : KRBoundStatus_Boundary;
      }
      refused = place - 2;
    }
    if (!PassLine(text, position)) return KRBoundStatus_None;
  }
}

}  // namespace

KRMIMEType KRParseEngine::GetFileType(const KRString* contentType) const {
  if (contentType == nullptr) return KRMIMEType_Other;
  KRString type(*contentType);
  type.MakeLower();
  if (!Contains(ViewOf(type), "x-ofx")) return KRMIMEType_Other;

  char start[kSignOnWithin];
  const s32 count = WithText(*m_buffer, [this, &start](const auto& text) {
    s32 taken = 0;
    while (taken < kSignOnWithin) {
      const char character = text.At(m_headerPos + taken);
      if (character == '\0') break;
      start[taken++] = CapitalLetter(character);
    }
    return taken;
  });
  const std::string_view view(start, static_cast<std::size_t>(count));
  if (Contains(view, "SONRS")) return KRMIMEType_OFXResponse;
  return Contains(view, "SONRQ") ? KRMIMEType_OFXRequest : KRMIMEType_Other;
}

KRBoundStatus KRParseEngine::FindMIMEBoundary(const KRString& boundary, s32& position) const {
  return WithText(*m_buffer,
                  [&](const auto& text) { return FindBoundary(text, ViewOf(boundary), position); });
}

KRBoundStatus KRParseEngine::FindMIMEBoundary(const KRString& boundary) {
  return FindMIMEBoundary(boundary, m_headerPos);
}

u16 KRParseEngine::GetMIMEBoundary(const KRString& contentType, KRString& boundary) const {
  KRString type(contentType);
  type.MakeLower();
  std::string_view rest = ViewOf(type);
  if (!rest.starts_with("multipart") || !Contains(rest, "boundary")) return 0;
  const std::size_t equals = rest.find('=');
  if (equals == std::string_view::npos) return 0;
  rest.remove_prefix(equals + 1);
  if (rest.starts_with('"')) rest.remove_prefix(1);
  rest = rest.substr(0, std::min<std::size_t>(rest.find_first_of("\"\n\r\t "), kMaxBoundary));
  return boundary.Assign(rest.data(), static_cast<u16>(rest.size()));
}

u16 KRParseEngine::GetMIMEBody(const KRString& boundary, KRString& body) const {
  s32 position = m_headerPos;
  const KRBoundStatus status = FindMIMEBoundary(boundary, position);
  if (status == KRBoundStatus_None) return 0;
  const s32 hyphens = status == KRBoundStatus_Closing ? 4 : 2;
  WithText(*m_buffer, [&](const auto& text) {
    // The documented limit of this operation: positions are of 16 bits.
    const s32 lineEnd = BackOverWhite(text, position) & 0xffff;
    const s32 length = lineEnd - boundary.GetStrLength() - hyphens - m_headerPos;
    return text.View(m_headerPos, static_cast<u16>(std::max(length, 0)),
                     [&body](std::string_view view) {
                       return body.Assign(view.data(), static_cast<u16>(view.size()));
                     });
  });
  return 1;
}
