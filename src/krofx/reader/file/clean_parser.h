// The strict parser as the reader runs it first: it finds out whether a text is clean, in one pass.
//
// What must be there is looked for when an aggregate ends, while the processor still has it at
// hand. A walk over the finished tree, as after KRSimpleParser::Parse, would fetch all of it again.

#ifndef KROFX_READER_FILE_CLEAN_PARSER_H_
#define KROFX_READER_FILE_CLEAN_PARSER_H_

#include <cstddef>

#include "krofx/core/status.h"
#include "krofx/model/internal/required_bits.h"
#include "krofx/parse/simple_parser.h"

class KRFile;

namespace krofx::internal {

/// What a parse may lose without a warning, from here on: a first answer that a second one replaces
/// in its wrapper, a first amount or date that a second one replaces, a tag after one that has
/// lost its '>', the commas of numbers, and that a number has no digit.
class SilentLosses {
 public:
  SilentLosses();
  /// @return whether there were any.
  bool Any() const;

 private:
  std::size_t m_payloads;
  std::size_t m_figures;
  std::size_t m_commas;
  std::size_t m_withoutDigits;
  std::size_t m_swallowed;
};

/// Reads one text.
class CleanParser final : public KRSimpleParser, private KRWarningObserver {
 public:
  CleanParser();

  /// Reads the text of an engine into its root. Ends soon after the first warning or loss, since
  /// the text is not clean then.
  /// @return 0 when KRSimpleParser::Parse would give 0, and check that all required tags are there;
  ///         3 when memory is exhausted; another status for any other text.
  KRParseStatus Read(KRParseEngine& engine, KRBuffer& buffer, KRFile& root);

  /// @return whether there may be a byte above 127 in the text that was read. False is certain.
  bool MayHaveHighBytes() const { return m_mayHaveHighBytes; }

  u16 PopObject() override;

 private:
  void OnWarning(const KRParseException& warning, s32 position) override;
  KRParseStatus ReadTags(KRParseEngine& engine);

  RequiredBits m_required;
  bool m_warned = false;
  bool m_mayHaveHighBytes = true;
  // Something is missing in an aggregate that has ended.
  bool m_incomplete = false;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_CLEAN_PARSER_H_
