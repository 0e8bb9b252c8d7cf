// One pass over the tags of a text, tag by tag: which object a tag is handed to, and when the pass
// ends.

#ifndef KROFX_PARSE_INTERNAL_TAG_PASS_H_
#define KROFX_PARSE_INTERNAL_TAG_PASS_H_

#include <optional>

#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/plain_feed.h"
#include "krofx/parse/simple_parser.h"

namespace krofx::internal {

/// The status of a tag after which a pass continues.
inline constexpr KRParseStatus kGoOn = KRParseStatus_Accepted;

}  // namespace krofx::internal

/// A pass of one parser. It can be left between two tags and continued later.
class KRSimpleParser::TagPass {
  static constexpr KRParseStatus kGoOn = krofx::internal::kGoOn;

 public:
  /// @param watcher who follows what FeedUse::kStream feeds.
  TagPass(KRSimpleParser& parser, KRParseEngine& engine,
          krofx::internal::FeedWatcher* watcher = nullptr)
      : m_parser(parser), m_engine(engine) {
    if (parser.MayFeed(engine)) m_feed.emplace(parser, engine, watcher);
  }
  TagPass(const TagPass&) = delete;
  TagPass& operator=(const TagPass&) = delete;

  /// Hands over all tags that PlainFeed may take.
  /// @return 0; else the status with which the pass ends.
  template <krofx::internal::FeedUse kUse>
  KRParseStatus Feed() {
    if (!m_feed) return kGoOn;
    const KRParseStatus refused = m_feed->Run<kUse>(m_entry, m_value, m_elementBefore);
    return refused == kGoOn ? kGoOn : m_parser.NoteRefusedStart(refused, m_entry);
  }

  /// Must be called before the buffer changes between two tags.
  void SettleValue() {
    if (m_feed) m_feed->SettleValue(m_value);
  }

  /// @return whether there may be a byte above 127 in a text that was fed to a watched tree. False
  ///         is certain.
  bool MayHaveHighBytes() { return !m_feed || m_feed->MayHaveHighBytes(); }

  /// Reads one tag and hands it over.
  /// @param status takes the status with which the pass ends, when it does.
  /// @return whether it goes on.
  bool TakeTag(KRParseStatus& status) {
    SettleValue();
    const KRTagType type = m_engine.GetKRTag(m_entry, m_value);
    status = KRParseStatus_Fatal;
    if (m_parser.GetCurrentObj() == nullptr) return false;
    status = kGoOn;
    switch (type) {
      case KRTagType_Start:
        status = m_parser.TakeStart(m_entry, m_engine);
        break;
      case KRTagType_End:
        // The end tag of the element that was just read is optional, and closes nothing else.
        if (m_elementBefore == m_entry.tagID && m_entry.tagID != KRTag_None) break;
        status = m_parser.GetCurrentObj()->HandleTagEnd(&m_entry);
        if (m_entry.tagID == KRTag_OFX) return false;
        break;
      case KRTagType_Element:
        status = m_parser.TakeElement(m_entry, m_value);
        break;
      case KRTagType_EndOfInput:
        status = m_parser.GetDepth() > 0 ? KRParseStatus_Invalid : KRParseStatus_Accepted;
        return false;
      default:
        status = m_parser.LogValue(KRPW_UNKNOWNTAG, m_entry, m_value) ? KRParseStatus_Invalid
                                                                      : KRParseStatus_Fatal;
        return false;
    }
    m_elementBefore = type == KRTagType_Element ? m_entry.tagID : KRTag_None;
    return status == kGoOn;
  }

 private:
  KRSimpleParser& m_parser;
  KRParseEngine& m_engine;
  KRTagDictionaryEntry m_entry = {KRTag_None, ""};
  KRString m_value;
  KRTagID m_elementBefore = KRTag_None;
  std::optional<krofx::internal::PlainFeed> m_feed;
};

#endif  // KROFX_PARSE_INTERNAL_TAG_PASS_H_
