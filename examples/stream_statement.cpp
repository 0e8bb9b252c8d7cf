// Prints the transactions of statement files of any size, one by one, and then the balances.
//
//   stream_statement FILE...      "/dev/stdin" reads what a pipe brings

#include <krofx/krofx.h>

#include <cstdio>

namespace {

const char* Text(const KRString& string) { return string; }

void PrintTransaction(const krofx::StreamElement& element) {
  const auto& transaction = *element.As<KRBankStatementTx>();
  const KRAccount* const account = element.Account();
  const KRDateTime& date = transaction.GetDateTimePosted();
  std::printf("%-16s %04d-%02d-%02d %12s  %s\n",
              account == nullptr ? "(no account)" : Text(account->GetAccountID()), date.GetYear(),
              date.GetMonth(), date.GetDay(), static_cast<const char*>(transaction.GetTxAmount()),
              Text(element.ToUtf8(transaction.GetName())));
}

// What is not an element of a wanted list is in the tree at the end.
void PrintBalances(const KRDataObj& object) {
  if (const auto* statement = dynamic_cast<const KRGenericStatementRs*>(&object)) {
    const KRAccount* const account = statement->GetAccount();
    const KRLedgerBalance* const balance = statement->GetLedgerBal();
    if (account == nullptr || balance == nullptr) return;
    std::printf("%-16s balance    %12s\n", Text(account->GetAccountID()),
                static_cast<const char*>(balance->GetBalAmt()));
    return;
  }
  for (u16 i = 0; i < object.GetNumberOfChildren(); ++i) {
    if (const KRDataObj* child = object.GetChild(i)) PrintBalances(*child);
  }
}

bool Print(const char* name) {
  krofx::Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.OpenFile(name);
  for (const krofx::StreamElement& element : stream) PrintTransaction(element);
  if (stream.Root() != nullptr) PrintBalances(*stream.Root());
  for (const krofx::ReadWarning& warning : stream.Warnings()) {
    std::fprintf(stderr, "%s:%zu: warning %u at %s\n", name, warning.place.line, warning.warning,
                 Text(warning.path));
  }
  if (stream.Status() == KRParseStatus_Accepted || stream.Status() == KRParseStatus_Warnings) {
    return true;
  }
  std::fprintf(stderr, "%s: not read to its end (status %u): %s\n", name, stream.Status(),
               Text(stream.Problem()));
  return false;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: stream_statement FILE...\n");
    return 64;
  }
  bool good = true;
  for (int i = 1; i < count; ++i) good = Print(arguments[i]) && good;
  return good ? 0 : 1;
}
