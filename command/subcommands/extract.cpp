// krofx extract: saves the attachments of a multipart text, those in base64 as the bytes that they
// encode.

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>
#include <memory>

#include "command_line/command_line.h"
#include "input/mime_parts.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "subcommands/subcommands.h"
#include "system/file_descriptor.h"

namespace krofx::command {

namespace {

// The most files of one name.
constexpr int kMaxTries = 10000;

struct Options {
  std::string file;
  std::string directory = ".";
  bool strict = false;
};

// The name with a number before its extension.
std::string Numbered(const std::string& name, int number) {
  if (number == 1) return name;
  const std::size_t point = name.find_last_of('.');
  const std::string extension = point == std::string::npos ? "" : name.substr(point);
  return name.substr(0, point) + "-" + std::to_string(number) + extension;
}

// The bytes of a part. A text that is not base64 although it says so is better than
// nothing.
std::string BodyOf(const Part& part) {
  const KRString& body = part.file->GetMIMEBody();
  std::string text(body, body.GetStrLength());
  if (!part.base64) return text;
  KRBuffer encoded(0, 0);
  KRDecode decode;
  if (encoded.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK ||
      decode.SetInputData(&encoded) != KRSecStatus_Success) {
    Complain(part.name, "it says that it is base64 and is not; it is saved unchanged");
    return text;
  }
  const KRBuffer& bytes = *decode.GetOutputData();
  return {bytes.GetBufferPtr(), bytes.GetBufferSize()};
}

// Makes a file that was not there, so that nothing is ever overwritten and no link is followed.
// Gives the name that it got, or an empty text with errno set.
std::string Save(int directory, const Part& part) {
  const std::string body = BodyOf(part);
  for (int number = 1; number < kMaxTries; ++number) {
    const std::string name = Numbered(part.name, number);
    FileDescriptor file(::openat(directory, name.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file && errno == EEXIST) continue;
    if (!file) return "";
    const char* at = body.data();
    for (std::size_t left = body.size(); left > 0;) {
      const ssize_t written = ::write(file.Get(), at, left);
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return "";
      at += written;
      left -= static_cast<std::size_t>(written);
    }
    return file.Close() ? name : "";
  }
  errno = EEXIST;
  return "";
}

ExitStatus Extract(const Options& options) {
  const ParsedFile file(options.file, options.strict ? Reader::kStrict : Reader::kMending);
  if (file.GetKind() != "multipart") {
    Complain(file.GetName(),
             file.GetRoot() == nullptr
                 ? file.GetProblem()
                 : "it has no parts: it does not begin with a multipart content type");
    return kExitUnusable;
  }
  const FileDescriptor directory(
      ::open(options.directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory) {
    Complain(options.directory,
             std::string("it is not a directory to save into: ") + std::strerror(errno));
    return kExitUnusable;
  }
  ExitStatus exitStatus = kExitClean;
  std::string saved;
  for (const Part& part : FindParts(*file.GetRoot())) {
    if (part.file->GetType() != KRTag_MIME) continue;
    const std::string name = Save(directory.Get(), part);
    if (name.empty()) {
      Complain(part.name, std::string("it cannot be saved: ") + std::strerror(errno));
      exitStatus = kExitUnusable;
    } else {
      saved += name + "\n";
    }
  }
  if (!file.GetMendings().empty()) {
    Complain(file.GetName(), file.CountNotes() + "; \"krofx check\" lists them");
  }
  if (!file.GetProblem().empty()) {
    Complain(file.GetName(), file.GetProblem() + "; parts after that place were not read");
    exitStatus = kExitUnusable;
  }
  return Worse(exitStatus, WriteStandardOutput(saved));
}

}  // namespace

void AddExtract(const Subcommand& parent) {
  const Subcommand extract =
      parent.Add("extract", "Save the attachments of a multipart OFX response");
  const auto options = std::make_shared<Options>();
  extract.AddOption("FILE", options->file, "A multipart text, or - for standard input").Required();
  extract.AddOption("-d,--directory", options->directory,
                    "An existing directory to save into; else the current one");
  extract.AddFlag("--strict", options->strict, "Mend nothing: take the text to the letter");
  extract.SetFooter(
      "Names are made safe, and no file is overwritten. The names of what was saved are printed.\n"
      "A part in base64 is decoded; other encodings are saved unchanged.\n"
      "Exit status: 0 saved, 2 not usable or not all saved, 64 wrong use.");
  extract.OnRun(options, Extract);
}

}  // namespace krofx::command
