// Looks through a reply for statuses of severity ERROR, and says what they mean.

#include "exchange/refusals.h"

#include <string_view>

#include "exchange/status_words.h"
#include "input/element_value.h"
#include "input/parsed_file.h"
#include "output/messages.h"

namespace krofx::command {

namespace {

constexpr char kSignOnRefused[] = "the institution refused the sign-on";

std::string Describe(std::string_view where, const Element& status) {
  const std::string code = ValueOf(status, "CODE");
  std::string text =
      where == "SONRS" ? kSignOnRefused : "the institution refused <" + std::string(where) + ">";
  text += ": status " + code;
  const std::string_view words = WordsOfStatus(code);
  if (!words.empty()) text += ", " + std::string(words);
  std::string message = ValueOf(status, "MESSAGE");
  if (message.empty()) message = ValueOf(status, "MESSAGE2");
  return message.empty() ? text : text + " (\"" + message + "\")";
}

void Find(const Element& element, std::vector<Refusal>& refusals) {
  for (const Element& child : element.children) {
    if (child.tag == "STATUS" && ValueOf(child, "SEVERITY") == "ERROR") {
      const bool signOn = element.tag == "SONRS" || IsSignOnStatus(ValueOf(child, "CODE"));
      refusals.push_back(
          {signOn ? kExitSignOnRefused : kExitRefused, Describe(element.tag, child)});
    } else {
      Find(child, refusals);
    }
  }
}

}  // namespace

std::vector<Refusal> FindRefusals(const Element& file) {
  std::vector<Refusal> refusals;
  Find(file, refusals);
  return refusals;
}

ExitStatus ComplainOfRefusals(const ParsedFile& reply) {
  ExitStatus exitStatus = kExitClean;
  if (reply.GetKind() == "request") {
    Complain(reply.GetName(), "the server sent a request back, not a response; check the address");
    exitStatus = kExitUnusable;
  }
  for (const OfxFile& each : reply.GetOfxFiles()) {
    TextArena arena;
    const std::vector<Refusal> refusals = FindRefusals(ReadElements(*each.file, arena, each.text));
    // Without a sign-on everything else is refused for the same reason.
    const bool signOn = !refusals.empty() && refusals.front().text.starts_with(kSignOnRefused);
    for (const Refusal& refusal : refusals) {
      if (!signOn || &refusal == &refusals.front()) Complain(reply.GetName(), refusal.text);
      exitStatus = Worse(exitStatus, refusal.exitStatus);
    }
  }
  return exitStatus;
}

}  // namespace krofx::command
