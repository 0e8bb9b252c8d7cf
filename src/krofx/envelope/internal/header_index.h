// Finds a MIME header by its name without a search of all headers, so that the time to read a text
// of many thousand different header lines is proportional to its length.

#ifndef KROFX_ENVELOPE_INTERNAL_HEADER_INDEX_H_
#define KROFX_ENVELOPE_INTERNAL_HEADER_INDEX_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A hash table over the names in a list of headers, without regard to case. It holds places, not
/// names, and can be built again at any time: a copy is empty at first, and entries for which there
/// is no memory are searched one by one.
class KROFX_API HeaderIndex {
 public:
  HeaderIndex() = default;
  HeaderIndex(const HeaderIndex&) : HeaderIndex() {}
  HeaderIndex& operator=(const HeaderIndex&) {
    Clear();
    return *this;
  }
  ~HeaderIndex() { Clear(); }

  /// Forgets all places.
  void Clear();

  /// Finds the header `name` in `headers`, an array of pointers to KRMIMEHeader, with the result of
  /// a search from the first entry to the first empty slot.
  /// @return the header, null when there is none.
  template <class Headers>
  auto Find(const Headers& headers, const KRString& name) -> decltype(headers.Get(0)) {
    Follow(headers);
    if (m_places != nullptr) {
      for (u32 at = HashOf(name) & m_mask; m_places[at] != 0; at = (at + 1) & m_mask) {
        auto* header = headers.Get(static_cast<u16>(m_places[at] - 1));
        if (header != nullptr && Same(header->name, name)) return header;
      }
    }
    for (u32 place = m_count; place < headers.Entries(); ++place) {
      auto* header = headers.Get(static_cast<u16>(place));
      if (header == nullptr) return nullptr;
      if (Same(header->name, name)) return header;
    }
    return nullptr;
  }

  /// @return how many names this thread has compared so far, for tests that count work.
  static std::uint64_t& Comparisons();

 private:
  static bool Same(const KRString& a, const KRString& b) {
    ++Comparisons();
    return a.strcmpi(b) != 0;
  }
  static u32 HashOf(const KRString& name);

  // Adds the entries that were added to the list since the last call.
  template <class Headers>
  void Follow(const Headers& headers) {
    // A few names are compared faster than a table is made.
    constexpr u16 kWorthIt = 16;
    if (m_count > headers.Entries()) Clear();
    if (headers.Entries() < kWorthIt) return;
    while (m_count < headers.Entries()) {
      const auto* header = headers.Get(static_cast<u16>(m_count));
      if (header == nullptr) return;
      if (2 * (m_count + 1) > m_capacity && !Grow(headers)) return;
      Put(HashOf(header->name), static_cast<u16>(m_count));
      ++m_count;
    }
  }

  // Doubles the table, and puts the places in again.
  template <class Headers>
  bool Grow(const Headers& headers) {
    if (!Reserve()) return false;
    for (u32 place = 0; place < m_count; ++place) {
      Put(HashOf(headers.Get(static_cast<u16>(place))->name), static_cast<u16>(place));
    }
    return true;
  }

  bool Reserve();
  void Put(u32 hash, u16 place);

  u32* m_places = nullptr;  // Each is a place in the list plus 1, or 0.
  u32 m_capacity = 0;
  u32 m_mask = 0;
  u32 m_count = 0;  // Entries of the list that are in the table.
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_HEADER_INDEX_H_
