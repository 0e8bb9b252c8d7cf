// Large texts whose transactions are read one by one where they are needed, so that there may be
// any number of them, and no memory is taken for them.

#ifndef KROFX_COMMAND_INPUT_TRANSACTION_STREAM_H_
#define KROFX_COMMAND_INPUT_TRANSACTION_STREAM_H_

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "krofx/krofx.h"

namespace krofx::command {

/// A text with statements of bank and card accounts, whose transactions are not held. It has been
/// read once, to find out whether it is in order and what else is in it.
class TransactionStream {
 public:
  /// A statement with transactions.
  struct Statement {
    std::string path;       ///< Such as "OFX/BANKMSGSRSV1/STMTTRNRS[1]/STMTRS".
    std::size_t count = 0;  ///< How many transactions it has.
  };
  /// What a survey gives.
  struct Surveyed {
    /// Null for a text that has to be read as a whole.
    std::shared_ptr<const TransactionStream> stream;
    /// The text, with a tree of all but the transactions.
    OfxText text;
    /// What is out of order; only of a text that was taken to the letter.
    List<ReadWarning> warnings;
    /// How many warnings there were beyond those.
    std::size_t unrecorded = 0;
  };

  /// The rows of a text below this size are made faster of a tree. No list in it is too long for
  /// that: the shortest transaction has 67 bytes.
  static constexpr std::size_t kLeastSize = 4 * 1024 * 1024;

  /// Reads a text to its end. The text has to be read as a whole when it has no transactions of
  /// bank and card accounts, and when anything is out of order in it, also when that is something
  /// which the parser takes in silence and the reader of mendings does not. The one exception is a
  /// text that is taken to the letter and has more transactions than a list takes.
  /// @param path the file, when `bytes` is null.
  /// @param bytes the text when it is in memory already.
  /// @param isStrict whether the text is taken to the letter.
  static Surveyed Survey(const std::string& path, std::shared_ptr<KRBuffer> bytes, bool isStrict);

  /// @return those of the text, in its order.
  const std::vector<Statement>& Statements() const { return m_statements; }
  /// @return how many transactions they have together.
  std::size_t CountTransactions() const;
  /// @return the character set of the text; it has no tree.
  const OfxText& Text() const { return m_text; }

  /// Reads the transactions again, in the order of the text.
  class Cursor {
   public:
    /// @param stream must live as long as the cursor.
    /// @param options what is warned of.
    explicit Cursor(const TransactionStream& stream, const StreamOptions& options);

    /// Goes on to the next transaction.
    /// @return null at the end. It is good until the next call.
    const StreamElement* Next();
    /// @return which statement the current transaction is of: an index, counted from 0 in the order
    ///         of the text.
    std::size_t Statement() const { return m_count - 1; }
    /// @return whether the current transaction is the first one of its statement.
    bool IsFirst() const { return m_isFirst; }
    /// @return the stream that is read.
    krofx::Stream& Stream() { return m_stream; }

   private:
    krofx::Stream m_stream;
    const KRDataObj* m_payload = nullptr;
    std::size_t m_count = 0;
    bool m_isFirst = false;
  };

 private:
  TransactionStream() = default;

  bool Read(Surveyed& surveyed, bool isStrict);
  bool HasLongList() const;

  std::string m_path;
  std::shared_ptr<KRBuffer> m_bytes;
  OfxText m_text;
  std::vector<Statement> m_statements;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_TRANSACTION_STREAM_H_
