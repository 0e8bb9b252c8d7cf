// The log of a parse: its records, its flags, and how buffers and parsers that are destroyed take
// themselves out of it.

#include "krofx/core/parse_logger.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <mutex>

#include "krofx/core/buffer.h"

namespace {

constexpr char const* kWarningNames[] = {
    "KRPW_UNKNOWNEXCEPTION", "KRPW_UNKNOWNTAG",    "KRPW_INVALIDAGG", "KRPW_INVALIDELEM",
    "KRPW_BADFORMAT",        "KRPW_OUTOFRANGE",    "KRPW_TOOLONG",    "KRPW_SKIPFAILED",
    "KRPW_NULLPOINTER",      "KRPW_INVALIDENDAGG", "KRPW_MISSINGTAG", "KRPW_LOWERCASE",
    "KRPW_EXTRAAGG",         "KRPW_EMPTYELEM",
};

// Overwrites the text where it stands, so that no copy of a secret is left in freed memory.
void TurnIntoStars(KRString& text) {
  const u16 length = text.GetStrLength();
  text.Clear('*');
  text.Truncate(length);
}

}  // namespace

namespace krofx::internal {

KRDataObj* (*currentObjectOf)(KRParser*) = nullptr;

// The loggers that name a buffer or a parser, of all threads. A buffer may be destroyed on another
// thread than the one that parsed it, so what a logger names is read and written under the lock.
struct LoggersInUse {
  static constinit std::mutex mutex;
  static constinit std::atomic<KRParseLogger*> first;

  // Puts the logger in or takes it out, as it names something or not. The lock is held.
  static void Update(KRParseLogger& logger) {
    const bool inUse = logger.m_buffer != nullptr || logger.m_parser != nullptr;
    if (inUse == logger.m_inUse) return;
    logger.m_inUse = inUse;
    KRParseLogger* head = first.load(std::memory_order_relaxed);
    if (inUse) {
      logger.m_nextInUse = head;
      first.store(&logger, std::memory_order_release);
    } else if (head == &logger) {
      first.store(logger.m_nextInUse, std::memory_order_release);
    } else {
      KRParseLogger* before = head;
      while (before->m_nextInUse != &logger) before = before->m_nextInUse;
      before->m_nextInUse = logger.m_nextInUse;
    }
  }

  template <class Named>
  static void Name(KRParseLogger& logger, Named* KRParseLogger::*member, Named* named) {
    const std::lock_guard lock(mutex);
    logger.*member = named;
    Update(logger);
  }

  template <class Named>
  static void Forget(Named* KRParseLogger::*member, Named const* named) {
    if (first.load(std::memory_order_acquire) == nullptr) return;
    const std::lock_guard lock(mutex);
    KRParseLogger* next = nullptr;
    for (KRParseLogger* logger = first.load(std::memory_order_relaxed); logger != nullptr;
         logger = next) {
      next = logger->m_nextInUse;
      if (logger->*member != named) continue;
      logger->*member = nullptr;
      Update(*logger);
    }
  }

  static void Leave(KRParseLogger& logger) {
    const std::lock_guard lock(mutex);
    logger.m_buffer = nullptr;
    logger.m_parser = nullptr;
    Update(logger);
  }

  static void ForgetBuffer(KRBuffer const* buffer) { Forget(&KRParseLogger::m_buffer, buffer); }
  static void ForgetParser(KRParser const* parser) { Forget(&KRParseLogger::m_parser, parser); }
};

constinit std::mutex LoggersInUse::mutex;
constinit std::atomic<KRParseLogger*> LoggersInUse::first = nullptr;

void ForgetInLoggers(KRBuffer const* buffer) noexcept { LoggersInUse::ForgetBuffer(buffer); }
void ForgetInLoggers(KRParser const* parser) noexcept { LoggersInUse::ForgetParser(parser); }

bool IsSecret(KRTagID tag) noexcept {
  return tag == KRTag_USERPASS || tag == KRTag_NEWUSERPASS || tag == KRTag_ONETIMEPASS;
}

u16 LogWarning(KRParseWarning warning, KRString const& value, KRString const& tagText, KRTagID tag,
               KRDataObj* object) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  if (logger == nullptr) return 0;
  return logger->AppendParseException(warning, value, tagText, tag, object);
}

