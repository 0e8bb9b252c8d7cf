// krofx certid: the IDs of certificates, by which the certificate of a server is pinned.

#include <memory>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "input/certificate_file.h"
#include "input/input_files.h"
#include "krofx/krofx.h"
#include "output/messages.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

// The ID of a certificate in DER form; empty when memory is exhausted.
std::string MakeID(const std::string& der) {
  KRBuffer bytes(static_cast<u32>(der.size()), 0);
  KRCertID id;
  if (bytes.WriteLarge(der.data(), static_cast<u32>(der.size())) != KRBufferOK ||
      id.SetCertBER(&bytes) != KRSecStatus_Success) {
    return "";
  }
  const KRBuffer& text = *id.GetEncodedCertIDPtr();
  return {text.GetBufferPtr(), text.GetBufferSize()};
}

ExitStatus PrintIDs(const std::vector<std::string>& files) {
  ExitStatus exitStatus = kExitClean;
  std::string lines;
  for (const std::string& file : files) {
    std::string problem;
    const std::vector<std::string> certificates = ReadCertificates(file, problem);
    // A file of a server's whole chain begins with the server's own.
    const std::string id = certificates.empty() ? "" : MakeID(certificates.front());
    if (id.empty()) {
      Complain(DisplayName(file), problem.empty() ? "not enough memory for its ID" : problem);
      exitStatus = kExitUnusable;
      continue;
    }
    lines += id;
    if (files.size() > 1) lines += "  " + DisplayName(file);
    lines += '\n';
  }
  return Worse(exitStatus, WriteStandardOutput(lines));
}

}  // namespace

void DeclareCertID(const Subcommand& certid) {
  const auto files = std::make_shared<std::vector<std::string>>();
  certid
      .AddOption("FILE", *files,
                 "A certificate in PEM, base64 or DER form, or - for standard input")
      .Required();
  certid.SetFooter(
      "An ID is the base64 text of the certificate's SHA-1 digest, 28 characters. With several "
      "files, each line has the file's name after the ID. Of several certificates in a file the "
      "first is taken, which in the file of a server's chain is the server's own.\n"
      "Exit status: 0 printed, 2 not usable, 64 wrong use.");
  certid.OnRun(files, PrintIDs);
}

}  // namespace krofx::command
