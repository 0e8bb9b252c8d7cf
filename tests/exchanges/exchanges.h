// What the tables of exchanges are made of: a payload in its transaction wrapper, and the
// synchronisations that carry such wrappers. Each family of message sets has its table in a file of
// its own; the tests read them all.

#ifndef KROFX_TESTS_EXCHANGES_EXCHANGES_H_
#define KROFX_TESTS_EXCHANGES_EXCHANGES_H_

#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <typeinfo>

#include "krofx/core/types.h"
#include "krofx/model/data_object.h"

namespace krofx::testing {

/// Whether an object is of class `T`, not of one derived from it.
template <class T>
bool Is(const KRDataObj& object) {
  return typeid(object) == typeid(T);
}

/// One payload, complete with as little as it needs, in its wrapper. The tag of the wrapper says
/// whether it is a request or a response. In the content, a word in capitals after "@" is replaced
/// by a recurring text (see Expanded), "~" after a tag means the 2 that the tag has in the second
/// version, and "#" the version.
struct Exchange {
  const char* set;  ///< "BANKMSGSRQ"; empty for a wrapper that travels in synchronisations alone.
  const char* wrapper;                  ///< "STMTTRNRQ"
  const char* payload;                  ///< "STMTRQ"; empty for a wrapper that has none.
  bool (*isPayload)(const KRDataObj&);  ///< Whether an object is of the payload's class.
  const char* content = "";
  u16 versions = 3;  ///< Mask of the versions in which the exchange has this form.
};

/// A synchronisation: what comes before and after its transactions, and which these are.
struct Sync {
  const char* set;
  const char* tag;
  const char* head;
  const char* wrapper;
  const char* tail = "";
  u16 versions = 3;
};

/// All that one family exchanges.
struct Family {
  const char* name;
  std::span<const Exchange> exchanges;
  std::span<const Sync> syncs;
};

extern const Family kSignOnFamily;      ///< Sign-on, profile and sign-up.
extern const Family kBankingFamily;     ///< Statements, transfers, wires, stop checks, mail.
extern const Family kInvestmentFamily;  ///< Statements, mail and securities.
extern const Family kPaymentFamily;     ///< Payees, payments and their mail.
extern const Family kExtensionFamily;   ///< Brands, logs, surveys and usage.
extern const Family kPayrollFamily;     ///< Payroll, which has the first version only.

inline void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }

/// Whether a tag names the side of requests.
inline bool IsRequest(std::string_view tag) { return tag.ends_with("RQ"); }

/// The text that a content means.
std::string Expanded(std::string_view content, u16 version);

/// An exchange as it appears in its message set.
std::string WrapperText(const Exchange& exchange, u16 version);

}  // namespace krofx::testing

#endif  // KROFX_TESTS_EXCHANGES_EXCHANGES_H_
