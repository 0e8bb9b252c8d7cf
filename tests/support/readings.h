// Readings of texts, for tests of the reader: the mendings, as lines, and the result, as text.

#ifndef KROFX_TESTS_SUPPORT_READINGS_H_
#define KROFX_TESTS_SUPPORT_READINGS_H_

#include <set>
#include <string>
#include <string_view>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/reader/reading.h"
#include "support/ofx_text.h"

namespace krofx::testing {

/// A mending as one line: "decimal-comma 7:3 <TRNAMT> \"-11,76\" -> \"-11.76\"". What is empty is
/// left out.
inline std::string Line(const Mending& mending) {
  std::string line = NameOf(mending.kind);
  line += " " + std::to_string(mending.place.line) + ":" + std::to_string(mending.place.column);
  if (mending.tag.IsEmpty() == 0) line += " <" + Str(mending.tag) + ">";
  if (mending.was.IsEmpty() == 0) line += " \"" + Str(mending.was) + "\"";
  if (mending.taken.IsEmpty() == 0) line += " -> \"" + Str(mending.taken) + "\"";
  return line;
}

/// All mendings of a reading, each as a line.
inline Lines MendingLines(const Reading& reading) {
  Lines lines;
  for (const Mending& mending : reading.mendings) lines.push_back(Line(mending));
  return lines;
}

/// The kinds of all mendings, in order, by name.
inline Lines MendingNames(const Reading& reading) {
  Lines names;
  for (const Mending& mending : reading.mendings) names.emplace_back(NameOf(mending.kind));
  return names;
}

/// The kinds of all mendings, each once.
inline std::set<MendingKind> KindsOf(const Reading& reading) {
  std::set<MendingKind> kinds;
  for (const Mending& mending : reading.mendings) kinds.insert(mending.kind);
  return kinds;
}

/// The problem of a reading that ended where damage of a kind must not be mended.
inline std::string ProblemWithout(MendingKind kind) {
  const MendingKindInfo* const info = FindMendingKind(kind);
  return std::string("it was read up to damage that must not be mended: ") +
         (info == nullptr ? "no such kind" : info->sentence);
}

/// The warnings of a reading: name without prefix, tag, value.
inline Lines WarningLines(const Reading& reading) {
  Lines lines;
  for (const ReadWarning& warning : reading.warnings) {
    KRParseException record;
    record.m_warning = warning.warning;
    KRString name;
    record.WarningString(name);
    std::string line = Str(name).substr(5);
    if (warning.tagText.IsEmpty() == 0) line += " <" + Str(warning.tagText) + ">";
    if (warning.value.IsEmpty() == 0) line += " \"" + Str(warning.value) + "\"";
    lines.push_back(std::move(line));
  }
  return lines;
}

/// Writes a tree leniently, so that over-long texts are written too.
inline std::string Written(const KRDataObj* root) {
  return root == nullptr ? "nothing" : Build(*root, KRBuildStringOpt_Lenient).text;
}

/// The same without its header.
inline std::string WrittenBody(const KRDataObj* root) {
  const std::string text = Written(root);
  return {std::find(text.begin(), text.end(), '<'), text.end()};
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_READINGS_H_
