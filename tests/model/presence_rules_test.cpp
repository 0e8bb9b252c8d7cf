// Rules of presence in addition to the table of required tags: what each requires, when it applies,
// and which missing tag is reported for it.

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/tag_index.h"

namespace {

using krofx::internal::AggregateTable;
using krofx::internal::Rule;
using krofx::internal::RuleCondition;
using krofx::internal::RuleKind;

constexpr KRTagTableEntry kValid[] = {
    {KRTag_NAME, 0xffff}, {KRTag_ADDR1, 0xffff}, {KRTag_ADDR2, 0xffff}, {KRTag_ADDR3, 0xffff},
    {KRTag_CITY, 0xffff}, {KRTag_MEMO, 0x1},     {KRTag_MEMO2, 0xfffe},
};
constexpr KRTagTableEntry kRequired[] = {
    {KRTag_NAME, 0xffff}, {KRTag_MEMO, 0x1}, {KRTag_MEMO2, 0xfffe}};
constexpr KRTagID kAddresses[] = {KRTag_ADDR1, KRTag_ADDR2, KRTag_ADDR3};
constexpr KRTagID kCity[] = {KRTag_CITY};

// An aggregate of seven tags without values, with the rules that a test gives it.
class Ruled : public KRDataObj {
 public:
  explicit Ruled(std::vector<Rule> rules, bool rulesOnly = true, u16 version = 1)
      : KRDataObj(version), m_rules(std::move(rules)) {
    m_table.valid = {kValid, 7, nullptr};
    m_table.required = {kRequired, 3, nullptr};
    m_table.rules = m_rules.data();
    m_table.ruleCount = static_cast<u8>(m_rules.size());
    m_table.rulesOnly = rulesOnly;
  }
  Ruled& With(std::initializer_list<KRTagID> tags) {
    for (const KRTagID tag : tags) SetTag(tag);
    return *this;
  }
  // Every missing tag, as a host lists them one after another.
  std::vector<KRTagID> Missing() {
    std::vector<KRTagID> tags;
    for (KRTagID tag = KRTag_None; (tag = GetFirstMissingRequiredTag(tag)) != KRTag_None;) {
      tags.push_back(tag);
    }
    return tags;
  }

 protected:
  const AggregateTable* GetTable() const override { return &m_table; }

