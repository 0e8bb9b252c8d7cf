// A minimal complete exchange in every wrapper: each is read without a warning into its classes, is
// complete, is written as it was read, and is copied whole. The tables have every wrapper, payload
// and synchronisation of both versions.

#include "exchanges/exchanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "envelope/routing_lists.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

const Family kFamilies[] = {kSignOnFamily,  kBankingFamily,   kInvestmentFamily,
                            kPaymentFamily, kExtensionFamily, kPayrollFamily};
constexpr u16 kVersions[] = {1, 2};

using Exchanges = std::vector<const Exchange*>;

// A whole file around the content of a message set. The sign-on is in a set of its own family,
// which a file has once.
std::string FileAround(std::string_view set, const std::string& content, u16 version) {
  std::string signOn = IsRequest(set) ? SignOnRequestSet(version) : SignOnResponseSet(version);
  if (!set.starts_with("SIGNON")) {
    return IsRequest(set) ? RequestFile(set, content, version)
                          : ResponseFile(set, content, version);
  }
  return File(signOn.insert(signOn.rfind("</"), content), version);
}

void CollectWrappers(KRDataObj* object, std::vector<KRDataObj*>& wrappers) {
  if (dynamic_cast<KRTransRq*>(object) != nullptr || dynamic_cast<KRTransRs*>(object) != nullptr) {
    wrappers.push_back(object);
  }
  for (u16 i = 0; i < object->GetNumberOfChildren(); ++i) {
    if (KRDataObj* child = object->GetChild(i)) CollectWrappers(child, wrappers);
  }
}

KRDataObj* PayloadOf(KRDataObj& wrapper, KRTagID tag) {
  for (u16 i = 0; i < wrapper.GetNumberOfChildren(); ++i) {
    KRDataObj* child = wrapper.GetChild(i);
    if (child != nullptr && child->GetType() == tag) return child;
  }
  return nullptr;
}

// The wrappers of a tree are those of `carried`, in this order, each with a payload of its class.
void ExpectCarries(KRDataObj* root, const Exchanges& carried) {
  std::vector<KRDataObj*> wrappers;
  CollectWrappers(root, wrappers);
  ASSERT_EQ(wrappers.size(), carried.size());
  for (std::size_t i = 0; i < carried.size(); ++i) {
    EXPECT_EQ(wrappers[i]->GetType(), Id(carried[i]->wrapper));
    if (carried[i]->isPayload == nullptr) continue;
    const KRDataObj* payload = PayloadOf(*wrappers[i], Id(carried[i]->payload));
    ASSERT_NE(payload, nullptr) << carried[i]->payload;
    EXPECT_TRUE(carried[i]->isPayload(*payload)) << carried[i]->payload;
  }
}

template <class Root>
void ExpectWhole(const std::string& text, const Exchanges& carried) {
  const Parsed<Root> file(text, 1, 1);
  EXPECT_EQ(file.Warnings(), Lines());
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  KRDataObj* lacking = file.Get();
  KRTagID missing = KRTag_None;
  EXPECT_EQ(KRUtility::AllRequiredPresent(&lacking, &missing), 1) << lacking->GetType();
  ExpectCarries(file.Get(), carried);
  const Built whole{KRBuildStatus_Done, InLines(text)};
  EXPECT_EQ(Build(*file, KRBuildStringOpt_Strict, 1), whole);

  Root copy;
  EXPECT_EQ(copy.DeepCopyFrom(file.Get()), 1);
  ExpectCarries(&copy, carried);
  EXPECT_EQ(Build(copy, KRBuildStringOpt_Strict, 1), whole);
}

// Reads, checks and writes a file whose message set `set` holds `content`.
void ExpectWholeFile(std::string_view set, const std::string& content, u16 version,
                     const Exchanges& carried) {
  const std::string text = FileAround(set, content, version);
  IsRequest(set) ? ExpectWhole<KRFileRq>(text, carried) : ExpectWhole<KRFileRs>(text, carried);
}

class ExchangesOf : public ::testing::TestWithParam<Family> {};

TEST_P(ExchangesOf, AreReadAndWrittenWhole) {
  for (const Exchange& exchange : GetParam().exchanges) {
    for (const u16 version : kVersions) {
      if ((exchange.versions & version) == 0 || *exchange.set == '\0') continue;
      SCOPED_TRACE(std::string(exchange.wrapper) + " " + exchange.payload + VersionSuffix(version));
      ExpectWholeFile(exchange.set, WrapperText(exchange, version), version, {&exchange});
    }
  }
}

TEST_P(ExchangesOf, AreReadAndWrittenWholeInSynchronisations) {
  for (const Sync& sync : GetParam().syncs) {
    for (const u16 version : kVersions) {
      if ((sync.versions & version) == 0) continue;
      SCOPED_TRACE(std::string(sync.tag) + " " + sync.wrapper + VersionSuffix(version));
      std::string content = Expanded(sync.head, version);
      Exchanges carried;
      for (const Exchange& exchange : GetParam().exchanges) {
        if (std::string_view(exchange.wrapper) != sync.wrapper) continue;
        if ((exchange.versions & version) == 0) continue;
        content += WrapperText(exchange, version);
        carried.push_back(&exchange);
      }
      ASSERT_FALSE(carried.empty());
      ExpectWholeFile(sync.set, Aggregate(sync.tag, content + Expanded(sync.tail, version)),
                      version, carried);
    }
  }
}

