// What travels in what: valid tables of sets and wrappers, and the ways from a tag to its wrapper,
// its synchronisation and its family.

#include <gtest/gtest.h>

#include <map>
#include <span>
#include <string>

#include "envelope/routing_lists.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

// Every tag of the dictionary that `map` gives something for, with what it gives.
std::map<std::string, std::string> AllOf(KRTagID (*map)(KRTagID)) {
  std::map<std::string, std::string> found;
  const KRTagDictionary* dictionary = KRTagDictionary::TheKRTagDictionary();
  for (u32 id = 0; id < 4000; ++id) {
    const char* text = dictionary->GetTagString(static_cast<KRTagID>(id));
    const KRTagID result = map(static_cast<KRTagID>(id));
    if (result == KRTag_None) continue;
    EXPECT_NE(text, nullptr) << id;
    if (text != nullptr) found[text] = dictionary->GetTagString(result);
  }
  return found;
}

// "A B: C" lines as a map from A and B to C.
std::map<std::string, std::string> Expected(std::initializer_list<TagList> rows) {
  std::map<std::string, std::string> expected;
  for (const TagList& row : rows) {
    for (const std::string& tag : Words(row.tags)) expected[tag] = std::string(row.name);
  }
  return expected;
}

template <class Wrapper>
std::string ValidTagsAs(std::string_view type) {
  Wrapper wrapper;
  wrapper.SetType(Id(type));
  return ValidTags(wrapper);
}

TEST(Routing, ListsEveryTagOfTheTestsInTheDictionary) {
  const auto known = [](const auto& lists) {
    for (const TagList& list : lists) {
      EXPECT_NE(Id(list.name), KRTag_None) << list.name;
      for (const std::string& tag : Words(list.tags)) EXPECT_NE(Id(tag), KRTag_None) << tag;
    }
  };
  known(kRequestPayloads);
  known(kResponsePayloads);
}

TEST(Routing, AcceptsThePayloadsOfEachRequestWrapper) {
  for (const TagList& row : kRequestPayloads) {
    const bool bare = row.name.starts_with("N.");
    std::string expected = bare ? "TRNUID" : "TRNUID CLTCOOKIE TAN";
    expected += ' ' + std::string(row.tags);
    EXPECT_EQ(ValidTagsAs<KRTransRq>(row.name), expected) << row.name;
  }
}

TEST(Routing, AcceptsThePayloadsOfEachResponseWrapper) {
  for (const TagList& row : kResponsePayloads) {
    const bool bare = row.name.starts_with("N.");
    std::string expected = bare ? "TRNUID STATUS" : "TRNUID CLTCOOKIE STATUS";
    if (!row.tags.empty()) expected += ' ' + std::string(row.tags);
    EXPECT_EQ(ValidTagsAs<KRTransRs>(row.name), expected) << row.name;
  }
}

// Reads each payload of each wrapper, empty, and finds the object that was made for it.
template <class Wrapper>
void ExpectAnObjectForEveryPayload(std::span<const TagList> wrappers) {
  for (const TagList& row : wrappers) {
    for (const std::string& word : Words(row.tags)) {
      SCOPED_TRACE(std::string(row.name) + " " + word);
      auto wrapper = Make<Wrapper>(2);
      wrapper->SetType(Id(row.name));
      const Parsed<Wrapper> parsed(Aggregate(Bare(word), ""), std::move(wrapper));
      EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
      u16 made = 0;
      for (u16 i = 0; i < parsed->GetNumberOfChildren(); ++i) {
        KRDataObj* const child = parsed->GetChild(i);
        if (dynamic_cast<KRTransBase*>(child) != nullptr && child->GetType() == Id(word)) ++made;
      }
      EXPECT_EQ(made, 1);
    }
  }
}

TEST(Routing, MakesAnObjectForEveryPayload) {
  ExpectAnObjectForEveryPayload<KRTransRq>(kRequestPayloads);
  ExpectAnObjectForEveryPayload<KRTransRs>(kResponsePayloads);
}

TEST(Routing, KnowsNoTagInAWrapperOfNoOrOfForeignType) {
  EXPECT_EQ(ValidTagsAs<KRTransRq>("STMTRQ"), "");
  EXPECT_EQ(ValidTagsAs<KRTransRq>("STMTTRNRS"), "");
  EXPECT_EQ(ValidTags(KRTransRq()), "");
  EXPECT_EQ(ValidTags(KRSyncRs()), "");
  EXPECT_EQ(ValidTags(KRMessageSetRq()), "");
}

std::string WithStandard(std::string_view tags, std::string_view standard) {
  constexpr std::string_view kWord = "standard";
  return tags.starts_with(kWord) ? std::string(standard) + std::string(tags.substr(kWord.size()))
                                 : std::string(tags);
}

