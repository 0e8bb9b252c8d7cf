// The table of the kinds of damage.

#include "krofx/reader/mending.h"

#include <algorithm>

namespace krofx {

namespace {

constexpr bool Each = false;
constexpr bool Once = true;

constexpr MendingKindInfo kKinds[] = {
#define KROFX_MENDING_KIND(number, name, english, repeat, sentence) \
  {MendingKind::name, english, sentence, repeat},
    KROFX_MENDING_KINDS(KROFX_MENDING_KIND)
#undef KROFX_MENDING_KIND
};

constexpr bool Before(const MendingKindInfo& left, const MendingKindInfo& right) {
  return left.kind < right.kind;
}
static_assert(std::is_sorted(std::begin(kKinds), std::end(kKinds), &Before));

}  // namespace

std::span<const MendingKindInfo> AllMendingKinds() { return kKinds; }

const MendingKindInfo* FindMendingKind(MendingKind kind) {
  const MendingKindInfo* const found = std::lower_bound(
      std::begin(kKinds), std::end(kKinds), kind,
      [](const MendingKindInfo& info, MendingKind wanted) { return info.kind < wanted; });
  return found != std::end(kKinds) && found->kind == kind ? found : nullptr;
}

const char* NameOf(MendingKind kind) {
  const MendingKindInfo* const info = FindMendingKind(kind);
  return info == nullptr ? "unknown" : info->name;
}

}  // namespace krofx
