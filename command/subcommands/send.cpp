// krofx send and krofx get: an OFX text goes to a server unchanged, or a URL is fetched.

#include <unistd.h>

#include <memory>
#include <string_view>
#include <utility>

#include "banks/bank_file.h"
#include "banks/profile_file.h"
#include "command_line/command_line.h"
#include "exchange/exchange.h"
#include "exchange/refusals.h"
#include "input/buffer_copy.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "output/output_file.h"
#include "output/safe_text.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

struct Options {
  ExchangeOptions exchange;
  std::string file;
  std::string output;
};

// A terminal gets harmless text; anything else gets the bytes.
ExitStatus WriteReply(const KRBuffer& reply, const std::string& output) {
  if ((!output.empty() && output != "-") || ::isatty(STDOUT_FILENO) == 0) {
    return WriteOutput(reply, output, Privacy::kPrivate);
  }
  return WriteStandardOutput(SafeText({reply.GetBufferPtr(), reply.GetBufferSize()}));
}

// Writes the reply; when the file cannot be written, to standard output. The request is not to be
// sent again for the sake of its reply, since it may be an order.
ExitStatus KeepReply(const KRBuffer& reply, const std::string& output, const Exchange& exchange,
                     Direction direction) {
  const ExitStatus written = WriteReply(reply, output);
  if (written == kExitClean) return written;
  const bool isSent = direction == Direction::kSend;
  const bool wasFile = !output.empty() && output != "-";
  if (wasFile && WriteReply(reply, "") == kExitClean) {
    Complain(exchange.GetShownUrl(), std::string(isSent ? "the request has arrived; " : "") +
                                         "the reply is on standard output instead");
  } else if (isSent) {
    Complain(exchange.GetShownUrl(),
             "the request has arrived, and its reply is lost; find out what became of it before "
             "you send it again");
  }
  return written;
}

// Whether the reply is the request, and that is OFX.
bool IsEcho(const KRBuffer& request, const KRBuffer& reply) {
  return ViewOf(request) == ViewOf(reply) &&
         ViewOf(request).find("<OFX>") != std::string_view::npos;
}

ExitStatus SendPrepared(Exchange& exchange, KRBuffer& request, const std::string& output) {
  const ExitStatus tried = TryOutput(output);
  if (tried != kExitClean) return tried;
  std::unique_ptr<KRBuffer> reply = exchange.Run(&request);
  if (reply == nullptr) return exchange.GetExitStatus();
  const ExitStatus written =
      Worse(exchange.GetExitStatus(), KeepReply(*reply, output, exchange, Direction::kSend));
  if (!IsEcho(request, *reply)) {
    // A reply that is not OFX is the user's to judge.
    return Worse(written, ComplainOfRefusals(ParsedFile(exchange.GetShownUrl(), std::move(reply))));
  }
  Complain(exchange.GetShownUrl(),
           "the server sent the request back, not a response; check the address");
  return kExitUnusable;
}

// Where a bank takes a request: at the address that its profile has for all message sets of the
// request, or at its own.
std::string FindAddress(const Bank& bank, const KRBuffer& request, std::string& problem) {
  std::unique_ptr<KRBuffer> copy = CopyOf(request);
  if (copy == nullptr) {
    problem = "not enough memory to read the request";
    return "";
  }
  const ParsedFile parsed("", std::move(copy));
  std::string address;
  for (const SetName& set : ListSets(parsed)) {
    const auto profile = bank.hasProfile ? ReadKeptProfile(bank, set.version) : nullptr;
    const OfferedSet* const offered = profile == nullptr ? nullptr : profile->Find(set);
    const std::string own = offered == nullptr || offered->url.empty() ? bank.url : offered->url;
    problem = FindAddressProblem(bank, own);
    if (problem.empty() && !address.empty() && own != address) {
      problem = "its parts belong to several addresses; make a request for each";
    }
    if (!problem.empty()) return "";
    address = own;
  }
  return address.empty() ? bank.url : address;
}

