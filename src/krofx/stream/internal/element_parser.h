// The strict parser of a stream: KRSimpleParser over a window, which halts after each wanted
// element.

#ifndef KROFX_STREAM_INTERNAL_ELEMENT_PARSER_H_
#define KROFX_STREAM_INTERNAL_ELEMENT_PARSER_H_

#include <optional>

#include "krofx/core/status.h"
#include "krofx/parse/internal/engine_window.h"
#include "krofx/parse/internal/tag_pass.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/stream/internal/element_track.h"
#include "krofx/stream/internal/line_counter.h"
#include "krofx/stream/internal/record_keeper.h"

class KRFile;

namespace krofx::internal {

/// What a step through a text came to.
enum class StreamStep : u8 {
  kElement,    ///< A wanted element is complete.
  kNeedsMore,  ///< What comes next is not all in the window.
  kEnded,      ///< The text ended, or cannot be read on.
};

/// Parses one text.
class ElementParser final : public KRSimpleParser, private KRWarningObserver {
 public:
  ElementParser(EngineWindow& window, LineCounter& lines, ElementTrack& track,
                RecordKeeper& records);

  /// Begins with the headers, which must be whole in the window.
  void Begin(KRFile& root, bool checkRequired);
  /// Makes a wanted element that was read ahead the current one.
  /// @return whether there is one, without anything to say of it; otherwise Next goes on.
  bool TakeAhead() { return m_track.TakeAhead() && m_track.Lacking() == nullptr; }
  /// Goes on to the next wanted element.
  StreamStep Next();
  /// Once it has ended: the status, as of KRSimpleParser::Parse.
  KRParseStatus Status() const { return m_status; }

  /// @return whether a number was read that has a comma.
  bool MayHaveCommaAmount() const { return m_hasCommas; }
  /// @return whether an amount or a date came twice in one aggregate.
  bool HasRepeatedFigure() const { return m_hasRepeats; }

  u16 PushObject(KRDataObj* object) override;
  u16 PopObject() override;

 private:
  void OnWarning(const KRParseException& warning, s32 position) override;
  StreamStep Step();
  StreamStep End(KRParseStatus status);
  bool MayReadOn() const;
  void WarnOfLacking();

  EngineWindow& m_window;
  LineCounter& m_lines;
  ElementTrack& m_track;
  RecordKeeper& m_records;
  KRFile* m_root = nullptr;
  bool m_checkRequired = false;
  bool m_headersRead = false;
  bool m_hasCommas = false;
  bool m_hasRepeats = false;
  KRParseStatus m_status = KRParseStatus_Accepted;
  std::optional<TagPass> m_pass;
  // How the last feed ended, which counts when all that it read ahead is handed out.
  KRParseStatus m_fed = KRParseStatus_Accepted;
  bool m_isAlarmed = false;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_ELEMENT_PARSER_H_
