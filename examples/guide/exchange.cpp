// Sends a request to a pinned server and shows what comes back: exchange URL CA-FILE PIN REQUEST
#include <krofx/host.h>

#include <iostream>

int main(int count, char** arguments) {
  if (count != 5) return 64;
  const krofx::Reading request = krofx::ReadFile(arguments[4]);
  KRBuffer question(0, 0);
  if (KRBuilder().Build(&question, request.root, KRBuildStringOpt_Strict, 1) != 0) return 1;

  krofx::Exchange exchange(arguments[1]);
  exchange.TrustPem(arguments[2]);
  exchange.Pin(arguments[3]);
  exchange.Timeout(std::chrono::seconds(30));
  bool cancelled = false;  // A button could set it.
  exchange.OnProgress([&cancelled](const krofx::Progress&) { return !cancelled; });
  KRBuffer reply(0, 0);
  const krofx::Outcome outcome = exchange.Send(question, reply);
  if (!outcome) {
    std::cout << outcome.text << "\n";
    if (outcome.seenCertificate.IsEmpty() == 0) std::cout << outcome.seenCertificate << "\n";
    return 1;
  }
  const krofx::Reading answer = krofx::Read(reply);
  for (const krofx::TransactionView tx : krofx::Transactions(answer)) {
    std::cout << krofx::ToText(krofx::ToDay(tx.Posted())) << " " << tx.Party() << "\n";
  }
}
