// What a request uses when it is processed: the bank, the time, the user, and the answer that is
// being made.
//
// The library passes a `const ServerImpl*` to KRDataObj::ProcessRequest and leaves the class to the
// host. Here it gives a request's objects access to their exchange, which they change.

#ifndef KROFX_EXAMPLES_BANK_SERVER_SERVER_IMPL_H_
#define KROFX_EXAMPLES_BANK_SERVER_SERVER_IMPL_H_

#include <krofx/krofx.h>

#include <map>
#include <set>
#include <string>

#include "bank.h"

namespace bank_server {

/// One request and its answer.
struct Exchange {
  Exchange(Bank& theBank, const KRDateTime& theTime) : bank(theBank), now(theTime) {}

  Bank& bank;
  KRDateTime now;
  /// The user who signed on; null for none.
  User* user = nullptr;
  /// Takes the message sets of the answer.
  KRResponse* response = nullptr;
  /// The transaction that is being answered.
  KRTransRs* transaction = nullptr;
  /// The CUSIPs in the answers of each version.
  std::map<u16, std::set<std::string>> securities;
};

/// The tag of the answer to a request's tag, such as STMTTRNRS for STMTTRNRQ.
KRTagID AnswerTag(KRTagID request);

}  // namespace bank_server

/// The library's name for it.
class ServerImpl {
 public:
  explicit ServerImpl(bank_server::Exchange& exchange) : m_exchange(exchange) {}

  /// The exchange, which ProcessRequest changes.
  bank_server::Exchange& Now() const { return m_exchange; }
  /// Ends the transaction with a status; `payload`, which may be null, becomes its answer's.
  void Answer(s32 code, KRTransBase* payload = nullptr) const;

 private:
  bank_server::Exchange& m_exchange;
};

#endif  // KROFX_EXAMPLES_BANK_SERVER_SERVER_IMPL_H_
