// The buffer and the parser that a logger refers to but does not own.
//
// When a buffer or a parser is destroyed it is removed from all loggers. This file depends on
// neither buffers nor loggers, so both can use it.

#ifndef KROFX_CORE_INTERNAL_LOGGER_SUBJECTS_H_
#define KROFX_CORE_INTERNAL_LOGGER_SUBJECTS_H_

#include <mutex>

#include "krofx/core/export.h"

class KRBuffer;
class KRParser;

namespace krofx::internal {

/// The buffer and parser of one logger. A buffer may be destroyed on a different thread from the
/// one that parsed it, so everything here is read and written under one lock.
class LoggerSubjects {
 public:
  LoggerSubjects() = default;
  LoggerSubjects(const LoggerSubjects&) = delete;
  LoggerSubjects& operator=(const LoggerSubjects&) = delete;
  ~LoggerSubjects();

  /// Sets the buffer; null for none.
  void SetBuffer(KRBuffer* buffer);
  /// Sets the parser; null for none.
  void SetParser(KRParser* parser);

  /// Calls `use(buffer, parser)`; either may be null. Neither can be destroyed before `use`
  /// returns.
  template <class Use>
  void With(Use use) const {
    const std::lock_guard lock(s_mutex);
    use(m_buffer, m_parser);
  }

 private:
  friend void ForgetInLoggers(const KRBuffer* buffer) noexcept;
  friend void ForgetInLoggers(const KRParser* parser) noexcept;

  // Adds this to the list of those with a buffer or a parser, or removes it. Called under the lock.
  void UpdateList();
  template <class Subject>
  static void Forget(Subject* LoggerSubjects::*member, const Subject* subject) noexcept;

  static std::mutex s_mutex;

  KRBuffer* m_buffer = nullptr;
  KRParser* m_parser = nullptr;
  bool m_listed = false;
  LoggerSubjects* m_next = nullptr;
};

/// Removes a buffer that is being destroyed from all loggers. Costs one load when no logger has a
/// buffer or a parser.
KROFX_API void ForgetInLoggers(const KRBuffer* buffer) noexcept;
/// Removes a parser that is being destroyed from all loggers.
KROFX_API void ForgetInLoggers(const KRParser* parser) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_LOGGER_SUBJECTS_H_
