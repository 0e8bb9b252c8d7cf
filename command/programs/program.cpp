// Makes command lines and runs programs.

#include "programs/program.h"

#include <cstdio>
#include <exception>

#include "system/core_file.h"

namespace krofx::command {

CommandLine MakeCommandLine() {
  return {"krofx", "krofx reads, checks, rewrites, requests and exchanges OFX 1.x files.",
          kVersionLine};
}

void AddSubcommand(const CommandLine& commandLine, const char* title,
                   const SubcommandEntry& entry) {
  const Subcommand added = commandLine.GetCommand().Add(entry.name, entry.purpose);
  added.SetGroup(title);
  entry.declare(added);
}

int RunProgram(ExitStatus (*run)(int argc, char** argv), int argc, char** argv) {
  ForbidCoreFiles();
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "krofx: failed: %s\n", error.what());
    return kExitUnusable;
  }
}

}  // namespace krofx::command
