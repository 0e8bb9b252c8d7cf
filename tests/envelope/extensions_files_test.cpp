// Brands and reports in whole files.

#include <gtest/gtest.h>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/extensions/branding.h"
#include "krofx/extensions/client_logs.h"
#include "krofx/extensions/surveys.h"
#include "krofx/extensions/usage.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/values/keywords.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(BrandingExchanges, TravelInTheirOwnSet) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const Parsed<KRFileRq> request(
        RequestFile("NORV.BRANDMSGSRQ",
                    RequestWrapper("NORV.BRANDTRNRQ", Aggregate("NORV.BRANDRQ", "")) +
                        RequestWrapper("NORV.MKTTIERTRNRQ",
                                       Aggregate("NORV.MKTTIERRQ", "<NORV.TIERDTUPDATE>20260101")),
                    version));
    ASSERT_EQ(request.Status(), KRParseStatus_Accepted);
    ASSERT_NE(FindIn<KRNorvBrandRq>(request.Get()), nullptr);
    EXPECT_EQ(FindIn<KRNorvBrandRq>(request.Get())->GetMsgSetVersion(), version);
    EXPECT_NE(FindIn<KRNorvMktTierRq>(request.Get()), nullptr);
    const Parsed<KRFileRs> response(ResponseFile(
        "NORV.BRANDMSGSRS",
        ResponseWrapper("NORV.BRANDTRNRS", Aggregate("NORV.BRANDRS", "")) +
            ResponseWrapper("NORV.MKTTIERTRNRS",
                            Aggregate("NORV.MKTTIERRS", "<NORV.TIERDTUPDATE>20260101")),
        version));
    ASSERT_EQ(response.Status(), KRParseStatus_Accepted);
    EXPECT_NE(FindIn<KRNorvBrandRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRNorvMktTierRs>(response.Get()), nullptr);
  }
}

/// A message set of reports, its wrapper and what the request holds.
struct ReportSet {
  const char* set;
  const char* wrapper;
  const char* payload;
};

const ReportSet kReports[] = {
    {"NORV.CLOGMSGS", "NORV.CLIENTLOGTRN", "NORV.CLIENTLOGRQ"},
    {"NORV.SURVEYMSGS", "NORV.SURVEYTRN", "NORV.SURVEYRQ"},
    {"NORV.USLCUMSGS", "NORV.CUUSAGELOGTRN", "NORV.CUUSAGELOGRQ"},
    {"NORV.USLFIMSGS", "NORV.FIUSAGELOGTRN", "NORV.FIUSAGELOGRQ"},
};

TEST(Reports, TravelInTheirOwnSets) {
  for (const ReportSet& report : kReports) {
    for (const u16 version : {u16{1}, u16{2}}) {
      SCOPED_TRACE(report.set + std::to_string(version));
      const Parsed<KRFileRq> request(RequestFile(
          report.set + std::string("RQ"),
          RequestWrapper(report.wrapper + std::string("RQ"), Aggregate(report.payload, "")),
          version));
      ASSERT_EQ(request.Status(), KRParseStatus_Accepted);
      EXPECT_NE(TextOf(*request).find(InLines(Aggregate(report.payload, ""))), std::string::npos);
    }
  }
}

TEST(Reports, AreAnsweredByAStatusAlone) {
  for (const ReportSet& report : kReports) {
    for (const u16 version : {u16{1}, u16{2}}) {
      SCOPED_TRACE(report.set + std::to_string(version));
      const std::string wrapper = ResponseWrapper(report.wrapper + std::string("RS"), "");
      const Parsed<KRFileRs> response(
          ResponseFile(report.set + std::string("RS"), wrapper, version));
      ASSERT_EQ(response.Status(), KRParseStatus_Accepted);
      EXPECT_NE(TextOf(*response).find(InLines(wrapper)), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace krofx::testing
