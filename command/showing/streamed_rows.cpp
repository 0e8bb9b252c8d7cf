// Reads on to the list that is visited, and makes a row of each of its elements.

#include "showing/streamed_rows.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "krofx/host/look.h"
#include "showing/cell_source.h"
#include "showing/transaction_cells.h"

namespace krofx::command {

namespace {

using Kind = ListStream::Kind;

// A tag, and which of the aggregates with this tag it is in a tree.
using Place = std::pair<KRTagID, std::size_t>;

template <class Visit>
void ForEachAggregate(const Element& element, Visit& visit) {
  for (const Element& child : element.children) {
    if (!child.isAggregate) continue;
    visit(child);
    ForEachAggregate(child, visit);
  }
}

// Texts of a list with no more rows than a tree could have are held while they are put in order.
bool IsHeld(std::span<const Kind> kinds) {
  std::size_t count = 0;
  for (const Kind& kind : kinds) count += kind.count;
  return kinds.size() > 1 && count <= kListLimit;
}

// Makes the cells of one element after the other.
class ElementCells {
 public:
  ElementCells(const TableSpec& table, bool showIdentifiers, bool mayHaveCards, bool inPayroll,
               const std::shared_ptr<Securities>& securities)
      : m_table(table),
        m_inPayroll(inPayroll),
        m_showIdentifiers(showIdentifiers),
        m_mayHaveCards(mayHaveCards),
        m_maker(m_arena, showIdentifiers, securities) {}

  Row Make(const StreamElement& element, const OfxText& text) {
    if (element.Tag() == KRTag_STMTTRN) {
      if (!m_transactions) m_transactions.emplace(m_table, m_showIdentifiers, m_mayHaveCards);
      return m_transactions->Make(static_cast<const KRBankStatementTx&>(element.Object()), text);
    }
    m_arena.Reset();
    m_cells.clear();
    m_maker.AppendRow(
        m_cells,
        ReadElement(element.Object(), element.Tag(), m_inPayroll, m_arena, &text, m_mayHaveCards),
        m_table);
    return m_cells;
  }

 private:
  const TableSpec& m_table;
  const bool m_inPayroll;
  const bool m_showIdentifiers;
  const bool m_mayHaveCards;
  TextArena m_arena;
  RowMaker m_maker;
  std::vector<Cell> m_cells;
  std::optional<TransactionCells> m_transactions;
};

bool IsOfPayroll(const ListStream::List& list) {
  return list.path.find("/N.PAYROLL") != std::string::npos;
}

}  // namespace

// Rows of one table, some of them in memory.
class StreamedRows::Source final : public RowSource {
 public:
  Source(std::shared_ptr<StreamedRows> rows, std::size_t list, const TableSpec& table,
         std::shared_ptr<Securities> securities)
      : m_rows(std::move(rows)),
        m_list(list),
        m_table(table),
        m_securities(std::move(securities)) {}

  void AddStreamed(const Kind& kind) {
    m_parts.push_back({m_kinds.size(), {}});
    m_kinds.push_back(kind);
  }
  void AddHeld(Row row) {
    if (m_parts.empty() || m_parts.back().kind != kNone) m_parts.push_back({kNone, {}});
    m_parts.back().cells.insert(m_parts.back().cells.end(), row.begin(), row.end());
  }

