// The inside of a stream.

#ifndef KROFX_STREAM_INTERNAL_STREAM_RUN_H_
#define KROFX_STREAM_INTERNAL_STREAM_RUN_H_

#include <memory>
#include <string_view>

#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/parse/internal/engine_window.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/internal/byte_source.h"
#include "krofx/stream/internal/element_parser.h"
#include "krofx/stream/internal/element_track.h"
#include "krofx/stream/internal/line_counter.h"
#include "krofx/stream/internal/mended_text.h"
#include "krofx/stream/internal/record_keeper.h"
#include "krofx/stream/stream.h"

namespace krofx::internal {

/// One reading of one text: see Stream, whose operations these are.
class StreamRun : public HeapObject {
 public:
  explicit StreamRun(const StreamOptions& options);
  StreamRun(const StreamRun&) = delete;
  StreamRun& operator=(const StreamRun&) = delete;

  void Want(IsOfClass is, bool list);
  void WantTag(KRTagID tag);
  void SetListener(StreamListener* listener);
  ByteSource& Source() { return m_source; }
  /// Reads a plain buffer that has the whole text.
  void ReadInPlace(KRBuffer& buffer);
  /// Begins to read.
  void Start() { m_state = StreamState::kReading; }
  bool Feed(std::string_view piece);
  const StreamElement* Next();
  void Stop();
  /// Ends with a status, and a sentence that says why.
  void Fail(KRParseStatus status, const char* problem);

  StreamState State() const { return m_state; }
  KRParseStatus Status() const;
  KRString& Problem() { return m_problem; }
  OfxText& Text() { return m_text; }
  /// @return the records of a text that is mended; null for another.
  const Reading* MendedRecords() const { return m_mended ? &m_mended->Records() : nullptr; }
  /// @return the records of a text that is read strictly.
  const RecordKeeper& Records() const { return m_records; }
  std::size_t Position() const { return m_mended ? m_mended->Position() : m_window.Taken(); }

  /// @name The current element
  /// @{
  KRDataObj& Element() const;
  std::size_t NumberOfElement() const;
  KRString PathOfElement() const;
  const KRAccount* AccountOfElement() const;
  KRDataObj* Around(u16 levels) const;
  /// @return where it begins.
  const Place& PlaceOfElement();
  /// @}
  /// See StreamElement::ToUtf8.
  KRString ToUtf8(const KRString& text);
  /// @return the text, with the character set of the part that is in memory.
  const OfxText& JudgedText();
  bool MayHaveCommaAmount() const { return m_parser.MayHaveCommaAmount(); }
  bool HasRepeatedFigure() const { return m_parser.HasRepeatedFigure(); }
  bool HasMoreTags();

 private:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  bool IsMending() const { return m_mended != nullptr; }
  bool Judge();
  void ChooseReader();
  bool IsClean();
  void LeavePiece();
  const StreamElement* TakeNext();
  const StreamElement* ReadOn();
  const StreamElement* NextMended();
  bool Begin();
  bool Refill();
  void End(KRParseStatus status);

  StreamOptions m_options;
  WantedClasses m_wanted;
  EngineWindow m_window;
  LineCounter m_lines;
  ElementTrack m_track;
  RecordKeeper m_records;
  ByteSource m_source;
  OfxText m_text;
  ElementParser m_parser;
  // For a text that is mended.
  std::unique_ptr<MendedText> m_mended;
  StreamListener* m_listener = nullptr;
  KRBuffer* m_plain = nullptr;
  bool m_isChosen = false;
  bool m_begun = false;
  bool m_hasMoreTags = false;  // In what was left of a piece.
  StreamState m_state = StreamState::kIdle;
  KRParseStatus m_status = KRParseStatus_Accepted;
  KRString m_problem;
  StreamElement m_element;
  // The part of the text that the character set was found from.
  std::size_t m_judgedFrom = kNowhere;
  std::size_t m_judgedTo = 0;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_STREAM_RUN_H_
