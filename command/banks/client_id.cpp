// Makes, keeps and sends client identifiers.

#include "banks/client_id.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "banks/places.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "krofx/krofx.h"
#include "output/output_file.h"

namespace krofx::command {

namespace {

constexpr char kFirstVersion[] = "VERSION:102";
constexpr char kVersionWithId[] = "VERSION:103";
constexpr std::string_view kBefore = "<APPVER>";

// What a file of that name holds; empty when there is none that can be used.
std::string ReadId(const std::string& path) {
  std::string ignored;
  const std::unique_ptr<KRBuffer> text = ReadInput(path, ignored);
  if (text == nullptr) return "";
  const std::string_view view = ViewOf(*text);
  return std::string(view.substr(0, view.find('\n')));
}

}  // namespace

std::string ClientIdOf(const Bank& bank, std::string& problem) {
  if (!bank.clientId.empty()) return bank.clientId;
  const std::string folder = StateFolder() + "/client-ids";
  const std::string path = folder + "/" + bank.name;
  std::string id = ReadId(path);
  if (!id.empty()) return id;
  problem = MakePrivateFolder(StateFolder().empty() ? "" : folder);
  if (!problem.empty()) return "";
  char made[37] = "";
  KRUtility::GenerateTransactionID(made);
  id = made;
  KRBuffer text(64, 64);
  const std::string line = id + "\n";
  if (text.WriteLarge(line.data(), static_cast<u32>(line.size())) != KRBufferOK ||
      WriteOutput(text, path, Privacy::kPrivate, Existing::kKept) != kExitClean) {
    problem = path + ": the client identifier cannot be kept";
    return "";
  }
  return id;
}

std::unique_ptr<KRBuffer> WithClientId(const KRBuffer& request, const std::string& id) {
  const std::string_view text = ViewOf(request);
  const std::size_t element = text.find(kBefore);
  const std::size_t end = element == std::string_view::npos ? element : text.find('<', element + 1);
  if (end == std::string_view::npos) return nullptr;
  auto longer = std::make_unique<KRBuffer>(static_cast<u32>(text.size() + id.size() + 64), 4096);
  bool isWhole = longer != nullptr;
  const auto add = [&](std::string_view part) {
    isWhole =
        isWhole && longer->WriteLarge(part.data(), static_cast<u32>(part.size())) == KRBufferOK;
  };
  std::size_t start = 0;
  const std::size_t version = text.find(kFirstVersion);
  if (version < element) {
    start = version + sizeof kFirstVersion - 1;
    add(text.substr(0, version));
    add(kVersionWithId);
  }
  add(text.substr(start, end - start));
  add("<CLIENTUID>");
  add(id);
  add("\n");
  add(text.substr(end));
  return isWhole ? std::move(longer) : nullptr;
}

}  // namespace krofx::command
