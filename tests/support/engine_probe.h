// The engine with its protected operations made public, over a text that the test gives.

#ifndef KROFX_TESTS_SUPPORT_ENGINE_PROBE_H_
#define KROFX_TESTS_SUPPORT_ENGINE_PROBE_H_

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "krofx/parse/engine.h"
#include "support/parse_text.h"

namespace krofx::testing {

class EngineProbe : public KRParseEngine {
 public:
  using KRParseEngine::CopyCurrTagItemToBuffer;
  using KRParseEngine::CurrTagItemType;
  using KRParseEngine::ExpandSgmlMacros;
  using KRParseEngine::FindPreviousNonWhiteSpace;
  using KRParseEngine::FindWhiteSpaces;
  using KRParseEngine::GetKRTagInternal;
  using KRParseEngine::GetKrTagItem;
  using KRParseEngine::GetOneItemFromKRBuffer;
  using KRParseEngine::GetTagData;
  using KRParseEngine::IsCommentTag;
  using KRParseEngine::IsWhiteSpace;
  using KRParseEngine::KRParseEngine;
  using KRParseEngine::NextTagType;
  using KRParseEngine::SkipWhiteSpaces;
};

/// Runs each test over a plain buffer (1) and over a derived one (0), with an empty log.
class EngineTest : public ::testing::TestWithParam<int> {
 protected:
  EngineTest() {
    KRParseLogger* log = KRParseLogger::TheKRParseLogger();
    log->DeleteAll();
    log->EnableLogging(1);
    KRSetFireAlarm(KRFireAlarm_None);
  }

  /// Makes a buffer of the kind under test.
  KRBuffer& Buffer(std::string_view text) {
    m_buffer = std::make_unique<TextBuffer>(text, GetParam() != 0);
    return **m_buffer;
  }
  /// Makes an engine over a text.
  EngineProbe& Read(std::string_view text) { return m_engine.emplace(Buffer(text)); }
  EngineProbe& Engine() { return *m_engine; }
  /// Fails when the characters of the text were read so often that time grows faster than size.
  void ExpectLinearTime() const { EXPECT_LT(m_buffer->ReadsPerCharacter(), 100u); }

  /// The next tag, written as "<TAG>", "</TAG>", "TAG=value", "end" or "unreadable".
  std::string Next() {
    KRTagDictionaryEntry entry = {KRTag_None, "none"};
    KRString value;
    switch (m_engine->GetKRTag(entry, value)) {
      case KRTagType_Start:
        return std::string("<") + entry.text + ">";
      case KRTagType_End:
        return std::string("</") + entry.text + ">";
      case KRTagType_Element:
        return std::string(entry.text) + "=" + Str(value);
      case KRTagType_EndOfInput:
        return "end";
      default:
        return "unreadable";
    }
  }
  /// All tags of a text up to its end.
  Lines Tags(std::string_view text) {
    Read(text);
    Lines tags;
    for (std::string tag = Next(); tag != "end" && tag != "unreadable"; tag = Next()) {
      tags.push_back(tag);
    }
    return tags;
  }

 private:
  std::unique_ptr<TextBuffer> m_buffer;
  std::optional<EngineProbe> m_engine;
};

/// Names of the two kinds of buffer, for INSTANTIATE_TEST_SUITE_P.
inline std::string BufferKind(const ::testing::TestParamInfo<int>& info) {
  return info.param != 0 ? "PlainBuffer" : "DerivedBuffer";
}

}  // namespace krofx::testing

#define KROFX_FOR_BOTH_BUFFERS(suite) \
  INSTANTIATE_TEST_SUITE_P(Buffers, suite, ::testing::Values(1, 0), krofx::testing::BufferKind)

#endif  // KROFX_TESTS_SUPPORT_ENGINE_PROBE_H_
