// What loggers name but do not own: the buffer that is parsed and the parser at work.
//
// A buffer or a parser that is destroyed takes itself out of all loggers. This file knows neither
// what a buffer is nor what a logger is, so both can use it.

#ifndef KROFX_CORE_INTERNAL_LOGGER_SUBJECTS_H_
#define KROFX_CORE_INTERNAL_LOGGER_SUBJECTS_H_

#include <mutex>

#include "krofx/core/export.h"

class KRBuffer;
class KRParser;

namespace krofx::internal {

/// What one logger names. A buffer may be destroyed on another thread than the one that parsed it,
/// so all of this is read and written under one lock.
class LoggerSubjects {
 public:
  LoggerSubjects() = default;
  LoggerSubjects(const LoggerSubjects&) = delete;
  LoggerSubjects& operator=(const LoggerSubjects&) = delete;
  ~LoggerSubjects();

  /// Names a buffer; null for none.
  void SetBuffer(KRBuffer* buffer);
  /// Names a parser; null for none.
  void SetParser(KRParser* parser);

  /// Calls `use(buffer, parser)` with what is named, either of which may be null. Neither can be
  /// destroyed before `use` returns.
  template <class Use>
  void With(Use use) const {
    const std::lock_guard lock(s_mutex);
    use(m_buffer, m_parser);
  }

 private:
  friend void ForgetInLoggers(const KRBuffer* buffer) noexcept;
  friend void ForgetInLoggers(const KRParser* parser) noexcept;

  // Puts this in the list of those that name something, or takes it out. The lock is held.
  void UpdateList();
  template <class Subject>
  static void Forget(Subject* LoggerSubjects::*member, const Subject* subject) noexcept;

  static std::mutex s_mutex;

  KRBuffer* m_buffer = nullptr;
  KRParser* m_parser = nullptr;
  bool m_listed = false;
  LoggerSubjects* m_next = nullptr;
};

/// Takes a buffer that is being destroyed out of all loggers. Costs one load when no logger names
/// any buffer or parser.
KROFX_API void ForgetInLoggers(const KRBuffer* buffer) noexcept;
/// Takes a parser that is being destroyed out of all loggers.
KROFX_API void ForgetInLoggers(const KRParser* parser) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_LOGGER_SUBJECTS_H_
