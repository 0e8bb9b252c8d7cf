// krofx fetch: makes a request, sends it, and shows the reply, in one go.

#include <memory>
#include <optional>

#include "command_line/command_line.h"
#include "exchange/exchange_use.h"
#include "exchange/profile_asker.h"
#include "exchange/refusals.h"
#include "exchange/reply_keeper.h"
#include "output/messages.h"
#include "output/output_file.h"
#include "requests/request_maker.h"
#include "showing/document_output.h"
#include "subcommands/fetch_all.h"
#include "subcommands/fetch_updates.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

namespace {

// Orders are left out: what moves money should be looked at before it is sent.
constexpr AddRequestKind kRequests[] = {AddStatementRequest, AddInvestmentRequest,
                                        AddAccountsRequest, AddProfileRequest};

class SendRequest : public ExchangeUse {
 public:
  void AddOptions(const Subcommand& request) override {
    request.AddOption("--url", m_options.url, "The institution's address");
    request.AddOption("--save-reply", m_replyFile, "File to save the reply's text in");
    AddExchangeOptions(request, m_options);
    AddPrintOptions(request, m_form);
  }

  const char* GetFooter() const override {
    static const std::string footer =
        std::string("Exit status: 0 printed, 2 no usable reply, ") + kExchangeStatuses;
    return footer.c_str();
  }

  ExitStatus Prepare() override {
    ExitStatus checked = CheckPrintOptions(m_form);
    if (checked == kExitClean) checked = CheckReplyFile(m_options, "--save-reply", m_replyFile);
    return checked == kExitClean ? ExchangeUse::Prepare() : checked;
  }

  void TakeBank(const Bank& bank) override {
    ExchangeUse::TakeBank(bank);
    m_bank = bank;
  }
  std::string FindMissing() const override { return m_options.url.empty() ? "--url" : ""; }

  ExitStatus ListAccounts(const SignOnOptions& signOn, std::vector<Account>& accounts) override {
    return AskForAccounts(signOn, m_options, accounts);
  }

  ExitStatus Use(KRBuffer& text) override {
    std::unique_ptr<KRBuffer> reply = m_exchange.Run(&text);
    ExitStatus exitStatus = m_exchange.GetExitStatus();
    if (reply == nullptr) return exitStatus;
    if (!m_replyFile.empty()) {
      exitStatus = Worse(exitStatus, WriteOutput(*reply, m_replyFile, Privacy::kPrivate));
    }
    return Worse(exitStatus, Show(ParsedFile(m_exchange.GetShownUrl(), std::move(reply))));
  }

 private:
  ExitStatus Show(ParsedFile reply) const {
    const ExitStatus exitStatus = ComplainOfRefusals(reply);
    if (m_bank.has_value()) ForgetOlderProfile(*m_bank, reply);
    if (!reply.GetProblem().empty() && m_replyFile.empty()) {
      Complain(reply.GetName(),
               "the reply is not usable; --save-reply keeps it for \"krofx check\"");
    }
    return Worse(exitStatus, PrintDocument(MakeDocument(reply, m_form.showIdentifiers), m_form));
  }

  std::optional<Bank> m_bank;
  std::string m_replyFile;
  PrintOptions m_form;
};

}  // namespace

void DeclareFetch(const Subcommand& fetch) {
  fetch.RequireSubcommand();
  for (const AddRequestKind add : kRequests) {
    add(fetch, std::make_shared<SendRequest>());
  }
  AddFetchAll(fetch);
  AddFetchUpdates(fetch);
}

}  // namespace krofx::command