 private:
  std::vector<Rule> m_rules;
  AggregateTable m_table;
};

using Tags = std::vector<KRTagID>;

Rule Addresses(RuleKind kind, bool reported = true) {
  return {kind, RuleCondition::kAlways, nullptr, 0, kAddresses, 3, reported};
}

// Whether a rule over three tags holds with none, the first, the first two and all of them.
std::vector<u16> HoldsWith(RuleKind kind) {
  std::vector<u16> result;
  for (const auto& tags : {std::initializer_list<KRTagID>{},
                           {KRTag_ADDR1},
                           {KRTag_ADDR1, KRTag_ADDR2},
                           {KRTag_ADDR1, KRTag_ADDR2, KRTag_ADDR3}}) {
    result.push_back(Ruled({Addresses(kind)}).With(tags).AllRequiredPresent());
  }
  return result;
}

TEST(PresenceRules, CountTheTagsThatArePresent) {
  EXPECT_EQ(HoldsWith(RuleKind::kNone), (std::vector<u16>{1, 0, 0, 0}));
  EXPECT_EQ(HoldsWith(RuleKind::kAtMostOne), (std::vector<u16>{1, 1, 0, 0}));
  EXPECT_EQ(HoldsWith(RuleKind::kExactlyOne), (std::vector<u16>{0, 1, 0, 0}));
  EXPECT_EQ(HoldsWith(RuleKind::kAtLeastOne), (std::vector<u16>{0, 1, 1, 1}));
  EXPECT_EQ(HoldsWith(RuleKind::kAll), (std::vector<u16>{0, 0, 0, 1}));
  EXPECT_EQ(HoldsWith(RuleKind::kExclusiveOr), (std::vector<u16>{0, 1, 0, 1}));
}

TEST(PresenceRules, AreAskedOnlyUnderTheirCondition) {
  const Rule when = {RuleKind::kAll, RuleCondition::kWhenAny, kCity, 1, kAddresses, 3, true};
  EXPECT_EQ(Ruled({when}).AllRequiredPresent(), 1);
  EXPECT_EQ(Ruled({when}).With({KRTag_CITY}).Missing(), Tags{KRTag_ADDR1});
  const Rule unless = {RuleKind::kAll, RuleCondition::kUnlessAny, kCity, 1, kAddresses, 3, true};
  EXPECT_EQ(Ruled({unless}).With({KRTag_CITY}).AllRequiredPresent(), 1);
  EXPECT_EQ(Ruled({unless}).Missing(), Tags{KRTag_ADDR1});
}

TEST(PresenceRules, ReportTheFirstAbsentTagOfTheirList) {
  EXPECT_EQ(Ruled({Addresses(RuleKind::kAll)}).Missing(), Tags{KRTag_ADDR1});
  EXPECT_EQ(Ruled({Addresses(RuleKind::kAll)}).With({KRTag_ADDR1, KRTag_ADDR3}).Missing(),
            Tags{KRTag_ADDR2});
  EXPECT_EQ(Ruled({Addresses(RuleKind::kExactlyOne)}).With({KRTag_ADDR3}).Missing(), Tags{});
}

TEST(PresenceRules, ReportTheirFirstTagWhenNoneIsAbsent) {
  Ruled crowded({Addresses(RuleKind::kAtMostOne)});
  crowded.With({KRTag_ADDR1, KRTag_ADDR2, KRTag_ADDR3});
  EXPECT_EQ(crowded.AllRequiredPresent(), 0);
  EXPECT_EQ(crowded.Missing(), Tags{KRTag_ADDR1});
}

TEST(PresenceRules, StaySilentUnlessReported) {
  Ruled object({Addresses(RuleKind::kAll, false)});
  EXPECT_EQ(object.AllRequiredPresent(), 0);
  EXPECT_EQ(object.Missing(), Tags{});
}

TEST(PresenceRules, AreReportedBehindTheRequiredRows) {
  const Rule city = {RuleKind::kAll, RuleCondition::kAlways, nullptr, 0, kCity, 1, true};
  Ruled object({Addresses(RuleKind::kExclusiveOr), city}, false);
  EXPECT_EQ(object.Missing(), (Tags{KRTag_NAME, KRTag_MEMO, KRTag_ADDR1, KRTag_CITY}));
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_MEMO), KRTag_ADDR1);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_ADDR2), KRTag_None);
  object.With({KRTag_NAME, KRTag_MEMO});
  EXPECT_EQ(object.AllRequiredPresent(), 0);
  object.With({KRTag_ADDR2, KRTag_CITY});
  EXPECT_EQ(object.AllRequiredPresent(), 1);
  EXPECT_EQ(object.Missing(), Tags{});
}

TEST(PresenceRules, AloneLeaveTheRequiredRowsOut) {
  Ruled object({Addresses(RuleKind::kExactlyOne)}, true);
  EXPECT_EQ(object.Missing(), Tags{KRTag_ADDR1});
  object.With({KRTag_ADDR2});
  EXPECT_EQ(object.AllRequiredPresent(), 1);
  EXPECT_EQ(object.Missing(), Tags{});
  EXPECT_EQ(object.IsTagRequired(KRTag_NAME), 0);
}

TEST(PresenceRules, HoldNothingInAnObjectOfUnknownVersion) {
  Ruled object({Addresses(RuleKind::kExactlyOne)}, true, 0);
  EXPECT_EQ(object.AllRequiredPresent(), 0);
  EXPECT_EQ(object.Missing(), Tags{KRTag_ADDR1});
}

}  // namespace
