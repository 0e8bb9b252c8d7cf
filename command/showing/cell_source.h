// The paths of the layouts, taken apart once, so that a row costs a few comparisons of numbers.

#ifndef KROFX_COMMAND_SHOWING_CELL_SOURCE_H_
#define KROFX_COMMAND_SHOWING_CELL_SOURCE_H_

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "input/element_tree.h"
#include "showing/layout.h"

namespace krofx::command {

/// Splits off the text up to a separator.
std::string_view TakePart(std::string_view& text, char separator);

/// @return the tag that a text names; the null tag, which is any tag, for "*".
KRTagID IdOf(std::string_view tag);

/// Tags, one for each step down. The null tag is any tag.
using TagPath = std::vector<KRTagID>;

/// @return the first element at the end of a path. Null when there is none.
const Element* FindPath(const Element& element, std::span<const KRTagID> path);

/// @return whether a tag is among some; the null tag among them is any tag.
bool IsOneOf(KRTagID tag, std::span<const KRTagID> tags);

/// Where the value of a cell comes from.
struct CellSource {
  enum class Kind : u8 {
    kPaths,           ///< The first path that leads to something.
    kOwnTag,          ///< The tag of the aggregate that the row is made of.
    kFirstAggregate,  ///< The tag of the first aggregate in it.
    kSum,             ///< The sum of one element over some aggregates in it.
  };
  struct Path {
    TagPath steps;
    TagPath ofSecurity;  ///< Where it leads in the description of the security, if it does.
    bool leadsToSecurity = false;
    bool all = false;        ///< All elements of the last step, not the first one.
    std::size_t number = 0;  ///< In the PathTree of the source's table.
  };

  Kind kind = Kind::kPaths;
  std::vector<Path> paths;
  TagPath summed;                ///< The aggregates of a sum.
  KRTagID summand = KRTag_None;  ///< The element of a sum.
};

/// Paths that start at one element, as a tree: one walk over what is in the element finds what all
/// of them lead to.
class PathTree {
 public:
  /// Adds a path.
  /// @return its number, from 0.
  std::size_t Add(std::span<const KRTagID> path);
  /// What paths lead to.
  struct Found {
    /// The first element at the end of each path, as FindPath gives it, by the path's number; null
    /// where there is none.
    std::vector<const Element*> elements;
    /// The paths that lead to one, in any order.
    std::vector<std::size_t> paths;
  };
  /// Follows all paths.
  void Find(const Element& element, Found& found) const;

 private:
  struct Edge {
    KRTagID tag;
    std::size_t to;
  };
  struct Node {
    std::vector<Edge> edges;         // In the order of their tags.
    std::vector<std::size_t> paths;  // Those that end here.
  };

  static void Note(const Node& node, const Element& element, Found& found);
  void Follow(const Edge& edge, const Element& child, Found& found) const;
  void Walk(const Element& element, const Node& node, Found& found) const;

  std::vector<Node> m_nodes{1};
  std::size_t m_count = 0;
};

/// Where the columns of a table come from.
struct ColumnSources {
  /// A path that gives a column its value, unless one with a lower number did.
  struct Choice {
    std::size_t column = 0;
    const CellSource::Path* path = nullptr;  ///< Null for a column that is among the composed.
  };

  std::vector<CellSource> columns;
  PathTree paths;
  std::vector<Choice> choices;        ///< By the numbers of the paths.
  std::vector<std::size_t> composed;  ///< Columns that take more than the end of one path.
};

/// Where a table finds its rows.
struct RowPath {
  TagPath parent;  ///< The aggregate that holds them.
  TagPath rows;    ///< Their tags.
};

/// @return the sources of some fields, in their order. They are made at the first call of a thread
///         and live as long as it does.
const std::vector<CellSource>& SourcesOf(std::span<const FieldSpec> fields);
/// The same for the columns of a table.
const ColumnSources& ColumnSourcesOf(std::span<const FieldSpec> columns);
/// @return the source of the path of aggregates that repeat.
RowPath RowPathOf(std::string_view path);
/// @return the sources of paths that are separated by blanks.
std::vector<CellSource> SubjectSourcesOf(std::string_view paths);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_CELL_SOURCE_H_
