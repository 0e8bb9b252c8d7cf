// Any bytes as what a user gives the command. The first byte chooses what the rest is:
//
//   - a command line with line ends between its arguments: a wrong one ends in the exit status for
//     wrong use, a right one would run;
//   - the options of a request: what is made can be read, and has what a request must have;
//   - the options that choose transactions;
//   - the address of an institution;
//   - the file of banks, which is written as what was read;
//   - a file that gzip has packed, or one that is packed here and comes out as it was.

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "banks/bank_file.h"
#include "banks/url.h"
#include "command_line/command_line.h"
#include "input/gzip.h"
#include "input/parsed_file.h"
#include "krofx/envelope/file_rq_rs.h"
#include "output/safe_text.h"
#include "requests/request_use.h"
#include "showing/row_filter.h"
#include "subcommands/subcommands.h"
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
  static const bool isolated = [] {
    ::setenv("KROFX_PASSWORD", "secret", 1);
    for (const char* const folder : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
      ::setenv(folder, "/nonexistent", 1);
    }
    const int nothing = ::open("/dev/null", O_RDWR);
    return ::dup2(nothing, STDIN_FILENO) >= 0;
  }();
  Expect(isolated, "there is a null device");
}

// Runs a command line with arguments that have line ends between them.
ExitStatus RunCommand(const CommandLine& commandLine, std::vector<std::string> arguments,
                      Bytes rest) {
  while (!rest.empty()) {
    const std::size_t length = rest.find('\n');
    // An argument ends at its first NUL.
    arguments.emplace_back(std::string(rest.substr(0, length)).c_str());
    rest = length == Bytes::npos ? Bytes() : rest.substr(length + 1);
  }
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  return commandLine.Run(static_cast<int>(pointers.size()) - 1, pointers.data());
}

void CheckRequest(AddRequestKind add, Bytes rest) {
  const CommandLine commandLine("krofx", "", "1");
  add(commandLine.GetCommand(), std::make_shared<ReadRequest>());
  Isolate();
  const ExitStatus status = RunCommand(commandLine, {"krofx"}, rest);
  Expect(status == kExitClean || status == kExitUnusable || status == kExitWrongUse,
         "the exit status is one of a request");
}

// Those beside kFileSubcommands, but for help and completion, which only show what there is.
constexpr SubcommandEntry kOthers[] = {
    {"fetch", "", DeclareFetch}, {"bank", "", DeclareBank},     {"send", "", DeclareSend},
    {"get", "", DeclareGet},     {"certid", "", DeclareCertID}, {"request", "", DeclareRequest}};

class Nothing : public Action {
 public:
  explicit Nothing(bool& ran) : m_ran(ran) {}
  ExitStatus Run() override {
    m_ran = true;
    return kExitClean;
  }

 private:
  bool& m_ran;
};

// Lets nothing run but note that something would.
void RunNothing(const Subcommand& subcommand, bool& ran) {
  for (const Subcommand& each : subcommand.ListSubcommands()) RunNothing(each, ran);
  subcommand.OnRun(std::make_unique<Nothing>(ran));
}

void CheckCommandLine(Bytes rest) {
  const CommandLine commandLine("krofx", "", "1");
  const Subcommand command = commandLine.GetCommand();
  command.RequireSubcommand();
  for (const std::span<const SubcommandEntry> group :
       {std::span(kFileSubcommands), std::span(kOthers)}) {
    for (const SubcommandEntry& entry : group) {
      entry.declare(command.Add(entry.name, entry.purpose));
    }
  }
  bool ran = false;
  RunNothing(command, ran);
  Isolate();
  const ExitStatus status = RunCommand(commandLine, {"krofx"}, rest);
  Expect(status == kExitClean || (status == kExitWrongUse && !ran),
         "a command line runs, or asks for help, or is wrong");
}

