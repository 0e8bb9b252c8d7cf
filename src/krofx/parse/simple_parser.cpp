// The parse: the headers, the tags one by one, and at the end the search for missing tags.

#include "krofx/parse/simple_parser.h"

#include <optional>

#include "krofx/core/internal/element_source.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/parse_run.h"
#include "krofx/parse/internal/tag_pass.h"
#include "krofx/values/utility.h"

using krofx::internal::FeedUse;
using krofx::internal::HeadersAllowBody;
using krofx::internal::IsSecret;
using krofx::internal::kGoOn;
using krofx::internal::MakeElement;

KRSimpleParser::KRSimpleParser() = default;

KRSimpleParser::KRSimpleParser(const KRSimpleParser& other) : KRParser(other) { *this = other; }

KRSimpleParser& KRSimpleParser::operator=(const KRSimpleParser& other) {
  KRParser::operator=(other);
  m_engine = other.m_engine;
  m_objectWithError = other.m_objectWithError;
  m_observer = other.m_observer;
  // A parse that is running belongs to the source alone.
  return *this;
}

KRDataObj* KRSimpleParser::GetObjectWithError() { return m_objectWithError; }

u16 KRSimpleParser::SetParseTable(KRTagDictionaryEntry* /*table*/) { return 1; }

u16 KRSimpleParser::SetParseEngine(KRParseEngine* engine) {
  m_engine = engine;
  return 1;
}

s32 KRSimpleParser::GetCurrentOffset() const {
  return m_runningEngine == nullptr ? -1 : m_runningEngine->GetItemPosition();
}

KRParseLogger* KRSimpleParser::Open(KRBuffer* buffer, KRDataObj* root) {
  m_objectWithError = nullptr;
  KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  if (buffer == nullptr || root == nullptr || log == nullptr) {
    m_objectWithError = root;
    return nullptr;
  }
  SetRoot(root);
  KRSetFireAlarm(KRFireAlarm_None);
  log->DeleteAll();
  log->SetBuffer(buffer);
  log->SetParser(this);
  return log;
}

KRParseStatus KRSimpleParser::Parse(KRBuffer* buffer, KRDataObj* root, u16 checkRequired) {
  KRParseLogger* log = Open(buffer, root);
  if (log == nullptr) return KRParseStatus_Fatal;
  std::optional<KRParseEngine> ownEngine;
  KRParseEngine& engine = m_engine != nullptr ? *m_engine : ownEngine.emplace(*buffer);
  Run run(*this, *log, engine);

  KRParseStatus status = ReadHeaders(engine, *root);
  if (status == KRParseStatus_Accepted) status = ReadTags(engine);
  run.LeaveText();
  if (status != KRParseStatus_Accepted && status != KRParseStatus_Fatal) {
    m_objectWithError = GetCurrentObj();
  }
  if (checkRequired != 0) WarnOfMissingTag(root);
  if (status == KRParseStatus_Accepted && log->GetAnyParseExceptionsLogged() != 0) {
    status = KRParseStatus_Warnings;
    m_objectWithError = root;
  }
  if (KRGetFireAlarm() != KRFireAlarm_None) {
    status = KRParseStatus_Fatal;
    if (m_objectWithError == nullptr) m_objectWithError = root;
  }
  return status;
}

// Reads two blocks: a transport's headers can come before those of the file. Only the first block's
// are kept by name.
KRParseStatus KRSimpleParser::ReadHeaders(KRParseEngine& engine, KRDataObj& root) {
  KRHeaderTag tag = KRHeaderTag_None;
  KRString value;
  KRString name;
  for (KRString* takesName : {&name, static_cast<KRString*>(nullptr)}) {
    while (engine.GetHeader(tag, value, takesName) != 0) {
      const KRParseStatus status = root.HandleHeader(tag, value, takesName);
      if (status != KRParseStatus_Accepted) return status;
    }
  }
  engine.ResetToEndOfHeader();
  const KRTagID type = root.GetType();
  const bool isFile = type == KRTag_OFXFILERQ || type == KRTag_OFXFILERS;
  if (isFile && !HeadersAllowBody(root)) return KRParseStatus_Invalid;
  return KRParseStatus_Accepted;
}

KRParseStatus KRSimpleParser::ReadTags(KRParseEngine& engine) {
  TagPass pass(*this, engine);
  KRParseStatus status = kGoOn;
  do {
    status = pass.Feed<FeedUse::kTree>();
  } while (status == kGoOn && pass.TakeTag(status));
  return status;
}

// PlainFeed calls no virtual operations, so no host's class may have overridden them.
bool KRSimpleParser::MayFeed(const KRParseEngine& engine) const {
  return m_plainClass == &typeid(*this) && typeid(engine) == typeid(KRParseEngine) &&
         engine.IsOverPlainBytes();
}

KRParseStatus KRSimpleParser::NoteRefusedStart(KRParseStatus status,
                                               const KRTagDictionaryEntry& entry) {
  AppendParseException(KRPW_INVALIDAGG, KRString(), KRString(entry.text), entry.tagID,
                       GetCurrentObj());
  return status;
}

KRParseStatus KRSimpleParser::TakeStart(const KRTagDictionaryEntry& entry, KRParseEngine& engine) {
  const bool valid = IsValidTag(entry.tagID) != 0;
  const KRParseStatus status = valid ? GetCurrentObj()->HandleTagStart(&entry) : kGoOn;
  if (!valid || status != kGoOn) NoteRefusedStart(status, entry);
  if (!valid) engine.SkipCurrentTag();
  return status;
}

KRParseStatus KRSimpleParser::TakeElement(const KRTagDictionaryEntry& entry, KRString& value) {
  const bool valid = IsValidTag(entry.tagID) != 0;
  const KRParseStatus status = valid ? GetCurrentObj()->HandleTagElement(&entry, value) : kGoOn;
  // The object has its copy; a password must not be kept or shown elsewhere.
  if (IsSecret(entry.tagID)) value.Clear('*');
  if (valid && status == kGoOn) return kGoOn;
  return LogValue(KRPW_INVALIDELEM, entry, value) ? status : KRParseStatus_Fatal;
}

// Logs a warning with a value. False, with the fire alarm raised, when memory is exhausted.
bool KRSimpleParser::LogValue(KRParseWarning warning, const KRTagDictionaryEntry& entry,
                              const KRString& value) {
  KRParseException* exception = MakeElement<KRParseException>();
  if (exception == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return false;
  }
  exception->m_warning = warning;
  exception->m_tagText = entry.text;
  exception->m_tag = entry.tagID;
  exception->m_object = GetCurrentObj();
  exception->m_valueText = value;
  const KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  const bool storing = log != nullptr && log->GetLoggingEnabled() != 0;
  if (AppendParseException(exception) == 0 || !storing) delete exception;
  return true;
}

void KRSimpleParser::WarnOfMissingTag(KRDataObj* root) {
  KRDataObj* object = root;
  KRTagID missing = KRTag_None;
  if (KRUtility::AllRequiredPresent(&object, &missing) != 0) return;
  AppendParseException(KRPW_MISSINGTAG, KRString(), KRString(), missing, object);
}
