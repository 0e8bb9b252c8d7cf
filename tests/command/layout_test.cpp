// The layouts of `krofx print`: every tag in their paths is in the dictionary, and every path can
// be followed through the tables of the aggregates, so that no mistake in a path shows up as an
// empty column.

#include "showing/layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "krofx/envelope/internal/routing.h"
#include "krofx/krofx.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::command {
namespace {

using Tags = std::vector<std::string_view>;

Tags Split(std::string_view text, char separator) {
  Tags parts;
  while (!text.empty()) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return parts;
}

KRTagID IdOf(std::string_view tag) {
  KRTagID id = KRTag_None;
  KRTagDictionary::TheKRTagDictionary()->GetTagID(tag.data(), static_cast<u16>(tag.size()), &id,
                                                  KRCaseType_Exact);
  return id;
}

std::string TextOf(KRTagID tag) {
  const char* const text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
  return text == nullptr ? "" : text;
}

// All aggregates that files can hold, each made once, by their tags.
class Grammar {
 public:
  struct Member {
    KRTagID tag;
    bool isAggregate;
  };

  Grammar() {
    for (const internal::Side side : {internal::Side::kRequest, internal::Side::kResponse}) {
      for (const internal::TransactionRoute& route : internal::Transactions(side)) {
        for (u8 index = 0; index < route.payloadCount; ++index) {
          Add(route.payloads[index].tag, route.payloads[index].create(m_factory));
        }
      }
    }
    Add(KRTag_SONRQ, new KRSignOnRq);
    Add(KRTag_SONRS, new KRSignOnRs);
    Add(KRTag_SECLIST, new KRSecList);
    Add(IdOf("N.PAYROLLUPDATERS"), new KRPayrollUpdateRs);
  }

  bool Has(KRTagID tag) const { return m_members.contains(tag); }
  const std::vector<Member>& MembersOf(KRTagID tag) const { return m_members.at(tag); }

 private:
  void Add(KRTagID tag, KRDataObj* made) {
    const std::unique_ptr<KRDataObj> object(made);
    ASSERT_NE(object, nullptr) << TextOf(tag);
    const internal::AggregateTable* const table = internal::ObjectAccess::TableOf(*object);
    if (table == nullptr || !m_seen.insert({tag, table}).second) return;
    std::vector<Member>& members = m_members[tag];
    for (u16 index = 0; index < table->valid.count; ++index) {
      const internal::Row& row = table->rows[index];
      const KRTagID child = table->valid.table[index].tag;
      members.push_back({child, row.create != nullptr});
      if (row.create != nullptr) Add(child, row.create(m_factory));
    }
  }

  KRDataObjFactory m_factory{0xffff};
  std::set<std::pair<KRTagID, const internal::AggregateTable*>> m_seen;
  std::map<KRTagID, std::vector<Member>> m_members;
};

// Whether steps lead from an aggregate to an element, or to an aggregate.
bool Leads(const Grammar& grammar, KRTagID from, const Tags& steps, std::size_t at,
           bool toAggregate) {
  if (!grammar.Has(from)) return false;
  for (const Grammar::Member& member : grammar.MembersOf(from)) {
    if (steps[at] != "*" && TextOf(member.tag) != steps[at]) continue;
    // A member that is a part of its aggregate cannot be made by itself, but its class is known.
    const bool isAggregate = member.isAggregate || grammar.Has(member.tag);
    if (at + 1 == steps.size()) {
      if (isAggregate == toAggregate) return true;
    } else if (isAggregate && Leads(grammar, member.tag, steps, at + 1, toAggregate)) {
      return true;
    }
  }
  return false;
}

// The simple paths that the path of a field is made of.
Tags PlainPaths(std::string_view path) {
  if (path == "." || path == "*.") return {};
  if (path.ends_with('+') || path.ends_with('=')) path.remove_suffix(1);
  return Split(path, '|');
}

// Every path of the layouts, and whether it can be followed from at least one layout that has it.
class PathCheck {
 public:
  explicit PathCheck(const Grammar& grammar) : m_grammar(grammar) {}

