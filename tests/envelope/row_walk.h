// A walk over the rows of all tables: objects of every class, in each version and as each type that
// decides which rows are valid, and what is kept of the rows that were seen.

#ifndef KROFX_TESTS_ENVELOPE_ROW_WALK_H_
#define KROFX_TESTS_ENVELOPE_ROW_WALK_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "krofx/envelope/internal/routing.h"
#include "krofx/model/internal/aggregate.h"
#include "row_values.h"
#include "support/aggregate_table.h"
#include "support/every_class.h"

namespace krofx::testing {

/// Rows as "CLASS TAG".
using RowNames = std::set<std::string>;

/// @param tags separated by blanks.
inline RowNames RowsOfClass(const std::string& name, const std::string& tags) {
  RowNames names;
  for (const std::string& tag : SplitAt(tags, ' ')) names.insert(name + " " + tag);
  return names;
}

/// Two rows that are read into two others, which tests/payroll/sign_on_test.cpp tests.
inline RowNames RowsReadElsewhere() {
  return RowsOfClass("PayrollSignOnRq", "APPID APPVER N.ONSERVICE N.PAYROLL");
}

inline const ClassMap& Classes() {
  static const ClassMap classes = FindEveryTable();
  return classes;
}

/// A class in a version, with a type: for some classes it decides which rows are valid.
struct Subject {
  std::string name;
  const AnyClass& any;
  u16 version;
  KRTagID type;

  std::unique_ptr<KRDataObj> Make() const {
    auto object = any.Make(version);
    if (type != KRTag_None) object->SetType(type);
    return object;
  }
};

/// The types that objects of a class can have, together enough for all rows; KRTag_None is that of
/// a new object.
inline std::vector<KRTagID> TypesOf(const std::string& name) {
  using krofx::internal::Side;
  std::vector<KRTagID> types;
  const auto add = [&types](const auto& routes) {
    for (const auto& route : routes) types.push_back(route.wrapper);
  };
  if (name == "KRTransRq") add(krofx::internal::Transactions(Side::kRequest));
  if (name == "KRTransRs") add(krofx::internal::Transactions(Side::kResponse));
  if (name == "KRSyncRq") add(krofx::internal::Syncs(Side::kRequest));
  if (name == "KRSyncRs") add(krofx::internal::Syncs(Side::kResponse));
  // A change has both the accounts of an action.
  if (name == "KRAction") types.push_back(KRTag_SVCCHG);
  if (types.empty()) types.push_back(KRTag_None);
  return types;
}

/// Calls `visit` for each subject.
template <class Visit>
void ForEachSubject(Visit visit) {
  for (const auto& [name, any] : Classes()) {
    for (const u16 version : {u16{1}, u16{2}}) {
      for (const KRTagID type : TypesOf(name)) {
        const Subject subject{name, any, version, type};
        // A PayrollSignOnRq is of the first version, whatever is set.
        if (subject.Make()->GetMsgSetVersion() != version) continue;
        SCOPED_TRACE(name + " of version " + std::to_string(version) + ", type " +
                     std::to_string(type));
        visit(subject);
      }
    }
  }
}

/// Whether a row brings a child, or is one that its object holds by value.
inline bool IsChild(const krofx::internal::Row& row) {
  return row.create != nullptr ||
         (row.value != nullptr && row.value->form == krofx::internal::ValueForm::kAggregate);
}

/// Which rows a walk is about.
enum class RowsOf { kValues, kChildren };

inline std::string NameOf(const Subject& subject, const TaggedRow& row) {
  return subject.name + " " + row.Tag();
}

/// Keeps which rows were walked, and in which versions.
class Walk {
 public:
  explicit Walk(RowsOf rows) : m_rows(rows) {}

  /// The rows that are valid in a subject. From now on they count as walked.
  std::vector<TaggedRow> Take(const Subject& subject) {
    const auto object = subject.Make();
    std::vector<TaggedRow> taken;
    ForEachRow(subject, [&](const TaggedRow& row) {
      const bool isListed = row.row.value == nullptr && row.row.create == nullptr;
      if (isListed || object->IsValidTag(row.tag) == 0 || IsReadElsewhere(subject, row)) return;
      taken.push_back(row);
      m_walked.insert({&row.row, subject.version});
    });
    return taken;
  }

  /// How many were walked; a row counts in each version.
  std::size_t Count() const { return m_walked.size(); }

  /// The rows that were not walked in all versions that their table has them for.
  RowNames Missed() const {
    RowNames missed;
    ForEachSubject([&](const Subject& subject) {
      ForEachRow(subject, [&](const TaggedRow& row) {
        if (m_walked.count({&row.row, subject.version}) != 0) return;
        missed.insert(NameOf(subject, row));
      });
    });
    return missed;
  }

 private:
  static bool IsReadElsewhere(const Subject& subject, const TaggedRow& row) {
    static const RowNames rows = RowsReadElsewhere();
    return rows.count(NameOf(subject, row)) != 0;
  }

  // Calls `visit` for the rows whose versions include that of a subject.
  template <class Visit>
  void ForEachRow(const Subject& subject, Visit visit) const {
    const krofx::internal::AggregateTable& table = *subject.any.table;
    for (u16 position = 0; position < table.valid.count; ++position) {
      const KRTagTableEntry& entry = table.valid.table[position];
      const TaggedRow row{entry.tag, table.rows[position]};
      const bool isAsked = IsChild(row.row) == (m_rows == RowsOf::kChildren);
      if (isAsked && (entry.versions & subject.version) != 0) visit(row);
    }
  }

  const RowsOf m_rows;
  std::set<std::pair<const krofx::internal::Row*, u16>> m_walked;
};

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ENVELOPE_ROW_WALK_H_
