// Builds a tree, and says in words why one was not built.

#include "input/built_text.h"

#include "input/parsed_file.h"
#include "krofx/host/build_reason.h"
#include "krofx/krofx.h"

namespace krofx::command {

namespace {

// Empty when there is none.
std::string Problem(KRBuildStatus status, KRDataObj* failing) {
  if (status == KRBuildStatus_Done) return "";
  std::string problem = krofx::ReasonOf(status);
  if (failing != nullptr) problem += " in <" + ToText(KRUtility::ObjectToString(failing)) + ">";
  return problem + " (build status " + std::to_string(status) + ")";
}

}  // namespace

std::string BuildText(KRFile& root, KRBuffer& text) {
  KRBuilder builder;
  const KRBuildStatus status = builder.Build(&text, &root, KRBuildStringOpt_Strict, 1);
  return Problem(status, builder.GetFailingObject());
}

std::string RewriteText(const krofx::OfxText& text, const krofx::RewriteOptions& options,
                        KRBuffer& out) {
  KRDataObj* failing = nullptr;
  const KRBuildStatus status = krofx::Rewrite(text, out, options, &failing);
  return Problem(status, failing);
}

}  // namespace krofx::command
