// Reads statement files and prints accounts, transactions and balances.
//
//   read_statement FILE...

#include <krofx/krofx.h>

#include <cstdio>

#include "read_file.h"

namespace {

const char* Text(const KRString& string) { return string; }

// The other party is in NAME or in the payee of either version; a check often has neither.
const KRString& Party(const KRBankStatementTx& transaction) {
  if (const KRPayee* payee = transaction.GetPayee()) return payee->GetName();
  if (const KRPayee* payee = transaction.GetPayee2()) return payee->GetName();
  if (transaction.ValidateTag(KRTag_NAME) != 0) return transaction.GetName();
  return transaction.GetMemo();
}

void PrintTransactions(const KRBankTransactionList& list) {
  for (u16 i = 0; i < list.GetNumStatementTx(); ++i) {
    const KRBankStatementTx& transaction = *list.GetStatementTx(i);
    const KRDateTime& date = transaction.GetDateTimePosted();
    std::printf("  %04d-%02d-%02d %12s  %s\n", date.GetYear(), date.GetMonth(), date.GetDay(),
                static_cast<const char*>(transaction.GetTxAmount()), Text(Party(transaction)));
  }
}

void PrintStatement(const KRGenericStatementRs& statement) {
  const KRAccount* account = statement.GetAccount();
  std::printf("%s, %s\n", account == nullptr ? "(no account)" : Text(account->GetAccountID()),
              Text(statement.GetCurrencyDefault()));
  if (const KRBankTransactionList* list = statement.GetBankTranList()) PrintTransactions(*list);
  if (const KRLedgerBalance* balance = statement.GetLedgerBal()) {
    std::printf("  %-10s %12s\n", "balance", static_cast<const char*>(balance->GetBalAmt()));
  }
}

// A statement is the payload of a transaction in a message set of the response. A transaction that
// failed has a status instead of a payload.
void PrintStatements(const KRDataObj& object) {
  const auto* wrapper = dynamic_cast<const KRTransRs*>(&object);
  if (wrapper != nullptr && wrapper->IsErrorStatus() != 0) {
    std::printf("%s: error %d, %s\n", Text(wrapper->GetTransUserID()),
                wrapper->GetStatus()->GetCode(), Text(wrapper->GetStatus()->GetMessageText()));
  }
  if (const auto* statement = dynamic_cast<const KRGenericStatementRs*>(&object)) {
    PrintStatement(*statement);
    return;
  }
  for (u16 i = 0; i < object.GetNumberOfChildren(); ++i) {
    if (const KRDataObj* child = object.GetChild(i)) PrintStatements(*child);
  }
}

bool Print(const char* name) {
  KRBuffer buffer(0, 0);
  if (!ReadFile(name, buffer)) return false;
  KRFileRs file;
  KRSimpleParser parser;
  const KRParseStatus status = parser.Parse(&buffer, &file, 1);
  // What was read is kept, so a host can show it whatever the status says.
  PrintStatements(file);
  for (u16 i = 0; i < parser.GetNumberParseExceptions(); ++i) {
    KRString warning;
    parser.GetParseException(i)->WarningString(warning);
    std::printf("  warning: %s %s\n", Text(warning), Text(parser.GetParseException(i)->m_tagText));
  }
  if (status == KRParseStatus_Accepted || status == KRParseStatus_Warnings) return true;
  std::fprintf(stderr, "%s: not read to its end (status %u)\n", name, status);
  return false;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: read_statement FILE...\n");
    return 64;
  }
  bool good = true;
  for (int i = 1; i < count; ++i) good = Print(arguments[i]) && good;
  return good ? 0 : 1;
}
