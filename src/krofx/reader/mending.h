// What the reader mended: the kinds of damage, and the record of one mending.

#ifndef KROFX_READER_MENDING_H_
#define KROFX_READER_MENDING_H_

#include <bitset>
#include <cstddef>
#include <span>

#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/reader/mending_kinds.h"

namespace krofx {

/// A kind of damage. The numbers are promised: they may be stored.
enum class MendingKind : u16 {
#define KROFX_MENDING_KIND(number, name, english, repeat, sentence) name = (number),
  KROFX_MENDING_KINDS(KROFX_MENDING_KIND)
#undef KROFX_MENDING_KIND
};

/// What is known of a kind of damage.
struct MendingKindInfo {
  MendingKind kind;
  const char* name;      ///< Its English name, such as "decimal-comma"; promised like the number.
  const char* sentence;  ///< What happened, without a capital letter and a full stop.
  bool once;             ///< It is said once for each tag of a text, not each time.
};

/// @return all kinds, in the order of their numbers.
KROFX_API std::span<const MendingKindInfo> AllMendingKinds();
/// What is known of a kind.
/// @return null for a number that is no kind's.
KROFX_API const MendingKindInfo* FindMendingKind(MendingKind kind);
/// @return the English name of a kind; "unknown" for a number that is no kind's.
KROFX_API const char* NameOf(MendingKind kind);

/// A set of kinds of damage.
class KROFX_API MendingKinds {
 public:
  /// @return all kinds.
  static MendingKinds All() {
    MendingKinds kinds;
    kinds.m_kinds.set();
    return kinds;
  }
  /// No kind.
  MendingKinds() = default;

  /// Puts a kind in.
  MendingKinds& Add(MendingKind kind) { return Put(kind, true); }
  /// Takes a kind out.
  MendingKinds& Remove(MendingKind kind) { return Put(kind, false); }
  /// @return whether a kind is in.
  bool Has(MendingKind kind) const {
    return static_cast<u16>(kind) < kCount && m_kinds[static_cast<u16>(kind)];
  }

 private:
  static constexpr u16 kCount = 1000;

  MendingKinds& Put(MendingKind kind, bool in) {
    if (static_cast<u16>(kind) < kCount) m_kinds[static_cast<u16>(kind)] = in;
    return *this;
  }

  std::bitset<kCount> m_kinds;
};

/// Where something is in what was read, in the bytes as they were.
struct Place {
  std::size_t offset = 0;  ///< Bytes before it.
  std::size_t line = 0;    ///< From 1; a line ends in LF, CR LF or CR. 0 for what has no place.
  std::size_t column = 0;  ///< From 1, in the units of the text: bytes, or those of UTF-16 or -32.
};

/// One mending.
struct Mending {
  MendingKind kind;
  Place place;
  /// Which of the texts, counted from 0.
  std::size_t text = 0;
  /// The tag, or the header field, as OFX writes it; empty when none applies.
  KRString tag;
  /// The aggregates around it, such as "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN[2]".
  /// A number, from 1, distinguishes aggregates of one tag and parent. Empty outside the body.
  KRString path;
  /// What was there, at most 200 bytes of it, in the character set of the text. A password is
  /// stars.
  KRString was;
  /// What was taken instead; empty for what was left out or taken as absent.
  KRString taken;
};

}  // namespace krofx

#endif  // KROFX_READER_MENDING_H_
