// The text of a tree of objects, and what is said when there is none.

#ifndef KROFX_COMMAND_INPUT_BUILT_TEXT_H_
#define KROFX_COMMAND_INPUT_BUILT_TEXT_H_

#include <string>

class KRBuffer;
class KRFile;

namespace krofx {
struct OfxText;
struct RewriteOptions;
}  // namespace krofx

namespace krofx::command {

/// Builds `root` into `text`. Texts that are not valid and trees that lack something are refused.
/// @return empty, or what is wrong and where.
std::string BuildText(KRFile& root, KRBuffer& text);

/// Writes a text that was read after what `out` holds.
/// @return empty, or what is wrong and where.
std::string RewriteText(const krofx::OfxText& text, const krofx::RewriteOptions& options,
                        KRBuffer& out);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_BUILT_TEXT_H_
