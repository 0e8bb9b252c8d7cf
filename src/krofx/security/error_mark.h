// Leaves libcrypto's queue of errors as it was found. What fails here is reported by a status; an
// error left in the queue would be taken by the host's own use of libcrypto, TLS above all, for its
// own.

#ifndef KROFX_SECURITY_ERROR_MARK_H_
#define KROFX_SECURITY_ERROR_MARK_H_

#include <openssl/err.h>

namespace krofx::internal {

/// Takes the errors of its lifetime out of the queue.
class ErrorMark {
 public:
  ErrorMark() { ERR_set_mark(); }
  ErrorMark(ErrorMark const&) = delete;
  ErrorMark& operator=(ErrorMark const&) = delete;
  ~ErrorMark() { ERR_pop_to_mark(); }
};

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_ERROR_MARK_H_
