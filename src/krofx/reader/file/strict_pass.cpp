// Driving the strict parsers.

#include "krofx/reader/file/strict_pass.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "krofx/core/internal/passwords.h"
#include "krofx/core/parse_logger.h"
#include "krofx/envelope/mime_parser.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/reader/file/clean_parser.h"
#include "krofx/reader/file/multipart.h"
#include "krofx/reader/records/recorder.h"

namespace krofx::internal {

namespace {

std::string_view BytesOf(const KRBuffer& buffer) {
  return {buffer.GetBufferPtr(), std::min(buffer.GetBufferSize(), buffer.GetBufferAllocation())};
}

// Records the warnings of a strict parse.
class WarningRecorder : public KRWarningObserver {
 public:
  WarningRecorder(const KRParser& parser, Recorder& recorder, std::size_t base)
      : m_parser(parser), m_recorder(recorder), m_base(base) {}

  void OnWarning(const KRParseException& warning, s32 position) override {
    Spot spot;
    spot.offset = position < 0 ? Spot::kNowhere : m_base + static_cast<std::size_t>(position);
    std::string_view tag(warning.m_tagText, warning.m_tagText.GetStrLength());
    const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
    const char* const known =
        dictionary == nullptr ? nullptr : dictionary->GetTagString(warning.m_tag);
    if (tag.empty() && known != nullptr) tag = known;
    KRDataObj* const current = m_parser.GetCurrentObj();
    spot.amongPasswords = current != nullptr && HoldsPasswords(current->GetType());
    m_recorder.Warn(warning.m_warning, spot, warning.m_tag, tag,
                    {warning.m_valueText, warning.m_valueText.GetStrLength()}, warning.m_object);
  }

 private:
  const KRParser& m_parser;
  Recorder& m_recorder;
  std::size_t m_base;
};

// Where the text ends whose last tag begins at a position.
std::size_t EndAfter(const KRBuffer& buffer, s32 lastTag) {
  const std::string_view bytes = BytesOf(buffer);
  const std::size_t close =
      lastTag < 0 ? std::string_view::npos : bytes.find('>', static_cast<std::size_t>(lastTag));
  return close == std::string_view::npos ? bytes.size() : close + 1;
}

}  // namespace

StrictResult ReadStrictly(KRBuffer& buffer, OfxText& text, std::size_t base, Recorder& recorder) {
  StrictResult result;
  result.end = BytesOf(buffer).size();
  if (text.kind == TextKind::kMultipart) {
    KRMIMEParser parser;
    WarningRecorder warnings(parser, recorder, base);
    parser.SetWarningObserver(&warnings);
    result.status = parser.Parse(&buffer, text.root.get(), 1);
  } else {
    KRSimpleParser parser;
    WarningRecorder warnings(parser, recorder, base);
    parser.SetWarningObserver(&warnings);
    result.status = parser.Parse(&buffer, static_cast<KRDataObj*>(text.root.get()), 1);
  }
  PathLog paths;
  recorder.FindObjects(*text.root, paths);
  recorder.EndTree(paths);
  return result;
}

StrictResult TryStrictly(KRBuffer& buffer, OfxText& text) {
  const SilentLosses losses;
  StrictResult result;
  result.end = BytesOf(buffer).size();
  if (text.kind == TextKind::kMultipart) {
    KRMIMEParser parser;
    result.status = parser.Parse(&buffer, text.root.get(), 1);
    // A part without a header, or with another one before its content type, makes the parser pass
    // over a part without a warning. A boundary within a line makes it cut a part in two.
    result.lossless = HasAllParts(BytesOf(buffer), *text.root);
  } else {
    KRParseEngine engine(buffer);
    CleanParser parser;
    result.status = parser.Read(engine, buffer, *text.root);
    result.mayHaveHighBytes = parser.MayHaveHighBytes();
    result.end = EndAfter(buffer, engine.GetItemPosition());
  }
  if (KRParseLogger* const log = KRParseLogger::TheKRParseLogger()) {
    log->SetBuffer(nullptr);
    log->DeleteAll();
  }
  result.lossless = result.lossless && !losses.Any();
  return result;
}

}  // namespace krofx::internal
