// Finds out what a report says, and says it in lines.

#include "checking/report.h"

#include <algorithm>

#include "output/masking.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

constexpr std::size_t kShownValue = 60;

std::string Describe(const MissingTag& missing) {
  if (!missing.tag.empty()) return "<" + missing.tag + "> is missing";
  if (!missing.advice.empty()) return missing.advice;
  std::string text = "it is incomplete: a choice that must be made is not";
  for (std::size_t index = 0; index < missing.alternatives.size(); ++index) {
    text +=
        (index == 0 ? "; it lacks one or more of <" : ", <") + missing.alternatives[index] + ">";
  }
  return text;
}

std::string At(const std::string& path) { return path.empty() ? "" : " in " + path; }

}  // namespace

Report::Report(const std::string& name) : file(name), paths(file) {
  missing = paths.FindMissing();
  verdict = file.GetVerdict();
  if (!missing.empty()) verdict = Worse(verdict, kExitWarnings);
}

std::string ShownValueOf(const Report& report, const Warning& warning) {
  const std::string path = report.paths.Find(warning.object);
  const bool inPayroll = path.find("/N.PAYROLL") != std::string::npos;
  std::string aggregate = path.substr(path.rfind('/') + 1);
  aggregate.erase(std::min(aggregate.find('['), aggregate.size()));
  const Disclosure disclosure = DisclosureOf(warning.tag, aggregate, inPayroll);
  return WithoutPassword(Masked(warning.value, disclosure));
}

std::string TextOf(const Report& report) {
  const ParsedFile& file = report.file;
  std::string out = file.GetName() + ": ";
  if (file.GetRoot() == nullptr) return out + "not usable: " + file.GetProblem() + "\n";
  out += "status " + std::to_string(file.GetStatus()) + ", " + file.GetMeaning() + "\n";
  if (!file.GetProblem().empty())
    out += file.GetName() + ": not usable: " + file.GetProblem() + "\n";
  const LineFinder lines(file.GetText());
  for (const Warning& warning : file.GetWarnings()) {
    out += file.GetName() + ":";
    if (warning.position >= 0) {
      const Place place = lines.Find(warning.position);
      out += std::to_string(place.line) + ":" + std::to_string(place.column) + ":";
    }
    out += " " + warning.name;
    if (!warning.tag.empty()) out += " <" + WithoutPassword(SafeLine(warning.tag)) + ">";
    if (!warning.value.empty())
      out += " \"" + Shortened(SafeLine(ShownValueOf(report, warning)), kShownValue) + "\"";
    out += At(report.paths.Find(warning.object)) + "\n";
  }
  for (const MissingTag& missing : report.missing) {
    out += file.GetName() + ": missing: " + Describe(missing) + At(missing.path) + "\n";
  }
  return out;
}

}  // namespace krofx::command