TEST(Routing, AcceptsTheTagsOfEachRequestSynchronisation) {
  for (const TagList& row : kRequestSyncs) {
    EXPECT_EQ(ValidTagsAs<KRSyncRq>(row.name), WithStandard(row.tags, kStandardRequest))
        << row.name;
  }
}

TEST(Routing, AcceptsTheTagsOfEachResponseSynchronisation) {
  for (const TagList& row : kResponseSyncs) {
    EXPECT_EQ(ValidTagsAs<KRSyncRs>(row.name), WithStandard(row.tags, kStandardResponse))
        << row.name;
  }
}

TEST(Routing, ListsTheMessageSetsInTheOrderOfWriting) {
  std::string requests;
  std::string responses;
  for (const TagList& set : kSets) {
    const std::string stem(set.name);
    for (const char* version : {"V1", "V2"}) {
      if (stem == "N.PAYROLL" && version[1] == '2') continue;
      const std::string mask = std::string("(") + version + ") ";
      requests += stem + "MSGSRQ" + version + mask;
      responses += stem + "MSGSRS" + version + mask;
    }
  }
  EXPECT_EQ(ValidTags(KRRequest()) + ' ', requests);
  EXPECT_EQ(ValidTags(KRResponse()) + ' ', responses);
  EXPECT_EQ(Id("N.PAYROLLMSGSRQV2"), KRTag_None);
}

TEST(Routing, AcceptsTheSameChildrenInBothVersionsOfASet) {
  for (const TagList& set : kSets) {
    const std::string stem(set.name);
    std::string responses;
    for (const std::string& tag : Words(set.tags)) responses += Response(tag) + ' ';
    if (stem == "SECLIST") responses += "SECLIST ";
    for (const char* version : {"V1", "V2"}) {
      if (stem == "N.PAYROLL" && version[1] == '2') continue;
      EXPECT_EQ(ValidTagsAs<KRMessageSetRq>(stem + "MSGSRQ" + version), set.tags) << stem;
      EXPECT_EQ(ValidTagsAs<KRMessageSetRs>(stem + "MSGSRS" + version) + ' ', responses) << stem;
    }
  }
}

TEST(Routing, FindsTheWrapperOfAPayload) {
  EXPECT_EQ(AllOf(&KRTransRq::MsgIDToTranWrapper),
            Expected({{"CHALLENGETRNRQ", "CHALLENGERQ"},
                      {"PINCHTRNRQ", "PINCHRQ"},
                      {"PROFTRNRQ", "PROFRQ"},
                      {"ACCTINFOTRNRQ", "ACCTINFORQ"},
                      {"BANKMAILTRNRQ", "BANKMAILRQ"},
                      {"CCSTMTENDTRNRQ", "CCSTMTENDRQ"},
                      {"CCSTMTTRNRQ", "CCSTMTRQ"},
                      {"INTERTRNRQ", "INTERRQ INTERMODRQ INTERCANRQ"},
                      {"INTRATRNRQ", "INTRARQ INTRAMODRQ INTRACANRQ"},
                      {"INVMAILTRNRQ", "INVMAILRQ"},
                      {"INVSTMTTRNRQ", "INVSTMTRQ"},
                      {"PAYEETRNRQ", "PAYEERQ PAYEEMODRQ PAYEEDELRQ"},
                      {"PMTTRNRQ", "PMTRQ PMTMODRQ PMTCANCRQ"},
                      {"PMTINQTRNRQ", "PMTINQRQ"},
                      {"PMTMAILTRNRQ", "PMTMAILRQ"},
                      {"RECINTERTRNRQ", "RECINTERRQ RECINTERMODRQ RECINTERCANRQ"},
                      {"RECINTRATRNRQ", "RECINTRARQ RECINTRAMODRQ RECINTRACANRQ"},
                      {"RECPMTTRNRQ", "RECPMTRQ RECPMTMODRQ RECPMTCANCRQ"},
                      {"SECLISTTRNRQ", "SECLISTRQ"},
                      {"STMTENDTRNRQ", "STMTENDRQ"},
                      {"STMTTRNRQ", "STMTRQ"},
                      {"STPCHKTRNRQ", "STPCHKRQ"},
                      {"WIRETRNRQ", "WIRERQ WIRECANRQ"},
                      {"NORV.BRANDTRNRQ", "NORV.BRANDRQ"},
                      {"NORV.MKTTIERTRNRQ", "NORV.MKTTIERRQ"},
                      {"NORV.CLIENTLOGTRNRQ", "NORV.CLIENTLOGRQ"},
                      {"NORV.CUUSAGELOGTRNRQ", "NORV.CUUSAGELOGRQ"},
                      {"NORV.FIUSAGELOGTRNRQ", "NORV.FIUSAGELOGRQ"},
                      {"NORV.SURVEYTRNRQ", "NORV.SURVEYRQ"},
                      {"N.PAYROLLENROLLTRNRQ", "N.PAYROLLENROLLRQ"},
                      {"N.PAYROLLTRNRQ", "N.PAYROLLRQ"}}));
}

