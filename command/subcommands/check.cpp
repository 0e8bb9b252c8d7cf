// krofx check: whether OFX files are in order, and what is not.

#include <CLI/CLI.hpp>
#include <memory>

#include "input/diagnosis.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "output/file_progress.h"
#include "output/json_text.h"
#include "output/masking.h"
#include "output/messages.h"
#include "output/safe_text.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

constexpr std::size_t kShownValue = 60;

struct Options {
  std::vector<std::string> files;
  bool json = false;
};

// One input, with everything that a report says of it.
struct Report {
  explicit Report(const std::string& name) : file(name), paths(file) {
    missing = paths.FindMissing();
    verdict = file.GetVerdict();
    if (!missing.empty()) verdict = Worse(verdict, kExitWarnings);
  }

  ParsedFile file;
  ObjectPaths paths;
  std::vector<MissingTag> missing;
  ExitStatus verdict;
};

std::string Describe(const MissingTag& missing) {
  if (!missing.tag.empty()) return "<" + missing.tag + "> is missing";
  std::string text = "it is incomplete: a choice that must be made is not";
  for (std::size_t index = 0; index < missing.alternatives.size(); ++index) {
    text +=
        (index == 0 ? "; it lacks one or more of <" : ", <") + missing.alternatives[index] + ">";
  }
  return text;
}

std::string At(const std::string& path) { return path.empty() ? "" : " in " + path; }

// What a warning is about, as it may be shown: reports end up in logs and with whoever helps.
std::string ValueOf(const Report& report, const Warning& warning) {
  const std::string path = report.paths.Find(warning.object);
  const bool inPayroll = path.find("/N.PAYROLL") != std::string::npos;
  return IsPersonal(warning.tag, inPayroll) ? Masked(warning.value) : warning.value;
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
    if (!warning.tag.empty()) out += " <" + SafeLine(warning.tag) + ">";
    if (!warning.value.empty())
      out += " \"" + Shortened(SafeLine(ValueOf(report, warning)), kShownValue) + "\"";
    out += At(report.paths.Find(warning.object)) + "\n";
  }
  for (const MissingTag& missing : report.missing) {
    out += file.GetName() + ": missing: " + Describe(missing) + At(missing.path) + "\n";
  }
  return out;
}

Json JsonOf(const Report& report) {
  const ParsedFile& file = report.file;
  const LineFinder lines(file.GetText());
  Json warnings = Json::array();
  for (const Warning& warning : file.GetWarnings()) {
    Json each = {{"name", warning.name},
                 {"tag", SafeText(warning.tag)},
                 {"value", SafeText(ValueOf(report, warning))},
                 {"path", report.paths.Find(warning.object)}};
    if (warning.position >= 0) {
      const Place place = lines.Find(warning.position);
      each["line"] = place.line;
      each["column"] = place.column;
      each["offset"] = warning.position;
    }
    warnings.push_back(std::move(each));
  }
  Json missing = Json::array();
  for (const MissingTag& each : report.missing) {
    Json object = {{"path", each.path}};
    if (each.tag.empty()) {
      object["alternatives"] = each.alternatives;
    } else {
      object["tag"] = each.tag;
    }
    missing.push_back(std::move(object));
  }
  Json object = {{"file", file.GetName()},
                 {"exit", static_cast<int>(report.verdict)},
                 {"kind", file.GetKind()},
                 {"status", static_cast<unsigned>(file.GetStatus())},
                 {"meaning", file.GetMeaning()}};
  if (!file.GetProblem().empty()) object["problem"] = file.GetProblem();
  object["warnings"] = std::move(warnings);
  object["missing"] = std::move(missing);
  return object;
}

ExitStatus Check(const Options& options) {
  std::vector<std::string> problems;
  const std::vector<std::string> names = FindInputs(options.files, problems);
  ExitStatus exitStatus = problems.empty() ? kExitClean : kExitUnusable;
  Json files = Json::array();
  std::string text;
  {
    FileProgress progress(names.size());
    for (const std::string& name : names) {
      progress.Next(name);
      const Report report(name);
      exitStatus = Worse(exitStatus, report.verdict);
      if (options.json) {
        files.push_back(JsonOf(report));
      } else {
        text += TextOf(report);
      }
    }
  }
  for (const std::string& problem : problems) Complain("input", problem);
  if (options.json) text = JsonText("krofx-check", std::move(files));
  return Worse(exitStatus, WriteStandardOutput(text));
}

}  // namespace

void AddCheck(CLI::App& app, ExitStatus& exitStatus) {
  CLI::App* const check =
      app.add_subcommand("check", "Say whether OFX files are in order, and what is not");
  const auto options = std::make_shared<Options>();
  check->add_option("FILE", options->files, "OFX files, directories, or - for standard input")
      ->required();
  check->add_flag("--json", options->json, "Print JSON");
  check->footer(
      "Exit status: 0 clean, 1 warnings or something missing, 2 not usable, 64 wrong use.");
  check->callback([options, &exitStatus] { exitStatus = Check(*options); });
}

}  // namespace krofx::command
