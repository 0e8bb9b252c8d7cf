// The rows of large texts, made while they are read.

#ifndef KROFX_COMMAND_SHOWING_STREAMED_ROWS_H_
#define KROFX_COMMAND_SHOWING_STREAMED_ROWS_H_

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "input/transaction_stream.h"
#include "showing/document.h"

namespace krofx::command {

/// Makes the rows of the transactions of a large text. Statements are best visited in the order of
/// the text, and each of them once: then the text is read once.
class StreamedRows : public std::enable_shared_from_this<StreamedRows> {
 public:
  StreamedRows(std::shared_ptr<const TransactionStream> stream, bool showIdentifiers);

  /// Gives the rows of a statement.
  /// @param path as of TransactionStream::Statement.
  /// @return null when the statement has none.
  std::shared_ptr<RowSource> Find(const std::string& path, const TableSpec& table);

  /// @return how many rows there are.
  std::size_t Count() const { return m_stream->CountTransactions(); }
  /// @return whether all that was visited was as it was when the text was read first.
  bool IsWhole() const { return m_isWhole; }

 private:
  class Source;

  void ForEach(std::size_t statement, const TableSpec& table,
               const std::function<bool(Row)>& visit);
  void GoTo(std::size_t statement);
  void Advance();

  const std::shared_ptr<const TransactionStream> m_stream;
  const bool m_showIdentifiers;
  std::unordered_map<std::string, std::size_t> m_statements;
  std::optional<TransactionStream::Cursor> m_cursor;
  const StreamElement* m_current = nullptr;
  bool m_isWhole = true;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_STREAMED_ROWS_H_
