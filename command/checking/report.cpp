// Finds out what a report says, and says it in lines.

#include "checking/report.h"

#include <algorithm>
#include <utility>

#include "checking/notes.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

constexpr std::size_t kShownValue = 60;

std::string At(const std::string& path) { return path.empty() ? "" : " in " + path; }

bool SaysMissing(const Warning& warning) { return warning.name == kMissingTagWarning; }

// The library warns of the first thing that is missing in a tree, by a tag at most. That may be one
// of several that would do, or none. What is missing is known here, so such a warning is left out,
// or names a tag that is missing where it says.
std::vector<Warning> SelectWarnings(const ParsedFile& file, const MissingTags& missing) {
  std::vector<Warning> selected;
  for (Warning warning : file.GetWarnings()) {
    const bool isOfTree = SaysMissing(warning) && warning.place.line == 0;
    if (isOfTree && !missing.listed.empty()) {
      const auto isSame = [&warning](const MissingTag& each) {
        return !each.tag.empty() && each.path == warning.path &&
               (warning.tag.empty() || each.tag == warning.tag);
      };
      const auto same = std::find_if(missing.listed.begin(), missing.listed.end(), isSame);
      if (same == missing.listed.end()) continue;
      warning.tag = same->tag;
    }
    selected.push_back(std::move(warning));
  }
  return selected;
}

}  // namespace

Report::Report(const std::string& name, Reader reader) : file(name, reader, Holding::kSummary) {
  missing = FindMissing(file);
  warnings = SelectWarnings(file, missing);
  verdict = file.GetVerdict();
  if (!missing.listed.empty()) verdict = Worse(verdict, kExitWarnings);
}

std::string DetailsOf(const Report& report) {
  const ParsedFile& file = report.file;
  if (file.GetRoot() == nullptr) return "";
  std::string out = file.GetName() + ": status " + std::to_string(file.GetStatus()) + ", " +
                    file.GetMeaning() + "\n";
  for (const Warning& warning : report.warnings) {
    out += file.GetName() + ":";
    if (warning.place.line > 0) {
      out += std::to_string(warning.place.line) + ":" + std::to_string(warning.place.column) + ":";
    }
    out += std::string(" ") + warning.sentence;
    if (!warning.tag.empty()) out += ": <" + SafeLine(ShownTag(warning.tag, warning.path)) + ">";
    if (!warning.value.empty()) {
      const std::string shown = ShownValue(warning.value, warning.tag, warning.path, file);
      out += " \"" + Shortened(SafeLine(shown), kShownValue) + "\"";
    }
    out += At(warning.path) + "\n";
  }
  for (const ShownMending& mending : ShownMendings(file)) {
    out += file.GetName() + ":" + TextOf(mending) + "\n";
  }
  for (const MissingTag& missing : report.missing.listed) {
    out += file.GetName() + ": missing: " + missing.sentence + At(missing.path) + "\n";
  }
  if (report.missing.unlisted > 0) {
    out += file.GetName() + ": missing: " + std::to_string(report.missing.unlisted) + " more\n";
  }
  return out;
}

}  // namespace krofx::command
