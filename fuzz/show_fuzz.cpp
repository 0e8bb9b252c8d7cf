// Any bytes as a file or a reply that the command shows: the first byte chooses the form, the rest
// is the file. Whatever is in it, the output is text in UTF-8 without anything that a terminal
// obeys, and JSON is JSON. What the command learns of a reply, the profile and the accounts of an
// institution, is looked for in it too.

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "banks/account_list.h"
#include "banks/profile.h"
#include "input/parsed_file.h"
#include "output/safe_text.h"
#include "showing/document_output.h"
#include "showing/sums.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;
using namespace krofx::command;

ParsedFile ReadBytes(Bytes bytes) {
  auto text = std::make_unique<KRBuffer>(0, 0);
  text->WriteLarge(bytes.data(), static_cast<u32>(bytes.size()));
  return {"file", std::move(text)};
}

// What the command makes of a file.
enum class Form { kText, kJson, kCsv, kJsonLines, kSums, kSumsAsJson, kSumsAsCsv };
constexpr std::size_t kForms = 7;

bool IsJson(Bytes text) { return nlohmann::json::accept(text.begin(), text.end()); }

void CheckOutput(const std::string& text, Form form) {
  ExpectSame(SafeText(text), text, "the output is fit for a terminal");
  if (form == Form::kJson || form == Form::kSumsAsJson) Expect(IsJson(text), "JSON is JSON");
  if (form != Form::kJsonLines) return;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    Expect(end != std::string::npos && IsJson(Bytes(text).substr(at, end - at)),
           "each line is JSON");
    at = end + 1;
  }
}

std::string Shown(const Document& document, const PrintOptions& options) {
  const DocumentForm form(options);
  TextOutput out(TextOutput::Mode::kHeld);
  out.text = form.Head();
  form.Render(document, out);
  return out.text + form.Tail(true);
}

std::string Summed(const Document& document, SumBy by, Form form) {
  Sums sums(by);
  sums.Add(document);
  return form == Form::kSumsAsJson  ? sums.Json()
         : form == Form::kSumsAsCsv ? sums.Csv()
                                    : sums.Text(FormOfStandardOutput(true));
}

void CheckLearned(const ParsedFile& reply) {
  for (const Account& account : AccountsIn(reply)) {
    Expect(!account.number.empty(), "an account has a number");
  }
  if (const auto profile = ReadProfile(reply)) profile->DayText();
  ListSets(reply);
}

void Run(Bytes bytes) {
  Choices choices(bytes);
  const auto form = static_cast<Form>(choices.Below(kForms));
  const std::size_t flags = choices.Below(4);
  const std::size_t table = choices.Below(256);
  PrintOptions options;
  options.showIdentifiers = (flags & 1) != 0;
  options.wide = (flags & 2) != 0;
  options.json = form == Form::kJson;
  options.csv = form == Form::kCsv;
  options.jsonLines = form == Form::kJsonLines;
  if (options.ShowsRows()) options.table = TableKeys()[table % TableKeys().size()];
  ParsedFile file = ReadBytes(choices.Rest());
  CheckLearned(file);
  const Document document = MakeDocument(file, options.showIdentifiers);
  const auto by = static_cast<SumBy>(table % SumNames().size());
  CheckOutput(form < Form::kSums ? Shown(document, options) : Summed(document, by, form), form);
}

const Target kTarget("show", &Run);

}  // namespace
