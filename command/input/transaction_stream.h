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
    /// As of a reading.
    KRParseStatus status = KRParseStatus_Accepted;
    /// What is out of order and was not mended.
    List<ReadWarning> warnings;
    /// What was mended.
    List<Mending> mendings;
    /// How many warnings and mendings there were beyond those.
    std::size_t unrecorded = 0;
  };
  /// What a text is read for.
  enum class Use : u8 {
    kMended,            ///< What is out of order is mended.
    kAllThatIsMissing,  ///< The same, and all tags that are missing are asked for.
    kStrict,            ///< It is read strictly.
  };

  /// The rows of a text below this size are made faster of a tree. No list in it is too long for
  /// that: the shortest transaction has 67 bytes.
  static constexpr std::size_t kLeastSize = 4 * 1024 * 1024;

  /// Reads a text to its end. The text has to be read as a whole when it has no transactions of
  /// bank and card accounts, when it is not the only one of its file, and when it is small and
  /// anything is out of order in it. A text that is out of order and is read strictly must have
  /// more transactions than a list takes.
  /// @param path the file, when `bytes` is null.
  /// @param bytes the text when it is in memory already.
  static Surveyed Survey(const std::string& path, std::shared_ptr<KRBuffer> bytes, Use use);

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

  bool Read(Surveyed& surveyed, Use use);
  bool IsUsable(Stream& stream, Use use) const;
  std::size_t Size() const;
  bool HasLongList() const;

  std::string m_path;
  std::shared_ptr<KRBuffer> m_bytes;
  bool m_mends = false;
  OfxText m_text;
  std::vector<Statement> m_statements;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_TRANSACTION_STREAM_H_
