// Reads on to the statement that is visited, and makes a row of each of its transactions.

#include "showing/streamed_rows.h"

#include <utility>

#include "showing/transaction_cells.h"

namespace krofx::command {

class StreamedRows::Source final : public RowSource {
 public:
  Source(std::shared_ptr<StreamedRows> rows, std::size_t statement, const TableSpec& table)
      : m_rows(std::move(rows)), m_statement(statement), m_table(table) {}

  void ForEach(const std::function<bool(Row)>& visit) override {
    m_rows->ForEach(m_statement, m_table, visit);
  }

 private:
  const std::shared_ptr<StreamedRows> m_rows;
  const std::size_t m_statement;
  const TableSpec& m_table;
};

StreamedRows::StreamedRows(std::shared_ptr<const TransactionStream> stream, bool showIdentifiers)
    : m_stream(std::move(stream)), m_showIdentifiers(showIdentifiers) {
  for (const TransactionStream::Statement& each : m_stream->Statements()) {
    m_statements.emplace(each.path, m_statements.size());
  }
}

std::shared_ptr<RowSource> StreamedRows::Find(const std::string& path, const TableSpec& table) {
  const auto found = m_statements.find(path);
  if (found == m_statements.end()) return nullptr;
  return std::make_shared<Source>(shared_from_this(), found->second, table);
}

void StreamedRows::ForEach(std::size_t statement, const TableSpec& table,
                           const std::function<bool(Row)>& visit) {
  GoTo(statement);
  TransactionCells cells(table, m_showIdentifiers);
  std::size_t count = 0;
  for (; m_current != nullptr && m_cursor->Statement() == statement; Advance()) {
    ++count;
    const auto& transaction = static_cast<const KRBankStatementTx&>(m_current->Object());
    if (!visit(cells.Make(transaction, m_stream->Text()))) return;
  }
  if (count != m_stream->Statements()[statement].count) m_isWhole = false;
}

// Goes to the first transaction of a statement; when that is passed, from the beginning.
void StreamedRows::GoTo(std::size_t statement) {
  const bool isBefore =
      m_current != nullptr && (m_cursor->Statement() < statement ||
                               (m_cursor->Statement() == statement && m_cursor->IsFirst()));
  if (!isBefore) {
    StreamOptions options;
    options.checkRequired = false;
    options.maxRecords = 0;
    m_cursor.emplace(*m_stream, options);
    Advance();
  }
  while (m_current != nullptr && m_cursor->Statement() < statement) Advance();
}

void StreamedRows::Advance() { m_current = m_cursor->Next(); }

}  // namespace krofx::command