// With an error a wrapper needs no payload, except the wrapper for several transfers, which needs
// one whatever its status is.
TEST_P(ExchangesOf, NeedNoPayloadBesideAnError) {
  const std::string error = "<TRNUID>1<STATUS><CODE>2000<SEVERITY>ERROR</STATUS>";
  for (const Exchange& exchange : GetParam().exchanges) {
    const std::string_view wrapper = exchange.wrapper;
    if (IsRequest(wrapper) || *exchange.set == '\0' || wrapper == "MULTIINTERTRNRS") continue;
    SCOPED_TRACE(wrapper);
    Exchange refused = exchange;
    refused.isPayload = nullptr;
    ExpectWholeFile(exchange.set, Aggregate(wrapper, error), 1, {&refused});
  }
}

INSTANTIATE_TEST_SUITE_P(Families, ExchangesOf, ::testing::ValuesIn(kFamilies),
                         [](const auto& test) { return test.param.name; });

TEST(Synchronisations, CopyTheirTransactionsOverOthers) {
  const auto read = [](const std::string& id) {
    return Parsed<KRFileRq>(RequestFile(
        "BANKMSGSRQ",
        Aggregate("INTRASYNCRQ",
                  Expanded("@ASK@BANK", 1) +
                      RequestWrapper("INTRATRNRQ", Aggregate("INTRACANRQ", "<SRVRTID>" + id)))));
  };
  const auto source = read("new");
  const auto target = read("old");
  ASSERT_EQ(FindIn<KRSyncRq>(target.Get())->DeepCopyFrom(FindIn<KRSyncRq>(source.Get())), 1);
  EXPECT_EQ(TextOf(*target), TextOf(*source));
}

// Completeness: the lists of the routing compared with the tables.

using Names = std::set<std::string>;

bool InVersion(std::string_view word, u16 version) {
  if (word.ends_with("(V2+)")) return version == 2;
  if (word.ends_with("(V1)")) return version == 1;
  return true;
}

// The tags of `words` that have `version`, as "owner tag".
void AddWords(Names& names, std::string_view owner, std::string_view words, u16 version) {
  for (const std::string& word : Words(words)) {
    if (InVersion(word, version)) names.insert(std::string(owner) + " " + Bare(word));
  }
}

// Whether a tag is one of a transaction wrapper: only these have payloads in the routing.
bool IsWrapper(const std::string& tag) { return tag.ends_with("TRNRQ") || tag.ends_with("TRNRS"); }

// All that travels in a version: wrappers and synchronisations in message sets, wrappers in
// synchronisations, payloads in wrappers.
Names Routed(u16 version) {
  Names names;
  for (const TagList& set : kSets) {
    if (set.name.starts_with("N.") && version == 2) continue;
    for (const char* side : {"MSGSRQ", "MSGSRS"}) {
      const std::string tag = std::string(set.name) + side;
      for (const std::string& word : Words(set.tags)) {
        const std::string child = IsRequest(tag) ? word : Response(word);
        if (Bare(child) != "SONRQ" && Bare(child) != "SONRS") {
          AddWords(names, tag, child, version);
        }
      }
    }
  }
  const auto travels = [&names](std::string_view tag) {
    return std::any_of(names.begin(), names.end(), [tag](const std::string& name) {
      return name.ends_with(" " + std::string(tag));
    });
  };
  for (const auto& syncs : {std::span<const TagList>(kRequestSyncs), {kResponseSyncs}}) {
    for (const TagList& sync : syncs) {
      for (const std::string& word : Words(sync.tags)) {
        if (travels(sync.name) && IsWrapper(Bare(word))) {
          AddWords(names, sync.name, word, version);
        }
      }
    }
  }
  for (const auto& wrappers : {std::span<const TagList>(kRequestPayloads), {kResponsePayloads}}) {
    for (const TagList& wrapper : wrappers) {
      if (travels(wrapper.name)) AddWords(names, wrapper.name, wrapper.tags, version);
    }
  }
  return names;
}

Names Covered(u16 version) {
  Names names;
  for (const Family& family : kFamilies) {
    for (const Exchange& exchange : family.exchanges) {
      if ((exchange.versions & version) == 0) continue;
      AddWords(names, exchange.wrapper, exchange.payload, version);
      if (*exchange.set != '\0') AddWords(names, exchange.set, exchange.wrapper, version);
    }
    for (const Sync& sync : family.syncs) {
      if ((sync.versions & version) == 0) continue;
      AddWords(names, sync.set, sync.tag, version);
      AddWords(names, sync.tag, sync.wrapper, version);
    }
  }
  return names;
}

TEST(ExchangeTables, HoldAllThatTravels) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(VersionSuffix(version));
    EXPECT_EQ(Covered(version), Routed(version));
  }
}

// The lists of routes have an entry for every wrapper of the dictionary, so that none is missed
// because no list names it.
TEST(ExchangeTables, HoldEveryWrapperOfTheDictionary) {
  Names wrappers;
  for (u16 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    const std::string tag = GetKRTagDictionary()[i].text;
    const bool synchronises =
        tag.ends_with("SYNCRQ") || tag.ends_with("SYNCRS") || tag.starts_with("N.PAYROLLUPDATER");
    if (IsWrapper(tag) || synchronises) wrappers.insert(tag);
  }
  Names covered;
  for (const u16 version : kVersions) {
    for (const std::string& name : Covered(version)) {
      const std::string tag = name.substr(name.find(' ') + 1);
      if (wrappers.contains(tag)) covered.insert(tag);
    }
  }
  EXPECT_EQ(covered, wrappers);
}

}  // namespace
}  // namespace krofx::testing