  void TakeField(KRTagID from, std::string_view path, const std::string& where) {
    for (std::string_view each : PlainPaths(path)) {
      if (each.ends_with('+')) each.remove_suffix(1);
      const std::string_view first = each.substr(0, each.find('>'));
      const bool leadsOn = first.size() < each.size();
      Note(from, first, leadsOn, where);
      if (leadsOn) Note(KRTag_SECINFO, each.substr(first.size() + 1), false, where);
    }
  }
  // The last step of a path of aggregates may name several tags.
  void TakeAggregates(KRTagID from, std::string_view path, const std::string& where) {
    const std::size_t slash = path.rfind('/');
    const std::string start(path.substr(0, slash == std::string_view::npos ? 0 : slash + 1));
    for (const std::string_view last : Split(path.substr(start.size()), '|')) {
      m_made.push_back(std::make_unique<std::string>(start + std::string(last)));
      Note(from, *m_made.back(), true, where);
    }
  }
  // A sum over several aggregates.
  void TakeSum(KRTagID from, std::string_view path, const std::string& where) {
    const std::size_t slash = path.rfind('/');
    for (const std::string_view tag : Split(path.substr(0, slash), ',')) {
      m_made.push_back(
          std::make_unique<std::string>(std::string(tag) + std::string(path.substr(slash))));
      Note(from, *m_made.back(), false, where);
    }
  }
  void ExpectAllLead() const {
    for (const auto& [key, leads] : m_found) EXPECT_TRUE(leads) << key;
  }

 private:
  void Note(KRTagID from, std::string_view path, bool toAggregate, const std::string& where) {
    const Tags steps = Split(path, '/');
    ASSERT_FALSE(steps.empty()) << where;
    for (const std::string_view step : steps) {
      if (step != "*") {
        EXPECT_NE(IdOf(step), KRTag_None) << step << " in " << where;
      }
    }
    bool& leads = m_found[where + ": " + std::string(path)];
    leads = leads || Leads(m_grammar, from, steps, 0, toAggregate);
  }

  const Grammar& m_grammar;
  std::vector<std::unique_ptr<std::string>> m_made;
  std::map<std::string, bool> m_found;
};

// Names where a path is by its address: layouts that share a table of fields count as one place.
std::string PlaceOf(const void* place, std::string_view key) {
  return std::string(key) + " of the layouts with the table at " +
         std::to_string(reinterpret_cast<std::uintptr_t>(place));
}

TEST(Layouts, LeadWithEveryPathToWhatTheTablesHave) {
  const Grammar grammar;
  PathCheck check(grammar);
  const auto takeFields = [&](std::span<const FieldSpec> fields, KRTagID from) {
    for (const FieldSpec& field : fields) {
      const std::string where = PlaceOf(fields.data(), field.key);
      if (field.path.ends_with('=')) {
        check.TakeSum(from, field.path.substr(0, field.path.size() - 1), where);
      } else {
        check.TakeField(from, field.path, where);
      }
    }
  };
  for (const Layout& layout : Layouts()) {
    const KRTagID tag = IdOf(layout.tag);
    ASSERT_NE(tag, KRTag_None) << layout.tag;
    if (layout.fields.empty() && layout.tables.empty() && layout.parts.empty()) continue;
    ASSERT_TRUE(grammar.Has(tag)) << layout.tag;
    takeFields(layout.fields, tag);
    for (const std::string_view path : Split(layout.subject, ' ')) {
      check.TakeField(tag, path, PlaceOf(layout.subject.data(), "subject"));
    }
    for (const std::string_view path : Split(layout.parts, ' ')) {
      check.TakeAggregates(tag, path, PlaceOf(layout.parts.data(), "parts"));
    }
    for (const TableSpec& table : layout.tables) {
      check.TakeAggregates(tag, table.path, PlaceOf(&table, table.key));
      // The aggregates that the rows are made of.
      const Tags steps = Split(table.path, '/');
      std::set<KRTagID> from{tag};
      for (const std::string_view step : steps) {
        std::set<KRTagID> next;
        for (const KRTagID each : from) {
          for (const Grammar::Member& member : grammar.MembersOf(each)) {
            const Tags tags = Split(step, '|');
            const bool named = step == "*" || std::find(tags.begin(), tags.end(),
                                                        TextOf(member.tag)) != tags.end();
            if (member.isAggregate && named) next.insert(member.tag);
          }
        }
        from = next;
      }
      EXPECT_FALSE(from.empty()) << layout.tag << " " << table.key;
      for (const KRTagID row : from) takeFields(table.columns, row);
    }
  }
  check.ExpectAllLead();
}

TEST(Layouts, AreFoundByOneTagEach) {
  std::set<std::string_view> tags;
  for (const Layout& layout : Layouts()) EXPECT_TRUE(tags.insert(layout.tag).second) << layout.tag;
}

}  // namespace
}  // namespace krofx::command
