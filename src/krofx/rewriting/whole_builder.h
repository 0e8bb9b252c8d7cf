// A builder that leaves nothing out: texts in UTF-8, in their whole length.

#ifndef KROFX_REWRITING_WHOLE_BUILDER_H_
#define KROFX_REWRITING_WHOLE_BUILDER_H_

#include "krofx/build/builder.h"
#include "krofx/reader/reading.h"

namespace krofx::internal {

/// Writes the texts of one tree.
class WholeBuilder final : public KRBuilder {
 public:
  /// @param text the one that the tree belongs to.
  /// @param strict whether a text over its length stops the build.
  WholeBuilder(const OfxText& text, bool strict)
      : KRBuilder(KRBuildStringCrLfOpt_LF), m_text(text), m_strict(strict) {}

  using KRBuilder::AddString;
  KRBuildStatus AddHeader(KRHeaderTag tag, const KRString& value) override;
  KRBuildStatus AddTagElement(KRTagID tag) override;
  KRBuildStatus AddString(const KRString& text, KRBuildStringMacroOpt macroOption,
                          KRBuildStringCrLfOpt lineOption) override;

 private:
  const OfxText& m_text;
  bool m_strict;
  // Whether the element that is being written is a password.
  bool m_secret = false;
};

}  // namespace krofx::internal

#endif  // KROFX_REWRITING_WHOLE_BUILDER_H_
