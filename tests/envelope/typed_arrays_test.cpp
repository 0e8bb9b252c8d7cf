// The arrays that hold one class of aggregate each make their elements through the factory.

#include <gtest/gtest.h>

#include <type_traits>

#include "krofx/aggregates.h"
#include "krofx/core/array.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "support/failing_allocation.h"

namespace {

// Makes objects of the second version, so that they differ from those made by `new`.
template <class Array, class Element>
void ExpectElementsOfTheFactory() {
  static_assert(std::is_base_of_v<krofx::internal::ElementArray<Element>, Array>);
  KRDataObjFactory factory(2);
  KRDataObj::SetFactory(&factory);
  {
    Array array(2, 2);
    Element& made = array[1];
    EXPECT_EQ(made.GetType(), Element().GetType());
    EXPECT_EQ(made.GetMsgSetVersion(), 2);
    EXPECT_EQ(array.Entries(), 2);
    EXPECT_EQ(array.Get(0), nullptr);
    EXPECT_EQ(array.Get(1), &made);
  }
  KRDataObj::SetFactory(nullptr);
}

TEST(TypedArrays, MakeTheirElementsThroughTheFactory) {
  ExpectElementsOfTheFactory<KRDynamicArrayAdjustmentLine, KRAdjustmentLine>();
  ExpectElementsOfTheFactory<KRDynamicArrayCustomField, KRCustomField>();
  ExpectElementsOfTheFactory<KRDynamicArrayDirectDeposit, KRDirectDeposit>();
  ExpectElementsOfTheFactory<KRDynamicArrayDirectDepositAccount, KRDirectDepositAccount>();
  ExpectElementsOfTheFactory<KRDynamicArrayDirectDepositLine, KRDirectDepositLine>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployee, KREmployee>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeMod, KREmployeeMod>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeOtherTax, KREmployeeOtherTax>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeQtrTotals, KREmployeeQtrTotals>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeReportingQtd, KREmployeeReportingQtd>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeReportingYtd, KREmployeeReportingYtd>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeTaxQtd, KREmployeeTaxQtd>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeTaxSummary, KREmployeeTaxSummary>();
  ExpectElementsOfTheFactory<KRDynamicArrayEmployeeTaxYtd, KREmployeeTaxYtd>();
  ExpectElementsOfTheFactory<KRDynamicArrayFile, KRFile>();
  ExpectElementsOfTheFactory<KRDynamicArrayHourlyWageLine, KRHourlyWageLine>();
  ExpectElementsOfTheFactory<KRDynamicArrayNorvOfxMessage, KRNorvOfxMessage>();
  ExpectElementsOfTheFactory<KRDynamicArrayNorvOfxMsgSetInfo, KRNorvOfxMsgSetInfo>();
  ExpectElementsOfTheFactory<KRDynamicArrayNorvPlatformInfo, KRNorvPlatformInfo>();
  ExpectElementsOfTheFactory<KRDynamicArrayNorvSurveyItem, KRNorvSurveyItem>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayCheck, KRPayCheck>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayCheckMod, KRPayCheckMod>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayrollAdjustment, KRPayrollAdjustment>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayrollItem, KRPayrollItem>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayrollItemMod, KRPayrollItemMod>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayrollRun, KRPayrollRun>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayrollTx, KRPayrollTx>();
  ExpectElementsOfTheFactory<KRDynamicArrayPayrollTxMod, KRPayrollTxMod>();
  ExpectElementsOfTheFactory<KRDynamicArrayRateChange, KRRateChange>();
  ExpectElementsOfTheFactory<KRDynamicArrayRequest, KRRequest>();
  ExpectElementsOfTheFactory<KRDynamicArrayResponse, KRResponse>();
  ExpectElementsOfTheFactory<KRDynamicArraySalaryLine, KRSalaryLine>();
  ExpectElementsOfTheFactory<KRDynamicArrayTaxLiability, KRTaxLiability>();
  ExpectElementsOfTheFactory<KRDynamicArrayTaxLine, KRTaxLine>();
  ExpectElementsOfTheFactory<KRDynamicArrayTxLine, KRTxLine>();
  ExpectElementsOfTheFactory<KRDynamicArrayW2Other, KRW2Other>();
  ExpectElementsOfTheFactory<KRDynamicArrayWage, KRWage>();
}

TEST(TypedArrays, OwnWhatTheyAreGiven) {
  KRDynamicArrayWage wages(1, 1);
  EXPECT_EQ(wages.Append(new KRWage), 1);
  EXPECT_EQ(wages.Append(new KRWage), 1);
  EXPECT_EQ(wages.Set(0, new KRWage), 1);
  EXPECT_EQ(wages.Entries(), 2);
  EXPECT_EQ(wages.Get(0)->GetType(), KRTag_N_WAGE);
}

}  // namespace
