// An input, read: the objects, the status, and every warning and mending with its place.

#ifndef KROFX_COMMAND_INPUT_PARSED_FILE_H_
#define KROFX_COMMAND_INPUT_PARSED_FILE_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "input/list_stream.h"
#include "krofx/krofx.h"
#include "system/exit_status.h"

namespace krofx::command {

/// Whether what is out of order in an input is mended where it can be.
enum class Reader {
  kMending,  ///< Whatever can be understood is read, and each mending is listed.
  kStrict,   ///< The text is taken to the letter; the first value that is not acceptable ends it.
};

/// What of a text is held.
enum class Holding {
  kAll,  ///< The tree is that of the whole text.
  /// A text that is too large to be held may be without the transactions of its statements, and any
  /// text without lists that are longer than a tree takes: see ParsedFile::GetStream.
  kRows,
  /// So may any text that takes longer to be held than to be read, unless one of its transactions
  /// lacks something that must be there and a tree can hold them all.
  kSummary,
};

/// A warning: what is out of order and was not mended.
struct Warning {
  std::string name;      ///< Such as "KRPW_BADFORMAT".
  std::string tag;       ///< The tag or header, or empty.
  std::string value;     ///< What gave offence, or empty.
  std::string path;      ///< The aggregates around it, or empty.
  krofx::Place place;    ///< Line 0 for what has no place.
  const char* sentence;  ///< What it means, as krofx::SentenceOf.
};

/// A file with OFX in it.
struct OfxFile {
  KRFile* file;
  const krofx::OfxText* text;  ///< The text that it is of, which knows its character set.
};

/// An input. Whatever happened to it, the objects hold what was read up to there.
class ParsedFile {
 public:
  /// Reads a file; "-" is standard input. Nothing fails but by GetProblem.
  /// @param mayStream which lists may be missing when they are longer than a tree takes; null for
  ///        any.
  explicit ParsedFile(const std::string& name, Reader reader = Reader::kMending,
                      Holding holding = Holding::kAll, ListStream::MayStream mayStream = nullptr);
  /// Reads a text that is there already, such as a reply. `name` is what messages call it. Null
  /// when there was no memory for the text.
  ParsedFile(std::string_view name, std::unique_ptr<KRBuffer> text);

  /// @return the name, fit for output.
  const std::string& GetName() const { return m_name; }
  /// @return why the input is not usable, in one line; empty when it is.
  const std::string& GetProblem() const { return m_problem; }
  /// @return the same, and that `krofx check` names the place when it does.
  std::string GetProblemWithAdvice() const;
  /// "request", "response", "multipart", or empty when there was nothing to parse.
  const std::string& GetKind() const { return m_kind; }
  KRParseStatus GetStatus() const { return m_reading.status; }
  /// @return what the status means, in a few words.
  std::string GetMeaning() const;
  const std::vector<Warning>& GetWarnings() const { return m_warnings; }
  /// @return what was mended, in the order of the file.
  const krofx::List<krofx::Mending>& GetMendings() const { return m_reading.mendings; }
  /// @return whether a card may be in the place of the account of a bank or broker, which only the
  ///         mending of its aggregate tells: one of them was recorded, or mendings were left out.
  bool MayHaveMovedCards() const { return m_mayHaveMovedCards; }
  /// @return how many mendings and warnings there were beyond those that are listed.
  std::size_t CountUnrecorded() const { return m_reading.unrecorded; }
  /// @return whether a text ends too early, so that what follows is not there.
  bool BreaksOff() const;
  /// @return how many mendings and warnings, such as "3 mendings, 1 warning", and where a text
  ///         breaks off; empty when all is in order.
  std::string CountNotes() const;
  /// @return the objects; null when there was nothing to parse.
  KRFile* GetRoot() const { return m_reading.root; }
  /// @return the texts of the file, in order: one, except in files that were put together from
  ///         several.
  const krofx::List<krofx::OfxText>& GetTexts() const { return m_reading.texts; }
  /// @return the files with OFX in them: the root of each text, or, of a multipart one, the parts
  ///         that are OFX.
  std::vector<OfxFile> GetOfxFiles() const;

  /// Gives the elements that the tree does not have. Null when it has all.
  const std::shared_ptr<const ListStream>& GetStream() const { return m_stream; }

  /// Clean, with warnings or mendings, or not usable.
  ExitStatus GetVerdict() const;

 private:
  void Parse(Reader reader);
  bool Survey(const std::string& name, const ListStream::Way& way);
  void TakeWarnings();
  std::string FindProblem() const;

  std::string m_name;
  std::string m_kind;
  std::string m_problem;
  std::vector<Warning> m_warnings;
  std::shared_ptr<KRBuffer> m_text;
  std::shared_ptr<const ListStream> m_stream;
  bool m_mayHaveMovedCards = false;
  krofx::Reading m_reading;
};

/// @return the bytes of a buffer; none of one that memory was missing for.
std::string_view ViewOf(const KRBuffer& buffer);

/// @return the text of a library string.
std::string ToText(const KRString& string);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_PARSED_FILE_H_
