// Keeps profiles in a folder for each bank, with a note of whom each one came from.

#include "banks/profile_file.h"

#include <sys/stat.h>

#include <filesystem>

#include "banks/places.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "output/output_file.h"

namespace krofx::command {

namespace {

std::string FolderOf(const std::string& bankName) {
  const std::string state = StateFolder();
  return state.empty() ? "" : state + "/banks/" + bankName;
}

std::string PathOf(const Bank& bank, u16 version) {
  return FolderOf(bank.name) + "/profile-v" + std::to_string(version) + ".ofx";
}

// Where the note of a profile is.
std::string NoteOf(const std::string& path) { return path + ".from"; }

// Whom a profile came from, as its note has it.
std::string SourceOf(const Bank& bank) {
  return bank.url + "\n" + bank.organisation + "\n" + bank.institutionId + "\n";
}

// Whether others can change a file, who could then lead passwords elsewhere.
bool IsOpenToOthers(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) != 0 || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

std::string Write(const std::string& path, const std::string& text) {
  KRBuffer buffer(64, 64);
  if (buffer.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK) {
    return "not enough memory";
  }
  return WriteOutput(buffer, path, Privacy::kPrivate) == kExitClean ? "" : "nothing is kept";
}

}  // namespace

std::shared_ptr<const Profile> ReadKeptProfile(const Bank& bank, u16 version) {
  const std::string path = PathOf(bank, version);
  if (FolderOf(bank.name).empty() || IsOpenToOthers(path) || IsOpenToOthers(NoteOf(path))) {
    return nullptr;
  }
  std::string problem;
  const std::unique_ptr<KRBuffer> note = ReadInput(NoteOf(path), problem);
  if (note == nullptr || ViewOf(*note) != SourceOf(bank)) return nullptr;
  return ReadProfile(ParsedFile(path));
}

std::shared_ptr<const Profile> ReadBestKeptProfile(const Bank& bank, u16 version) {
  const auto first = ReadKeptProfile(bank, version);
  if (first == nullptr || !first->namesSecondVersion || bank.version != 0) return first;
  const auto second = ReadKeptProfile(bank, 2);
  return second == nullptr ? first : second;
}

std::string KeepProfile(const Bank& bank, u16 version, const KRBuffer& reply) {
  const std::string folder = FolderOf(bank.name);
  const std::string problem = MakePrivateFolder(folder);
  if (!problem.empty()) return problem;
  const std::string path = PathOf(bank, version);
  // Without its note a profile counts as none, in case that this is interrupted.
  std::error_code ignored;
  std::filesystem::remove(NoteOf(path), ignored);
  if (WriteOutput(reply, path, Privacy::kPrivate) != kExitClean) return "nothing is kept";
  return Write(NoteOf(path), SourceOf(bank));
}

void ForgetProfiles(const std::string& bankName) {
  std::error_code ignored;
  const std::string folder = FolderOf(bankName);
  if (!folder.empty()) std::filesystem::remove_all(folder, ignored);
}

}  // namespace krofx::command
