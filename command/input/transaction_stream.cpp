// The survey of a large text, and the cursor that reads its transactions again.

#include "input/transaction_stream.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "input/parsed_file.h"

namespace krofx::command {

namespace {

// How far out from a transaction the statement is: the list is between them.
constexpr u16 kLevelsToStatement = 2;

bool IsStatement(KRDataObj& object) {
  return object.GetType() == KRTag_STMTRS || object.GetType() == KRTag_CCSTMTRS;
}

// How many of some statements are in a tree. Of two answers in one wrapper the parser keeps the
// last one, and says nothing.
std::size_t CountStatements(KRDataObj& tree,
                            const std::unordered_set<const KRDataObj*>& statements) {
  if (IsStatement(tree)) return statements.count(&tree);
  std::size_t count = 0;
  for (u16 index = 0; index < tree.GetNumberOfChildren(); ++index) {
    KRDataObj* const child = tree.GetChild(index);
    if (child != nullptr) count += CountStatements(*child, statements);
  }
  return count;
}

bool IsRead(KRParseStatus status) {
  return status == KRParseStatus_Accepted || status == KRParseStatus_Warnings;
}

void CopyForm(const OfxText& from, OfxText& to) {
  to.kind = from.kind;
  to.form = from.form;
  to.version = from.version;
  to.charset = from.charset;
}

// The path of the statement that a transaction is in.
std::string StatementPathOf(const StreamElement& transaction) {
  std::string path = ToText(transaction.Path());
  for (u16 level = 0; level < kLevelsToStatement; ++level) path.resize(path.rfind('/'));
  return path;
}

}  // namespace

TransactionStream::Cursor::Cursor(const TransactionStream& stream, const StreamOptions& options)
    : m_stream(options) {
  m_stream.WantTag(KRTag_STMTTRN);
  if (stream.m_bytes != nullptr) {
    m_stream.Open(*stream.m_bytes);
  } else {
    m_stream.OpenFile(stream.m_path.c_str());
  }
}

const StreamElement* TransactionStream::Cursor::Next() {
  const StreamElement* const element = m_stream.Next();
  if (element == nullptr) return nullptr;
  const KRDataObj* const payload = element->Around(kLevelsToStatement);
  m_isFirst = payload != m_payload;
  if (m_isFirst) ++m_count;
  m_payload = payload;
  return element;
}

TransactionStream::Surveyed TransactionStream::Survey(const std::string& path,
                                                      std::shared_ptr<KRBuffer> bytes,
                                                      bool isStrict) {
  std::shared_ptr<TransactionStream> stream(new TransactionStream);
  stream->m_path = path;
  stream->m_bytes = std::move(bytes);
  Surveyed surveyed;
  if (stream->Read(surveyed, isStrict)) surveyed.stream = std::move(stream);
  return surveyed;
}

bool TransactionStream::Read(Surveyed& surveyed, bool isStrict) {
  StreamOptions options;
  options.maxRecords = ReadOptions().maxRecords;
  Cursor cursor(*this, options);
  Stream& stream = cursor.Stream();
  std::unordered_set<const KRDataObj*> statements;
  std::unordered_set<std::string> paths;
  while (const StreamElement* const element = cursor.Next()) {
    if (!isStrict && stream.Status() != KRParseStatus_Accepted) return false;
    // The character set is found from the part of the text that is in memory. When all parts agree
    // the whole would as well.
    const OfxText& judged = element->Text();
    if (m_statements.empty()) CopyForm(judged, m_text);
    if (!(judged.charset == m_text.charset)) return false;
    if (cursor.IsFirst()) {
      KRDataObj* const statement = element->Around(kLevelsToStatement);
      const std::string path = StatementPathOf(*element);
      if (!IsStatement(*statement) || !paths.insert(path).second) return false;
      statements.insert(statement);
      m_statements.push_back({path});
    }
    ++m_statements.back().count;
  }
  const bool isClean = stream.Status() == KRParseStatus_Accepted && !stream.MayHaveCommaAmount() &&
                       !stream.HasMoreTags();
  if (!isClean && !(isStrict && IsRead(stream.Status()) && HasLongList())) {
    return false;
  }
  for (const ReadWarning& warning : stream.Warnings()) {
    if (!surveyed.warnings.Append(warning)) return false;
  }
  surveyed.unrecorded = stream.Unrecorded();
  CopyForm(m_text, surveyed.text);
  surveyed.text.root = stream.TakeRoot();
  return surveyed.text.root != nullptr && !statements.empty() &&
         CountStatements(*surveyed.text.root, statements) == statements.size();
}

bool TransactionStream::HasLongList() const {
  return std::any_of(m_statements.begin(), m_statements.end(),
                     [](const Statement& each) { return each.count > kListLimit; });
}

std::size_t TransactionStream::CountTransactions() const {
  std::size_t count = 0;
  for (const Statement& each : m_statements) count += each.count;
  return count;
}

}  // namespace krofx::command
