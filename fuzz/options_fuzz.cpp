// Any bytes as the options of a request of the command: the first byte chooses the kind of request,
// the rest are arguments with line ends between them. Wrong ones end in the exit status for wrong
// use; a request that is made is one that can be read, with what a request must have.

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "krofx/envelope/file_rq_rs.h"
#include "requests/request_use.h"
#include "trees.h"

namespace {

using namespace krofx::fuzz;
using namespace krofx::command;

constexpr AddRequestKind kKinds[] = {AddStatementRequest, AddInvestmentRequest, AddPaymentRequest,
                                     AddAccountsRequest,  AddProfileRequest,    AddTransferRequest,
                                     AddStopCheckRequest, AddMailRequest};

class ReadRequest : public RequestUse {
 public:
  void AddOptions(const Subcommand&) override {}
  const char* GetFooter() const override { return ""; }
  ExitStatus Prepare() override { return kExitClean; }
  ExitStatus Use(KRBuffer& text) override {
    KRFileRq file;
    KRSimpleParser parser;
    const KRParseStatus status = parser.Parse(&text, &file, 1);
    Expect(status == KRParseStatus_Accepted, "a request that is made is read without a warning");
    return kExitClean;
  }
};

// The command's surroundings are the same wherever it is fuzzed: a password, no banks, and nothing
// to read.
void Isolate() {
  ::setenv("KROFX_PASSWORD", "secret", 1);
  for (const char* const folder : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
    ::setenv(folder, "/nonexistent", 1);
  }
  static const bool isolated = [] {
    const int nothing = ::open("/dev/null", O_RDWR);
    return ::dup2(nothing, STDIN_FILENO) >= 0;
  }();
  Expect(isolated, "there is a null device");
}

void Run(Bytes bytes) {
  Choices choices(bytes);
  const AddRequestKind add = kKinds[choices.Below(std::size(kKinds))];
  std::vector<std::string> arguments = {"krofx"};
  const CommandLine commandLine("krofx", "", "1");
  add(commandLine.GetCommand(), std::make_shared<ReadRequest>());

  Bytes rest = choices.Rest();
  while (!rest.empty()) {
    const std::size_t length = rest.find('\n');
    // An argument ends at its first NUL.
    arguments.emplace_back(std::string(rest.substr(0, length)).c_str());
    rest = length == Bytes::npos ? Bytes() : rest.substr(length + 1);
  }
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);

  Isolate();
  const ExitStatus status = commandLine.Run(static_cast<int>(pointers.size()) - 1, pointers.data());
  Expect(status == kExitClean || status == kExitUnusable || status == kExitWrongUse,
         "the exit status is one of a request");
}

const Target kTarget("options", &Run);

}  // namespace
