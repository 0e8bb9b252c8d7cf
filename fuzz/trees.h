// What holds for every text that is read into a tree, whatever the class of its root:
//
//   - both ways of reading, the short one and that of the operations that hosts may override, come
//     to the same tree, status and warnings at the same places; so do both ways of writing;
//   - all ways of looking for what is missing agree on whether anything is;
//   - a deep copy is written as its original is;
//   - the text that is written of a tree without cutting any value is written of the tree that is
//     read from it.

#ifndef KROFX_FUZZ_TREES_H_
#define KROFX_FUZZ_TREES_H_

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/reader/missing.h"
#include "krofx/values/utility.h"
#include "support/parse_text.h"
#include "target.h"

namespace krofx::fuzz {

/// A host's builder, so that every operation is called.
class HostBuilder : public KRBuilder {};

/// Keeps the warnings of a parse with their places.
class WarningLines : public KRWarningObserver {
 public:
  void OnWarning(const KRParseException& warning, s32 position) override {
    std::string line = krofx::testing::Line(warning);
    // How many stars stand for a password depends on the memory that its text had.
    const auto isStar = [](char one, char next) { return one == '*' && next == '*'; };
    line.erase(std::unique(line.begin(), line.end(), isStar), line.end());
    text += line + " at " + std::to_string(position) + "\n";
  }
  std::string text;
};

/// What a build came to: the text, or "status N".
template <class Builder = KRBuilder>
std::string Written(KRDataObj& root, KRBuildStringOpt option = KRBuildStringOpt_Lenient) {
  KRBuffer buffer(0, 0);
  Builder builder;
  const KRBuildStatus status = builder.Build(&buffer, &root, option, 0);
  if (status != KRBuildStatus_Done) return "status " + std::to_string(status);
  return buffer.GetBufferPtr() == nullptr
             ? std::string()
             : std::string(buffer.GetBufferPtr(), buffer.GetBufferSize());
}

/// Whether a build came to a text.
inline bool IsText(const std::string& written) { return !written.starts_with("status "); }

/// Reads a text into a root with a parser that checks the tags of objects that are no files.
template <class Parser, class Root>
KRParseStatus ReadInto(Root& root, Bytes text, bool plain, std::string* warnings = nullptr) {
  krofx::testing::TextBuffer buffer(text, plain);
  WarningLines lines;
  Parser parser;
  parser.SetWarningObserver(&lines);
  KRArrayOfTags tags;
  root.GetArrayOfValidTags(tags);
  parser.SetValidTags(tags);
  const KRParseStatus status = parser.Parse(buffer.Get(), &root, 1);
  if (warnings != nullptr) *warnings = lines.text;
  return status;
}

/// Looks for what a tree lacks, in all ways that there are.
inline void CheckMissing(KRDataObj& root) {
  KRDataObj* object = &root;
  KRTagID missing = KRTag_None;
  const bool isComplete = KRUtility::AllRequiredPresent(&object, &missing) != 0;
  Expect(isComplete || object->AllRequiredPresent() == 0, "an incomplete object lacks something");
  Expect(object != &root || missing == KRTag_None, "a tag is named below the root");
  KRDataObj* holder = nullptr;
  const KRTagID first = KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_None);
  Expect((first == KRTag_None) == (holder == nullptr), "a missing tag is missing somewhere");
  Expect(holder == nullptr || !isComplete, "a complete tree lacks no tag");
  Expect(krofx::FindMissing(root).empty() == isComplete, "the list of what is missing agrees");
}

/// Whether a value that is written begins or ends with white space, which is not read as part of
/// it. (A builder writes "&nbsp;" as a blank.)
inline bool HasBlankAtAnEnd(std::string_view written) {
  constexpr std::string_view kBlanks = " \t\r\n";
  while (!written.empty()) {
    written.remove_prefix(std::min(written.find('>'), written.size() - 1) + 1);
    std::string_view value = written.substr(0, written.find('<'));
    if (value.ends_with('\n')) value.remove_suffix(1);
    if (value.ends_with('\r')) value.remove_suffix(1);
    if (value.empty()) continue;
    if (kBlanks.find(value.front()) != Bytes::npos || kBlanks.find(value.back()) != Bytes::npos) {
      return true;
    }
  }
  return false;
}

/// Tests that a text that was written strictly is written again of the tree that is read from it.
/// @param make makes an empty root.
template <class Parser, class Make>
void CheckWrittenAgain(const std::string& strict, const Make& make) {
  if (!IsText(strict)) return;
  // A file with headers that OFX does not have is written without them, after the blank line that
  // ends them.
  if (strict.starts_with('\r')) return;
  if (HasBlankAtAnEnd(strict)) return;
  const auto again = make();
  ReadInto<Parser>(*again, strict, true);
  ExpectSame(strict, Written(*again), "a written text is written again");
}

/// Tests a text.
/// @tparam WrittenIsRead whether what is written of such a tree can be read at all.
/// @param make makes an empty root.
/// @param copy makes a deep copy of the second root in the first one, and gives 1.
template <class Parser, bool WrittenIsRead = true, class Make, class Copy>
void CheckTree(Bytes text, const Make& make, const Copy& copy) {
  const auto root = make();
  const auto slow = make();
  std::string warnings;
  std::string slowWarnings;
  const KRParseStatus status = ReadInto<Parser>(*root, text, true, &warnings);
  const KRParseStatus slowStatus = ReadInto<Parser>(*slow, text, false, &slowWarnings);
  Expect(status == slowStatus, "both ways of reading end alike");
  ExpectSame(warnings, slowWarnings, "both ways of reading warn alike");
  root->ProcessResponse();
  slow->ProcessResponse();

  const std::string written = Written(*root);
  ExpectSame(written, Written<HostBuilder>(*slow), "both ways give one tree, written alike");
  const std::string strict = Written(*root, KRBuildStringOpt_Strict);
  ExpectSame(strict, Written<HostBuilder>(*slow, KRBuildStringOpt_Strict),
             "strict writing is one, too");
  CheckMissing(*root);

  const auto copied = make();
  Expect(copy(*copied, *root) == 1, "a tree can be copied");
  ExpectSame(written, Written(*copied), "a copy is written as its original");

  if (!WrittenIsRead) return;
  if (status != KRParseStatus_Accepted && status != KRParseStatus_Warnings) return;
  CheckWrittenAgain<Parser>(strict, make);
}

/// The version of messages for a text: its length chooses, so that inputs are texts and no more.
inline u16 VersionFor(Bytes text) {
  constexpr u16 kVersions[] = {0xffff, 1, 2};
  return kVersions[text.size() % 3];
}

/// Tests a text as a file of class `File`.
template <class File, class Parser = KRSimpleParser, bool WrittenIsRead = true>
void CheckFile(Bytes text) {
  const u16 version = VersionFor(text);
  CheckTree<Parser, WrittenIsRead>(
      text,
      [version] {
        auto file = std::make_unique<File>();
        file->SetMsgSetVersion(version);
        return file;
      },
      [](File& to, File& from) { return to.DeepCopyFrom(&from); });
}

}  // namespace krofx::fuzz

#endif  // KROFX_FUZZ_TREES_H_
