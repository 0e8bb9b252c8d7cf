// An input, read and parsed: the objects, the status, and every warning with its place.

#ifndef KROFX_COMMAND_INPUT_PARSED_FILE_H_
#define KROFX_COMMAND_INPUT_PARSED_FILE_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exit_status.h"
#include "krofx/krofx.h"

namespace krofx::command {

/// A warning of a parse, copied when it was raised.
struct Warning {
  std::string name;             ///< Such as "KRPW_BADFORMAT".
  std::string tag;              ///< The tag or header, or empty.
  std::string value;            ///< What gave offence, or empty.
  KRDataObj* object = nullptr;  ///< Where it happened. May be gone: only to be compared.
  s32 position = -1;            ///< Byte in the text, or -1.
};

/// An input. Whatever happened to it, the objects hold what was read up to there.
class ParsedFile {
 public:
  /// Reads and parses; "-" is standard input. Nothing fails but by GetProblem.
  explicit ParsedFile(const std::string& name);
  /// Parses a text that is there already, such as a reply. `name` is what messages call it.
  ParsedFile(std::string_view name, std::unique_ptr<KRBuffer> text);

  /// The name, fit for output.
  const std::string& GetName() const { return m_name; }
  /// Why the input is not usable, in one line; empty when it is.
  const std::string& GetProblem() const { return m_problem; }
  /// The same, and that `krofx check` names the place when it does.
  std::string GetProblemWithAdvice() const;
  /// "request", "response", "multipart", or empty when there was nothing to parse.
  const std::string& GetKind() const { return m_kind; }
  KRParseStatus GetStatus() const { return m_status; }
  /// What the status means, in a few words.
  std::string GetMeaning() const;
  const std::vector<Warning>& GetWarnings() const { return m_warnings; }
  /// The objects; null when there was nothing to parse.
  KRFile* GetRoot() const { return m_root.get(); }
  /// The files with OFX in them: the root, or, of a multipart text, the parts that are OFX.
  std::vector<KRFile*> GetOfxFiles() const;
  /// The text; null when it could not be read.
  const KRBuffer* GetText() const { return m_text.get(); }

  /// Clean, with warnings, or not usable.
  ExitStatus GetVerdict() const;

 private:
  void Parse();
  std::string FindProblem() const;

  std::string m_name;
  std::string m_kind;
  std::string m_problem;
  KRParseStatus m_status = KRParseStatus_Accepted;
  std::vector<Warning> m_warnings;
  std::unique_ptr<KRBuffer> m_text;
  std::unique_ptr<KRFile> m_root;
};

/// The bytes of a buffer.
std::string_view ViewOf(const KRBuffer& buffer);

/// The text of a library string.
std::string ToText(const KRString& string);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_PARSED_FILE_H_
