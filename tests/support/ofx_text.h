// Makes OFX texts and parses them into trees, in one line each, for tests of files and aggregates.
//
//   Parsed<KRFileRs> file(BankStatementFile("<STMTTRN>..."));  a whole file
//   Parsed<KRPayee> payee("<NAME>Ada<ADDR1>1 Main St", 2);     one aggregate, second version
//   TextOf(*payee)                                             what the builder writes
//
// Texts may have line ends or not; TextOf ends every line with a line feed.

#ifndef KROFX_TESTS_SUPPORT_OFX_TEXT_H_
#define KROFX_TESTS_SUPPORT_OFX_TEXT_H_

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/model/data_object.h"
#include "krofx/parse/simple_parser.h"
#include "support/parse_text.h"

namespace krofx::testing {

/// An object of version `version`, as a factory would make it.
template <class T>
std::unique_ptr<T> Make(u16 version = 1) {
  auto object = std::make_unique<T>();
  object->SetMsgSetVersion(version);
  return object;
}

/// Whether a class is that of a file, which handles its outermost tags itself. Files are in a layer
/// above that of most tests, so a file is recognised by its operations.
template <class T>
concept IsFile = requires(const T& object) {
  object.ValidateHeaders();
};

/// A tree parsed from a text, with the status and the warnings of the parse. The root is any data
/// object: a file, or an aggregate whose text has no tags of its own around it.
template <class Root>
class Parsed {
 public:
  /// Parses `text` into a new root.
  /// @param version       the version of an aggregate; a file keeps its own.
  /// @param checkRequired whether a missing required tag is warned about.
  explicit Parsed(std::string_view text, u16 version = 1, u16 checkRequired = 0)
      : m_root(std::make_unique<Root>()), m_buffer(text) {
    if constexpr (!IsFile<Root>) m_root->SetMsgSetVersion(version);
    Parse(checkRequired);
  }
  /// Parses into an existing root.
  Parsed(std::string_view text, std::unique_ptr<Root> root, u16 checkRequired = 0)
      : m_root(std::move(root)), m_buffer(text) {
    Parse(checkRequired);
  }

  Root& operator*() const { return *m_root; }
  Root* operator->() const { return m_root.get(); }
  Root* Get() const { return m_root.get(); }

  KRParseStatus Status() const { return m_status; }
  /// The warnings, each as Line of parse_text.h gives it: name, tag text, tag, value.
  const Lines& Warnings() const { return m_warnings; }
  /// The object that stopped the parse, or the root of one with warnings.
  KRDataObj* ObjectWithError() const { return m_objectWithError; }

 private:
  void Parse(u16 checkRequired) {
    KRSimpleParser parser;
    if constexpr (!IsFile<Root>) {
      // A parent does this when it pushes a child: the parser then rejects tags of other versions.
      KRArrayOfTags tags;
      m_root->GetArrayOfValidTags(tags);
      parser.SetValidTags(tags);
    }
    m_status = parser.Parse(m_buffer.Get(), m_root.get(), checkRequired);
    m_objectWithError = parser.GetObjectWithError();
    m_warnings = krofx::testing::Warnings();
  }

  std::unique_ptr<Root> m_root;
  TextBuffer m_buffer;
  KRParseStatus m_status = KRParseStatus_Accepted;
  KRDataObj* m_objectWithError = nullptr;
  Lines m_warnings;
};

/// What a buffer holds.
inline std::string ContentOf(KRBuffer& buffer) {
  const char* data = buffer.GetBufferPtr();
  return data == nullptr ? std::string() : std::string(data, buffer.GetBufferSize());
}

/// How a build ended and what it wrote.
struct Built {
  KRBuildStatus status;
  std::string text;
  KRDataObj* failingObject = nullptr;