// Takes what is known of the bank that the address names, as @harbor.
ExitStatus TakeBank(const KRBuffer& request, ExchangeOptions& exchange) {
  const BankList list = ReadBanks();
  std::string problem = list.problem;
  const Bank* const bank = problem.empty() ? FindBank(list, exchange.url, problem) : nullptr;
  if (bank == nullptr) {
    Complain("send", problem);
    return list.problem.empty() ? kExitWrongUse : kExitUnusable;
  }
  exchange.url = FindAddress(*bank, request, problem);
  FillExchange(exchange, *bank);
  if (problem.empty()) return kExitClean;
  Complain("send", "nothing is sent to " + bank->name + ": " + problem);
  return kExitUnusable;
}

// Reads the request; null after a complaint.
std::unique_ptr<KRBuffer> ReadRequest(const std::string& name) {
  std::string problem;
  std::unique_ptr<KRBuffer> request = ReadInput(name, problem);
  if (request != nullptr && request->GetBufferSize() == 0) problem = "it is empty";
  if (problem.empty()) return request;
  Complain(DisplayName(name), problem);
  return nullptr;
}

ExitStatus SendToBank(const Options& options) {
  const std::unique_ptr<KRBuffer> request = ReadRequest(options.file);
  if (request == nullptr) return kExitUnusable;
  ExchangeOptions known = options.exchange;
  const ExitStatus taken = TakeBank(*request, known);
  if (taken != kExitClean) return taken;
  Exchange exchange(known);
  const ExitStatus prepared = exchange.Prepare(Direction::kSend);
  return prepared == kExitClean ? SendPrepared(exchange, *request, options.output) : prepared;
}

ExitStatus Send(const Options& options) {
  const ExitStatus checked = CheckReplyFile(options.exchange, "-o", options.output);
  if (checked != kExitClean) return checked;
  if (options.exchange.url.starts_with('@')) return SendToBank(options);
  Exchange exchange(options.exchange);
  const ExitStatus prepared = exchange.Prepare(Direction::kSend);
  if (prepared != kExitClean) return prepared;
  const std::unique_ptr<KRBuffer> request = ReadRequest(options.file);
  return request == nullptr ? kExitUnusable : SendPrepared(exchange, *request, options.output);
}

ExitStatus Get(const Options& options) {
  const ExitStatus checked = CheckReplyFile(options.exchange, "-o", options.output);
  if (checked != kExitClean) return checked;
  Exchange exchange(options.exchange);
  ExitStatus prepared = exchange.Prepare(Direction::kGet);
  if (prepared == kExitClean) prepared = TryOutput(options.output);
  if (prepared != kExitClean) return prepared;
  const std::unique_ptr<KRBuffer> reply = exchange.Run(nullptr);
  const ExitStatus ended = exchange.GetExitStatus();
  if (reply == nullptr) return ended;
  return Worse(ended, KeepReply(*reply, options.output, exchange, Direction::kGet));
}

void AddRest(const Subcommand& app, Options& options) {
  app.AddOption("-o,--output", options.output,
                "The file to save the reply in; else it goes to standard output");
  AddExchangeOptions(app, options.exchange);
  app.SetFooter(std::string("Exit status: 0 done, 2 no usable reply, ") + kExchangeStatuses);
}

}  // namespace

void DeclareSend(const Subcommand& send) {
  const auto options = std::make_shared<Options>();
  send.AddOption("URL", options->exchange.url,
                 "The institution's address, or a bank of \"krofx bank list\", as @harbor")
      .Required();
  send.AddOption("FILE", options->file, "The request, or - for standard input").Required();
  AddRest(send, *options);
  send.OnRun(options, Send);
}

void DeclareGet(const Subcommand& get) {
  const auto options = std::make_shared<Options>();
  get.AddOption("URL", options->exchange.url, "The address, also file:").Required();
  AddRest(get, *options);
  get.OnRun(options, Get);
}

}  // namespace krofx::command
