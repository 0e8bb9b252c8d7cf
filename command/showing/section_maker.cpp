// The walk that turns a tree into sections by them.

#include "showing/section_maker.h"

#include <cstddef>
#include <string>
#include <vector>

#include "showing/held_transactions.h"
#include "showing/layout.h"
#include "showing/row_maker.h"
#include "showing/streamed_rows.h"
#include "showing/transaction_columns.h"

namespace krofx::command {

namespace {

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
  SectionMaker(TextArena& arena, bool showIdentifiers, HeldTransactions& held,
               StreamedRows* streamed)
      : m_arena(arena), m_rows(arena, showIdentifiers), m_held(held), m_streamed(streamed) {}

  void AddFile(const Element& file) {
    for (const Element& body : file.children) {
      for (const Element& set : body.children) {
        if (set.tag.starts_with("SECLIST")) m_rows.NoteSecurities(set);
      }
    }
    if (m_streamed != nullptr) m_streamed->NoteSecurities(m_rows, m_arena);
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
      const RowPath path = RowPathOf(TakePart(paths, ' '));
      const Element* const parent = FindPath(element, path.parent);
      if (parent == nullptr) continue;
      ForEach(*parent, path.rows, [this](const Element& part) { AddPart(part); });
    }
  }

  void AddPart(const Element& part) {
    const Layout* const layout = FindLayout(part.tag);
    if (layout == nullptr) return;
    const std::size_t own = m_sections.size();
    AddLayout(Begin(layout->kind, layout->title), part, *layout);
    Section& section = m_sections[own];
    std::erase_if(section.tables, [](const Table& table) {
      return table.cells.empty() && table.source == nullptr;
    });
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
    for (const CellSource& source : SubjectSourcesOf(paths)) {
      const Element* const found = m_rows.FindElement(payload, source);
      if (found == nullptr) continue;
      if (!section.subject.empty()) section.subject += ' ';
      section.subject += m_rows.CellOf(*found).text;
      section.identity.append(found->value).append("\n");
      if (found->id == KRTag_ACCTID) section.accountNumber = found->value;
    }
  }

  void AddFields(Section& section, const Element& element, std::span<const FieldSpec> specs) {
    const FieldSpec* spec = specs.data();
    for (const CellSource& source : SourcesOf(specs)) {
      // A sum over a part of the rows would be wrong.
      const bool isWhole = source.kind != CellSource::Kind::kSum || m_streamed == nullptr ||
                           !m_streamed->Lacks(element, source.summed);
      if (const Cell cell = isWhole ? m_rows.Find(element, source) : Cell()) {
        section.fields.push_back({spec->key, spec->label, cell, spec->detail});
      }
      ++spec;
    }
  }

  // Every element below a payload that has no layout, under its path of tags.
  void AddAll(Section& section, const Element& element, const std::string& path) {
    for (const Element& child : element.children) {
      const std::string childPath = path + std::string(child.tag);
      if (child.isAggregate) {
        AddAll(section, child, childPath + "/");
      } else {
        const std::string_view key = m_arena.Copy(childPath);
        section.fields.push_back({key, key, m_rows.CellOf(child)});
      }
    }
  }

  void AddTable(Section& section, const Element& payload, const TableSpec& spec) {
    const RowPath path = RowPathOf(spec.path);
    const Element* const parent = FindPath(payload, path.parent);
    if (parent == nullptr) return;
    Table& table = section.tables.emplace_back(Table{&spec});
    std::vector<KRTagID> kinds;
    ForEach(*parent, path.rows, [&](const Element& child) {
      m_rows.AppendRow(table.cells, child, spec);
      kinds.push_back(child.id);
    });
    if (m_streamed != nullptr) {
      m_streamed->AddRows(table, *parent, path.rows, kinds, m_rows);
    } else if (spec.key == kTransactions) {
      table.source = m_held.RowsOf(*parent, spec);
    }
  }

  // Visits the aggregates of some tags in another one, in their order.
  template <class Visit>
  static void ForEach(const Element& parent, const TagPath& tags, Visit visit) {
    for (const Element& child : parent.children) {
      if (child.isAggregate && IsOneOf(child.id, tags)) visit(child);
    }
  }

  TextArena& m_arena;
  RowMaker m_rows;
  HeldTransactions& m_held;
  StreamedRows* const m_streamed;
  std::vector<Section> m_sections;
};

}  // namespace

Cell Section::Find(std::string_view key) const {
  for (const Field& field : fields) {
    if (field.key == key) return field.cell;
  }
  return {};
}

std::vector<Section> MakeSections(const Element& file, TextArena& arena, bool showIdentifiers,
                                  HeldTransactions& held, StreamedRows* streamed) {
  SectionMaker maker(arena, showIdentifiers, held, streamed);
  maker.AddFile(file);
  return maker.Take();
}

}  // namespace krofx::command