TEST(Routing, KnowsNoWrapperForPayloadsWhoseCallersChooseIt) {
  for (const char* tag : {"ACCTRQ", "CHGUSERINFORQ", "ENROLLRQ", "GETMIMERQ", "MAILRQ", "STMTRS"}) {
    EXPECT_EQ(KRTransRq::MsgIDToTranWrapper(Id(tag)), KRTag_None) << tag;
  }
}

TEST(Routing, FindsTheSynchronisationOfAPayload) {
  EXPECT_EQ(AllOf(&KRSyncRq::MsgIDToSyncWrapper),
            Expected({{"INTERSYNCRQ", "INTERRQ INTERMODRQ INTERCANRQ"},
                      {"INTRASYNCRQ", "INTRARQ INTRAMODRQ INTRACANRQ"},
                      {"RECINTERSYNCRQ", "RECINTERRQ RECINTERMODRQ RECINTERCANRQ"},
                      {"RECINTRASYNCRQ", "RECINTRARQ RECINTRAMODRQ RECINTRACANRQ"},
                      {"RECPMTSYNCRQ", "RECPMTRQ RECPMTMODRQ RECPMTCANCRQ"},
                      {"PMTSYNCRQ", "PMTRQ PMTMODRQ PMTCANCRQ"},
                      {"PAYEESYNCRQ", "PAYEERQ PAYEEMODRQ PAYEEDELRQ"},
                      {"STPCHKSYNCRQ", "STPCHKRQ"},
                      {"WIRESYNCRQ", "WIRERQ WIRECANRQ"},
                      {"BANKMAILSYNCRQ", "BANKMAILRQ"},
                      {"INVMAILSYNCRQ", "INVMAILRQ"},
                      {"PMTMAILSYNCRQ", "PMTMAILRQ"},
                      {"N.PAYROLLUPDATERQ", "N.PAYROLLRQ N.PAYROLLTRNRQ"}}));
  EXPECT_EQ(KRSyncRq::MsgIDToSyncWrapper(KRTag_MAILRQ), KRTag_None);
  EXPECT_EQ(KRSyncRq::MsgIDToSyncWrapper(KRTag_PMTINQRQ), KRTag_None);
}

TEST(Routing, FindsTheFamilyOfARequest) {
  EXPECT_EQ(AllOf(&KRMessageSetRq::MsgIDToMsgSetID),
            Expected({{"SIGNONMSGSET", "SONRQ CHALLENGERQ"},
                      {"PROFMSGSET", "PROFRQ"},
                      {"SIGNUPMSGSET", "ACCTINFORQ ACCTSYNCRQ"},
                      {"BANKMSGSET",
                       "BANKMAILRQ BANKMAILSYNCRQ INTRACANRQ INTRAMODRQ INTRARQ INTRASYNCRQ "
                       "RECINTRACANRQ RECINTRAMODRQ RECINTRARQ RECINTRASYNCRQ STMTENDRQ STMTRQ "
                       "STPCHKRQ"},
                      {"CREDITCARDMSGSET", "CCSTMTENDRQ CCSTMTRQ"},
                      {"INTERXFERMSGSET",
                       "INTERCANRQ INTERMODRQ INTERRQ INTERSYNCRQ RECINTERCANRQ RECINTERMODRQ "
                       "RECINTERRQ RECINTERSYNCRQ"},
                      {"WIREXFERMSGSET", "WIRECANRQ WIRERQ WIRESYNCRQ"},
                      {"INVSTMTMSGSET", "INVMAILRQ INVMAILSYNCRQ INVSTMTRQ"},
                      {"EMAILMSGSET", "MAILSYNCRQ MAILTRNRQ"},
                      {"BILLPAYMSGSET",
                       "PAYEERQ PAYEESYNCRQ PMTINQRQ PMTMAILRQ PMTMAILSYNCRQ PMTRQ PMTSYNCRQ "
                       "RECPMTRQ RECPMTSYNCRQ"},
                      {"N.PAYROLLMSGSET", "N.PAYROLLENROLLTRNRQ N.PAYROLLUPDATERQ"}}));
}

TEST(Routing, KnowsNoFamilyForTheGaps) {
  for (const char* tag :
       {"PMTMODRQ", "PMTCANCRQ", "RECPMTMODRQ", "RECPMTCANCRQ", "PAYEEMODRQ", "PAYEEDELRQ",
        "STPCHKSYNCRQ", "MAILRQ", "GETMIMERQ", "SECLISTRQ", "PINCHRQ", "ENROLLRQ"}) {
    EXPECT_EQ(KRMessageSetRq::MsgIDToMsgSetID(Id(tag)), KRTag_None) << tag;
  }
}

}  // namespace
