// Turns the text of a request into the text of its answer: one function for the whole bank.

#ifndef KROFX_EXAMPLES_BANK_SERVER_ANSWER_H_
#define KROFX_EXAMPLES_BANK_SERVER_ANSWER_H_

#include <krofx/krofx.h>

#include "bank.h"
#include "request_classes.h"

namespace bank_server {

/// How an exchange went.
enum class Answered {
  kYes,     ///< The answer is in the buffer; it may be a refusal.
  kNotOfx,  ///< The text is not an OFX request with a sign-on.
  kFailed,  ///< The answer could not be made.
};

/// Makes answers. While an Answerer exists, the objects of the process come from its factory, so
/// there must not be two. Only one thread at a time may use it.
class Answerer {
 public:
  explicit Answerer(Bank& bank);
  Answerer(const Answerer&) = delete;
  Answerer& operator=(const Answerer&) = delete;
  ~Answerer();

  /// Writes the answer to the text in `request` into `reply`, as of the time `now`. Each
  /// transaction is answered in the version of its message set, the file in that of the sign-on.
  Answered Answer(KRBuffer& request, const KRDateTime& now, KRBuffer& reply);

 private:
  Bank& m_bank;
  RequestFactory m_factory;
};

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_ANSWER_H_
