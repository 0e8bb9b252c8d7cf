// Finds the wrappers of synchronisations in a reply.

#include "exchange/sync_answers.h"

#include <string_view>

#include "banks/account_list.h"
#include "input/element_value.h"
#include "input/parsed_file.h"

namespace krofx::command {

namespace {

constexpr std::string_view kSyncAnswer = "SYNCRS";
constexpr std::string_view kTransaction = "TRNRS";

SyncAnswer Read(const Element& wrapper) {
  SyncAnswer answer;
  answer.wrapper = std::string(wrapper.tag.substr(0, wrapper.tag.size() - 2)) + "RQ";
  answer.token = ValueOf(wrapper, "TOKEN");
  if (answer.token.empty()) answer.token = ValueOf(wrapper, "TOKEN2");
  answer.isLost = ValueOf(wrapper, "LOSTSYNC") == "true";
  answer.error = ValueOf(wrapper, "SYNCERROR");
  if (answer.error == "0") answer.error.clear();
  for (const Element& child : wrapper.children) {
    Account account;
    if (child.tag.ends_with(kTransaction)) {
      ++answer.count;
    } else if (ReadAccount(child, account)) {
      answer.account = account;
    }
  }
  return answer;
}

void Find(const Element& element, std::vector<SyncAnswer>& answers) {
  for (const Element& child : element.children) {
    if (child.tag.ends_with(kSyncAnswer)) {
      answers.push_back(Read(child));
    } else {
      Find(child, answers);
    }
  }
}

}  // namespace

std::vector<SyncAnswer> SyncAnswersIn(const ParsedFile& reply) {
  std::vector<SyncAnswer> answers;
  for (const OfxFile& each : reply.GetOfxFiles()) {
    TextArena arena;
    Find(ReadElements(*each.file, arena, each.text), answers);
  }
  return answers;
}

}  // namespace krofx::command
