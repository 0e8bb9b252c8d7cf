// Which part of an unfinished text can be read.

#include "krofx/parse/internal/engine_window.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/model/parser.h"
#include "krofx/parse/internal/text_source.h"

namespace krofx::internal {

namespace {

// While it lives nothing is logged on the calling thread. The log must be empty before.
class Silence {
 public:
  Silence() : m_log(KRParseLogger::TheKRParseLogger()) {
    if (m_log == nullptr) return;
    m_enabled = m_log->GetLoggingEnabled();
    m_log->EnableLogging(0);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() {
    if (m_log == nullptr) return;
    m_log->DeleteAll();
    m_log->EnableLogging(m_enabled);
  }

 private:
  KRParseLogger* m_log;
  u16 m_enabled = 0;
};

constexpr s32 kNothingKnown = std::numeric_limits<s32>::max();

}  // namespace

EngineWindow::EngineWindow(u32 usual, u32 most)
    : m_buffer(1, 0), m_engine(m_buffer), m_usual(usual), m_most(std::max(usual, most)) {}

void EngineWindow::Borrow(KRBuffer& buffer) {
  m_borrowed = &buffer;
  m_engine = KRParseEngine(buffer);
  m_ended = true;
}

std::string_view EngineWindow::Text() const {
  if (m_borrowed != nullptr) return WholeText();
  const char* const bytes = m_buffer.GetBufferPtr();
  return bytes == nullptr ? std::string_view() : std::string_view(bytes, m_buffer.GetBufferSize());
}

// The NUL is looked for when somebody asks, since most readings of a buffer have no need of it.
std::string_view EngineWindow::WholeText() const {
  if (m_whole.data() == nullptr) {
    const PlainText text(*m_borrowed);
    s32 end = 0;
    text.Find(0, '\0', end);
    m_whole = {text.Bytes(), static_cast<std::size_t>(end)};
  }
  return m_whole;
}

std::string_view EngineWindow::Beginning(std::size_t most) const {
  if (m_borrowed == nullptr) return Text().substr(0, most);
  const PlainText text(*m_borrowed);
  const std::string_view first =
      std::string_view(text.Bytes(), static_cast<std::size_t>(text.Size())).substr(0, most);
  return first.substr(0, first.find('\0'));
}

std::size_t EngineWindow::Taken() const {
  return m_borrowed != nullptr ? CountRead() : m_base + Text().size();
}

std::size_t EngineWindow::ItemOffset() const {
  const s32 position = m_engine.GetItemPosition();
  return m_base + static_cast<std::size_t>(std::max(position, s32{0}));
}

u32 EngineWindow::CountRead() const {
  return m_inBody ? static_cast<u32>(m_engine.m_currentItem.end) : 0;
}

void EngineWindow::Slide() {
  const u32 read = CountRead();
  const u32 size = m_buffer.GetBufferSize();
  if (read == 0 || m_borrowed != nullptr || m_buffer.GetBufferPtr() == nullptr) return;
  std::memmove(m_buffer.GetBufferPtr(), m_buffer.GetBufferPtr() + read, size - read);
  m_buffer.SetBufferOffset(0);
  m_buffer.SetBufferSize(size - read);
  m_base += read;
  // The item ahead is read anew, with the same result.
  m_engine.m_currentItem = {};
  m_engine.m_nextItem = {};
  m_engine.m_itemPosition = 0;
  m_engine.m_searches = {};
}

std::span<char> EngineWindow::Room() {
  if (m_buffer.GetBufferAllocation() < m_usual && m_buffer.AllocateTo(m_usual) != KRBufferOK) {
    return {};
  }
  char* const memory = m_buffer.GetBufferPtr();
  if (memory == nullptr) return {};
  const u32 size = m_buffer.GetBufferSize();
  return {memory + size, m_buffer.GetBufferAllocation() - size};
}

void EngineWindow::Added(std::size_t count) {
  if (count != 0) m_buffer.SetBufferSize(m_buffer.GetBufferSize() + static_cast<u32>(count));
}

bool EngineWindow::Grow() {
  const u32 allocation = m_buffer.GetBufferAllocation();
  if (m_buffer.GetBufferPtr() == nullptr || allocation >= m_most) return false;
  return m_buffer.AllocateTo(allocation > m_most / 2 ? m_most : allocation * 2) == KRBufferOK;
}

void EngineWindow::AskForMore() {
  // A sixteenth more: all looks together take time in proportion to the text.
  m_wanted = Unread() + 1 + Unread() / 16;
}

// Two blocks are read: see KRSimpleParser. Which line end counts, and whether a line is a header's,
// may be settled by the first line feed and by the first colon ahead.
bool EngineWindow::HasWholeHeaders() {
  if (m_ended || IsAtLimit()) return true;
  const Silence silence;
  KRParseEngine trial(m_engine);
  for (int block = 0; block < 2; ++block) {
    KRHeaderTag tag;
    KRString value;
    for (bool more = true; more;) {
      const u32 position = static_cast<u32>(trial.m_headerPos);
      more = trial.GetHeader(tag, value, nullptr) != 0;
      const SearchMemory& searches = trial.m_searches;
      std::string_view rest = Text().substr(more ? position : static_cast<u32>(trial.m_headerPos));
      const std::size_t next = rest.find_first_not_of(" \t\r\n");
      const bool bodyAhead = next != std::string_view::npos && rest[next] == '<' &&
                             next + 1 < rest.size() && rest[next + 1] != '!';
      if (!more && bodyAhead) continue;
      const bool settled = searches.lineFeed.found && searches.colon.found;
      if (!settled) return false;
      // A comment on the line must be there as a whole.
      const auto open = static_cast<std::size_t>(searches.tagOpen.at);
      const bool opens = searches.tagOpen.found && searches.tagOpen.at < searches.lineFeed.at;
      if (opens && Text()[open + 1] == '!' && !searches.tagClose.found) return false;
      if (next == std::string_view::npos) return false;
    }
  }
  return true;
}

bool EngineWindow::DependsOnEnd(const KRParseEngine& engine) const {
  const auto reaches = [this](const KRParseEngine::KRTagItemInfo& item) {
    if (item.type == KrTagItemType_None || static_cast<u32>(item.end) < Text().size()) return false;
    const bool isTag = item.type == KrTagItemType_StartTag || item.type == KrTagItemType_EndTag;
    return !isTag || Text().empty() || Text().back() != '>';
  };
  return reaches(engine.m_currentItem) || reaches(engine.m_nextItem) ||
         engine.m_searches.noCDATAEndFrom != kNothingKnown || engine.m_searches.noEndTag;
}

bool EngineWindow::HasWholeTag(KRParser& parser) {
  if (m_ended) return true;
  const Silence silence;
  KRParseEngine trial(m_engine);
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value;
  const KRTagType type = trial.GetKRTag(entry, value);
  // The reading itself will meet the same shortage.
  if (KRGetFireAlarm() != KRFireAlarm_None) return true;
  if (type == KRTagType_EndOfInput || type == KRTagType_Unreadable) {
    // A tag without a name ends a text wherever it is.
    const KRParseEngine::KRTagItemInfo& item = trial.m_currentItem;
    const bool nameless =
        type == KRTagType_EndOfInput && item.length == 0 &&
        (item.type == KrTagItemType_StartTag || item.type == KrTagItemType_EndTag);
    return nameless && !DependsOnEnd(trial);
  }
  if (DependsOnEnd(trial)) return false;
  if (type != KRTagType_Start || parser.IsValidTag(entry.tagID) != 0) return true;
  if (trial.SkipCurrentTag() == 0 || DependsOnEnd(trial)) return false;
  return true;
}

}  // namespace krofx::internal
