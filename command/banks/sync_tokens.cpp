// Keeps the tokens of a bank in a file: whom they came from, and then a line for each.

#include "banks/sync_tokens.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "banks/places.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "output/output_file.h"

namespace krofx::command {

namespace {

constexpr char kFirstTime[] = "0";
constexpr char kBetween = '\t';

std::string FolderOfTokens() {
  const std::string state = StateFolder();
  return state.empty() ? "" : state + "/tokens";
}

// A token counts for whom it was given to alone.
std::string SourceOf(const Bank& bank) {
  return bank.url + kBetween + bank.organisation + kBetween + bank.institutionId + kBetween +
         bank.user;
}

// A text that fits between the marks of a line.
std::string Plain(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, ' ');
  return text;
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

}  // namespace

SyncTokens::SyncTokens(const Bank& bank) : m_bank(bank) {
  const std::string path = FolderOfTokens() + "/" + bank.name;
  std::error_code none;
  if (FolderOfTokens().empty() || !std::filesystem::exists(path, none)) return;
  std::string ignored;
  const std::unique_ptr<KRBuffer> kept = ReadInput(path, ignored);
  std::string_view text = kept == nullptr ? std::string_view() : ViewOf(*kept);
  if (TakeLine(text) != SourceOf(bank)) return;
  while (!text.empty()) {
    const std::string_view line = TakeLine(text);
    const std::size_t between = line.rfind(kBetween);
    if (between == std::string_view::npos) continue;
    m_tokens[std::string(line.substr(0, between))] = line.substr(between + 1);
  }
}

std::string SyncTokens::KeyOf(u16 version, const std::string& wrapper, const Account* account) {
  std::string key = std::to_string(version) + kBetween + wrapper;
  if (account == nullptr) return key;
  for (const std::string& part : {account->bank, account->branch, account->number, account->type}) {
    key += kBetween + Plain(part);
  }
  return key;
}

std::string SyncTokens::Get(const std::string& key) const {
  const auto found = m_tokens.find(key);
  return found == m_tokens.end() ? kFirstTime : found->second;
}

std::string SyncTokens::Save() const {
  const std::string folder = FolderOfTokens();
  if (std::string problem = MakePrivateFolder(folder); !problem.empty()) return problem;
  std::string text = SourceOf(m_bank) + "\n";
  for (const auto& [key, token] : m_tokens) text += key + kBetween + Plain(token) + "\n";
  KRBuffer buffer(static_cast<u32>(text.size()), 64);
  if (buffer.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK) {
    return "not enough memory";
  }
  const std::string path = folder + "/" + m_bank.name;
  return WriteOutput(buffer, path, Privacy::kPrivate) == kExitClean
             ? ""
             : "how far its news were fetched is not kept";
}

void ForgetTokens(const std::string& bankName) {
  std::error_code ignored;
  const std::string folder = FolderOfTokens();
  if (!folder.empty()) std::filesystem::remove(folder + "/" + bankName, ignored);
}

}  // namespace krofx::command
