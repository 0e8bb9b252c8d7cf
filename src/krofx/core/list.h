// A growable list of values, for results that are handed to hosts: it throws nothing, and allocates
// through the functions of memory.h.

#ifndef KROFX_CORE_LIST_H_
#define KROFX_CORE_LIST_H_

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "krofx/core/memory.h"

namespace krofx {

/// A list of values in one block of memory. It can be moved, not copied. References and iterators
/// are valid until the list grows.
template <class T>
class List {
  static_assert(std::is_nothrow_move_constructible_v<T>);

 public:
  /// An empty list, without memory.
  List() = default;
  /// Takes over what `other` holds, which is empty afterwards.
  List(List&& other) noexcept { Swap(other); }
  /// As the move constructor; what this list held is destroyed.
  List& operator=(List&& other) noexcept {
    if (this != &other) {
      Clear();
      Swap(other);
    }
    return *this;
  }
  List(const List&) = delete;
  List& operator=(const List&) = delete;
  ~List() { Clear(); }

  /// @return the number of values.
  std::size_t size() const { return m_size; }
  /// @return whether the list has no values.
  bool empty() const { return m_size == 0; }
  /// @return the value at `index`, which must be below the size.
  T& operator[](std::size_t index) { return m_values[index]; }
  /// @return the same.
  const T& operator[](std::size_t index) const { return m_values[index]; }
  /// @return the last value of a list that is not empty.
  T& back() { return m_values[m_size - 1]; }
  /// @return the same.
  const T& back() const { return m_values[m_size - 1]; }
  T* begin() { return m_values; }
  T* end() { return m_values + m_size; }
  const T* begin() const { return m_values; }
  const T* end() const { return m_values + m_size; }

  /// Appends a value.
  /// @return false when memory is exhausted; the list is as it was, and the value is destroyed.
  bool Append(T value) {
    if (m_size == m_capacity && !Grow()) return false;
    ::new (static_cast<void*>(m_values + m_size)) T(std::move(value));
    ++m_size;
    return true;
  }
  /// Destroys the last value of a list that is not empty.
  void RemoveLast() { m_values[--m_size].~T(); }
  /// Destroys all values and gives the memory back.
  void Clear() {
    while (m_size != 0) RemoveLast();
    internal::Free(m_values);
    m_values = nullptr;
    m_capacity = 0;
  }

 private:
  bool Grow() {
    constexpr std::size_t kFirst = 8;
    const std::size_t capacity = m_capacity == 0 ? kFirst : m_capacity * 2;
    if (capacity > static_cast<std::size_t>(-1) / sizeof(T)) return false;
    auto* const values = static_cast<T*>(internal::Allocate(capacity * sizeof(T)));
    if (values == nullptr) return false;
    for (std::size_t index = 0; index < m_size; ++index) {
      ::new (static_cast<void*>(values + index)) T(std::move(m_values[index]));
      m_values[index].~T();
    }
    internal::Free(m_values);
    m_values = values;
    m_capacity = capacity;
    return true;
  }
  void Swap(List& other) noexcept {
    std::swap(m_values, other.m_values);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
  }

  T* m_values = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

}  // namespace krofx

#endif  // KROFX_CORE_LIST_H_
