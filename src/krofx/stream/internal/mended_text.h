// The reader of mendings, over a window: the passes of krofx::Read over one text, element by
// element.

#ifndef KROFX_STREAM_INTERNAL_MENDED_TEXT_H_
#define KROFX_STREAM_INTERNAL_MENDED_TEXT_H_

#include <optional>

#include "krofx/core/memory.h"
#include "krofx/model/internal/missing_search.h"
#include "krofx/reader/characters/charset.h"
#include "krofx/reader/header/charset_choice.h"
#include "krofx/reader/header/header.h"
#include "krofx/reader/reading.h"
#include "krofx/reader/records/recorder.h"
#include "krofx/reader/structure/tree_reader.h"
#include "krofx/stream/internal/byte_source.h"
#include "krofx/stream/internal/element_parser.h"
#include "krofx/stream/internal/mended_track.h"
#include "krofx/stream/internal/text_facts.h"
#include "krofx/stream/internal/text_window.h"
#include "krofx/stream/stream.h"

namespace krofx::internal {

/// One text that is mended while it is streamed.
class MendedText final : public HeapObject,
                         private TextSupply,
                         private Recorder::Watcher,
                         private MendedTrack::Checker {
 public:
  /// @param source the bytes, from their beginning on.
  /// @param text takes the root, and what is known of the text.
  /// @param listener hears of what is mended; may be null.
  MendedText(const StreamOptions& options, ByteSource& source, WantedClasses& wanted, OfxText& text,
             StreamListener* listener);
  MendedText(const MendedText&) = delete;
  MendedText& operator=(const MendedText&) = delete;

  /// Goes on to the next wanted element.
  StreamStep Next();
  /// Once it has ended: the status, as of krofx::Read.
  KRParseStatus Status() const { return m_status; }
  /// @return why the text could not be read to its end; empty when it could.
  const KRString& Problem() const { return m_problem; }
  /// @return the mendings and warnings so far.
  const Reading& Records() const { return m_reading; }
  /// @return whether anything was mended or warned of so far.
  bool AnyRecords() const { return m_recorder.AnyInText(); }
  /// @return the elements.
  const MendedTrack& Track() const { return *m_track; }
  /// @return how many bytes of the text have been taken.
  std::size_t Position() const { return m_window.OriginalEnd(); }
  /// Deletes what was not handed out.
  void Stop();
  /// @return whether there are more tags after the end of the text. Takes what is left of the
  /// bytes.
  bool HasMoreTags();

 private:
  enum class State : u8 { kBeginning, kReading, kEnded };

  bool Extend() override;
  bool IsPart() const override { return m_window.IsPart(); }
  void ShowElements(Visitor& visitor) override;
  void OnMending(Mending& mending) override;
  void OnWarning(ReadWarning& warning) override;
  void OnElement(s16 depth, KRDataObj& element) override;

  bool HearsAll() const override { return m_listener != nullptr; }

  Place PlaceOf(std::size_t offset);
  KRString CurrentPath() const;
  std::string_view WholeTags() const;
  // Each of these gives false, with what the step comes to in m_step, when it needs the next piece
  // and when the reading has ended.
  bool Fill();
  bool FindStart();
  bool GatherAll();
  bool ReadFront();
  bool SettleCharset(ChosenCharset& chosen);
  bool MoveOn();
  bool Agrees();
  bool AgreesInCharset();
  bool End(KRParseStatus status, const char* problem);
  bool EndOfMemory();
  bool Forbid();

  StreamStep Begin();
  StreamStep ReadOn();
  void EndReading();

  u32 m_usual;
  u32 m_most;
  bool m_checkRequired;
  ByteSource& m_source;
  WantedClasses& m_wanted;
  OfxText& m_text;
  StreamListener* m_listener;
  TagDictionary* m_dictionary = nullptr;
  ReadOptions m_options;
  Reading m_reading;
  Recorder m_recorder;
  TextWindow m_window;
  std::optional<MendedTrack> m_track;
  MissingSearch m_missing;
  TextFacts m_facts;
  Header m_header;
  // What the bytes stand for, and the set that the tree is in.
  Charset m_ofBytes;
  Charset m_charset;
  std::optional<TreeReader> m_reader;
  State m_state = State::kBeginning;
  StreamStep m_step = StreamStep::kNeedsMore;
  // The window has slid and is not full yet.
  bool m_isBetweenParts = false;
  // Of pieces only: what the numbers look like was judged by a part; up to where the bytes above
  // 127 were counted; and what the header says of the character set.
  bool m_isJudged = false;
  std::size_t m_counted = 0;
  KRString m_encoding;
  KRString m_declaredSet;
  KRString m_xmlEncoding;
  // The depth of the element that is looked at; 0 when none is.
  s16 m_elementDepth = 0;
  KRParseStatus m_status = KRParseStatus_Accepted;
  KRString m_problem;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_MENDED_TEXT_H_
