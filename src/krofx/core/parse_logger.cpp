// The log of a parse: its records and its flags.

#include "krofx/core/parse_logger.h"

#include <algorithm>
#include <limits>

#include "krofx/core/buffer.h"
#include "krofx/core/internal/held_warnings.h"
#include "krofx/core/internal/hooks.h"

using krofx::internal::hooks;
using krofx::internal::IsSecret;
using krofx::internal::MakeElement;
using krofx::internal::SlotBlock;
using krofx::internal::WarningListener;

namespace {

constexpr const char* kWarningNames[] = {
    "KRPW_UNKNOWNEXCEPTION", "KRPW_UNKNOWNTAG",    "KRPW_INVALIDAGG", "KRPW_INVALIDELEM",
    "KRPW_BADFORMAT",        "KRPW_OUTOFRANGE",    "KRPW_TOOLONG",    "KRPW_SKIPFAILED",
    "KRPW_NULLPOINTER",      "KRPW_INVALIDENDAGG", "KRPW_MISSINGTAG", "KRPW_LOWERCASE",
    "KRPW_EXTRAAGG",         "KRPW_EMPTYELEM",
};

// Overwrites the text in place, so that no copy of a secret is left in freed memory.
void TurnIntoStars(KRString& text) {
  const u16 length = text.GetStrLength();
  text.Clear('*');
  text.Truncate(length);
}

}  // namespace

namespace krofx::internal {

u16 LogWarning(KRParseWarning warning, const KRString& value, const KRString& tagText, KRTagID tag,
               KRDataObj* object) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  if (logger == nullptr) return 0;
  return logger->AppendParseException(warning, value, tagText, tag, object);
}

u16 LogFixedText(KRParseWarning warning, const char* wording, const KRString& tagText, KRTagID tag,
                 KRDataObj* object) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  return logger == nullptr ? u16{0} : logger->Log(warning, wording, tagText, tag, object);
}

}  // namespace krofx::internal

void KRParseException::WarningString(KRString& text) const {
  text = m_warning < std::size(kWarningNames) ? kWarningNames[m_warning] : kWarningNames[0];
}

KRParseLogger::KRParseLogger() : KRDynamicArrayParseException(1, 1) {}

KRParseLogger::~KRParseLogger() = default;

u16 KRParseLogger::AppendParseException(KRParseWarning warning, KRString value, KRString tagText,
                                        KRTagID tag, KRDataObj* object) {
  if (tag == KRTag_None && m_holder != nullptr && m_holder->Take(warning, value, tagText, object)) {
    return 1;
  }
  if (IsSecret(tag)) TurnIntoStars(value);
  return Log(warning, value, tagText, tag, object);
}

u16 KRParseLogger::Log(KRParseWarning warning, const KRString& value, const KRString& tagText,
                       KRTagID tag, KRDataObj* object) {
  m_anyLogged = 1;
  if (m_loggingEnabled == 0) return 1;
  if (IsFull()) return 0;

  KRParseException* exception = MakeElement<KRParseException>();
  if (exception != nullptr) {
    exception->m_warning = warning;
    exception->m_valueText = value;
    exception->m_tagText = tagText;
    exception->m_tag = tag;
    exception->m_object = object;
    AddContext(exception, true);
    if (PutLast(exception)) return 1;
    delete exception;
  }
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return 0;
}

bool KRParseLogger::IsFull() const { return Entries() > SlotBlock::kMaxIndex; }

u16 KRParseLogger::AppendParseException(KRParseException* exception) {
  if (exception == nullptr) return 0;
  if (IsSecret(exception->m_tag)) TurnIntoStars(exception->m_valueText);
  return Store(exception);
}

u16 KRParseLogger::Store(KRParseException* exception) {
  m_anyLogged = 1;
  if (m_loggingEnabled == 0) return 1;
  if (IsFull()) return 0;
  if (exception->m_offset == -1) AddContext(exception, false);
  if (PutLast(exception)) return 1;
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return 0;
}

void KRParseLogger::AddContext(KRParseException* exception, bool withObject) const {
  m_subjects.With([&](KRBuffer* buffer, KRParser* parser) {
    const auto currentObjectOf = hooks.currentObjectOf;
    if (withObject && exception->m_object == nullptr && parser != nullptr &&
        currentObjectOf != nullptr) {
      exception->m_object = currentObjectOf(*parser);
    }
    if (buffer != nullptr) {
      constexpr u32 kLargestOffset = std::numeric_limits<s32>::max();
      exception->m_offset = static_cast<s32>(std::min(buffer->GetBufferOffset(), kLargestOffset));
    }
  });
}

bool KRParseLogger::PutLast(KRParseException* exception) {
  if (Set(Entries(), exception) == 0) return false;
  if (m_listener != nullptr) m_listener->OnStored(*exception);
  return true;
}

void KRParseLogger::EnableLogging(u16 enable) { m_loggingEnabled = enable != 0 ? 1 : 0; }

u16 KRParseLogger::GetLoggingEnabled() const { return m_loggingEnabled; }

u16 KRParseLogger::GetAnyParseExceptionsLogged() const { return m_anyLogged; }

void KRParseLogger::SetBuffer(KRBuffer* buffer) { m_subjects.SetBuffer(buffer); }

void KRParseLogger::SetParser(KRParser* parser) { m_subjects.SetParser(parser); }

WarningListener* KRParseLogger::SetListener(WarningListener* listener) {
  WarningListener* before = m_listener;
  m_listener = listener;
  return before;
}

u16 KRParseLogger::DeepCopyFrom(KRParseLogger* source) {
  if (source == nullptr) return 0;
  m_anyLogged = source->m_anyLogged;
  m_loggingEnabled = source->m_loggingEnabled;
  // Read once, so that copying a log into itself ends.
  const u16 count = source->Entries();
  for (u16 i = 0; i < count; ++i) {
    const KRParseException* original = source->Get(i);
    if (original == nullptr) continue;
    if (m_loggingEnabled == 0) {
      m_anyLogged = 1;
      break;
    }
    KRParseException* copy = MakeElement<KRParseException>();
    if (copy == nullptr) {
      KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
      return 0;
    }
    *copy = *original;
    if (Store(copy) == 0) {
      delete copy;
      return 0;
    }
  }
  return 1;
}

void KRParseLogger::DeleteAll() {
  KRDynamicArrayParseException::DeleteAll();
  m_anyLogged = 0;
}
