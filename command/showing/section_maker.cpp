// The walk that turns a tree into sections by them.

#include "showing/section_maker.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "output/masking.h"
#include "showing/layout.h"

namespace krofx::command {

namespace {

// Splits off the text up to a separator.
std::string_view TakePart(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  return part;
}

// The first element on a path of tags; "*" is any tag. Null when there is none.
const Element* FindPath(const Element& element, std::string_view path) {
  if (path.empty()) return &element;
  const std::string_view tag = TakePart(path, '/');
  for (const Element& child : element.children) {
    if (tag != "*" && child.tag != tag) continue;
    if (const Element* const found = FindPath(child, path)) return found;
  }
  return nullptr;
}

bool EndsWithAny(std::string_view text, std::initializer_list<std::string_view> ends) {
  for (const std::string_view end : ends) {
    if (text.ends_with(end)) return true;
  }
  return false;
}

constexpr FieldSpec kWrapperFields[] = {
    {"TRNUID", "transaction_id", "Transaction", true},
    {"CLTCOOKIE", "client_cookie", "Client cookie", true},
    {"STATUS/CODE", "status_code", "Status"},
    {"STATUS/SEVERITY", "severity", "Severity"},
    {"STATUS/MESSAGE|STATUS/MESSAGE2", "message", "Message"},
};

constexpr FieldSpec kSyncFields[] = {
    {"TOKEN|TOKEN2", "token", "Token"},
    {"LOSTSYNC", "lost_sync", "Lost synchronisation"},
    {"TOKENONLY", "token_only", "Token only"},
    {"REFRESH", "refresh", "Refresh"},
};

class SectionMaker {
 public:
  explicit SectionMaker(bool showIdentifiers) : m_showIdentifiers(showIdentifiers) {}

  void AddFile(const Element& file) {
    NoteSecurities(file);
    for (const Element& body : file.children) {
      for (const Element& set : body.children) {
        for (const Element& member : set.children) AddMember(member, nullptr);
      }
    }
  }
  std::vector<Section> Take() { return std::move(m_sections); }

 private:
  void AddMember(const Element& member, const Element* wrapper) {
    if (EndsWithAny(member.tag, {"SYNCRQ", "SYNCRS", "N.PAYROLLUPDATERQ", "N.PAYROLLUPDATERS"})) {
      AddSync(member);
    } else if (EndsWithAny(member.tag, {"TRNRQ", "TRNRS"})) {
      AddTransaction(member);
    } else {
      AddPayload(member, wrapper);
    }
  }

  // What is in a wrapper, each thing with the wrapper's fields. An answer may have nothing but
  // its status.
  void AddTransaction(const Element& wrapper) {
    bool any = false;
    for (const Element& child : wrapper.children) {
      if (!child.isAggregate || child.tag == "STATUS") continue;
      AddPayload(child, &wrapper);
      any = true;
    }
    if (any) return;
    Section& section = Begin("transaction", wrapper.tag);
    AddFields(section, wrapper, kWrapperFields);
  }

  void AddSync(const Element& sync) {
    const Layout* const layout = FindLayout(sync.tag);
    Section& section = Begin(layout == nullptr ? "synchronisation" : layout->kind,
                             layout == nullptr ? sync.tag : layout->title);
    AddFields(section, sync, kSyncFields);
    if (layout != nullptr) AddLayout(section, sync, *layout);
    for (const Element& child : sync.children) {
      if (EndsWithAny(child.tag, {"TRNRQ", "TRNRS"})) AddTransaction(child);
    }
  }

  void AddPayload(const Element& payload, const Element* wrapper) {
    const Layout* const layout = FindLayout(payload.tag);
    Section& section = Begin(layout == nullptr ? "other" : layout->kind,
                             layout == nullptr ? payload.tag : layout->title);
    if (wrapper != nullptr) AddFields(section, *wrapper, kWrapperFields);
    if (layout == nullptr) {
      AddAll(section, payload, "");
      return;
    }
    AddLayout(section, payload, *layout);
  }

