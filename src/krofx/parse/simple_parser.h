// The object-tree parser: fills a tree of data objects from the text of a buffer.
//
// It gives the header lines to the root, then each tag of the engine to the current object, and
// ends with a status and the warnings in the thread's log. All knowledge of OFX is in the objects:
// the parser enforces validity, nesting and the closing rules. A tag that is out of place is warned
// about and skipped; only what an object refuses stops a parse.

#ifndef KROFX_PARSE_SIMPLE_PARSER_H_
#define KROFX_PARSE_SIMPLE_PARSER_H_

#include <typeinfo>

#include "krofx/core/export.h"
#include "krofx/core/status.h"
#include "krofx/core/types.h"
#include "krofx/model/parser.h"

class KRBuffer;
class KRParseEngine;
struct KRTagDictionaryEntry;

/// Is called for each warning of a parse when it is stored in the log, with its place in the text.
/// The record does not have that place: it has only the buffer's cursor, which a parse does not
/// move. While logging is disabled, or the log is full (65535 records), there are no calls.
class KROFX_API KRWarningObserver {
 public:
  /// Called on the parsing thread. Must not start a parse or change the log.
  /// @param warning the record; valid during the call.
  /// @param position where the tag or header line at fault begins in the buffer, counted in bytes
  ///        from 0; -1 for a warning without a place, such as that of a missing required tag.
  virtual void OnWarning(const KRParseException& warning, s32 position) = 0;

 protected:
  ~KRWarningObserver() = default;
};

/// Parses OFX text into a tree of objects. It can be used several times; after a parse that failed
/// it keeps its stack, see KRParser::GetDepth.
class KROFX_API KRSimpleParser : public KRParser {
 public:
  /// Makes a parser that uses an engine of its own for each parse.
  KRSimpleParser();
  /// Copies everything, the borrowed engine and observer too.
  KRSimpleParser(const KRSimpleParser& other);
  /// As the copy constructor.
  KRSimpleParser& operator=(const KRSimpleParser& other);

  /// Reads header lines and tags from `buffer` into `root`, up to the first end tag "OFX" or the
  /// end of the text. Empties the thread's warnings first, and lowers its fire alarm. What was read
  /// stays in the tree, whatever the status.
  ///
  /// @param buffer the text; its cursor is not used and does not move.
  /// @param root takes the headers and the outermost tags. The caller keeps owning it.
  /// @param checkRequired not 0 to search the tree for the first required tag that is missing, also
  ///        after a parse that failed; a missing one gives a KRPW_MISSINGTAG warning.
  /// @return 0 clean; 7 finished, with warnings; 3 exhausted memory, a null argument or a thread
  ///         that is not attached; 4 a refused header or tag, or a text that ends with aggregates
  ///         open; 5 an end tag of another aggregate; 6 more than KRParser::kMaxDepth open
  ///         aggregates; or another status that an object returned.
  KRParseStatus Parse(KRBuffer* buffer, KRDataObj* root, u16 checkRequired) override;

  /// @return the object that stopped the last parse; the root when a finished parse had warnings or
  ///         memory was exhausted; null after a clean one.
  virtual KRDataObj* GetObjectWithError();
  /// Does nothing.
  /// @return 1.
  virtual u16 SetParseTable(KRTagDictionaryEntry* table);
  /// Makes later parses read from `engine`, from its cursors on. The caller keeps owning it. With
  /// null the parser makes an engine for each parse again.
  /// @return 1.
  virtual u16 SetParseEngine(KRParseEngine* engine);

  /// Makes later parses call `observer` for their warnings; null for none. The caller keeps owning
  /// it.
  void SetWarningObserver(KRWarningObserver* observer) { m_observer = observer; }
  /// @return where the tag or header line that is being handled begins in the buffer; -1 outside a
  ///         parse.
  s32 GetCurrentOffset() const;

 protected:
  class Run;
  class TagPass;

  /// The first step of every parse: makes `root` current, empties the thread's log, lowers its fire
  /// alarm.
  /// @return the thread's log; null for a null argument or a thread that is not attached.
  KRParseLogger* Open(KRBuffer* buffer, KRDataObj* root);
  /// @return the engine that SetParseEngine gave, or null.
  KRParseEngine* GetParseEngine() const { return m_engine; }
  /// Reads the header lines into the root, and judges whether they allow its body to be read.
  /// @return 0, or the status with which the parse ends.
  KRParseStatus ReadHeaders(KRParseEngine& engine, KRDataObj& root);
  /// Logs the first required tag that is missing in the tree, if there is one.
  void WarnOfMissingTag(KRDataObj* root);
  /// For the constructors of library classes that override no operation that reads tags, or only
  /// those whose work PlainFeed reports to its watcher: parsers of exactly this class may use
  /// PlainFeed.
  void SetPlainClass(const std::type_info& type) { m_plainClass = &type; }

 private:
  KRParseStatus ReadTags(KRParseEngine& engine);
  bool MayFeed(const KRParseEngine& engine) const;
  KRParseStatus NoteRefusedStart(KRParseStatus status, const KRTagDictionaryEntry& entry);
  KRParseStatus TakeStart(const KRTagDictionaryEntry& entry, KRParseEngine& engine);
  KRParseStatus TakeElement(const KRTagDictionaryEntry& entry, KRString& value);
  bool LogValue(KRParseWarning warning, const KRTagDictionaryEntry& entry, const KRString& value);

  KRParseEngine* m_engine = nullptr;
  KRDataObj* m_objectWithError = nullptr;
  KRWarningObserver* m_observer = nullptr;
  const KRParseEngine* m_runningEngine = nullptr;
  const std::type_info* m_plainClass = &typeid(KRSimpleParser);
};

#endif  // KROFX_PARSE_SIMPLE_PARSER_H_
