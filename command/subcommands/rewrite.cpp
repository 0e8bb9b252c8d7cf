// krofx rewrite: reads a file and writes what was understood, in order.

#include <filesystem>
#include <memory>
#include <system_error>

#include "command_line/command_line.h"
#include "input/built_text.h"
#include "input/file_progress.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "output/output_file.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct Options {
  std::string file;
  std::string output;
  bool strict = false;
  bool ofx2 = false;
  int version = 203;
};

ExitStatus Refuse(const ParsedFile& file, const std::string& problem) {
  Complain(file.GetName(), problem + "; nothing was written");
  return kExitUnusable;
}

bool IsSameFile(const std::string& left, const std::string& right) {
  std::error_code error;
  return !right.empty() && std::filesystem::equivalent(left, right, error) && !error;
}

ExitStatus Rewrite(const Options& options) {
  FileProgress progress({options.file});
  progress.Next(options.file);
  // The strict reader would not do for --strict: of two answers in one wrapper it keeps the last
  // one and says nothing.
  const ParsedFile file(options.file);
  if (!file.GetProblem().empty()) return Refuse(file, file.GetProblemWithAdvice());
  if (file.BreaksOff() && IsSameFile(options.file, options.output)) {
    return Refuse(file, "it breaks off, and what is whole would take its place; name another file");
  }
  if (file.GetKind() == "multipart") {
    return Refuse(file, "a multipart text is not rewritten; take it apart with \"krofx extract\"");
  }
  if (options.strict && file.GetVerdict() != kExitClean) {
    return Refuse(file, "it is not in order, as --strict demands; \"krofx check\" says why");
  }
  KRBuffer text(65536, 65536);
  krofx::RewriteOptions form;
  form.form = options.ofx2 ? krofx::TextForm::kOfx2 : krofx::TextForm::kOfx1;
  form.version = static_cast<u16>(options.version);
  form.strict = options.strict;
  for (const krofx::OfxText& each : file.GetTexts()) {
    const std::string problem = RewriteText(each, form, text);
    if (!problem.empty()) return Refuse(file, problem);
  }
  const std::string notes = file.CountNotes();
  if (!notes.empty()) {
    Complain(file.GetName(), notes + "; what they name may be missing from what is written");
  }
  // Requests hold a password.
  return WriteOutput(text, options.output,
                     file.GetKind() == "request" ? Privacy::kPrivate : Privacy::kUsual);
}

}  // namespace

void DeclareRewrite(const Subcommand& rewrite) {
  const auto options = std::make_shared<Options>();
  rewrite.AddOption("FILE", options->file, "An OFX file, or - for standard input").Required();
  rewrite.AddOption("-o,--output", options->output,
                    "The file to write, which may be FILE itself; else standard output");
  rewrite.AddFlag("--strict", options->strict,
                  "Write nothing unless all is in order: nothing mended, no warnings, no text over "
                  "its length, nothing missing");
  const Option ofx2 =
      rewrite.AddFlag("--ofx2", options->ofx2, "Write OFX 2: XML in UTF-8, with all tags closed");
  rewrite
      .AddNumber("--ofx2-version", options->version, 200, 299,
                 "The version that the header of OFX 2 names, such as 203, the default, or 220")
      .Needs(ofx2);
  rewrite.SetFooter("Exit status: 0 written, 2 not usable and nothing written, 64 wrong use.");
  rewrite.OnRun(options, Rewrite);
}

}  // namespace krofx::command