  // What a layout shows of an aggregate: in its own section, then in those of its parts.
  void AddLayout(Section& section, const Element& element, const Layout& layout) {
    AddSubject(section, element, layout.subject);
    AddFields(section, element, layout.fields);
    for (const TableSpec& table : layout.tables) AddTable(section, element, table);
    std::string_view paths = layout.parts;
    while (!paths.empty()) {
      ForEach(element, TakePart(paths, ' '), [this](const Element& part) { AddPart(part); });
    }
  }

  void AddPart(const Element& part) {
    const Layout* const layout = FindLayout(part.tag);
    if (layout == nullptr) return;
    const std::size_t own = m_sections.size();
    AddLayout(Begin(layout->kind, layout->title), part, *layout);
    Section& section = m_sections[own];
    std::erase_if(section.tables, [](const Table& table) { return table.rows.empty(); });
    if (section.fields.empty() && section.tables.empty()) {
      m_sections.erase(m_sections.begin() + static_cast<std::ptrdiff_t>(own));
    }
  }

  static const Layout* FindLayout(std::string_view tag) {
    for (const Layout& layout : Layouts()) {
      if (layout.tag == tag) return &layout;
    }
    return nullptr;
  }

  Section& Begin(std::string_view kind, std::string_view title) {
    Section& section = m_sections.emplace_back();
    section.kind = kind;
    section.title = title;
    return section;
  }

  void AddSubject(Section& section, const Element& payload, std::string_view paths) {
    while (!paths.empty()) {
      const std::optional<Cell> cell = FindCell(payload, TakePart(paths, ' '));
      if (!cell) continue;
      if (!section.subject.empty()) section.subject += ' ';
      section.subject += cell->text;
    }
  }

  void AddFields(Section& section, const Element& element, std::span<const FieldSpec> specs) {
    for (const FieldSpec& spec : specs) {
      if (std::optional<Cell> cell = FindCell(element, spec.path)) {
        section.fields.push_back(
            {std::string(spec.key), std::string(spec.label), std::move(*cell), spec.detail});
      }
    }
  }

  // Every element below a payload that has no layout, under its path of tags.
  void AddAll(Section& section, const Element& element, const std::string& path) {
    for (const Element& child : element.children) {
      const std::string childPath = path + std::string(child.tag);
      if (child.isAggregate) {
        AddAll(section, child, childPath + "/");
      } else {
        section.fields.push_back({childPath, childPath, MakeCell(child)});
      }
    }
  }

  void AddTable(Section& section, const Element& payload, const TableSpec& spec) {
    Table table;
    table.key = spec.key;
    table.title = spec.title;
    for (const FieldSpec& column : spec.columns) {
      table.columns.push_back({std::string(column.key), std::string(column.label), column.detail});
    }
    if (ForEach(payload, spec.path,
                [&](const Element& child) { AddRow(table, child, spec.columns); })) {
      section.tables.push_back(std::move(table));
    }
  }

  // Visits the aggregates at the end of a path, in their order. False when what should hold them is
  // not there.
  template <class Visit>
  static bool ForEach(const Element& element, std::string_view path, Visit visit) {
    const std::size_t last = path.rfind('/');
    const Element* const parent =
        last == std::string_view::npos ? &element : FindPath(element, path.substr(0, last));
    if (parent == nullptr) return false;
    if (last != std::string_view::npos) path.remove_prefix(last + 1);
    for (const Element& child : parent->children) {
      if (child.isAggregate && IsOneOf(child.tag, path, '|')) visit(child);
    }
    return true;
  }

  void AddRow(Table& table, const Element& element, std::span<const FieldSpec> columns) {
    std::vector<std::optional<Cell>>& row = table.rows.emplace_back();
    row.reserve(columns.size());
    for (const FieldSpec& column : columns) {
      if (column.path == ".") {
        row.push_back(Cell{ValueKind::kText, std::string(element.tag)});
      } else {
        row.push_back(FindCell(element, column.path));
      }
    }
  }

  static bool IsOneOf(std::string_view tag, std::string_view tags, char separator) {
    while (!tags.empty()) {
      const std::string_view candidate = TakePart(tags, separator);
      if (candidate == "*" || candidate == tag) return true;
    }
    return false;
  }

