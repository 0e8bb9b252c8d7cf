// Follows the paths of cells through elements.

#include "showing/row_maker.h"

#include <algorithm>
#include <optional>

#include "output/masking.h"

namespace krofx::command {

namespace {

// Identifiers of different schemes may have the same text.
std::string IdentityOf(const Element& id) {
  std::string identity;
  for (const Element& part : id.children) identity.append(part.value).append("\n");
  return identity;
}

Cell FirstAggregate(const Element& element) {
  for (const Element& child : element.children) {
    if (child.isAggregate) return {ValueKind::kText, child.tag};
  }
  return {};
}

}  // namespace

void RowMaker::NoteSecurities(const Element& element) {
  for (const Element& child : element.children) {
    if (child.tag == "SECINFO") {
      if (const Element* const id = child.Find("SECID")) (*m_securities)[IdentityOf(*id)] = &child;
    } else {
      NoteSecurities(child);
    }
  }
}

void RowMaker::AppendRow(std::vector<Cell>& cells, const Element& row, const TableSpec& table) {
  const ColumnSources& sources = ColumnSourcesOf(table.columns);
  sources.paths.Find(row, m_found);
  const std::size_t first = cells.size();
  cells.resize(first + sources.columns.size());
  for (const std::size_t column : sources.composed) {
    cells[first + column] = Find(row, sources.columns[column]);
  }
  // Most columns of a row are empty: only what was found is looked at. Of the paths of a column the
  // first one has the lowest number.
  std::sort(m_found.paths.begin(), m_found.paths.end());
  for (const std::size_t number : m_found.paths) {
    const ColumnSources::Choice& choice = sources.choices[number];
    Cell& cell = cells[first + choice.column];
    if (choice.path == nullptr || cell) continue;
    const Element* const found = Describe(m_found.elements[number], *choice.path);
    if (found != nullptr && !found->isAggregate) cell = CellOf(*found);
  }
}

Cell RowMaker::Find(const Element& element, const CellSource& source) const {
  switch (source.kind) {
    case CellSource::Kind::kOwnTag:
      return {ValueKind::kText, element.tag};
    case CellSource::Kind::kFirstAggregate:
      return FirstAggregate(element);
    case CellSource::Kind::kSum:
      return SumAll(element, source);
    case CellSource::Kind::kPaths:
      break;
  }
  for (const CellSource::Path& path : source.paths) {
    if (path.all) {
      if (const Cell all = JoinAll(element, path.steps)) return all;
      continue;
    }
    const Element* const found = Describe(FindPath(element, path.steps), path);
    if (found != nullptr && !found->isAggregate) return CellOf(*found);
  }
  return {};
}

const Element* RowMaker::FindElement(const Element& element, const CellSource& source) const {
  for (const CellSource::Path& path : source.paths) {
    const Element* const found = Describe(FindPath(element, path.steps), path);
    if (found != nullptr && !found->isAggregate) return found;
  }
  return nullptr;
}

Cell RowMaker::CellOf(const Element& element) const {
  if (IsPassword(element.id)) return {ValueKind::kText, kNotShown};
  if (m_showIdentifiers || element.disclosure == Disclosure::kAll) {
    return {element.kind, element.value};
  }
  return {element.kind, m_arena.Copy(Masked(element.value, element.disclosure))};
}

// What a path leads to, when this is at the end of its steps: in the description of a security, if
// the path leads there. Null when there is nothing.
const Element* RowMaker::Describe(const Element* found, const CellSource::Path& path) const {
  if (found == nullptr || !path.leadsToSecurity) return found;
  const auto security = m_securities->find(IdentityOf(*found));
  return security == m_securities->end() ? nullptr : FindPath(*security->second, path.ofSecurity);
}

// All elements of one tag in an aggregate, in one cell.
Cell RowMaker::JoinAll(const Element& element, const TagPath& steps) const {
  const Element* const parent = FindPath(element, std::span(steps).first(steps.size() - 1));
  if (parent == nullptr) return {};
  std::optional<std::string> all;
  for (const Element& child : parent->children) {
    if (child.id != steps.back() || child.isAggregate) continue;
    if (all) {
      all->append(", ").append(CellOf(child).text);
    } else {
      all = CellOf(child).text;
    }
  }
  return all ? Cell(ValueKind::kText, m_arena.Copy(*all)) : Cell();
}

// Amounts of different kinds, dollars and percentages, have no sum.
Cell RowMaker::SumAll(const Element& element, const CellSource& source) const {
  std::optional<KRPayrollAmount> sum;
  for (const Element& child : element.children) {
    if (!child.isAggregate || !IsOneOf(child.id, source.summed)) continue;
    const Element* const found = FindPath(child, std::span(&source.summand, 1));
    if (found == nullptr || found->kind != ValueKind::kAmount) continue;
    const KRPayrollAmount amount(std::string(found->value).c_str());
    if (!sum) {
      sum = amount;
    } else if (amount.IsPercent() != sum->IsPercent() ||
               amount.IsDollarKind() != sum->IsDollarKind()) {
      return {};
    } else {
      *sum += amount;
    }
  }
  if (!sum) return {};
  const char* const text = *sum;
  return {ValueKind::kAmount, m_arena.Copy(text == nullptr ? "" : text)};
}

}  // namespace krofx::command
