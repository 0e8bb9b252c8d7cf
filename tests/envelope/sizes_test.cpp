// Sizes at the limits of their 16 bits: what fits is kept whole, what does not fit is refused and
// reported, and nothing wraps around.

#include <gtest/gtest.h>

#include <string>

#include "krofx/core/memory.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/payroll.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/securities.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr u32 kSizes[] = {65533, 65534, 65535, 65536, 65537};
// The longest text that a string holds, and the most entries that an array does.
constexpr u32 kLongestText = 65534;
constexpr u32 kMostEntries = 65535;

std::string Times(u32 count, std::string_view part) {
  std::string text;
  text.reserve(count * part.size());
  for (u32 i = 0; i < count; ++i) text += part;
  return text;
}

TEST(Sizes, OfATextAreKeptWholeOrRefused) {
  for (const u32 size : kSizes) {
    SCOPED_TRACE(size);
    const std::string value(size, 'x');
    const Parsed<KRPayrollRq> batch("<N.ANOMALYTEXT>" + value);
    const bool fits = size <= kLongestText;
    EXPECT_EQ(Str(batch->GetAnomalyText()), fits ? value : "");
    EXPECT_EQ(batch->HasAnomalyText(), fits);
    EXPECT_EQ(batch.Warnings().empty(), fits);
    EXPECT_EQ(TextOf(*batch), fits ? "<N.ANOMALYTEXT>" + value + "\n" : "");
    KRPayrollRq set;
    set.SetMsgSetVersion(1);
    if (fits) {
      EXPECT_EQ(set.SetAnomalyText(KRString(value.c_str())), 1);
      EXPECT_EQ(TextOf(set), TextOf(*batch));
    }
  }
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

TEST(Sizes, OfAHeaderAreKeptWholeOrRefused) {
  for (const u32 size : kSizes) {
    SCOPED_TRACE(size);
    const bool fits = size <= kLongestText;
    const std::string part(size, 'x');
    const Parsed<KRFileRs> value("X-Long: " + part + "\r\n\r\n" + File(SignOnResponseSet()));
    EXPECT_EQ(value.Status(), KRParseStatus_Warnings) << "of its name, or of its length";
    KRString name("X-Long");
    const KRMIMEHeader* header = value->GetMIMEHeader(&name);
    ASSERT_EQ(header != nullptr, fits);
    if (fits) {
      EXPECT_EQ(Str(header->value), part);
    }
    const Parsed<KRFileRs> named(part + ": 1\r\n\r\n" + File(SignOnResponseSet()));
    EXPECT_EQ(named->GetNumberMIMEHeaders(), fits ? 1 : 0);
  }
}

TEST(Sizes, OfAListOfChildrenAreKeptWholeOrRefused) {
  for (const u32 size : kSizes) {
    SCOPED_TRACE(size);
    const std::string portions = Times(size, "<PORTION></PORTION>");
    const Parsed<KRMFAssetClass> classes(portions);
    const bool fits = size <= kMostEntries;
    EXPECT_EQ(classes.Status(), fits ? KRParseStatus_Accepted : KRParseStatus_Fatal);
    EXPECT_EQ(classes->GetNumPortion(), fits ? size : kMostEntries);
    EXPECT_EQ(classes->GetNumberOfChildren(), fits ? size : kMostEntries);
    EXPECT_NE(classes->GetPortion(static_cast<u16>(kMostEntries - 3)), nullptr);
  }
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(Sizes, OfAListOfValuesAreKeptWholeOrRefused) {
  for (const u32 size : kSizes) {
    SCOPED_TRACE(size);
    const Parsed<KRPayrollRq> batch(Times(size, "<N.EMPDELID>7"));
    const bool fits = size <= kMostEntries;
    EXPECT_EQ(batch.Status(), fits ? KRParseStatus_Accepted : KRParseStatus_Fatal);
    EXPECT_EQ(batch->GetNumEmployeeDelID(), fits ? size : kMostEntries);
  }
  KRPayrollRq full;
  full.SetMsgSetVersion(1);
  EXPECT_EQ(full.SetEmployeeDelID(65534, KRString("last")), 1);
  EXPECT_EQ(full.AppendEmployeeDelID(KRString("one more")), 0);
  EXPECT_EQ(full.SetEmployeeDelID(65535, KRString("one more")), 0);
  EXPECT_EQ(full.GetNumEmployeeDelID(), kMostEntries);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(Sizes, OfAFullListLeaveTheNextChildToTheCaller) {
  KRBankTransactionList list;
  list.SetMsgSetVersion(1);
  EXPECT_EQ(list.SetStatementTx(65534, new KRBankStatementTx), 1);
  auto more = std::make_unique<KRBankStatementTx>();
  EXPECT_EQ(list.AppendStatementTx(more.get()), 0);
  EXPECT_EQ(list.SetStatementTx(65535, more.get()), 0);
  EXPECT_EQ(list.GetNumStatementTx(), kMostEntries);
}

TEST(Sizes, OfAFullListOfPartsLeaveTheNextOneToTheCaller) {
  KRFile file;
  EXPECT_EQ(file.SetSubfile(65534, new KRFile), 1);
  EXPECT_EQ(file.GetNumberOfSubfiles(), kMostEntries);
  const auto more = std::make_unique<KRFile>();
  EXPECT_EQ(file.AppendSubfile(more.get()), 0);
  EXPECT_EQ(file.SetSubfile(65535, more.get()), 0);
  EXPECT_EQ(file.GetNumberOfSubfiles(), kMostEntries);
}

TEST(Nesting, OfUnknownTagsIsPassedOver) {
  std::string nested;
  for (int i = 0; i < 20000; ++i) nested += "<X.LEVEL" + std::to_string(i) + ">";
  nested += "x";
  for (int i = 20000; i-- > 0;) nested += "</X.LEVEL" + std::to_string(i) + ">";
  const Parsed<KRFileRs> file(ResponseFile("BANKMSGSRS", nested));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(TextOf(*file), TextOf(*Parsed<KRFileRs>(ResponseFile("BANKMSGSRS", ""))));
}

TEST(Nesting, OfTagsThatDoNotBelongIsPassedOver) {
  const std::string nested = Times(20000, "<STMTTRNRS>") + Times(20000, "</STMTTRNRS>");
  const Parsed<KRFileRs> file(ResponseFile("BANKMSGSRS", nested));
  EXPECT_NE(file.Status(), KRParseStatus_Accepted);
  EXPECT_NE(file.Status(), KRParseStatus_Fatal);
}

// A list of warnings is limited to what 16 bits count, and costs nothing beyond that.
TEST(Warnings, ByTheMillionTakeNoMoreMemoryThanAFullList) {
  KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  log->DeleteAll();
  const KRString value("x");
  const KRString none;
  for (u32 i = 0; i < kMostEntries; ++i) {
    ASSERT_EQ(internal::LogWarning(KRPW_BADFORMAT, value, none, KRTag_MEMO, nullptr), 1);
  }
  internal::AllocationFailure::FailAt(0);
  const std::size_t before = internal::AllocationFailure::Count();
  constexpr u32 kMillions = 10'000'000;
  u32 stored = 0;
  for (u32 i = kMostEntries; i < kMillions; ++i) {
    stored += internal::LogWarning(KRPW_BADFORMAT, none, none, KRTag_MEMO, nullptr);
  }
  EXPECT_EQ(stored, 0u);
  EXPECT_EQ(internal::AllocationFailure::Count(), before);
  EXPECT_EQ(log->Entries(), kMostEntries);
  EXPECT_EQ(log->GetAnyParseExceptionsLogged(), 1);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None) << "a full list is no shortage of memory";
  log->DeleteAll();
  EXPECT_EQ(internal::LogWarning(KRPW_BADFORMAT, value, none, KRTag_MEMO, nullptr), 1);
  log->DeleteAll();
}

}  // namespace
}  // namespace krofx::testing