u16 LogFixedText(KRParseWarning warning, char const* wording, KRString const& tagText, KRTagID tag,
                 KRDataObj* object) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  return logger == nullptr ? u16{0} : logger->Log(warning, wording, tagText, tag, object);
}

}  // namespace krofx::internal

using krofx::internal::LoggersInUse;

void KRParseException::WarningString(KRString& text) const {
  text = m_warning < std::size(kWarningNames) ? kWarningNames[m_warning] : kWarningNames[0];
}

KRParseLogger::KRParseLogger() : KRDynamicArrayParseException(1, 1) {}

KRParseLogger::~KRParseLogger() { LoggersInUse::Leave(*this); }

u16 KRParseLogger::AppendParseException(KRParseWarning warning, KRString value, KRString tagText,
                                        KRTagID tag, KRDataObj* object) {
  if (krofx::internal::IsSecret(tag)) TurnIntoStars(value);
  return Log(warning, value, tagText, tag, object);
}

u16 KRParseLogger::Log(KRParseWarning warning, KRString const& value, KRString const& tagText,
                       KRTagID tag, KRDataObj* object) {
  m_anyLogged = 1;
  if (m_loggingEnabled == 0) return 1;
  if (IsFull()) return 0;

  KRParseException* exception = krofx::internal::Elements().newParseException();
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

bool KRParseLogger::IsFull() const { return Entries() > krofx::internal::SlotBlock::kMaxIndex; }

u16 KRParseLogger::AppendParseException(KRParseException* exception) {
  if (exception == nullptr) return 0;
  if (krofx::internal::IsSecret(exception->m_tag)) TurnIntoStars(exception->m_valueText);
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
  const std::lock_guard lock(LoggersInUse::mutex);
  if (withObject && exception->m_object == nullptr && m_parser != nullptr &&
      krofx::internal::currentObjectOf != nullptr) {
    exception->m_object = krofx::internal::currentObjectOf(m_parser);
  }
  if (m_buffer != nullptr) {
    constexpr u32 kLargestOffset = std::numeric_limits<s32>::max();
    exception->m_offset = static_cast<s32>(std::min(m_buffer->GetBufferOffset(), kLargestOffset));
  }
}

bool KRParseLogger::PutLast(KRParseException* exception) {
  if (Set(Entries(), exception) == 0) return false;
  if (m_listener != nullptr) m_listener->OnStored(*exception);
  return true;
}

void KRParseLogger::EnableLogging(u16 enable) { m_loggingEnabled = enable != 0 ? 1 : 0; }

u16 KRParseLogger::GetLoggingEnabled() const { return m_loggingEnabled; }

u16 KRParseLogger::GetAnyParseExceptionsLogged() const { return m_anyLogged; }

void KRParseLogger::SetBuffer(KRBuffer* buffer) {
  LoggersInUse::Name(*this, &KRParseLogger::m_buffer, buffer);
}

void KRParseLogger::SetParser(KRParser* parser) {
  LoggersInUse::Name(*this, &KRParseLogger::m_parser, parser);
}

krofx::internal::WarningListener* KRParseLogger::SetListener(
    krofx::internal::WarningListener* listener) {
  krofx::internal::WarningListener* before = m_listener;
  m_listener = listener;
  return before;
}

u16 KRParseLogger::DeepCopyFrom(KRParseLogger* source) {
  if (source == nullptr) return 0;
  m_anyLogged = source->m_anyLogged;
  m_loggingEnabled = source->m_loggingEnabled;
  // Counted once, so that a log copied into itself ends.
  const u16 count = source->Entries();
  for (u16 i = 0; i < count; ++i) {
    KRParseException const* original = source->Get(i);
    if (original == nullptr) continue;
    if (m_loggingEnabled == 0) {
      m_anyLogged = 1;
      break;
    }
    KRParseException* copy = krofx::internal::Elements().newParseException();
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
