// Which rows of an object are present.

#ifndef KROFX_MODEL_INTERNAL_PRESENCE_BITS_H_
#define KROFX_MODEL_INTERNAL_PRESENCE_BITS_H_

#include "krofx/core/types.h"

namespace krofx::internal {

/// One bit for each row of a table of valid tags, clear at first. Positions are 0 to kCount - 1.
class PresenceBits {
 public:
  /// The number of bits, which is the most rows that a table can use.
  static constexpr int kCount = 96;

  /// Whether the bit at a position is set.
  constexpr bool Has(int position) const {
    return (m_words[WordOf(position)] & Bit(position)) != 0;
  }
  /// Sets the bit at a position.
  constexpr void Set(int position) { m_words[WordOf(position)] |= Bit(position); }
  /// Clears the bit at a position.
  constexpr void Clear(int position) { m_words[WordOf(position)] &= ~Bit(position); }

 private:
  static constexpr int WordOf(int position) { return position / 32; }
  static constexpr u32 Bit(int position) { return 1u << (position % 32); }

  u32 m_words[kCount / 32] = {};
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_PRESENCE_BITS_H_
