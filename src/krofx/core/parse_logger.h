// The log of a parse: what was skipped or doubtful in the text, as a list of records.
//
// The library throws nothing. A "parse exception" here is the record of one warning: what happened,
// at which tag and object, and the offending text. Each attached thread (thread.h) has one
// KRParseLogger, so that any code on the thread, from the tokenizer to the setter of a date, can
// log a warning without access to the parser. The host reads the list after the parse. Warnings
// raised outside a parse collect in the same list, until the next parser is made or a parse starts.
//
// Secrets. The value text of a record for a password tag (USERPASS, NEWUSERPASS, ONETIMEPASS,
// TEMPPASS, USERKEY) is stars, one for each character, whatever was passed. Only
// internal::LogFixedText stores its text as it is; that text is always one of the library's own
// messages.

#ifndef KROFX_CORE_PARSE_LOGGER_H_
#define KROFX_CORE_PARSE_LOGGER_H_

#include "krofx/core/array.h"
#include "krofx/core/export.h"
#include "krofx/core/internal/logger_subjects.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/core/thread.h"
#include "krofx/core/types.h"

class KRBuffer;
class KRDataObj;
class KRParseLogger;
class KRParser;

/// What a warning is about.
enum KRParseWarning : u32 {
  KRPW_UNKNOWNEXCEPTION = 0,  ///< nothing yet: the default of a new record
  KRPW_UNKNOWNTAG = 1,        ///< a tag that is not in the dictionary, or an unreadable item
  KRPW_INVALIDAGG = 2,        ///< an aggregate that is not allowed here or that its parent refused
  KRPW_INVALIDELEM = 3,       ///< an element that is not allowed here or that its object refused
  KRPW_BADFORMAT = 4,         ///< a value, a header or a run of text that cannot be understood
  KRPW_OUTOFRANGE = 5,        ///< a number beyond its type
  KRPW_TOOLONG = 6,           ///< a text longer than the OFX standard allows for its element
  KRPW_SKIPFAILED = 7,        ///< a tag that could not be skipped
  KRPW_NULLPOINTER = 8,       ///< a value that could not be stored among repeated values
  KRPW_INVALIDENDAGG = 9,     ///< an end tag that does not close the open aggregate
  KRPW_MISSINGTAG = 10,       ///< a required tag or header is absent
  KRPW_LOWERCASE = 11,        ///< a tag written in small letters
  KRPW_EXTRAAGG = 12,         ///< a second copy of a single child aggregate; it replaces the first
  KRPW_EMPTYELEM = 13,        ///< an empty element; the library itself never raises it
};

/// The record of one warning. Callers read and write the fields.
class KROFX_API KRParseException : public krofx::internal::HeapObject {
 public:
  /// Nothing recorded: KRPW_UNKNOWNEXCEPTION, no object, no tag, empty texts, offset -1.
  KRParseException() = default;
  KRParseException(const KRParseException&) = default;
  KRParseException& operator=(const KRParseException&) = default;
  virtual ~KRParseException() = default;

  /// Puts the name of the warning, such as "KRPW_BADFORMAT", into `text`. A code that is none of
  /// KRParseWarning gives "KRPW_UNKNOWNEXCEPTION".
  void WarningString(KRString& text) const;

  /// What happened.
  KRParseWarning m_warning = KRPW_UNKNOWNEXCEPTION;
  /// The object in which it happened, or null. Not owned: the pointer dangles after the object is
  /// destroyed.
  KRDataObj* m_object = nullptr;
  /// The tag as text; empty when none applies.
  KRString m_tagText;
  /// The tag; KRTag_None when none applies.
  KRTagID m_tag = KRTag_None;
  /// The offending value; empty when none applies, stars when it is a password.
  KRString m_valueText;
  /// Where the cursor of the buffer was, in bytes; -1 when there was no buffer. A parse does not
  /// move that cursor, so this does not say where in the text the warning arose.
  s32 m_offset = -1;
};

/// A growable array of warnings; owns them. See KRDynamicArray for the operations.
class KROFX_API KRDynamicArrayParseException
    : public krofx::internal::ElementArray<KRParseException> {
 public:
  using krofx::internal::ElementArray<KRParseException>::ElementArray;
  /// Destroys all records and gives the memory back. The array can be used again.
  void DeleteAll() override { ElementArray::DeleteAll(); }
};

namespace krofx::internal {
class HeldWarnings;
struct ThreadAccess;

/// Is notified of each record that a logger stores. A parser uses this to add the place in the
/// text.
class WarningListener {
 public:
  /// Called after a record has been stored. Must not change the log.
  virtual void OnStored(const KRParseException& exception) = 0;

