// What a stream keeps of its warnings.

#ifndef KROFX_STREAM_INTERNAL_RECORD_KEEPER_H_
#define KROFX_STREAM_INTERNAL_RECORD_KEEPER_H_

#include <cstddef>
#include <utility>

#include "krofx/core/list.h"
#include "krofx/core/thread.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/stream_listener.h"

namespace krofx::internal {

/// @return the record of a warning, without its place and path.
ReadWarning RecordOf(const KRParseException& warning);

/// Hands warnings to the listener, and keeps the first ones.
class RecordKeeper {
 public:
  explicit RecordKeeper(std::size_t most) : m_most(most) {}

  void SetListener(StreamListener* listener) { m_listener = listener; }
  void Add(ReadWarning warning) {
    m_any = true;
    if (m_listener != nullptr) m_listener->OnWarning(warning);
    if (m_warnings.size() >= m_most) {
      ++m_unkept;
    } else if (!m_warnings.Append(std::move(warning))) {
      KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    }
  }
  /// Keeps a warning for AddDeferred: it comes after elements that are still to be handed out.
  void Defer(ReadWarning warning) {
    if (!m_deferred.Append(std::move(warning))) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  }
  /// Adds the warnings that were deferred.
  void AddDeferred() {
    for (ReadWarning& warning : m_deferred) Add(std::move(warning));
    m_deferred.Clear();
  }
  /// @return whether anything was added.
  bool Any() const { return m_any; }
  const List<ReadWarning>& Warnings() const { return m_warnings; }
  /// @return how many were not kept.
  std::size_t Unkept() const { return m_unkept; }

 private:
  std::size_t m_most;
  StreamListener* m_listener = nullptr;
  List<ReadWarning> m_warnings;
  std::size_t m_unkept = 0;
  bool m_any = false;
  List<ReadWarning> m_deferred;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_RECORD_KEEPER_H_