  // The descriptions of securities, wherever in the file they are.
  void NoteSecurities(const Element& element) {
    for (const Element& child : element.children) {
      if (child.tag == "SECINFO") {
        if (const Element* const id = child.Find("SECID")) m_securities[IdentityOf(*id)] = &child;
      } else {
        NoteSecurities(child);
      }
    }
  }

  // Identifiers of different schemes may have the same text.
  static std::string IdentityOf(const Element& id) {
    std::string identity;
    for (const Element& part : id.children) identity += part.value + '\n';
    return identity;
  }

  // What a path leads to; null when there is nothing.
  const Element* Follow(const Element& element, std::string_view path) const {
    const Element* const found = FindPath(element, TakePart(path, '>'));
    if (found == nullptr || path.empty()) return found;
    const auto security = m_securities.find(IdentityOf(*found));
    return security == m_securities.end() ? nullptr : FindPath(*security->second, path);
  }

  // All elements of one tag in an aggregate, in one cell.
  std::optional<Cell> JoinAll(const Element& element, std::string_view path) const {
    const std::size_t last = path.rfind('/');
    const Element* const parent =
        last == std::string_view::npos ? &element : FindPath(element, path.substr(0, last));
    if (parent == nullptr) return std::nullopt;
    if (last != std::string_view::npos) path.remove_prefix(last + 1);
    std::optional<Cell> all;
    for (const Element& child : parent->children) {
      if (child.tag != path || child.isAggregate) continue;
      const Cell cell = MakeCell(child);
      if (all) {
        all->text += ", " + cell.text;
      } else {
        all = Cell{ValueKind::kText, cell.text};
      }
    }
    return all;
  }

  // The sum of one element over some of the aggregates below. Amounts of different kinds, dollars
  // and percentages, have none.
  static std::optional<Cell> SumAll(const Element& element, std::string_view path) {
    const std::size_t slash = path.rfind('/');
    const std::string_view tags = path.substr(0, slash);
    std::optional<KRPayrollAmount> sum;
    for (const Element& child : element.children) {
      if (!child.isAggregate || !IsOneOf(child.tag, tags, ',')) continue;
      const Element* const found = child.Find(path.substr(slash + 1));
      if (found == nullptr || found->kind != ValueKind::kAmount) continue;
      const KRPayrollAmount amount(found->value.c_str());
      if (!sum) {
        sum = amount;
      } else if (amount.IsPercent() != sum->IsPercent() ||
                 amount.IsDollarKind() != sum->IsDollarKind()) {
        return std::nullopt;
      } else {
        *sum += amount;
      }
    }
    if (!sum) return std::nullopt;
    const char* const text = *sum;
    return Cell{ValueKind::kAmount, text == nullptr ? "" : text};
  }

  static std::optional<Cell> FirstAggregate(const Element& element) {
    for (const Element& child : element.children) {
      if (child.isAggregate) return Cell{ValueKind::kText, std::string(child.tag)};
    }
    return std::nullopt;
  }

  std::optional<Cell> FindCell(const Element& element, std::string_view paths) const {
    if (paths == "*.") return FirstAggregate(element);
    if (paths.ends_with('=')) return SumAll(element, paths.substr(0, paths.size() - 1));
    while (!paths.empty()) {
      const std::string_view path = TakePart(paths, '|');
      if (path.ends_with('+')) {
        if (std::optional<Cell> all = JoinAll(element, path.substr(0, path.size() - 1))) return all;
        continue;
      }
      const Element* const found = Follow(element, path);
      if (found != nullptr && !found->isAggregate) return MakeCell(*found);
    }
    return std::nullopt;
  }

  Cell MakeCell(const Element& element) const {
    if (IsPassword(element.id)) return {ValueKind::kText, "(not shown)"};
    return {element.kind,
            m_showIdentifiers ? element.value : Masked(element.value, element.disclosure)};
  }

  const bool m_showIdentifiers;
  std::map<std::string, const Element*> m_securities;
  std::vector<Section> m_sections;
};

}  // namespace

std::vector<Section> MakeSections(const Element& file, bool showIdentifiers) {
  SectionMaker maker(showIdentifiers);
  maker.AddFile(file);
  return maker.Take();
}

}  // namespace krofx::command