 protected:
  ~WarningListener() = default;
};

/// Logs a warning on the calling thread's logger, as AppendParseException does. When the thread has
/// no logger the warning is lost. The library's own code logs through this function.
/// @return as AppendParseException; 0 with no logger.
KROFX_API u16 LogWarning(KRParseWarning warning, const KRString& value, const KRString& tagText,
                         KRTagID tag, KRDataObj* object);

/// The same with a value text that is a fixed message of the library ("Password too long") and
/// never comes from input or from the host: it is stored as it is, even for a password tag.
KROFX_API u16 LogFixedText(KRParseWarning warning, const char* wording, const KRString& tagText,
                           KRTagID tag, KRDataObj* object);
}  // namespace krofx::internal

/// The warnings of one thread, with its fire alarm. A host may also make loggers of its own and
/// copy a thread's warnings into them.
class KROFX_API KRParseLogger : public KRDynamicArrayParseException {
 public:
  /// An empty log with logging enabled, no buffer and no parser, and the fire alarm clear.
  KRParseLogger();
  ~KRParseLogger() override;
  KRParseLogger(const KRParseLogger&) = delete;
  KRParseLogger& operator=(const KRParseLogger&) = delete;

  /// The calling thread's logger. It is destroyed when the thread is detached. A thread that has
  /// never been attached is attached by this call.
  /// @return the logger; null for a thread that was detached, and when there is not enough memory
  ///         to attach it.
  static KRParseLogger* TheKRParseLogger();

  /// Logs a warning. The record's object is `object`, or, when that is null, the object that
  /// the parser is filling; its offset is the buffer's cursor.
  ///
  /// @param warning what happened.
  /// @param value the offending text; for a password tag only its length is kept.
  /// @param tagText the tag as text; may be empty.
  /// @param tag the tag; may be KRTag_None.
  /// @param object where it happened; may be null; not owned.
  /// @return 1 when it was stored or logging is disabled; 0 when the warning is lost, because
  ///         memory is exhausted (the fire alarm is raised then) or the log has 65535 records.
  u16 AppendParseException(KRParseWarning warning, KRString value, KRString tagText, KRTagID tag,
                           KRDataObj* object);

  /// Logs a finished record. If the result is 1 and logging is enabled the logger owns the record;
  /// otherwise it still belongs to the caller. The offset is filled in when a buffer is set and the
  /// record has none. For a password tag the value text becomes stars.
  ///
  /// @return 1 when it was stored or logging is disabled; 0 for null, when memory is exhausted, and
  ///         when the log has 65535 records.
  u16 AppendParseException(KRParseException* exception);

  /// Switches the storing of records on (1) or off (0). While it is off,
  /// GetAnyParseExceptionsLogged still notes each warning, but no record is stored.
  void EnableLogging(u16 enable);
  /// @return 1 when warnings are stored.
  u16 GetLoggingEnabled() const;
  /// @return 1 when a warning has come since the log was last emptied, stored or not.
  u16 GetAnyParseExceptionsLogged() const;

  /// Sets the buffer that is being parsed, from which records take their offset; null for none. Not
  /// owned. A buffer that is destroyed is removed from all loggers.
  void SetBuffer(KRBuffer* buffer);
  /// Sets the parser at work, from which records take their object; null for none. Not owned. A
  /// parser that is destroyed is removed from all loggers.
  void SetParser(KRParser* parser);
  /// Notifies `listener` of each record from now on; null for none. Not owned.
  /// @return the previous listener.
  krofx::internal::WarningListener* SetListener(krofx::internal::WarningListener* listener);

  /// Adds copies of all records of `source` to this log, and copies the source's two flags. Records
  /// that this log already has stay. When the source's logging is disabled, this log's is disabled
  /// too, and no records are copied.
  ///
  /// @return 1; 0 when `source` is null, memory is exhausted (the fire alarm is raised), or the log
  ///         has 65535 records.
  u16 DeepCopyFrom(KRParseLogger* source);

  /// Deletes all records and clears the flag of GetAnyParseExceptionsLogged. The logging flag
  /// stays.
  void DeleteAll() override;

 private:
  friend class krofx::internal::HeldWarnings;
  friend struct krofx::internal::ThreadAccess;
  friend u16 krofx::internal::LogFixedText(KRParseWarning warning, const char* wording,
                                           const KRString& tagText, KRTagID tag, KRDataObj* object);

  u16 Log(KRParseWarning warning, const KRString& value, const KRString& tagText, KRTagID tag,
          KRDataObj* object);
  u16 Store(KRParseException* exception);
  void AddContext(KRParseException* exception, bool withObject) const;
  bool PutLast(KRParseException* exception);
  // A full list is not a lack of memory: it raises no alarm, so it does not fail the parse.
  bool IsFull() const;

  u16 m_loggingEnabled = 1;
  u16 m_anyLogged = 0;
  krofx::internal::LoggerSubjects m_subjects;
  krofx::internal::WarningListener* m_listener = nullptr;
  krofx::internal::HeldWarnings* m_holder = nullptr;
  KRFireAlarm m_fireAlarm = KRFireAlarm_None;
};

namespace krofx::internal {

/// @return whether the value of a tag must never be seen: a password of any kind, or the key
///         that a sign-on has in place of one.
KROFX_API bool IsSecret(KRTagID tag) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_PARSE_LOGGER_H_