void CheckFilter(Bytes rest) {
  const CommandLine commandLine("krofx", "", "1");
  const Subcommand choose = commandLine.GetCommand().Add("choose", "");
  const auto options = std::make_shared<FilterOptions>();
  AddFilterOptions(choose, *options);
  choose.OnRun<FilterOptions>(options, [](const FilterOptions& given) {
    std::string problem;
    const RowFilter filter(given, problem);
    Document document;
    if (problem.empty()) filter.Apply(document);
    return problem.empty() ? kExitClean : kExitWrongUse;
  });
  const ExitStatus status = RunCommand(commandLine, {"krofx", "choose"}, rest);
  Expect(status == kExitClean || status == kExitWrongUse, "options are right or wrong");
}

void CheckUrl(Bytes rest) {
  const std::string text = std::string(rest).c_str();
  const Url url(text);
  Expect(Url(url.Text()).host == url.host, "a URL written again has its host");
  Expect(!Url(url.Shown()).hasUser, "what is shown of a URL has no user");
  Expect(!HasPassword(url.Shown()), "nor a password");
  IsProxyAddress(text);
}

std::string TextOf(const std::vector<Bank>& banks) {
  std::string text;
  for (const Bank& bank : banks) text += krofx::command::TextOf(bank) + "\n";
  return text;
}

void CheckBanks(Bytes rest) {
  constexpr char kFolder[] = "/banks";
  const BankList list = ParseBanks(std::string(rest), kFolder);
  if (!list.problem.empty()) {
    Expect(list.banks.empty(), "a file with a problem has no banks");
    ExpectSame(SafeLine(list.problem), list.problem, "a problem is fit for a terminal");
    return;
  }
  const std::string text = TextOf(list.banks);
  const BankList again = ParseBanks(text, kFolder);
  ExpectSame(again.problem, "", "banks that were read are written in order");
  ExpectSame(TextOf(again.banks), text, "banks that are written are read as themselves");
  for (std::size_t index = 0; index < list.banks.size(); ++index) {
    Expect(again.banks[index].accounts == list.banks[index].accounts, "so are their accounts");
  }
}

std::string Packed(Bytes text) {
  z_stream stream{};
  // What zlib calls gzip.
  constexpr int kWindow = 15 + 16;
  Expect(::deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kWindow, 8, Z_DEFAULT_STRATEGY) == Z_OK,
         "there is a packer");
  std::string packed(::deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  Expect(::deflate(&stream, Z_FINISH) == Z_STREAM_END, "any bytes are packed");
  packed.resize(stream.total_out);
  ::deflateEnd(&stream);
  return packed;
}

void CheckUnpack(Bytes packed, const std::string* text) {
  std::string problem;
  const std::unique_ptr<KRBuffer> unpacked = Unpack(packed, problem);
  Expect((unpacked == nullptr) == !problem.empty(), "what is not unpacked has a problem");
  if (text == nullptr) return;
  Expect(unpacked != nullptr, "what was packed is unpacked");
  ExpectSame(ViewOf(*unpacked), *text, "what was packed comes out as it was");
}

// Bytes that are packed in two parts, and the same with an end that is missing.
void CheckPacking(Choices choices) {
  const Bytes first = choices.Text(255);
  const Bytes second = choices.Rest();
  const std::string packed = Packed(first) + Packed(second);
  Expect(IsGzip(packed), "what was packed is known");
  const std::string both = std::string(first) + std::string(second);
  CheckUnpack(packed, &both);
  const Bytes cut = Bytes(packed).substr(0, packed.size() - 1);
  std::string problem;
  Expect(Unpack(cut, problem) == nullptr, "what breaks off is not unpacked");
}

void Run(Bytes bytes) {
  // Half of the bytes are for arguments.
  constexpr std::size_t kFirstLine = 64;
  constexpr std::size_t kFirstOther = 128;
  Choices choices(bytes);
  const std::size_t kind = choices.Below(256);
  if (kind < kFirstLine) return CheckRequest(kKinds[kind % std::size(kKinds)], choices.Rest());
  if (kind < kFirstOther) return CheckCommandLine(choices.Rest());
  switch ((kind - kFirstOther) % 5) {
    case 0:
      return CheckBanks(choices.Rest());
    case 1:
      return CheckUnpack(choices.Rest(), nullptr);
    case 2:
      return CheckPacking(choices);
    case 3:
      return CheckFilter(choices.Rest());
    default:
      return CheckUrl(choices.Rest());
  }
}

const Target kTarget("options", &Run);

}  // namespace
