// krofx request: makes OFX requests and writes them. One file for each kind of request adds itself
// here.

#include "command_line/command_line.h"
#include "requests/request_maker.h"

#include <unistd.h>

#include "output/messages.h"
#include "output/output_file.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

constexpr AddRequestKind kRequests[] = {
    AddStatementRequest, AddInvestmentRequest, AddPaymentRequest,   AddAccountsRequest,
    AddProfileRequest,   AddTransferRequest,   AddStopCheckRequest, AddMailRequest};

class WriteRequest : public RequestUse {
 public:
  void AddOptions(const Subcommand& request) override {
    request.AddOption("-o,--output", m_output, "The file to write; else standard output");
  }

  const char* GetFooter() const override {
    return "The request holds the password: it is written for the user's eyes only.\n"
           "Exit status: 0 written, 2 not written, 64 wrong use.";
  }

  ExitStatus Prepare() override {
    if ((!m_output.empty() && m_output != "-") || ::isatty(STDOUT_FILENO) == 0) return kExitClean;
    Complain("request",
             "the request holds the password and is not shown on a terminal; name a file with -o, "
             "or redirect the output");
    return kExitUnusable;
  }

  ExitStatus Use(KRBuffer& text) override { return WriteOutput(text, m_output, Privacy::kPrivate); }

 private:
  std::string m_output;
};

}  // namespace

void AddRequest(const Subcommand& parent) {
  const Subcommand request = parent.Add("request", "Make a request to an institution");
  request.RequireSubcommand();
  for (const AddRequestKind add : kRequests) {
    add(request, std::make_shared<WriteRequest>());
  }
}

}  // namespace krofx::command
