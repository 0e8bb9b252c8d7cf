// The front door: reads whatever can be understood of a file that an institution sent, and says
// each thing that it mended.
//
//   krofx::Reading reading = krofx::Read(bytes);
//   if (reading.root == nullptr) return Complain(reading.problem);
//   for (const krofx::Mending& mending : reading.mendings) ...
//
// A text that KRSimpleParser reads with status 0 gives the same tree, and nothing is mended. There
// are two exceptions: an amount with a comma, which the parser reads with another value than the
// one that is written there, and a second answer in one wrapper, for which it drops the first one.
// docs/reading.md lists every kind of damage.

#ifndef KROFX_READER_READING_H_
#define KROFX_READER_READING_H_

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/envelope/file.h"
#include "krofx/reader/mending.h"
#include "krofx/reader/missing.h"
#include "krofx/reader/notes.h"

class KRFileRq;
class KRFileRs;

namespace krofx {

/// What a text holds.
enum class TextKind : u8 {
  kResponse,   ///< A KRFileRs: what a server answers, and every download.
  kRequest,    ///< A KRFileRq.
  kMultipart,  ///< A KRFile with a subfile for each part.
};

/// How a text is written.
enum class TextForm : u8 {
  kOfx1,  ///< OFX 1: header lines, and SGML.
  kOfx2,  ///< OFX 2: XML.
};

/// One OFX text with its tree. A file may have several, one after the other.
struct KROFX_API OfxText {
  /// The tree: a KRFileRs, KRFileRq or KRFile, as `kind` says.
  std::unique_ptr<KRFile> root;
  TextKind kind = TextKind::kResponse;
  TextForm form = TextForm::kOfx1;
  /// 0 clean; 7 read, with mendings or warnings; else why the reading ended early: see Reading.
  KRParseStatus status = KRParseStatus_Accepted;
  /// The version that its header declares, such as "102" or "220"; empty without one.
  KRString version;
  /// The character set that the texts in the tree are in, by the name that iconv knows: the one
  /// that the text was found to be in, whatever its header says.
  KRString charset;
  /// Where it begins.
  Place place;

  /// A text of the tree as a person would read it, in UTF-8: converted from `charset`, with
  /// character references and CDATA sections that the tree still holds resolved, and without
  /// control characters. What the character set does not have becomes U+FFFD.
  /// @return the text; empty, with the fire alarm raised, when memory is exhausted.
  KRString ToUtf8(const KRString& text) const;
};

/// A warning: something that is out of order and was not mended.
struct ReadWarning {
  KRParseWarning warning = KRPW_UNKNOWNEXCEPTION;  ///< What it is about.
  Place place;                                     ///< Line 0 for what has no place.
  std::size_t text = 0;                            ///< Which of the texts, counted from 0.
  KRTagID tag = KRTag_None;                        ///< The tag; KRTag_None when none applies.
  KRString tagText;  ///< The tag, or the header field, as text; empty when none applies.
  KRString path;     ///< As of a mending.
  KRString value;    ///< What gave offence; stars when it is a password.
};

/// How to read.
struct ReadOptions {
  /// Nothing is mended: the result is that of KRSimpleParser or KRMIMEParser, with places.
  bool strict = false;
  /// What may be mended. At the first damage of any other kind the reading ends with status 4, as a
  /// strict parse does; what was read up to there stays.
  MendingKinds mend = MendingKinds::All();
  /// How many mendings and how many warnings are kept. More are counted only.
  std::size_t maxRecords = 100000;
  /// How many texts of one file are read.
  std::size_t maxTexts = 10000;
};

/// The result of a reading. It owns the trees. Can be moved, not copied.
struct KROFX_API Reading {
  Reading() = default;
  Reading(Reading&& other) noexcept;
  Reading& operator=(Reading&& other) noexcept;

  /// @return whether the file was read, to its end or with parts of it mended: status 0 or 7.
  bool IsRead() const {
    return status == KRParseStatus_Accepted || status == KRParseStatus_Warnings;
  }
  /// @return what the first text holds; nothing when there is no OFX in the file.
  std::optional<TextKind> Kind() const;
  /// @return the first response, be it a text of its own or a part of a multipart one. It stays
  ///         this object's; null when there is none.
  KRFileRs* Response() const KROFX_LIFETIME_BOUND;
  /// The same for the first request.
  KRFileRq* Request() const KROFX_LIFETIME_BOUND;
  /// All that was out of order, mended or not, in the order of the file.
  /// @return all of it; with the fire alarm raised, as much as memory sufficed for.
  List<ReadNote> Warnings() const;
  /// @return all that the trees lack, in the order of the file: see FindMissing.
  List<MissingTag> Missing() const;

  /// 0 clean: read, and nothing was out of order. 7 read, with mendings or warnings. 4 the text is
  /// not OFX, or ends early where nothing may be mended; `problem` says what it is. 3 exhausted
  /// memory, or a list with more than 65535 entries. What was read stays, whatever the status. Of
  /// several texts the gravest: 3, then 4 to 6, then 7. With ReadOptions::strict: as
  /// KRSimpleParser::Parse.
  KRParseStatus status = KRParseStatus_Accepted;
  /// The tree of the first text; null when there is no OFX in it. It belongs to `texts`.
  KRFile* root = nullptr;
  /// All texts, in order.
  List<OfxText> texts;
  /// What is out of order and was not mended, in the order of the file.
  List<ReadWarning> warnings;
  /// What was mended, in the order of the file.
  List<Mending> mendings;
  /// How many mendings and warnings there were beyond ReadOptions::maxRecords.
  std::size_t unrecorded = 0;
  /// Why the file cannot be used, or only in part, and what to do: one English sentence without a
  /// capital letter and a full stop. Empty when it can.
  KRString problem;
};

/// Reads a text that is in memory. Warnings of the calling thread's log are deleted.
/// @param bytes any bytes; what is beyond 2^31 - 1 of them is not looked at.
KROFX_API Reading Read(std::string_view bytes, const ReadOptions& options = {});
/// Reads a text without copying it. A buffer of a derived class is read through its GetCh.
KROFX_API Reading Read(KRBuffer& buffer, const ReadOptions& options = {});
/// Reads a file. One that cannot be opened or read gives status 4 and a problem that says why.
KROFX_API Reading ReadFile(const char* path, const ReadOptions& options = {});
/// Would be the text or the name of a file: say Read(std::string_view(text)) or ReadFile(name).
Reading Read(const char*, const ReadOptions& = {}) = delete;

/// Reads a file that a std::filesystem::path names.
template <class Path>
requires requires(const Path& path) { path.lexically_normal().c_str(); }
Reading Read(const Path& path, const ReadOptions& options = {}) {
  return ReadFile(path.c_str(), options);
}

}  // namespace krofx

#endif  // KROFX_READER_READING_H_
