// Where the tags of each name are in a text, for questions about what lies ahead: does this
// aggregate end, and before or after that one?

#ifndef KROFX_READER_TAGS_TAG_PLACES_H_
#define KROFX_READER_TAGS_TAG_PLACES_H_

#include <string_view>

#include "krofx/core/list.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"
#include "krofx/reader/tags/scanner.h"

namespace krofx::internal {

/// The places of all tags of a text, gathered at the first question in one walk. Questions are
/// asked about places that do not go back, so that all of them together cost one walk more.
class TagPlaces {
 public:
  /// No such tag.
  static constexpr u32 kNone = ~u32{0};
  /// Such a tag, if there is one, is after the part of the text that is there. Greater than all
  /// places; whether it is in front of another one that is not there either cannot be known.
  static constexpr u32 kBeyond = kNone - 1;

  explicit TagPlaces(const Scanner& scanner) : m_scanner(scanner) {}
  /// Takes another part of the text.
  /// @param isPart whether the text goes on after it.
  void SetText(std::string_view bytes, bool isPart);

  /// @return the first start tag of a name from a place on; kNone when there is none.
  u32 NextStart(std::string_view name, u32 from) { return Next(name, from, false).at; }
  /// @return the first end tag of a name from a place on; kNone when there is none.
  u32 NextEnd(std::string_view name, u32 from) { return Next(name, from, true).at; }
  /// @return the place after that end tag.
  u32 AfterNextEnd(std::string_view name, u32 from) { return Next(name, from, true).after; }
  /// @return whether memory was exhausted; all answers are kNone then.
  bool HasFailed() const { return m_failed; }

 private:
  // A tag, and the next one of the same name and type.
  struct Link {
    u32 at;
    u32 after;
    u32 next;
  };
  struct Name {
    std::string_view text;
    u32 first[2] = {kNone, kNone};
    u32 last[2] = {kNone, kNone};
  };
  struct Found {
    u32 at = kNone;
    u32 after = kNone;
  };

  // Names beyond these are none that anyone asks about.
  static constexpr u32 kMostNames = 4096;
  static constexpr u32 kPlaces = 2 * kMostNames;

  Found Next(std::string_view name, u32 from, bool end);
  void Gather();
  bool Add(const ScannedTag& tag);
  // The place of a name in the table: its own, or the free one where it belongs.
  u32 PlaceOf(std::string_view name) const;

  Scanner m_scanner;
  bool m_isPart = false;
  bool m_gathered = false;
  bool m_failed = false;
  List<Link> m_links;
  List<Name> m_names;
  List<u32> m_table;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_TAGS_TAG_PLACES_H_
