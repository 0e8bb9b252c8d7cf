// The zone name inside a date. It is nearly always three letters, so it is held in the object and a
// date with a zone allocates no memory. Hosts get it as a string, which is made on request.

#ifndef KROFX_VALUES_INTERNAL_ZONE_NAME_H_
#define KROFX_VALUES_INTERNAL_ZONE_NAME_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRString3;

namespace krofx::internal {

/// A zone name. Up to 7 characters are in the object; a longer one, which OFX does not allow but a
/// host may set, is in a string.
class KROFX_API ZoneName {
 public:
  /// The empty name.
  ZoneName() noexcept = default;
  /// Copies the name.
  ZoneName(const ZoneName& other) noexcept {
    if (other.m_string == nullptr) {
      CopyShort(other);
    } else {
      Assign(other.Text(), other.Length());
    }
  }
  /// Copies the name.
  ZoneName& operator=(const ZoneName& other) noexcept {
    if (m_string == nullptr && other.m_string == nullptr) {
      CopyShort(other);
    } else if (this != &other) {
      Assign(other.Text(), other.Length());
    }
    return *this;
  }
  ~ZoneName() {
    if (m_string != nullptr) DropString();
  }

  /// Empties the name.
  void Clear() noexcept {
    if (m_string == nullptr) {
      m_short[0] = '\0';
    } else {
      Assign("", 0);
    }
  }
  /// Takes `length` characters at `text`. When there is no memory for a long name it is cut to 7
  /// characters, and the thread's fire alarm is raised.
  void Assign(const char* text, std::size_t length) noexcept;

  /// @return 1 when there is no name.
  bool IsEmpty() const noexcept { return m_short[0] == '\0'; }
  /// @return the name, valid until it is changed; never null.
  const char* Text() const noexcept;
  /// @return the characters in the name.
  std::size_t Length() const noexcept;
  /// @return the name as a string, which changes with the name and lives as long as the object.
  ///         When there is no memory for it the string is empty and the fire alarm is raised.
  const KRString3& AsString() const noexcept;

 private:
  static constexpr std::size_t kShortSize = 8;

  void CopyShort(const ZoneName& other) noexcept {
    for (std::size_t i = 0; i < kShortSize; ++i) m_short[i] = other.m_short[i];
  }
  void DropString() noexcept;

  // The name and its terminator, or the start of a long one.
  char m_short[kShortSize] = {};
  // Made when a host asks for it, or for a long name.
  mutable KRString3* m_string = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_ZONE_NAME_H_
