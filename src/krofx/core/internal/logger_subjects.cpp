// The list of the loggers, of all threads, that refer to a buffer or a parser.

#include "krofx/core/internal/logger_subjects.h"

#include <atomic>

namespace krofx::internal {

namespace {

constinit std::atomic<LoggerSubjects*> first = nullptr;

}  // namespace

constinit std::mutex LoggerSubjects::s_mutex;

LoggerSubjects::~LoggerSubjects() {
  const std::lock_guard lock(s_mutex);
  m_buffer = nullptr;
  m_parser = nullptr;
  UpdateList();
}

void LoggerSubjects::SetBuffer(KRBuffer* buffer) {
  const std::lock_guard lock(s_mutex);
  m_buffer = buffer;
  UpdateList();
}

void LoggerSubjects::SetParser(KRParser* parser) {
  const std::lock_guard lock(s_mutex);
  m_parser = parser;
  UpdateList();
}

void LoggerSubjects::UpdateList() {
  const bool names = m_buffer != nullptr || m_parser != nullptr;
  if (names == m_listed) return;
  m_listed = names;
  LoggerSubjects* head = first.load(std::memory_order_relaxed);
  if (names) {
    m_next = head;
    first.store(this, std::memory_order_release);
  } else if (head == this) {
    first.store(m_next, std::memory_order_release);
  } else {
    LoggerSubjects* before = head;
    while (before->m_next != this) before = before->m_next;
    before->m_next = m_next;
  }
}

template <class Subject>
void LoggerSubjects::Forget(Subject* LoggerSubjects::*member, const Subject* subject) noexcept {
  if (first.load(std::memory_order_acquire) == nullptr) return;
  const std::lock_guard lock(s_mutex);
  LoggerSubjects* next = nullptr;
  for (LoggerSubjects* subjects = first.load(std::memory_order_relaxed); subjects != nullptr;
       subjects = next) {
    next = subjects->m_next;
    if (subjects->*member != subject) continue;
    subjects->*member = nullptr;
    subjects->UpdateList();
  }
}

void ForgetInLoggers(const KRBuffer* buffer) noexcept {
  LoggerSubjects::Forget(&LoggerSubjects::m_buffer, buffer);
}

void ForgetInLoggers(const KRParser* parser) noexcept {
  LoggerSubjects::Forget(&LoggerSubjects::m_parser, parser);
}

}  // namespace krofx::internal
