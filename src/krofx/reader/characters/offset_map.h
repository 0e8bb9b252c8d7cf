// Where each byte of a mended text was in the bytes as they came.
//
// A mended text differs from the original in stretches: bytes were taken out, or each character is
// written with another number of bytes. Within a stretch both positions advance in fixed steps, so
// the map is a list of stretches, and an unchanged text needs one.

#ifndef KROFX_READER_CHARACTERS_OFFSET_MAP_H_
#define KROFX_READER_CHARACTERS_OFFSET_MAP_H_

#include <cstddef>

#include "krofx/core/list.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Maps positions of a mended text to offsets in the original bytes.
class OffsetMap {
 public:
  /// A map of a text that is not changed and begins at `base` of the original.
  explicit OffsetMap(std::size_t base = 0) : m_base(base) {}

  /// Says where the text goes on from a position, which is not before that of the last call.
  /// @param step bytes of a character in the mended text.
  /// @param originalStep bytes of a character in the original.
  /// @return false when memory is exhausted.
  bool GoOnAt(u32 position, std::size_t original, u8 step = 1, u8 originalStep = 1);

  /// @return the offset in the original of the byte at `position`.
  std::size_t ToOriginal(std::size_t position) const;

  /// A stretch of the map.
  struct Stretch {
    u32 position;
    u8 step;
    u8 originalStep;
    std::size_t original;
  };
  /// @return the stretch that begins first after `position`; null when there is none.
  const Stretch* NextAfter(std::size_t position) const;
  /// @return the steps at a position, as a stretch that begins there.
  Stretch StretchAt(u32 position) const;

 private:
  std::size_t m_base;
  List<Stretch> m_stretches;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_CHARACTERS_OFFSET_MAP_H_
