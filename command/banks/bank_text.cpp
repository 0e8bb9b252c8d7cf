// Writes the file of banks: whole new parts at its end, and parts taken out.

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>

#include "banks/bank_file.h"
#include "banks/places.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "output/characters.h"
#include "output/output_file.h"

namespace krofx::command {

namespace {

// A text in quotes, as TOML has it. A control character must be written as its number.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (IsControl(character)) {
      char number[8] = "";
      std::snprintf(number, sizeof number, "\\u%04X",
                    unsigned{static_cast<unsigned char>(character)});
      quoted += number;
      continue;
    }
    if (character == '"' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted + "\"";
}

void AddLine(std::string& text, const char* key, const std::string& value) {
  if (!value.empty()) text += std::string(key) + " = " + Quoted(value) + "\n";
}

void AddLine(std::string& text, const char* key, int value) {
  if (value != 0) text += std::string(key) + " = " + std::to_string(value) + "\n";
}

void AddLine(std::string& text, const char* key, const std::vector<std::string>& values) {
  if (values.empty()) return;
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : ", ") + Quoted(value);
  text += std::string(key) + " = [" + list + "]\n";
}

// The name of the bank that a line's header is of; empty for other lines.
std::string HeaderOf(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  if (!line.starts_with('[')) return "";
  line.remove_prefix(std::min(line.find_first_not_of(" \t[\"'"), line.size()));
  return std::string(line.substr(0, line.find_first_of(".] \t\"'")));
}

std::string ReadText(std::string& problem) {
  struct stat status {};
  if (::stat(BanksFile().c_str(), &status) != 0) return "";
  const std::unique_ptr<KRBuffer> text = ReadInput(BanksFile(), problem);
  return text == nullptr ? "" : std::string(ViewOf(*text));
}

// Writes a new text of the file when it has the banks that it should have.
std::string Write(const std::string& text, std::size_t banks) {
  const std::string path = BanksFile();
  const std::string folder = path.substr(0, path.rfind('/'));
  const BankList list = ParseBanks(text, folder);
  // The problem would name a line of this new text, which the user has never seen.
  if (!list.problem.empty() || list.banks.size() != banks) {
    return path + " cannot be changed safely; edit it by hand";
  }
  if (std::string problem = MakePrivateFolder(folder); !problem.empty()) return problem;
  KRBuffer buffer(0, 0);
  if (buffer.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK) {
    return "not enough memory";
  }
  return WriteOutput(buffer, path, Privacy::kPrivate) == kExitClean ? "" : "nothing was changed";
}

}  // namespace

std::string TextOf(const Bank& bank) {
  std::string text = "[" + bank.name + "]\n";
  AddLine(text, "url", bank.url);
  AddLine(text, "org", bank.organisation);
  AddLine(text, "fid", bank.institutionId);
  AddLine(text, "user", bank.user);
  AddLine(text, "password-command", bank.passwordCommand);
  if (bank.keyring) text += "keyring = true\n";
  AddLine(text, "client-id", bank.clientId);
  if (bank.makesClientId) text += "client-id = true\n";
  AddLine(text, "version", bank.version);
  if (!bank.hasProfile) text += "profile = false\n";
  AddLine(text, "hosts", bank.hosts);
  AddLine(text, "root", bank.rootFiles);
  AddLine(text, "pin", bank.pins);
  AddLine(text, "proxy", bank.proxy);
  AddLine(text, "timeout", bank.timeout);
  AddLine(text, "app-id", bank.applicationId);
  AddLine(text, "app-version", bank.applicationVersion);
  AddLine(text, "language", bank.language);
  AddLine(text, "country", bank.country);
  for (const Account& account : bank.accounts) text += TextOf(bank.name, account);
  return text;
}

std::string TextOf(const std::string& bankName, const Account& account) {
  std::string text = "\n[[" + bankName + ".account]]\n";
  AddLine(text, "account", account.number);
  if (account.kind == AccountKind::kCard) text += "card = true\n";
  AddLine(text, account.kind == AccountKind::kInvestment ? "broker" : "bank", account.bank);
  AddLine(text, "branch", account.branch);
  AddLine(text, "type", account.type);
  return text;
}

std::string FindProblem(const Bank& bank) {
  const std::string problem = ParseBanks(TextOf(bank), "").problem;
  // Without the number of the line, which is that of a text that the user has not written.
  return problem.empty() ? "" : problem.substr(problem.find(": ") + 2);
}

std::string AddToBanks(const std::string& text) {
  const BankList before = ReadBanks();
  if (!before.problem.empty()) return before.problem;
  std::string problem;
  std::string whole = ReadText(problem);
  if (!problem.empty()) return problem;
  if (!whole.empty() && !whole.ends_with('\n')) whole += '\n';
  const bool isBank = text.starts_with('[');
  if (!whole.empty() && isBank) whole += '\n';
  return Write(whole + text, before.banks.size() + (isBank ? 1 : 0));
}

std::string RemoveFromBanks(const std::string& name) {
  const BankList before = ReadBanks();
  if (!before.problem.empty()) return before.problem;
  std::string problem;
  const std::string whole = ReadText(problem);
  if (!problem.empty()) return problem;
  std::string left;
  bool removing = false;
  for (std::size_t at = 0; at < whole.size();) {
    const std::size_t end = std::min(whole.find('\n', at), whole.size() - 1) + 1;
    const std::string line = whole.substr(at, end - at);
    const std::string header = HeaderOf(line);
    if (!header.empty()) removing = header == name;
    if (!removing) left += line;
    at = end;
  }
  return Write(left, before.banks.size() - 1);
}

}  // namespace krofx::command
