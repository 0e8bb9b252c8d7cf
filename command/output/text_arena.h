// Memory for many small things that go away together, such as the texts of a file that is shown.

#ifndef KROFX_COMMAND_OUTPUT_TEXT_ARENA_H_
#define KROFX_COMMAND_OUTPUT_TEXT_ARENA_H_

#include <cstddef>
#include <cstring>
#include <memory_resource>
#include <new>
#include <string_view>
#include <type_traits>

namespace krofx::command {

/// Owns texts and plain objects until its own end, or until it is emptied.
class TextArena {
 public:
  TextArena() : m_memory(m_first, sizeof m_first) {}
  TextArena(const TextArena&) = delete;
  TextArena& operator=(const TextArena&) = delete;

  /// @return a copy of a text.
  std::string_view Copy(std::string_view text) {
    if (text.empty()) return {};
    void* const copy = m_memory.allocate(text.size(), 1);
    std::memcpy(copy, text.data(), text.size());
    return {static_cast<const char*>(copy), text.size()};
  }

  /// Gives up all that is in it; the memory of the first things is used again.
  void Reset() { m_memory.release(); }

  /// @return a new object, which has no destructor that does anything.
  template <class Object>
  Object& Make() {
    static_assert(std::is_trivially_destructible_v<Object>);
    return *new (m_memory.allocate(sizeof(Object), alignof(Object))) Object;
  }

 private:
  alignas(std::max_align_t) char m_first[4096];
  std::pmr::monotonic_buffer_resource m_memory;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_TEXT_ARENA_H_
