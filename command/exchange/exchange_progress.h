// How far an exchange has come, on standard error, for a person who waits for it.

#ifndef KROFX_COMMAND_EXCHANGE_EXCHANGE_PROGRESS_H_
#define KROFX_COMMAND_EXCHANGE_EXCHANGE_PROGRESS_H_

#include <chrono>
#include <string>

#include "krofx/transport/contract/net_access.h"

namespace krofx::command {

/// Shows the exchange of an access object when standard error is a terminal. The line is gone when
/// the object is. Only one may exist at a time, since a transport gives no context to its callback.
class ExchangeProgress {
 public:
  /// @param where what the line calls the server.
  ExchangeProgress(KRNetAccess& access, std::string where);
  ~ExchangeProgress();
  ExchangeProgress(const ExchangeProgress&) = delete;
  ExchangeProgress& operator=(const ExchangeProgress&) = delete;

 private:
  static void Take(KROpCode code, void* a, void* b);
  void Show(KROpCode code, std::size_t done, std::size_t all);

  static ExchangeProgress* s_current;

  KRNetAccess& m_access;
  std::string m_where;
  bool m_shown = false;
  KROpCode m_code = KROpCode_Connecting;
  bool m_waits = false;  // For the answer.
  std::chrono::steady_clock::time_point m_when;
  std::chrono::steady_clock::time_point m_begin;  // Of the step.
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_EXCHANGE_PROGRESS_H_
