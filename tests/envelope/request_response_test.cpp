// Requests and responses: message sets in their fixed order, two of a kind, and completeness.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "envelope/routing_lists.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

template <class Set>
Set* MakeSet(std::string_view type) {
  auto* set = new Set;
  set->SetType(Id(type));
  return set;
}

TEST(KRRequest, WritesSetsInTheFixedOrder) {
  auto request = Make<KRRequest>(0xffff);
  std::string expected;
  for (const TagList& row : kSets) {
    for (const char* version : {"V1", "V2"}) {
      if (row.name == "N.PAYROLL" && version[1] == '2') continue;
      expected += Aggregate(std::string(row.name) + "MSGSRQ" + version, "");
    }
  }
  for (auto row = std::rbegin(kSets); row != std::rend(kSets); ++row) {
    for (const char* version : {"V2", "V1"}) {
      if (row->name == "N.PAYROLL" && version[1] == '2') continue;
      const std::string type = std::string(row->name) + "MSGSRQ" + version;
      EXPECT_EQ(request->AppendMessageSet(MakeSet<KRMessageSetRq>(type)), 1) << type;
    }
  }
  EXPECT_EQ(TextOf(*request), InLines(expected));
}

TEST(KRResponse, WritesTheSignOnFirst) {
  auto response = Make<KRResponse>(1);
  response->AppendMessageSet(MakeSet<KRMessageSetRs>("BANKMSGSRSV1"));
  response->AppendMessageSet(MakeSet<KRMessageSetRs>("SIGNONMSGSRSV1"));
  EXPECT_EQ(TextOf(*response), InLines("<SIGNONMSGSRSV1></SIGNONMSGSRSV1>"
                                       "<BANKMSGSRSV1></BANKMSGSRSV1>"));
}

TEST(KRRequest, RefusesToWriteTwoSetsOfATag) {
  auto request = Make<KRRequest>(1);
  request->AppendMessageSet(MakeSet<KRMessageSetRq>("SIGNONMSGSRQV1"));
  request->AppendMessageSet(MakeSet<KRMessageSetRq>("BANKMSGSRQV1"));
  request->AppendMessageSet(MakeSet<KRMessageSetRq>("BANKMSGSRQV1"));
  const Built built = Build(*request);
  EXPECT_EQ(built.status, KRBuildStatus_TreeNotAllowed);
  EXPECT_EQ(built.failingObject, request.get());
}

TEST(KRRequest, RefusesToWriteTwoSetsOfATagWhereverTheyStand) {
  for (const char* between : {"", "BANKMSGSRQV1"}) {
    auto request = Make<KRRequest>(1);
    request->AppendMessageSet(MakeSet<KRMessageSetRq>("SIGNONMSGSRQV1"));
    if (*between != '\0') request->AppendMessageSet(MakeSet<KRMessageSetRq>(between));
    request->AppendMessageSet(MakeSet<KRMessageSetRq>("SIGNONMSGSRQV1"));
    EXPECT_EQ(Build(*request), (Built{KRBuildStatus_TreeNotAllowed, ""})) << between;
  }
}

TEST(KRRequest, WritesNoSetThatItsVersionForbids) {
  auto request = Make<KRRequest>(1);
  EXPECT_EQ(request->AppendMessageSet(MakeSet<KRMessageSetRq>("BANKMSGSRQV2")), 1);
  EXPECT_EQ(request->AppendMessageSet(MakeSet<KRMessageSetRq>("STMTTRNRQ")), 1);
  EXPECT_EQ(request->GetNumMessageSet(), 2) << "both are held all the same";
  EXPECT_EQ(TextOf(*request), "");
}

TEST(KRRequest, IsCompleteWithASignOnSetOfEitherVersion) {
  for (const char* type : {"SIGNONMSGSRQV1", "SIGNONMSGSRQV2"}) {
    auto request = Make<KRRequest>(0xffff);
    EXPECT_EQ(request->AllRequiredPresent(), 0);
    request->AppendMessageSet(MakeSet<KRMessageSetRq>("BANKMSGSRQV1"));
    EXPECT_EQ(request->AllRequiredPresent(), 0) << "everything else does not stand for it";
    request->AppendMessageSet(MakeSet<KRMessageSetRq>(type));
    EXPECT_EQ(request->AllRequiredPresent(), 1) << type;
    request->DeleteAllMessageSet();
    EXPECT_EQ(request->AllRequiredPresent(), 0) << "the tag alone, with no set held";
  }
  auto response = Make<KRResponse>(2);
  EXPECT_EQ(response->AllRequiredPresent(), 0);
  response->AppendMessageSet(MakeSet<KRMessageSetRs>("SIGNONMSGSRSV2"));
  EXPECT_EQ(response->AllRequiredPresent(), 1);
}

