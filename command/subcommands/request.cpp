// krofx request: makes OFX requests and writes them. One file for each kind of request adds itself
// here.

#include "banks/profile_file.h"
#include "command_line/command_line.h"
#include "requests/request_maker.h"

#include <sys/stat.h>
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
    m_subcommand = request.GetPath();
    request.AddOption("-o,--output", m_output, "The file to write; else standard output");
    request.AddFlag("--force", m_force, "Replace the file if there is one");
  }

  const char* GetFooter() const override {
    return "The request holds the password: it is written for the user's eyes only.\n"
           "Exit status: 0 written, 2 not written, 6 cancelled at the prompt, 64 wrong use.";
  }

  ExitStatus Prepare() override {
    if (!m_output.empty() && m_output != "-") {
      struct stat status {};
      if (m_force || ::stat(m_output.c_str(), &status) != 0) return kExitClean;
      Complain(m_output,
               "there is such a file already, which may be a request that is still to be "
               "sent; replace it with --force");
      return kExitUnusable;
    }
    if (::isatty(STDOUT_FILENO) == 0) return kExitClean;
    Complain(m_subcommand,
             "the request holds the password and is not shown on a terminal; name a file with -o, "
             "or redirect the output");
    return kExitUnusable;
  }

  ProfileAnswer FindProfile(const SignOnOptions& signOn) override {
    return {kExitClean, ReadBestKeptProfile(*signOn.bank, VersionOfProfile(signOn))};
  }

  ExitStatus Use(KRBuffer& text) override {
    return WriteOutput(text, m_output, Privacy::kPrivate,
                       m_force ? Existing::kReplaced : Existing::kKept);
  }

 private:
  std::string m_subcommand;  // What messages call it.
  std::string m_output;
  bool m_force = false;
};

}  // namespace

void DeclareRequest(const Subcommand& request) {
  request.RequireSubcommand();
  for (const AddRequestKind add : kRequests) {
    add(request, std::make_shared<WriteRequest>());
  }
}

}  // namespace krofx::command
