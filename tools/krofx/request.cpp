// krofx request: makes OFX requests. One file for each kind of request adds itself here.

#include "request.h"

namespace krofx::command {

namespace {

constexpr AddSubcommand kRequests[] = {
    AddStatementRequest, AddInvestmentRequest, AddPaymentRequest, AddAccountsRequest,
    AddTransferRequest,  AddStopCheckRequest,  AddMailRequest};

}  // namespace

void AddRequest(CLI::App& app, ExitStatus& exitStatus) {
  CLI::App* const request = app.add_subcommand("request", "Make a request to an institution");
  request->require_subcommand(1);
  for (const AddSubcommand add : kRequests) add(*request, exitStatus);
}

}  // namespace krofx::command