TEST(KRResponse, KeepsTheFirstOfTwoSetsOfATagInAParse) {
  const Parsed<KRFileRs> file(File(SignOnResponseSet() +
                                   Aggregate("BANKMSGSRSV1", ResponseWrapper("STMTTRNRS", "")) +
                                   Aggregate("BANKMSGSRSV1", ResponseWrapper("INTRATRNRS", ""))));
  EXPECT_EQ(file.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(file.Warnings().at(0), "EXTRAAGG " + TagNumber(KRTag_BANKMSGSRSV1));
  KRResponse* response = file->GetResponse(0);
  ASSERT_EQ(response->GetNumMessageSet(), 2);
  ASSERT_EQ(response->GetMessageSet(1)->GetNumTrans(), 1);
  EXPECT_EQ(response->GetMessageSet(1)->GetTrans(0)->GetType(), KRTag_STMTTRNRS);
}

TEST(KRRequest, KeepsTheFirstOfTwoSignOnSetsInAParse) {
  const std::string second =
      Aggregate("SIGNONMSGSRQV1", Aggregate("SONRQ", "<DTCLIENT>20260105<USERID>grace"));
  const Parsed<KRFileRq> file(File(SignOnRequestSet() + second));
  EXPECT_EQ(file.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(file.Warnings().at(0), "EXTRAAGG " + TagNumber(KRTag_SIGNONMSGSRQV1));
  ASSERT_EQ(file->GetRequest(0)->GetNumMessageSet(), 1);
  EXPECT_EQ(Str(FindIn<KRSignOnRq>(file.Get())->GetUserId()), "ada");
}

TEST(KRResponse, SkipsASetOfTheOtherDirection) {
  const Parsed<KRFileRs> file(File(SignOnResponseSet() + Aggregate("BANKMSGSRQV1", "")));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file->GetResponse(0)->GetNumMessageSet(), 1);
}

TEST(KRResponse, SkipsSetsOfTheSecondVersionUnderAFactoryOfTheFirst) {
  std::unique_ptr<KRFileRs> made(KRDataObj::GetFactory()->NewFileRs(0));
  EXPECT_EQ(made->GetMsgSetVersion(), 1);
  const Parsed<KRFileRs> file(BankStatementFile("", 2), std::move(made));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(file->GetResponse(0)->GetNumMessageSet(), 0);
}

TEST(KRRequest, GivesItsSetsAsChildren) {
  auto request = Make<KRRequest>(1);
  EXPECT_EQ(request->GetType(), KRTag_OFX);
  EXPECT_EQ(request->GetNumberOfChildren(), 0);
  auto* set = MakeSet<KRMessageSetRq>("SIGNONMSGSRQV1");
  EXPECT_EQ(request->SetMessageSet(0, set), 1);
  EXPECT_EQ(request->GetChild(0), set);
  EXPECT_EQ(request->GetMessageSet(0), set);
  EXPECT_EQ(request->GetMessageSet(1), nullptr);
  EXPECT_EQ(request->AppendMessageSet(nullptr), 0);
}

TEST(KRRequest, CopiesItsSets) {
  const Parsed<KRFileRq> file(RequestFile("BANKMSGSRQ", RequestWrapper("STMTTRNRQ", "")));
  KRRequest* source = file->GetRequest(0);
  KRRequest copy;
  for (int i = 0; i < 3; ++i) copy.AppendMessageSet(MakeSet<KRMessageSetRq>("PROFMSGSRQV1"));
  EXPECT_EQ(copy.DeepCopyFrom(source), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
  EXPECT_EQ(copy.GetNumMessageSet(), 2);
  EXPECT_NE(copy.GetMessageSet(0), source->GetMessageSet(0));
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(copy.DeepCopyFrom(&copy), 1);
  EXPECT_EQ(copy.GetNumMessageSet(), source->GetNumMessageSet());
}

TEST(KRRequest, PassesAFactoryOnAndLeavesItForNull) {
  KRDataObjFactory own(2);
  KRRequest request;
  EXPECT_EQ(request.SetFactory(&own), 0);
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  EXPECT_EQ(request.SetFactory(nullptr), 0);
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  KRDataObj::SetFactory(nullptr);
}

}  // namespace
