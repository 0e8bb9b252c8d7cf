// Imports a file: its transactions, and all that was out of order in it.
#include <krofx/host.h>

#include <cstdio>

int main(int count, char** arguments) {
  if (count != 2) return 64;
  const krofx::Reading reading = krofx::ReadFile(arguments[1]);
  for (const krofx::TransactionView tx : krofx::Transactions(reading)) {
    std::printf("%s %10s %s\n", krofx::ToText(krofx::ToDay(tx.Posted())).c_str(),
                krofx::ToText(tx.Amount(), 2).c_str(), std::string(tx.Party()).c_str());
  }
  for (const krofx::ReadNote& note : reading.Warnings()) {
    std::printf("line %zu, column %zu: <%s> %s\n", note.line, note.column,
                static_cast<const char*>(note.tag), note.sentence);
  }
  for (const krofx::MissingTag& missing : reading.Missing()) {
    std::printf("%s in %s\n", static_cast<const char*>(missing.sentence),
                static_cast<const char*>(missing.path));
  }
  if (!reading.IsRead()) std::printf("%s\n", static_cast<const char*>(reading.problem));
  return reading.IsRead() ? 0 : 1;
}
