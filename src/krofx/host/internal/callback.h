// A function of the host's with what it has captured, kept by an object of the library.

#ifndef KROFX_HOST_INTERNAL_CALLBACK_H_
#define KROFX_HOST_INTERNAL_CALLBACK_H_

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "krofx/core/memory.h"

namespace krofx::internal {

template <class Signature>
class Callback;

/// Holds anything that can be called with these arguments; the memory is the library's, so that it
/// throws nothing. The function itself must not throw: it is called from inside an exchange.
template <class Result, class... Arguments>
class Callback<Result(Arguments...)> {
 public:
  Callback() = default;
  Callback(const Callback&) = delete;
  Callback& operator=(const Callback&) = delete;
  ~Callback() { Clear(); }

  /// Takes a function; what was held before is gone.
  /// @return false when memory is exhausted; nothing is held then.
  template <class Function>
  bool Set(Function function) {
    static_assert(alignof(Function) <= alignof(std::max_align_t));
    Clear();
    void* const memory = Allocate(sizeof(Function));
    if (memory == nullptr) return false;
    m_function = ::new (memory) Function(std::move(function));
    m_call = [](void* held, Arguments... arguments) -> Result {
      return (*static_cast<Function*>(held))(std::forward<Arguments>(arguments)...);
    };
    m_destroy = [](void* held) { static_cast<Function*>(held)->~Function(); };
    return true;
  }
  /// @return whether there is a function.
  explicit operator bool() const { return m_function != nullptr; }
  Result operator()(Arguments... arguments) const {
    return m_call(m_function, std::forward<Arguments>(arguments)...);
  }

 private:
  void Clear() {
    if (m_function == nullptr) return;
    m_destroy(m_function);
    Free(m_function);
    m_function = nullptr;
  }

  void* m_function = nullptr;
  Result (*m_call)(void*, Arguments...) = nullptr;
  void (*m_destroy)(void*) = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_HOST_INTERNAL_CALLBACK_H_