  friend bool operator==(const Built& a, const Built& b) {
    return a.status == b.status && a.text == b.text;
  }
};

inline std::ostream& operator<<(std::ostream& out, const Built& built) {
  return out << "status " << built.status << ", text:\n" << built.text;
}

/// Builds an object's members (for a file: headers and body), without the object's own tags.
inline Built Build(const KRDataObj& object, KRBuildStringOpt option = KRBuildStringOpt_Strict,
                   u16 checkRequired = 0) {
  KRBuffer buffer(0, 0);
  KRBuilder builder;
  const KRBuildStatus status =
      builder.Build(&buffer, const_cast<KRDataObj*>(&object), option, checkRequired);
  return {status, ContentOf(buffer), builder.GetFailingObject()};
}

/// What Build writes; a build that fails adds a line that says so, so that a comparison fails.
inline std::string TextOf(const KRDataObj& object) {
  const Built built = Build(object);
  if (built.status == KRBuildStatus_Done) return built.text;
  return built.text + "build status " + std::to_string(built.status) + "\n";
}

/// Splits a text such as "<A>1<B>2" into lines as the builder writes them, so that tests can write
/// their texts in one line.
inline std::string InLines(std::string_view text) {
  std::string lines;
  for (const char c : text) {
    if (c == '<' && !lines.empty() && lines.back() != '\n') lines += '\n';
    if (c != '\n' || (!lines.empty() && lines.back() != '\n')) lines += c;
  }
  if (!lines.empty() && lines.back() != '\n') lines += '\n';
  return lines;
}

/// "<TAG>content</TAG>".
inline std::string Aggregate(std::string_view tag, std::string_view content) {
  std::string text;
  text.append("<").append(tag).append(">").append(content);
  text.append("</").append(tag).append(">");
  return text;
}

/// "V1" or "V2", the end of a message set's tag.
inline std::string VersionSuffix(u16 version) { return version == 2 ? "V2" : "V1"; }

/// The header block as the builder writes it.
inline std::string HeaderBlock(u16 version = 1) {
  return std::string("OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:") + (version == 2 ? "151" : "102") +
         "\r\nSECURITY:NONE\r\nENCODING:USASCII\r\nCHARSET:1252\r\nCOMPRESSION:NONE\r\n"
         "OLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n";
}

/// A whole file around the content of OFX.
inline std::string File(std::string_view body, u16 version = 1) {
  return HeaderBlock(version) + Aggregate("OFX", body);
}

/// A complete sign-on request set.
inline std::string SignOnRequestSet(u16 version = 1) {
  return Aggregate("SIGNONMSGSRQ" + VersionSuffix(version),
                   Aggregate("SONRQ",
                             "<DTCLIENT>20260105120000<USERID>ada<USERPASS>secret"
                             "<LANGUAGE>ENG<APPID>KROFX<APPVER>0100"));
}

/// STATUS of an exchange that went well.
inline std::string GoodStatus() { return Aggregate("STATUS", "<CODE>0<SEVERITY>INFO"); }

/// A complete sign-on response set.
inline std::string SignOnResponseSet(u16 version = 1) {
  return Aggregate("SIGNONMSGSRSV" + std::to_string(version),
                   Aggregate("SONRS", GoodStatus() + "<DTSERVER>20260105120000<LANGUAGE>ENG"));
}

/// A whole request file: the sign-on, then one message set ("BANKMSGSRQ") that holds `content`.
inline std::string RequestFile(std::string_view set, std::string_view content, u16 version = 1) {
  return File(
      SignOnRequestSet(version) + Aggregate(std::string(set) + VersionSuffix(version), content),
      version);
}

/// A whole response file: the sign-on, then one message set ("BANKMSGSRS") that holds `content`.
inline std::string ResponseFile(std::string_view set, std::string_view content, u16 version = 1) {
  return File(
      SignOnResponseSet(version) + Aggregate(std::string(set) + VersionSuffix(version), content),
      version);
}

/// A transaction wrapper of a request around a payload with its tags.
inline std::string RequestWrapper(std::string_view wrapper, std::string_view payload) {
  return Aggregate(wrapper, "<TRNUID>1001" + std::string(payload));
}

/// A transaction wrapper of a response, with a good status, around a payload with its tags.
inline std::string ResponseWrapper(std::string_view wrapper, std::string_view payload) {
  return Aggregate(wrapper, "<TRNUID>1001" + GoodStatus() + std::string(payload));
}

/// A bank account, "BANKACCTFROM" or "BANKACCTTO".
inline std::string BankAccountText(std::string_view tag, u16 version = 1) {
  return Aggregate(tag, "<BANKID>011000015<ACCTID>1029384756<" +
                            std::string(version == 2 ? "ACCTTYPE2" : "ACCTTYPE") + ">CHECKING");
}

/// A bank statement response file with the given transactions, complete in every way.
inline std::string BankStatementFile(std::string_view transactions, u16 version = 1) {
  return ResponseFile(
      "BANKMSGSRS",
      ResponseWrapper(
          "STMTTRNRS",
          Aggregate("STMTRS", "<CURDEF>USD" + BankAccountText("BANKACCTFROM", version) +
                                  Aggregate("BANKTRANLIST", "<DTSTART>20260101<DTEND>20260131" +
                                                                std::string(transactions)) +
                                  Aggregate("LEDGERBAL", "<BALAMT>1523.75<DTASOF>20260131"))),
      version);
}

/// The first object of class `T` in a tree, in the order of its children; null when there is none.
template <class T>
T* FindIn(KRDataObj* object) {
  if (object == nullptr) return nullptr;
  if (T* found = dynamic_cast<T*>(object)) return found;
  for (u16 i = 0; i < object->GetNumberOfChildren(); ++i) {
    if (T* found = FindIn<T>(object->GetChild(i))) return found;
  }
  return nullptr;
}

/// The warnings of the thread, taken out of its log: for tests of setters and the like.
inline Lines TakeWarnings() {
  Lines lines = Warnings();
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  return lines;
}

/// The number of a tag in the lines of warnings: "INVALIDELEM <MEMO2> 123".
inline std::string TagNumber(KRTagID tag) { return std::to_string(tag); }

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_OFX_TEXT_H_
