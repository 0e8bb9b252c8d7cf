// krofx extract: saves the attachments of a multipart text, those in base64 as the bytes that they
// encode.

#include <fcntl.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command_line/command_line.h"
#include "input/buffer_copy.h"
#include "input/input_files.h"
#include "input/mime_parts.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "output/safe_text.h"
#include "subcommands/subcommands.h"
#include "system/file_descriptor.h"
#include "system/interruption.h"

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

// Parses a text. The strict parser reads the file again, but standard input can be read only once.
std::unique_ptr<ParsedFile> Parse(const Options& options, const KRBuffer& text) {
  if (options.strict && options.file != "-") {
    return std::make_unique<ParsedFile>(options.file, Reader::kStrict);
  }
  return std::make_unique<ParsedFile>(DisplayName(options.file), CopyOf(text));
}

// The bodies of the parts as they are in the text. Where it has not as many as there are parts, as
// in one that is damaged, the objects have them, unless it is longer than the positions that they
// count with. False when the bodies cannot be told apart.
bool FindBodiesOf(std::string_view text, KRFile& root, const std::vector<Part>& parts,
                  std::vector<std::string>& bodies) {
  constexpr std::size_t kMostCounted = 65535;
  const std::vector<std::string_view> found = FindBodies(text, ToText(root.GetBoundary()));
  if (found.size() == parts.size()) {
    bodies.assign(found.begin(), found.end());
    return true;
  }
  for (const Part& part : parts) {
    const KRString& body = part.file->GetMIMEBody();
    bodies.emplace_back(body, body.GetStrLength());
  }
  return text.size() <= kMostCounted;
}

// Those in which the body is as it is meant, or can be read as it is.
constexpr std::string_view kKnownEncodings[] = {"",       "7bit",   "8bit",
                                                "binary", "base64", "quoted-printable"};

// Whether a part is in an encoding that is not known, which is complained of.
bool IsInUnknownEncoding(const Part& part) {
  if (std::find(std::begin(kKnownEncodings), std::end(kKnownEncodings), part.encoding) !=
      std::end(kKnownEncodings)) {
    return false;
  }
  Complain(part.name, "its encoding " + SafeLine(part.encoding) +
                          " is not known; it is saved as it came, not decoded");
  return true;
}

// The bytes of a part. A text that is not base64 although it says so is better than
// nothing.
std::string BodyOf(const Part& part, std::string text) {
  if (part.encoding != "base64") return text;
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

bool WriteBytes(int file, const std::string& bytes) {
  const char* at = bytes.data();
  for (std::size_t left = bytes.size(); left > 0;) {
    const ssize_t written = ::write(file, at, left);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    at += written;
    left -= static_cast<std::size_t>(written);
  }
  return true;
}

// Makes a file that was not there, so that nothing is ever overwritten and no link is followed; one
// that cannot be written whole is gone again. Gives the name that it got, or an empty text with
// errno set.
std::string Save(int directory, const Part& part, std::string text) {
  const std::string body = BodyOf(part, std::move(text));
  // A signal takes effect when the file is whole.
  const Interruption interruption;
  for (int number = 1; number < kMaxTries; ++number) {
    std::string name = Numbered(part.name, number);
    FileDescriptor file(::openat(directory, name.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file && errno == EEXIST) continue;
    if (!file) return "";
    if (WriteBytes(file.Get(), body) && file.Close()) return name;
    const int reason = errno;
    ::unlinkat(directory, name.c_str(), 0);
    errno = reason;
    return "";
  }
  errno = EEXIST;
  return "";
}

ExitStatus Extract(const Options& options) {
  std::string problem;
  const std::unique_ptr<KRBuffer> text = ReadInput(options.file, problem);
  if (text == nullptr) {
    Complain(DisplayName(options.file), problem);
    return kExitUnusable;
  }
  const std::unique_ptr<ParsedFile> read = Parse(options, *text);
  const ParsedFile& file = *read;
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
  if (options.strict && !file.GetMendings().empty()) {
    Complain(file.GetName(), "there are mendings, which --strict does not allow");
    return kExitUnusable;
  }
  const std::vector<Part> parts = FindParts(*file.GetRoot());
  std::vector<std::string> bodies;
  if (!FindBodiesOf(ViewOf(*text), *file.GetRoot(), parts, bodies)) {
    Complain(file.GetName(), "its parts cannot be distinguished; nothing was saved");
    return kExitUnusable;
  }
  ExitStatus exitStatus = kExitClean;
  std::string saved;
  for (std::size_t index = 0; index < parts.size(); ++index) {
    const Part& part = parts[index];
    if (part.file->GetType() != KRTag_MIME) continue;
    const std::string name = Save(directory.Get(), part, std::move(bodies[index]));
    if (name.empty()) {
      Complain(part.name, std::string("it cannot be saved: ") + std::strerror(errno));
      exitStatus = kExitUnusable;
    } else {
      saved += name + "\n";
      if (IsInUnknownEncoding(part)) exitStatus = Worse(exitStatus, kExitWarnings);
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

void DeclareExtract(const Subcommand& extract) {
  const auto options = std::make_shared<Options>();
  extract.AddOption("FILE", options->file, "A multipart text, or - for standard input").Required();
  extract.AddOption("-d,--directory", options->directory,
                    "An existing directory to save into; else the current one");
  extract.AddFlag("--strict", options->strict, "Mend nothing: take the text to the letter");
  extract.SetFooter(
      "Names are made safe, and no file is overwritten. The names of what was saved are printed.\n"
      "A part in base64 is decoded; other encodings are saved unchanged.\n"
      "Exit status: 0 saved, 1 one has an unknown encoding, 2 not usable or not all "
      "saved, 64 wrong use.");
  extract.OnRun(options, Extract);
}

}  // namespace krofx::command
