// Reads statements whose transactions have given values, and says what became of each value.

#ifndef KROFX_TESTS_READER_READ_VALUES_H_
#define KROFX_TESTS_READER_READ_VALUES_H_

#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/readings.h"

namespace krofx::testing {

/// A value as it is in the tree, and what was said about it.
struct ReadValue {
  std::string value;  ///< As it is written again; "absent" when it is not there.
  Lines kinds;        ///< The names of its mendings, in order.

  friend bool operator==(const ReadValue& a, const ReadValue& b) = default;
};

inline std::ostream& operator<<(std::ostream& out, const ReadValue& value) {
  out << value.value;
  for (const std::string& kind : value.kinds) out << " " << kind;
  return out;
}

/// The text of an example.
inline std::string ReadExample(const std::string& name) {
  std::ifstream in(std::string(KROFX_EXAMPLES) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// A transaction with one element in place of the usual one.
inline std::string TransactionWith(const std::string& tag, const std::string& text) {
  std::string content;
  for (const auto& [name, usual] : {std::pair<std::string, std::string>{"TRNTYPE", "DEBIT"},
                                    {"DTPOSTED", "20260105"},
                                    {"DTUSER", ""},
                                    {"TRNAMT", "-7"},
                                    {"FITID", "1"},
                                    {"CHECKNUM", ""},
                                    {"NAME", "Grocer"}}) {
    const std::string& value = name == tag ? text : usual;
    if (!value.empty()) content += "<" + name + ">" + value;
  }
  return Aggregate("STMTTRN", content);
}

/// The value of an element in a part of a written text.
inline std::string ValueIn(std::string_view text, const std::string& tag) {
  const std::string start = "<" + tag + ">";
  const std::size_t at = text.find(start);
  if (at == std::string_view::npos) return "absent";
  const std::string_view rest = text.substr(at + start.size());
  return std::string(rest.substr(0, rest.find_first_of("\r\n<")));
}

/// Reads a statement with a transaction for each of the texts, which are values of `tag`.
/// @param header what is in front of the body.
inline std::vector<ReadValue> ReadValues(const std::string& tag, const Lines& texts,
                                         const std::string& header = HeaderBlock()) {
  std::string transactions;
  for (const std::string& text : texts) transactions += TransactionWith(tag, text);
  std::string file = BankStatementFile(transactions);
  // The only other number shows no decimal sign.
  constexpr std::string_view kBalance = "1523.75";
  file.replace(file.find(kBalance), kBalance.size(), "1523");
  const Reading reading = Read(header + file.substr(file.find('<')));
  const std::string written = Written(reading.root);
  std::vector<ReadValue> values;
  std::size_t at = 0;
  for (std::size_t index = 0; index < texts.size(); ++index) {
    const std::size_t start = written.find("<STMTTRN>", at);
    if (start == std::string::npos) break;
    at = written.find("</STMTTRN>", start);
    values.push_back({ValueIn(std::string_view(written).substr(start, at - start), tag), {}});
    const std::string place =
        texts.size() == 1 ? "/STMTTRN" : "/STMTTRN[" + std::to_string(index + 1) + "]";
    for (const Mending& mending : reading.mendings) {
      if (Str(mending.tag) == tag && Str(mending.path).ends_with(place)) {
        values.back().kinds.emplace_back(NameOf(mending.kind));
      }
    }
  }
  return values;
}

/// Reads a statement of one transaction.
inline ReadValue ReadOne(const std::string& tag, const std::string& text,
                         const std::string& header = HeaderBlock()) {
  const std::vector<ReadValue> values = ReadValues(tag, {text}, header);
  return values.empty() ? ReadValue{"no transaction", {}} : values.front();
}

/// The header of a text in UTF-8.
inline std::string Utf8Header() {
  std::string header = HeaderBlock();
  header.replace(header.find("USASCII"), 7, "UTF-8");
  header.replace(header.find("1252"), 4, "NONE");
  return header;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_READER_READ_VALUES_H_