  void ForEach(const std::function<bool(Row)>& visit) override {
    ElementCells cells(m_table, m_rows->m_showIdentifiers, m_rows->m_mayHaveCards,
                       IsOfPayroll(m_rows->m_stream->Lists()[m_list]), m_securities);
    TextArena arena;
    const std::vector<std::vector<Cell>> held =
        IsHeld(m_kinds) ? Hold(cells, arena) : std::vector<std::vector<Cell>>();
    for (const Part& part : m_parts) {
      const bool goesOn = part.kind == kNone ? VisitHeld(part.cells, visit)
                          : held.empty()     ? VisitStreamed(m_kinds[part.kind], cells, visit)
                                             : VisitHeld(held[part.kind], visit);
      if (!goesOn) return;
    }
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // Rows of one kind that are read when they are visited, or others.
  struct Part {
    std::size_t kind;
    std::vector<Cell> cells;
  };

  bool VisitHeld(Row cells, const std::function<bool(Row)>& visit) const {
    const std::size_t width = m_table.columns.size();
    for (; !cells.empty(); cells = cells.subspan(width)) {
      if (!visit(cells.first(width))) return false;
    }
    return true;
  }

  bool VisitStreamed(const Kind& kind, ElementCells& cells, const std::function<bool(Row)>& visit) {
    return m_rows->ForEach(m_list, std::span(&kind, 1), [&](const StreamElement& element) {
      return visit(cells.Make(element, m_rows->m_stream->Text()));
    });
  }

  // The cells of each kind.
  std::vector<std::vector<Cell>> Hold(ElementCells& cells, TextArena& arena) {
    std::vector<std::vector<Cell>> held(m_kinds.size());
    m_rows->ForEach(m_list, m_kinds, [&](const StreamElement& element) {
      const auto kind = std::find_if(m_kinds.begin(), m_kinds.end(),
                                     [&](const Kind& each) { return each.tag == element.Tag(); });
      for (Cell cell : cells.Make(element, m_rows->m_stream->Text())) {
        cell.text = arena.Copy(cell.text);
        held[static_cast<std::size_t>(kind - m_kinds.begin())].push_back(cell);
      }
      return true;
    });
    return held;
  }

  const std::shared_ptr<StreamedRows> m_rows;
  const std::size_t m_list;
  const TableSpec& m_table;
  const std::shared_ptr<Securities> m_securities;
  std::vector<Kind> m_kinds;
  std::vector<Part> m_parts;
};

bool IsRow(KRTagID list, KRTagID element) {
  static const std::set<std::pair<KRTagID, KRTagID>> all = [] {
    std::set<std::pair<KRTagID, KRTagID>> rows;
    for (const Layout& layout : Layouts()) {
      for (const TableSpec& table : layout.tables) {
        const RowPath path = RowPathOf(table.path);
        const KRTagID owner = path.parent.empty() ? IdOf(layout.tag) : path.parent.back();
        for (const KRTagID tag : path.rows) rows.emplace(owner, tag);
      }
    }
    return rows;
  }();
  // What has a layout becomes a section of its own.
  const bool isSection =
      std::any_of(Layouts().begin(), Layouts().end(),
                  [element](const Layout& layout) { return IdOf(layout.tag) == element; });
  return !isSection && (all.contains({list, element}) || all.contains({list, KRTag_None}));
}

StreamedRows::StreamedRows(std::shared_ptr<const ListStream> stream, bool showIdentifiers,
                           bool mayHaveCards)
    : m_stream(std::move(stream)),
      m_showIdentifiers(showIdentifiers),
      m_mayHaveCards(mayHaveCards) {}

void StreamedRows::FindLists(KRFile& file, const Element& elements) {
  std::unordered_map<const KRDataObj*, std::size_t> owners;
  for (const ListStream::List& list : m_stream->Lists()) owners.emplace(list.owner, owners.size());
  std::map<KRTagID, std::size_t> counts;
  std::map<Place, std::size_t> places;
  krofx::ForEach<KRDataObj>(file, [&](KRDataObj& object) {
    const KRTagID tag = object.GetType();
    const std::size_t number = counts[tag]++;
    const auto owner = owners.find(&object);
    if (owner != owners.end()) places.emplace(Place(tag, number), owner->second);
  });
  counts.clear();
  const auto note = [&](const Element& element) {
    const auto place = places.find({element.id, counts[element.id]++});
    if (place != places.end()) m_lists.emplace(&element, place->second);
  };
  ForEachAggregate(elements, note);
  if (m_lists.size() != owners.size()) {
    throw std::logic_error("the lists of a file are not its elements");
  }
}

void StreamedRows::NoteSecurities(RowMaker& rows, TextArena& arena) {
  for (const auto& [element, list] : m_lists) {
    if (element->id != KRTag_SECLIST) continue;
    ForEach(list, m_stream->Lists()[list].kinds, [&](const StreamElement& security) {
      rows.NoteSecurities(
          ReadElement(security.Object(), security.Tag(), false, arena, &m_stream->Text()));
      return true;
    });
  }
}

const ListStream::List* StreamedRows::Find(const Element& list) const {
  const auto found = m_lists.find(&list);
  return found == m_lists.end() ? nullptr : &m_stream->Lists()[found->second];
}

bool StreamedRows::Lacks(const Element& list, std::span<const KRTagID> kinds) const {
  const ListStream::List* const found = Find(list);
  return found != nullptr &&
         std::any_of(found->kinds.begin(), found->kinds.end(),
                     [kinds](const Kind& kind) { return IsOneOf(kind.tag, kinds); });
}

void StreamedRows::AddRows(Table& table, const Element& list, std::span<const KRTagID> kinds,
                           const std::vector<KRTagID>& inTree, const RowMaker& rows) {
  if (!Lacks(list, kinds)) return;
  const ListStream::List& found = *Find(list);
  auto source = std::make_shared<Source>(shared_from_this(), m_lists.at(&list), *table.spec,
                                         rows.GetSecurities());
  // A tree writes its kinds of elements in the order of the tags of their owner.
  KRArrayOfTags tags;
  found.owner->GetArrayOfValidTags(tags);
  const std::size_t width = table.spec->columns.size();
  std::set<KRTagID> added;
  for (u16 index = 0; index < tags.count; ++index) {
    const KRTagID tag = tags.table[index].tag;
    if (!added.insert(tag).second) continue;
    for (const Kind& kind : found.kinds) {
      if (kind.tag == tag && IsOneOf(tag, kinds)) source->AddStreamed(kind);
    }
    for (std::size_t row = 0; row < inTree.size(); ++row) {
      if (inTree[row] == tag) source->AddHeld(Row(table.cells).subspan(row * width, width));
    }
  }
  table.cells.clear();
  table.source = std::move(source);
}

// Visits the elements of some kinds in a list; from the beginning when any of them is passed.
template <class Visit>
bool StreamedRows::ForEach(std::size_t list, std::span<const Kind> kinds, Visit visit) {
  const auto isOne = [&] {
    return m_current != nullptr && m_cursor->List() == list &&
           std::any_of(kinds.begin(), kinds.end(),
                       [this](const Kind& kind) { return kind.tag == m_current->Tag(); });
  };
  std::size_t left = 0;
  for (const Kind& kind : kinds) left += kind.count;
  const bool isPassed = std::any_of(kinds.begin(), kinds.end(), [&](const Kind& kind) {
    return m_passed.contains({list, kind.tag});
  });
  if (!m_cursor || isPassed) Restart();
  for (; m_current != nullptr && left > 0; Advance()) {
    if (!isOne()) continue;
    --left;
    if (!visit(*m_current)) return false;
  }
  if (left > 0 || isOne()) m_isWhole = false;
  return true;
}

void StreamedRows::Restart() {
  StreamOptions options;
  options.checkRequired = false;
  options.maxRecords = 0;
  m_passed.clear();
  m_last = {};
  m_cursor.emplace(*m_stream, options);
  m_current = m_cursor->Next();
}

void StreamedRows::Advance() {
  const std::pair passed(m_cursor->List(), m_current->Tag());
  if (passed != m_last) m_passed.insert(passed);
  m_last = passed;
  m_current = m_cursor->Next();
}

}  // namespace krofx::command
