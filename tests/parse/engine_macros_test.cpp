// The character macros of element text.

#include "krofx/core/memory.h"
#include "support/engine_probe.h"

namespace {

using krofx::internal::AllocationFailure;
using krofx::testing::EngineProbe;
using krofx::testing::Str;

class Macros : public testing::Test {
 protected:
  std::string Expand(const char* text) {
    KRString out("held before");
    EXPECT_EQ(m_engine.ExpandSgmlMacros(text, out), 1);
    return Str(out);
  }

  KRBuffer m_buffer{0, 0};
  EngineProbe m_engine{m_buffer};
};

TEST_F(Macros, ReplacesTheFourInAnyCase) {
  EXPECT_EQ(Expand("&lt;&gt;&amp;&nbsp;"), "<>& ");
  EXPECT_EQ(Expand("a&LT;b&Gt;c&aMp;d&NBSP;e"), "a<b>c&d e");
}

TEST_F(Macros, LeavesOtherTextAlone) {
  EXPECT_EQ(Expand("plain; text"), "plain; text");
  EXPECT_EQ(Expand("&"), "&");
  EXPECT_EQ(Expand("&;"), "&;");
  EXPECT_EQ(Expand("&amp"), "&amp");
  EXPECT_EQ(Expand("&quot;&#38;"), "&quot;&#38;");
  EXPECT_EQ(Expand("&lt ;"), "&lt ;");
  EXPECT_EQ(Expand(""), "");
}

TEST_F(Macros, UnknownMacroIsLookedAtAgainBehindItsAmpersand) {
  EXPECT_EQ(Expand("&&lt;"), "&<");
  EXPECT_EQ(Expand("&a&lt;b"), "&a<b");
  EXPECT_EQ(Expand("&x;&amp;y;&z"), "&x;&y;&z");
}

TEST_F(Macros, ResultOfAMacroIsNotExpandedAgain) { EXPECT_EQ(Expand("&amp;lt;"), "&lt;"); }

TEST_F(Macros, MayReplaceATextInItsOwnPlace) {
  KRString text("a&lt;b&gt;c");
  EXPECT_EQ(m_engine.ExpandSgmlMacros(text, text), 1);
  EXPECT_EQ(Str(text), "a<b>c");
}

TEST_F(Macros, TellsExhaustedMemory) {
  KRString in("a&lt;b");
  KRString out;
  AllocationFailure::FailAt(1);
  EXPECT_EQ(m_engine.ExpandSgmlMacros(in, out), 0);
  AllocationFailure::FailAt(0);
}

}  // namespace
