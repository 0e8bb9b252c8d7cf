// The factory's operations, each of them: their order, which is part of the interface, and the
// version that each gives to what it makes.

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <typeinfo>

#include "krofx/aggregates.h"
#include "krofx/core/parse_logger.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "krofx/values/language.h"
#include "support/virtual_slots.h"

namespace {

using F = KRDataObjFactory;

// Gives `use` all operations that make something, in their order.
template <class Use>
void WithOperations(Use use) {
  use(&F::NewUShort, &F::NewString, &F::NewDataObj, &F::NewParseException, &F::NewMIMEHeader,
      &F::NewFile, &F::NewFileRq, &F::NewFileRs, &F::NewCurrency, &F::NewRequest, &F::NewResponse,
      &F::NewMessageSetRs, &F::NewMessageSetRq, &F::NewSyncRq, &F::NewSyncRs, &F::NewTransRq,
      &F::NewLanguage, &F::NewStatus, &F::NewTransRs, &F::NewSignOnRs, &F::NewSignOnRq,
      &F::NewChallengeRs, &F::NewChallengeRq, &F::NewFI, &F::NewPinChangeRq, &F::NewPinChangeRs,
      &F::NewMessageSetCore, &F::NewMessageSetVersion, &F::NewMessageSetProfile, &F::NewSignOnInfo,
      &F::NewMessageSetList, &F::NewSignOnInfoList, &F::NewProfileRq, &F::NewProfileRs,
      &F::NewProfileMessageSetV1, &F::NewProfileMessageSetV2, &F::NewSignOnMessageSetV1,
      &F::NewSignOnMessageSetV2, &F::NewBalance, &F::NewBankAccount, &F::NewBankAccountInfo,
      &F::NewInvAcctInfo, &F::NewInvAcctFrom, &F::NewAction, &F::NewAccountInfo,
      &F::NewClientEnroll, &F::NewWebEnroll, &F::NewOtherEnroll, &F::NewAccountInfoRq,
      &F::NewAccountInfoRs, &F::NewAccountServiceRq, &F::NewAccountServiceRs,
      &F::NewAccountInfoBase, &F::NewEnrollRq, &F::NewEnrollRs, &F::NewChangeUserInfoRq,
      &F::NewChangeUserInfoRs, &F::NewSignUpMessageSetV1, &F::NewSignUpMessageSetV2,
      &F::NewBankMessageSetV1, &F::NewBankMessageSetV2, &F::NewBankStatementRs,
      &F::NewBankStatementRq, &F::NewClosing, &F::NewStatementEndRs, &F::NewStatementEndRq,
      &F::NewBankStatementTx, &F::NewIncTransaction, &F::NewLedgerBalance, &F::NewAvailableBalance,
      &F::NewBankTransactionList, &F::NewStopCheckRs, &F::NewStopCheckRq, &F::NewCheckRange,
      &F::NewCheckDescription, &F::NewStopCheckNumber, &F::NewStopCheckProfile, &F::NewIntraRs,
      &F::NewIntraModifyRs, &F::NewIntraCancelRs, &F::NewRecIntraRs, &F::NewRecIntraModifyRs,
      &F::NewRecIntraCancelRs, &F::NewIntraRq, &F::NewIntraModifyRq, &F::NewIntraCancelRq,
      &F::NewRecIntraRq, &F::NewRecIntraModifyRq, &F::NewRecIntraCancelRq, &F::NewWireRq,
      &F::NewWireRs, &F::NewWireCancelRq, &F::NewWireCancelRs, &F::NewExtBankDesc,
      &F::NewXferProcessingStatus, &F::NewWireBeneficiary, &F::NewWireDestinationBank,
      &F::NewRecInstruction, &F::NewBankMailRq, &F::NewBankMailRs, &F::NewCheckMailRs,
      &F::NewDepositMailRs, &F::NewCreditCardMessageSetV1, &F::NewCreditCardMessageSetV2,
      &F::NewCCAccount, &F::NewCCAccountInfo, &F::NewCCStatementRs, &F::NewCCStatementRq,
      &F::NewCCClosing, &F::NewCCStatementEndRs, &F::NewCCStatementEndRq, &F::NewInvStmtMsgSetV1,
      &F::NewInvStmtMsgSetV2, &F::NewInvestmentMailRq, &F::NewInvestmentMailRs,
      &F::NewFIMFAssetClass, &F::NewMFAssetClass, &F::NewPortion, &F::NewFIPortion, &F::NewBalList,
      &F::NewDebtInfo, &F::NewMFInfo, &F::NewOptInfo, &F::NewOtherInfo, &F::NewStockInfo,
      &F::NewPosDebt, &F::NewPosMF, &F::NewPosOpt, &F::NewPosOther, &F::NewPosStock, &F::NewInvPos,
      &F::NewIncPos, &F::NewInvBal, &F::NewInvBankTran, &F::NewInvBuy, &F::NewInvSell,
      &F::NewInvOOList, &F::NewInvPosList, &F::NewInvStmtRq, &F::NewInvStmtRs, &F::NewInvTran,
      &F::NewInvTranList, &F::NewSecID, &F::NewSecInfo, &F::NewSecList, &F::NewSecRq,
      &F::NewSecListMsgSetV1, &F::NewSecListMsgSetV2, &F::NewSecListRs, &F::NewSecListRq, &F::NewOO,
      &F::NewOOBuyDebt, &F::NewOOBuyMF, &F::NewOOBuyOpt, &F::NewOOBuyOther, &F::NewOOBuyStock,
      &F::NewOOSellDebt, &F::NewOOSellMF, &F::NewOOSellOpt, &F::NewOOSellOther, &F::NewOOSellStock,
      &F::NewOOSwitchMF, &F::NewBuyStock, &F::NewBuyMF, &F::NewBuyOpt, &F::NewBuyDebt,
      &F::NewBuyOther, &F::NewSellStock, &F::NewSellMF, &F::NewSellDebt, &F::NewSellOpt,
      &F::NewSellOther, &F::NewIncome, &F::NewJrnlFund, &F::NewJrnlSec, &F::NewMarginInterest,
      &F::NewReinvest, &F::NewRetOfCap, &F::NewSplit, &F::NewTransfer, &F::NewClosureOpt,
      &F::NewInvExpense, &F::NewBillPayMessageSetV1, &F::NewBillPayMessageSetV2,
      &F::NewBillPayAccountInfo, &F::NewPayee, &F::NewPayee2, &F::NewPaymentInfo,
      &F::NewPaymentInfo2, &F::NewExtendedPayee, &F::NewExtendedPayment, &F::NewPaymentPrcSts,
      &F::NewDiscount, &F::NewDiscount2, &F::NewAdjustment, &F::NewLineItem, &F::NewInvoice,
      &F::NewInvoice2, &F::NewExtendedPaymentInvoice, &F::NewPaymentBankAcctTo,
      &F::NewExtBankAcctTo, &F::NewPaymentRq, &F::NewPaymentRs, &F::NewPaymentModifyRq,
      &F::NewPaymentModifyRs, &F::NewPaymentCancelRq, &F::NewPaymentCancelRs,
      &F::NewPaymentInquiryRq, &F::NewPaymentInquiryRs, &F::NewRecPaymentRq, &F::NewRecPaymentRs,
      &F::NewRecPaymentModifyRq, &F::NewRecPaymentModifyRs, &F::NewRecPaymentCancelRq,
      &F::NewRecPaymentCancelRs, &F::NewPayeeRq, &F::NewPayeeRs, &F::NewPayeeModifyRq,
      &F::NewPayeeModifyRs, &F::NewPayeeDeleteRq, &F::NewPayeeDeleteRs, &F::NewPaymentMailRq,
      &F::NewPaymentMailRs, &F::NewInterXferMessageSetV1, &F::NewInterXferMessageSetV2,
      &F::NewXferProfile, &F::NewMultiTransRq, &F::NewMultiTransRs, &F::NewXferInfo, &F::NewInterRs,
      &F::NewInterModifyRs, &F::NewInterCancelRs, &F::NewRecInterRs, &F::NewRecInterModifyRs,
      &F::NewRecInterCancelRs, &F::NewInterRq, &F::NewInterModifyRq, &F::NewInterCancelRq,
      &F::NewRecInterRq, &F::NewRecInterModifyRq, &F::NewRecInterCancelRq,
      &F::NewWireXferMessageSetV1, &F::NewWireXferMessageSetV2, &F::NewEMailProfile,
      &F::NewEMailMessageSetV1, &F::NewEMailMessageSetV2, &F::NewMail, &F::NewMailRq, &F::NewMailRs,
      &F::NewGetMimeRq, &F::NewGetMimeRs, &F::NewNorvSoftware, &F::NewNorvBrowserCentric,
      &F::NewNorvBIDInfo, &F::NewNorvSelectByBID, &F::NewNorvServiceList, &F::NewNorvSPURLList,
      &F::NewNorvTierDef, &F::NewNorvBrandData, &F::NewNorvBrandDataList, &F::NewNorvBrandDetails,
      &F::NewNorvBrandRs, &F::NewNorvBrandRq, &F::NewNorvMktTierRs, &F::NewNorvMktTierRq,
      &F::NewNorvSPChange, &F::NewNorvCuUsageLogRQ, &F::NewNorvFiUsageLogRQ, &F::NewNorvFiUsage,
      &F::NewNorvCuUsage, &F::NewNorvOfxMsgSetInfo, &F::NewNorvPlatformInfo, &F::NewNorvSwInfo,
      &F::NewNorvHwInfo, &F::NewNorvOsInfo, &F::NewNorvIntConfig, &F::NewNorvOfxMessage,
      &F::NewNorvCustInfo, &F::NewNorvSBusinessInfo, &F::NewNorvSurveyInfo, &F::NewNorvSurveyItem,
      &F::NewNorvSurveyRq, &F::NewNorvClientLogRq, &F::NewEmployeeQtrTotals, &F::NewW2Other,
      &F::NewEmployeeTaxSummary, &F::NewEmployeeTaxQtd, &F::NewEmployeeTaxYtd,
      &F::NewEmployeeReportingQtd, &F::NewEmployeeReportingYtd, &F::NewPayrollRq, &F::NewPayrollRs,
      &F::NewPayrollTx, &F::NewPayrollTxMod, &F::NewTxLine, &F::NewEmployee, &F::NewEmployeeMod,
      &F::NewCustomField, &F::NewAddrInfo, &F::NewWage, &F::NewPayrollAdjustment, &F::NewPayroll,
      &F::NewEmployeeDirectDepositInfo, &F::NewDirectDepositAccount, &F::NewDirectDepositItem,
      &F::NewEmployeeTaxInfo, &F::NewEmployeeFit, &F::NewEmployeeSit, &F::NewEmployeeSdi,
      &F::NewEmployeeSui, &F::NewEmployeeOtherTax, &F::NewHealthCare, &F::NewSick, &F::NewVacation,
      &F::NewPayrollRun, &F::NewPayCheck, &F::NewPayCheckMod, &F::NewPayCheckInfo,
      &F::NewSalaryLine, &F::NewHourlyWageLine, &F::NewAdjustmentLine, &F::NewTaxLine,
      &F::NewDirectDepositLine, &F::NewDisburseAdvice, &F::NewDirectDepositAdvice,
      &F::NewTaxLiability, &F::NewStateTaxDesc, &F::NewDirectDeposit, &F::NewPayrollItem,
      &F::NewPayrollItemMod, &F::NewSalaryItem, &F::NewHourlyItem, &F::NewAdditionItem,
      &F::NewDeductionItem, &F::NewContributionItem, &F::NewCommissionItem, &F::NewTaxItem,
      &F::NewPayrollEnrollRq, &F::NewPayrollEnrollRs, &F::NewCompanyInfo, &F::NewCompanyInfoMod,
      &F::NewContact, &F::NewTaxServiceStatus, &F::NewDirectDepositStatus, &F::NewTaxServiceQuit,
      &F::NewTerminationInfo, &F::NewDirectDepositQuit, &F::NewPayrollUpdateRs,
      &F::NewPayrollUpdateData, &F::NewRateChange);
}

#ifdef KROFX_TESTS_KNOW_SLOTS
TEST(KRDataObjFactory, KeepsTheOrderOfItsOperations) {
  WithOperations([](auto... operations) { ExpectSlotsInOrder(2, &F::GetVersion, operations...); });
}
#endif

// What takes no version, or has none.
template <class Made>
void ExpectVersion(F&, Made* (F::*)()) {}
void ExpectVersion(F&, KRString* (F::*)(u16)) {}

// Makes one object for none, and one for a version.
template <class Object>
void ExpectVersion(F& factory, Object* (F::*make)(u16)) {
  // The wrappers of message sets read theirs from their tag.
  if (std::is_same_v<Object, KRMessageSetRq> || std::is_same_v<Object, KRMessageSetRs>) return;
  const std::unique_ptr<Object> own((factory.*make)(0));
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->GetMsgSetVersion(), 2) << typeid(Object).name();
  const std::unique_ptr<Object> asked((factory.*make)(1));
  EXPECT_EQ(asked->GetMsgSetVersion(), 1) << typeid(Object).name();
}

TEST(KRDataObjFactory, GivesEveryObjectItsVersion) {
  F factory(2);
  WithOperations([&](auto... operations) { (ExpectVersion(factory, operations), ...); });
}

TEST(KRDataObjFactory, LeavesTheVersionOfAMessageSetToItsTag) {
  F factory(2);
  const std::unique_ptr<KRMessageSetRs> set(factory.NewMessageSetRs(1));
  EXPECT_EQ(set->GetMsgSetVersion(), 0);
  set->SetType(KRTag_BANKMSGSRSV2);
  EXPECT_EQ(set->GetMsgSetVersion(), 2);
}

}  // namespace
