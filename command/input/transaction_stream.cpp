// The survey of a large text, and the cursor that reads its transactions again.

#include "input/transaction_stream.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "input/parsed_file.h"

namespace krofx::command {

namespace {

// How far out from a transaction the statement is: the list is between them.
constexpr u16 kLevelsToStatement = 2;

std::string TagOf(KRDataObj& object) { return ToText(KRUtility::TagToString(object.GetType())); }

bool IsStatement(KRDataObj& object) {
  return object.GetType() == KRTag_STMTRS || object.GetType() == KRTag_CCSTMTRS;
}

// The statements that were read, by their paths.
using StatementPaths = std::unordered_map<const KRDataObj*, std::string>;

template <class Visit>
void ForEachChild(KRDataObj& object, Visit visit) {
  for (u16 index = 0; index < object.GetNumberOfChildren(); ++index) {
    if (KRDataObj* const child = object.GetChild(index)) visit(*child, TagOf(*child));
  }
}

// Whether all statements are in a tree, under the paths that they had. Of two answers in one
// wrapper the parser keeps the last one, and says nothing.
bool AreAllThere(KRDataObj& root, const StatementPaths& statements) {
  std::size_t count = 0;
  bool areInPlace = true;
  ForEachChild(root, [&](KRDataObj& body, const std::string& bodyTag) {
    ForEachChild(body, [&](KRDataObj& set, const std::string& setTag) {
      std::unordered_map<std::string, std::size_t> numbers;
      ForEachChild(set, [&](KRDataObj& member, const std::string& memberTag) {
        const std::string number = "[" + std::to_string(++numbers[memberTag]) + "]";
        ForEachChild(member, [&](KRDataObj& payload, const std::string& tag) {
          const auto found = statements.find(&payload);
          if (found == statements.end()) return;
          ++count;
          const std::string path = bodyTag + "/" + setTag + "/" + memberTag + number + "/" + tag;
          areInPlace = areInPlace && found->second == path;
        });
      });
    });
  });
  return areInPlace && count == statements.size();
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

StreamOptions WithReader(StreamOptions options, bool mends) {
  options.mends = mends;
  return options;
}

// A reading names the first tag that is missing in a text, a stream the first one of each element.
bool IsSaid(const ReadWarning& warning, bool& hasMissing) {
  if (warning.warning != KRPW_MISSINGTAG) return true;
  return !std::exchange(hasMissing, true);
}

// The path of the statement that a transaction is in.
std::string StatementPathOf(const StreamElement& transaction) {
  std::string path = ToText(transaction.Path());
  for (u16 level = 0; level < kLevelsToStatement; ++level) path.resize(path.rfind('/'));
  return path;
}

}  // namespace

TransactionStream::Cursor::Cursor(const TransactionStream& stream, const StreamOptions& options)
    : m_stream(WithReader(options, stream.m_mends)) {
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
                                                      std::shared_ptr<KRBuffer> bytes, Use use) {
  Surveyed surveyed;
  for (const bool mends : {false, true}) {
    if (mends && use == Use::kStrict) break;
    std::shared_ptr<TransactionStream> stream(new TransactionStream);
    stream->m_path = path;
    stream->m_bytes = bytes;
    stream->m_mends = mends;
    if (mends && stream->Size() < kLeastSize) break;
    surveyed = {};
    if (!stream->Read(surveyed, use)) continue;
    surveyed.stream = std::move(stream);
    break;
  }
  return surveyed;
}

bool TransactionStream::Read(Surveyed& surveyed, Use use) {
  const bool isStrict = use == Use::kStrict;
  StreamOptions options;
  options.maxRecords = ReadOptions().maxRecords;
  Cursor cursor(*this, options);
  Stream& stream = cursor.Stream();
  StatementPaths statements;
  std::unordered_set<std::string> paths;
  while (const StreamElement* const element = cursor.Next()) {
    if (!isStrict && !m_mends && stream.Status() != KRParseStatus_Accepted) return false;
    // The character set is found from the part of the text that is in memory. When all parts agree
    // the whole would as well.
    const OfxText& judged = element->Text();
    if (m_statements.empty()) CopyForm(judged, m_text);
    if (!(judged.charset == m_text.charset)) return false;
    if (cursor.IsFirst()) {
      KRDataObj* const statement = element->Around(kLevelsToStatement);
      if (statement == nullptr || !IsStatement(*statement)) return false;
      const std::string path = StatementPathOf(*element);
      if (!paths.insert(path).second) return false;
      statements.emplace(statement, path);
      m_statements.push_back({path});
    }
    ++m_statements.back().count;
  }
  if (!IsUsable(stream, use)) return false;
  bool hasMissing = false;
  for (const ReadWarning& warning : stream.Warnings()) {
    if (IsSaid(warning, hasMissing) && !surveyed.warnings.Append(warning)) return false;
  }
  // What transactions lack is found in a tree that has them.
  if (m_mends && hasMissing && use == Use::kAllThatIsMissing) return false;
  for (const Mending& mending : stream.Mendings()) {
    if (!surveyed.mendings.Append(mending)) return false;
  }
  surveyed.unrecorded = stream.Unrecorded();
  surveyed.status = stream.Status();
  CopyForm(m_text, surveyed.text);
  surveyed.text.status = surveyed.status;
  surveyed.text.root = stream.TakeRoot();
  return surveyed.text.root != nullptr && !statements.empty() &&
         AreAllThere(*surveyed.text.root, statements);
}

bool TransactionStream::IsUsable(Stream& stream, Use use) const {
  if (!IsRead(stream.Status())) return false;
  if (m_mends) return !stream.HasMoreTags();
  const bool isClean = stream.Status() == KRParseStatus_Accepted && !stream.MayHaveCommaAmount() &&
                       !stream.HasRepeatedFigure() && !stream.HasMoreTags();
  return isClean || (use == Use::kStrict && HasLongList());
}

std::size_t TransactionStream::Size() const {
  if (m_bytes != nullptr) return m_bytes->GetBufferSize();
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(m_path, error);
  return error ? 0 : static_cast<std::size_t>(size);
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
