// The log of a parse: what was skipped or doubtful in the text, as a list of records.
//
// The library throws nothing. A "parse exception" here is the record of one warning: what happened,
// at which tag and object, and the text that gave offence. Each attached thread (thread.h) has one
// KRParseLogger, so that any code on the thread, from the tokenizer to the setter of a date, can
// warn without having the parser at hand. The host reads the list after the parse. Warnings raised
// outside a parse collect in the same list, until the next parser is made or a parse starts.
//
// Secrets. The value text of a record for a password tag (USERPASS, NEWUSERPASS, ONETIMEPASS) is
// stars, one for each character, whatever was passed. internal::LogFixedText is the one way round
// that, for wordings of the library's own.

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
  /// The object in which it happened, or null. Not owned; dangles once the object is gone.
  KRDataObj* m_object = nullptr;
  /// The tag as text; empty when none applies.
  KRString m_tagText;
  /// The tag; KRTag_None when none applies.
  KRTagID m_tag = KRTag_None;
  /// The value that gave offence; empty when none applies, stars when it is a password.
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

/// Hears of the records that a logger stores: for a parser, which knows the place in the text.
class WarningListener {
 public:
  /// Called after the storing. Must not change the log.
  virtual void OnStored(const KRParseException& exception) = 0;

 protected:
  ~WarningListener() = default;
};

/// Logs a warning on the calling thread's logger, as AppendParseException does; with no logger it
/// is lost. The way for the library's own code, since a thread may have no logger.
/// @return as AppendParseException; 0 with no logger.
KROFX_API u16 LogWarning(KRParseWarning warning, const KRString& value, const KRString& tagText,
                         KRTagID tag, KRDataObj* object);

/// The same with a value text that is a fixed wording of the library and never comes from input or
/// from the host: it is kept as it is, for a password tag too ("Password too long").
KROFX_API u16 LogFixedText(KRParseWarning warning, const char* wording, const KRString& tagText,
                           KRTagID tag, KRDataObj* object);
}  // namespace krofx::internal

/// The warnings of one thread, with its fire alarm. A host may also make loggers of its own, to
/// copy a thread's warnings into.
class KROFX_API KRParseLogger : public KRDynamicArrayParseException {
 public:
  /// An empty log with logging enabled, no buffer and no parser, and the fire alarm clear.
  KRParseLogger();
  ~KRParseLogger() override;
  KRParseLogger(const KRParseLogger&) = delete;
  KRParseLogger& operator=(const KRParseLogger&) = delete;

  /// The calling thread's logger. It belongs to the thread's attachment and goes with it. A thread
  /// that the library has not met yet is attached by this call.
  /// @return null for a thread that was detached, or when memory did not suffice to attach it.
  static KRParseLogger* TheKRParseLogger();

  /// Logs a warning. The record's object is `object`, or, when that is null, the object that
  /// the parser is filling; its offset is the buffer's cursor.
  ///
  /// @param warning what happened.
  /// @param value the text that gave offence; for a password tag only its length is kept.
  /// @param tagText the tag as text; may be empty.
  /// @param tag the tag; may be KRTag_None.
  /// @param object where it happened; may be null; not owned.
  /// @return 1 when it was stored or logging is disabled; 0 when the warning is lost: memory did
  ///         not suffice, and then the fire alarm is raised, or 65535 records are there.
  u16 AppendParseException(KRParseWarning warning, KRString value, KRString tagText, KRTagID tag,
                           KRDataObj* object);

  /// Logs a ready-made record, which the logger owns from here on if the result is 1 and logging
  /// is enabled; otherwise it stays the caller's. With a buffer set and no offset in the record the
  /// offset is filled in, and for a password tag the value text becomes stars.
  ///
  /// @return 1 when it was stored or logging is disabled; 0 for null, and when it was not stored
  ///         for one of the reasons above.
  u16 AppendParseException(KRParseException* exception);

  /// Switches storing on (1) or off (0). With storing off a warning is noted as seen
  /// (GetAnyParseExceptionsLogged) and otherwise dropped.
  void EnableLogging(u16 enable);
  /// 1 when warnings are stored.
  u16 GetLoggingEnabled() const;
  /// 1 when a warning has come since the log was last emptied, stored or not.
  u16 GetAnyParseExceptionsLogged() const;

  /// Names the buffer that is being parsed, from which records take their offset; null for none.
  /// Not owned. A buffer that is destroyed takes itself out.
  void SetBuffer(KRBuffer* buffer);
  /// Names the parser at work, from which records take their object; null for none. Not owned. A
  /// parser that is destroyed takes itself out.
  void SetParser(KRParser* parser);
  /// Makes `listener` hear of each record from now on; null for none. Not owned.
  /// @return the listener before it.
  krofx::internal::WarningListener* SetListener(krofx::internal::WarningListener* listener);

  /// Adds copies of all records of `source` to this log, and takes over the source's two flags.
  /// What this log already holds stays. When the source's logging is disabled so is this log's
  /// from then on, and no records are copied.
  ///
  /// @return 1; 0 when `source` is null, memory did not suffice (the fire alarm is raised), or
  ///         65535 records are there.
  u16 DeepCopyFrom(KRParseLogger* source);

  /// Deletes all records and forgets that any warning came. The logging flag stays.
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
  // A full list is no shortage of memory: it raises no alarm, and the parse need not fail for it.
  bool IsFull() const;

  u16 m_loggingEnabled = 1;
  u16 m_anyLogged = 0;
  krofx::internal::LoggerSubjects m_subjects;
  krofx::internal::WarningListener* m_listener = nullptr;
  krofx::internal::HeldWarnings* m_holder = nullptr;
  KRFireAlarm m_fireAlarm = KRFireAlarm_None;
};

namespace krofx::internal {

/// Whether the value of a tag must never be seen: a password of any kind.
KROFX_API bool IsSecret(KRTagID tag) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_PARSE_LOGGER_H_
