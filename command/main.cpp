// The command krofx: reads, checks, rewrites, requests and exchanges OFX from a shell.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "krofx/version.h"
#include "subcommands/subcommands.h"

namespace {

using namespace krofx::command;

constexpr AddSubcommand kSubcommands[] = {AddPrint,  AddCheck, AddRewrite, AddRequest, AddExtract,
                                          AddCertID, AddSend,  AddGet,     AddFetch};

constexpr char kFooter[] =
    "FILE may be a directory, whose .ofx, .qfx and .qbo files are taken, or - for standard input.\n"
    "Exit status: 0 clean, 1 warnings (check), 2 not usable, 64 wrong use.\n"
    "\"krofx COMMAND --help\" tells more; \"man krofx\" tells all.";

ExitStatus Run(int argc, char** argv) {
  CLI::App app("krofx reads, checks, rewrites, requests and exchanges OFX 1.x files.", "krofx");
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", "krofx " KROFX_VERSION);

  ExitStatus exitStatus = kExitClean;
  for (const AddSubcommand add : kSubcommands) add(app, exitStatus);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitClean : kExitWrongUse;
  }
  return exitStatus;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "krofx: failed: %s\n", error.what());
    return kExitUnusable;
  }
}
