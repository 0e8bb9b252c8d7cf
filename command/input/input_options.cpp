// Declares the options of reading, and finds the files.

#include "input/input_options.h"

#include "command_line/command_line.h"
#include "input/input_files.h"
#include "output/messages.h"
#include "system/ordered_work.h"

namespace krofx::command {

namespace {

constexpr int kMostJobs = 256;

}  // namespace

std::size_t InputOptions::CountThreads() const {
  return jobs > 0 ? static_cast<std::size_t>(jobs) : CountCores();
}

void AddInputOptions(const Subcommand& app, InputOptions& options) {
  app.AddOption("FILE", options.files, "OFX files, directories, or - for standard input");
  app.AddFlag("--strict", options.strict, "Mend nothing: take the text to the letter");
  app.AddNumber("--jobs", options.jobs, 1, kMostJobs,
                "How many files to read at once: as many as there are cores, unless this says it");
}

ExitStatus FindInputs(const InputOptions& options, const std::string& subcommand,
                      std::vector<std::string>& names) {
  std::vector<std::string> files = options.files;
  if (!DefaultToStandardInput(files)) return ComplainOfNoFile(subcommand);
  std::vector<std::string> problems;
  names = FindInputs(files, problems);
  for (const std::string& problem : problems) Complain("input", problem);
  return problems.empty() ? kExitClean : kExitUnusable;
}

}  // namespace krofx::command
