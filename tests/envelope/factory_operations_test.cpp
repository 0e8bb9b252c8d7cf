// All operations of the factory: their order, which is part of the interface, and the version that
// each gives to its object.

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <typeinfo>

#include "krofx/aggregates.h"
#include "krofx/core/parse_logger.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "krofx/values/language.h"
#include "support/vtable_places.h"

namespace {

using F = KRDataObjFactory;

// Operations that take no version, or whose objects have none.
template <class Made>
void ExpectVersion(F&, Made* (F::*)()) {}
void ExpectVersion(F&, KRString* (F::*)(u16)) {}

void ExpectVersions(u16 own, u16 asked, const std::type_info& type) {
  EXPECT_EQ(own, 2) << type.name();
  EXPECT_EQ(asked, 1) << type.name();
}

// The version of an object, which does not outlive the call.
template <class Object>
u16 VersionOf(Object* made) {
  const u16 version = made->GetMsgSetVersion();
  delete made;
  return version;
}

// Makes one object without a version, and one with a version.
template <class Object>
void ExpectVersion(F& factory, Object* (F::*make)(u16)) {
  // The wrappers of message sets read theirs from their tag.
  if (std::is_same_v<Object, KRMessageSetRq> || std::is_same_v<Object, KRMessageSetRs>) return;
  ExpectVersions(VersionOf((factory.*make)(0)), VersionOf((factory.*make)(1)), typeid(Object));
}

// An operation that makes something, without its type.
struct Operation {
  std::ptrdiff_t place;
  void (*expectVersion)(F& factory);
};

template <auto kMake>
Operation Make() {
#ifdef KROFX_TESTS_KNOW_VTABLES
  const std::ptrdiff_t place = VtablePlaceOf(kMake);
#else
  const std::ptrdiff_t place = 0;
#endif
  return {place, [](F& factory) { ExpectVersion(factory, kMake); }};
}

// All of them, in their order.
const Operation kOperations[] = {Make<&F::NewUShort>(),
                                 Make<&F::NewString>(),
                                 Make<&F::NewDataObj>(),
                                 Make<&F::NewParseException>(),
                                 Make<&F::NewMIMEHeader>(),
                                 Make<&F::NewFile>(),
                                 Make<&F::NewFileRq>(),
                                 Make<&F::NewFileRs>(),
                                 Make<&F::NewCurrency>(),
                                 Make<&F::NewRequest>(),
                                 Make<&F::NewResponse>(),
                                 Make<&F::NewMessageSetRs>(),
                                 Make<&F::NewMessageSetRq>(),
                                 Make<&F::NewSyncRq>(),
                                 Make<&F::NewSyncRs>(),
                                 Make<&F::NewTransRq>(),
                                 Make<&F::NewLanguage>(),
                                 Make<&F::NewStatus>(),
                                 Make<&F::NewTransRs>(),
                                 Make<&F::NewSignOnRs>(),
                                 Make<&F::NewSignOnRq>(),
                                 Make<&F::NewChallengeRs>(),
                                 Make<&F::NewChallengeRq>(),
                                 Make<&F::NewFI>(),
                                 Make<&F::NewPinChangeRq>(),
                                 Make<&F::NewPinChangeRs>(),
                                 Make<&F::NewMessageSetCore>(),
                                 Make<&F::NewMessageSetVersion>(),
                                 Make<&F::NewMessageSetProfile>(),
                                 Make<&F::NewSignOnInfo>(),
                                 Make<&F::NewMessageSetList>(),
                                 Make<&F::NewSignOnInfoList>(),
                                 Make<&F::NewProfileRq>(),
                                 Make<&F::NewProfileRs>(),
                                 Make<&F::NewProfileMessageSetV1>(),
                                 Make<&F::NewProfileMessageSetV2>(),
                                 Make<&F::NewSignOnMessageSetV1>(),
                                 Make<&F::NewSignOnMessageSetV2>(),
                                 Make<&F::NewBalance>(),
                                 Make<&F::NewBankAccount>(),
                                 Make<&F::NewBankAccountInfo>(),
                                 Make<&F::NewInvAcctInfo>(),
                                 Make<&F::NewInvAcctFrom>(),
                                 Make<&F::NewAction>(),
                                 Make<&F::NewAccountInfo>(),
                                 Make<&F::NewClientEnroll>(),
                                 Make<&F::NewWebEnroll>(),
                                 Make<&F::NewOtherEnroll>(),
                                 Make<&F::NewAccountInfoRq>(),
                                 Make<&F::NewAccountInfoRs>(),
                                 Make<&F::NewAccountServiceRq>(),
                                 Make<&F::NewAccountServiceRs>(),
                                 Make<&F::NewAccountInfoBase>(),
                                 Make<&F::NewEnrollRq>(),
                                 Make<&F::NewEnrollRs>(),
                                 Make<&F::NewChangeUserInfoRq>(),
                                 Make<&F::NewChangeUserInfoRs>(),
                                 Make<&F::NewSignUpMessageSetV1>(),
                                 Make<&F::NewSignUpMessageSetV2>(),
                                 Make<&F::NewBankMessageSetV1>(),
                                 Make<&F::NewBankMessageSetV2>(),
                                 Make<&F::NewBankStatementRs>(),
                                 Make<&F::NewBankStatementRq>(),
                                 Make<&F::NewClosing>(),
                                 Make<&F::NewStatementEndRs>(),
                                 Make<&F::NewStatementEndRq>(),
                                 Make<&F::NewBankStatementTx>(),
                                 Make<&F::NewIncTransaction>(),
                                 Make<&F::NewLedgerBalance>(),
                                 Make<&F::NewAvailableBalance>(),
                                 Make<&F::NewBankTransactionList>(),
                                 Make<&F::NewStopCheckRs>(),
                                 Make<&F::NewStopCheckRq>(),
                                 Make<&F::NewCheckRange>(),
                                 Make<&F::NewCheckDescription>(),
                                 Make<&F::NewStopCheckNumber>(),
                                 Make<&F::NewStopCheckProfile>(),
                                 Make<&F::NewIntraRs>(),
                                 Make<&F::NewIntraModifyRs>(),
                                 Make<&F::NewIntraCancelRs>(),
                                 Make<&F::NewRecIntraRs>(),
                                 Make<&F::NewRecIntraModifyRs>(),
                                 Make<&F::NewRecIntraCancelRs>(),
                                 Make<&F::NewIntraRq>(),
                                 Make<&F::NewIntraModifyRq>(),
                                 Make<&F::NewIntraCancelRq>(),
                                 Make<&F::NewRecIntraRq>(),
                                 Make<&F::NewRecIntraModifyRq>(),
                                 Make<&F::NewRecIntraCancelRq>(),
                                 Make<&F::NewWireRq>(),
                                 Make<&F::NewWireRs>(),
                                 Make<&F::NewWireCancelRq>(),
                                 Make<&F::NewWireCancelRs>(),
                                 Make<&F::NewExtBankDesc>(),
                                 Make<&F::NewXferProcessingStatus>(),
                                 Make<&F::NewWireBeneficiary>(),
                                 Make<&F::NewWireDestinationBank>(),
                                 Make<&F::NewRecInstruction>(),
                                 Make<&F::NewBankMailRq>(),
                                 Make<&F::NewBankMailRs>(),
                                 Make<&F::NewCheckMailRs>(),
                                 Make<&F::NewDepositMailRs>(),
                                 Make<&F::NewCreditCardMessageSetV1>(),
                                 Make<&F::NewCreditCardMessageSetV2>(),
                                 Make<&F::NewCCAccount>(),
                                 Make<&F::NewCCAccountInfo>(),
                                 Make<&F::NewCCStatementRs>(),
                                 Make<&F::NewCCStatementRq>(),
                                 Make<&F::NewCCClosing>(),
                                 Make<&F::NewCCStatementEndRs>(),
                                 Make<&F::NewCCStatementEndRq>(),
                                 Make<&F::NewInvStmtMsgSetV1>(),
                                 Make<&F::NewInvStmtMsgSetV2>(),
                                 Make<&F::NewInvestmentMailRq>(),
                                 Make<&F::NewInvestmentMailRs>(),
                                 Make<&F::NewFIMFAssetClass>(),
                                 Make<&F::NewMFAssetClass>(),
                                 Make<&F::NewPortion>(),
                                 Make<&F::NewFIPortion>(),
                                 Make<&F::NewBalList>(),
                                 Make<&F::NewDebtInfo>(),
                                 Make<&F::NewMFInfo>(),
                                 Make<&F::NewOptInfo>(),
                                 Make<&F::NewOtherInfo>(),
                                 Make<&F::NewStockInfo>(),
                                 Make<&F::NewPosDebt>(),
                                 Make<&F::NewPosMF>(),
                                 Make<&F::NewPosOpt>(),
                                 Make<&F::NewPosOther>(),
                                 Make<&F::NewPosStock>(),
                                 Make<&F::NewInvPos>(),
                                 Make<&F::NewIncPos>(),
                                 Make<&F::NewInvBal>(),
                                 Make<&F::NewInvBankTran>(),
                                 Make<&F::NewInvBuy>(),
                                 Make<&F::NewInvSell>(),
                                 Make<&F::NewInvOOList>(),
                                 Make<&F::NewInvPosList>(),
                                 Make<&F::NewInvStmtRq>(),
                                 Make<&F::NewInvStmtRs>(),
                                 Make<&F::NewInvTran>(),
                                 Make<&F::NewInvTranList>(),
                                 Make<&F::NewSecID>(),
                                 Make<&F::NewSecInfo>(),
                                 Make<&F::NewSecList>(),
                                 Make<&F::NewSecRq>(),
                                 Make<&F::NewSecListMsgSetV1>(),
                                 Make<&F::NewSecListMsgSetV2>(),
                                 Make<&F::NewSecListRs>(),
                                 Make<&F::NewSecListRq>(),
                                 Make<&F::NewOO>(),
                                 Make<&F::NewOOBuyDebt>(),
                                 Make<&F::NewOOBuyMF>(),
                                 Make<&F::NewOOBuyOpt>(),
                                 Make<&F::NewOOBuyOther>(),
                                 Make<&F::NewOOBuyStock>(),
                                 Make<&F::NewOOSellDebt>(),
                                 Make<&F::NewOOSellMF>(),
                                 Make<&F::NewOOSellOpt>(),
                                 Make<&F::NewOOSellOther>(),
                                 Make<&F::NewOOSellStock>(),
                                 Make<&F::NewOOSwitchMF>(),
                                 Make<&F::NewBuyStock>(),
                                 Make<&F::NewBuyMF>(),
                                 Make<&F::NewBuyOpt>(),
                                 Make<&F::NewBuyDebt>(),
                                 Make<&F::NewBuyOther>(),
                                 Make<&F::NewSellStock>(),
                                 Make<&F::NewSellMF>(),
                                 Make<&F::NewSellDebt>(),
                                 Make<&F::NewSellOpt>(),
                                 Make<&F::NewSellOther>(),
                                 Make<&F::NewIncome>(),
                                 Make<&F::NewJrnlFund>(),
                                 Make<&F::NewJrnlSec>(),
                                 Make<&F::NewMarginInterest>(),
                                 Make<&F::NewReinvest>(),
                                 Make<&F::NewRetOfCap>(),
                                 Make<&F::NewSplit>(),
                                 Make<&F::NewTransfer>(),
                                 Make<&F::NewClosureOpt>(),
                                 Make<&F::NewInvExpense>(),
                                 Make<&F::NewBillPayMessageSetV1>(),
                                 Make<&F::NewBillPayMessageSetV2>(),
                                 Make<&F::NewBillPayAccountInfo>(),
                                 Make<&F::NewPayee>(),
                                 Make<&F::NewPayee2>(),
                                 Make<&F::NewPaymentInfo>(),
                                 Make<&F::NewPaymentInfo2>(),
                                 Make<&F::NewExtendedPayee>(),
                                 Make<&F::NewExtendedPayment>(),
                                 Make<&F::NewPaymentPrcSts>(),
                                 Make<&F::NewDiscount>(),
                                 Make<&F::NewDiscount2>(),
                                 Make<&F::NewAdjustment>(),
                                 Make<&F::NewLineItem>(),
                                 Make<&F::NewInvoice>(),
                                 Make<&F::NewInvoice2>(),
                                 Make<&F::NewExtendedPaymentInvoice>(),
                                 Make<&F::NewPaymentBankAcctTo>(),
                                 Make<&F::NewExtBankAcctTo>(),
                                 Make<&F::NewPaymentRq>(),
                                 Make<&F::NewPaymentRs>(),
                                 Make<&F::NewPaymentModifyRq>(),
                                 Make<&F::NewPaymentModifyRs>(),
                                 Make<&F::NewPaymentCancelRq>(),
                                 Make<&F::NewPaymentCancelRs>(),
                                 Make<&F::NewPaymentInquiryRq>(),
                                 Make<&F::NewPaymentInquiryRs>(),
                                 Make<&F::NewRecPaymentRq>(),
                                 Make<&F::NewRecPaymentRs>(),
                                 Make<&F::NewRecPaymentModifyRq>(),
                                 Make<&F::NewRecPaymentModifyRs>(),
                                 Make<&F::NewRecPaymentCancelRq>(),
                                 Make<&F::NewRecPaymentCancelRs>(),
                                 Make<&F::NewPayeeRq>(),
                                 Make<&F::NewPayeeRs>(),
                                 Make<&F::NewPayeeModifyRq>(),
                                 Make<&F::NewPayeeModifyRs>(),
                                 Make<&F::NewPayeeDeleteRq>(),
                                 Make<&F::NewPayeeDeleteRs>(),
                                 Make<&F::NewPaymentMailRq>(),
                                 Make<&F::NewPaymentMailRs>(),
                                 Make<&F::NewInterXferMessageSetV1>(),
                                 Make<&F::NewInterXferMessageSetV2>(),
                                 Make<&F::NewXferProfile>(),
                                 Make<&F::NewMultiTransRq>(),
                                 Make<&F::NewMultiTransRs>(),
                                 Make<&F::NewXferInfo>(),
                                 Make<&F::NewInterRs>(),
                                 Make<&F::NewInterModifyRs>(),
                                 Make<&F::NewInterCancelRs>(),
                                 Make<&F::NewRecInterRs>(),
                                 Make<&F::NewRecInterModifyRs>(),
                                 Make<&F::NewRecInterCancelRs>(),
                                 Make<&F::NewInterRq>(),
                                 Make<&F::NewInterModifyRq>(),
                                 Make<&F::NewInterCancelRq>(),
                                 Make<&F::NewRecInterRq>(),
                                 Make<&F::NewRecInterModifyRq>(),
                                 Make<&F::NewRecInterCancelRq>(),
                                 Make<&F::NewWireXferMessageSetV1>(),
                                 Make<&F::NewWireXferMessageSetV2>(),
                                 Make<&F::NewEMailProfile>(),
                                 Make<&F::NewEMailMessageSetV1>(),
                                 Make<&F::NewEMailMessageSetV2>(),
                                 Make<&F::NewMail>(),
                                 Make<&F::NewMailRq>(),
                                 Make<&F::NewMailRs>(),
                                 Make<&F::NewGetMimeRq>(),
                                 Make<&F::NewGetMimeRs>(),
                                 Make<&F::NewNorvSoftware>(),
                                 Make<&F::NewNorvBrowserCentric>(),
                                 Make<&F::NewNorvBIDInfo>(),
                                 Make<&F::NewNorvSelectByBID>(),
                                 Make<&F::NewNorvServiceList>(),
                                 Make<&F::NewNorvSPURLList>(),
                                 Make<&F::NewNorvTierDef>(),
                                 Make<&F::NewNorvBrandData>(),
                                 Make<&F::NewNorvBrandDataList>(),
                                 Make<&F::NewNorvBrandDetails>(),
                                 Make<&F::NewNorvBrandRs>(),
                                 Make<&F::NewNorvBrandRq>(),
                                 Make<&F::NewNorvMktTierRs>(),
                                 Make<&F::NewNorvMktTierRq>(),
                                 Make<&F::NewNorvSPChange>(),
                                 Make<&F::NewNorvCuUsageLogRQ>(),
                                 Make<&F::NewNorvFiUsageLogRQ>(),
                                 Make<&F::NewNorvFiUsage>(),
                                 Make<&F::NewNorvCuUsage>(),
                                 Make<&F::NewNorvOfxMsgSetInfo>(),
                                 Make<&F::NewNorvPlatformInfo>(),
                                 Make<&F::NewNorvSwInfo>(),
                                 Make<&F::NewNorvHwInfo>(),
                                 Make<&F::NewNorvOsInfo>(),
                                 Make<&F::NewNorvIntConfig>(),
                                 Make<&F::NewNorvOfxMessage>(),
                                 Make<&F::NewNorvCustInfo>(),
                                 Make<&F::NewNorvSBusinessInfo>(),
                                 Make<&F::NewNorvSurveyInfo>(),
                                 Make<&F::NewNorvSurveyItem>(),
                                 Make<&F::NewNorvSurveyRq>(),
                                 Make<&F::NewNorvClientLogRq>(),
                                 Make<&F::NewEmployeeQtrTotals>(),
                                 Make<&F::NewW2Other>(),
                                 Make<&F::NewEmployeeTaxSummary>(),
                                 Make<&F::NewEmployeeTaxQtd>(),
                                 Make<&F::NewEmployeeTaxYtd>(),
                                 Make<&F::NewEmployeeReportingQtd>(),
                                 Make<&F::NewEmployeeReportingYtd>(),
                                 Make<&F::NewPayrollRq>(),
                                 Make<&F::NewPayrollRs>(),
                                 Make<&F::NewPayrollTx>(),
                                 Make<&F::NewPayrollTxMod>(),
                                 Make<&F::NewTxLine>(),
                                 Make<&F::NewEmployee>(),
                                 Make<&F::NewEmployeeMod>(),
                                 Make<&F::NewCustomField>(),
                                 Make<&F::NewAddrInfo>(),
                                 Make<&F::NewWage>(),
                                 Make<&F::NewPayrollAdjustment>(),
                                 Make<&F::NewPayroll>(),
                                 Make<&F::NewEmployeeDirectDepositInfo>(),
                                 Make<&F::NewDirectDepositAccount>(),
                                 Make<&F::NewDirectDepositItem>(),
                                 Make<&F::NewEmployeeTaxInfo>(),
                                 Make<&F::NewEmployeeFit>(),
                                 Make<&F::NewEmployeeSit>(),
                                 Make<&F::NewEmployeeSdi>(),
                                 Make<&F::NewEmployeeSui>(),
                                 Make<&F::NewEmployeeOtherTax>(),
                                 Make<&F::NewHealthCare>(),
                                 Make<&F::NewSick>(),
                                 Make<&F::NewVacation>(),
                                 Make<&F::NewPayrollRun>(),
                                 Make<&F::NewPayCheck>(),
                                 Make<&F::NewPayCheckMod>(),
                                 Make<&F::NewPayCheckInfo>(),
                                 Make<&F::NewSalaryLine>(),
                                 Make<&F::NewHourlyWageLine>(),
                                 Make<&F::NewAdjustmentLine>(),
                                 Make<&F::NewTaxLine>(),
                                 Make<&F::NewDirectDepositLine>(),
                                 Make<&F::NewDisburseAdvice>(),
                                 Make<&F::NewDirectDepositAdvice>(),
                                 Make<&F::NewTaxLiability>(),
                                 Make<&F::NewStateTaxDesc>(),
                                 Make<&F::NewDirectDeposit>(),
                                 Make<&F::NewPayrollItem>(),
                                 Make<&F::NewPayrollItemMod>(),
                                 Make<&F::NewSalaryItem>(),
                                 Make<&F::NewHourlyItem>(),
                                 Make<&F::NewAdditionItem>(),
                                 Make<&F::NewDeductionItem>(),
                                 Make<&F::NewContributionItem>(),
                                 Make<&F::NewCommissionItem>(),
                                 Make<&F::NewTaxItem>(),
                                 Make<&F::NewPayrollEnrollRq>(),
                                 Make<&F::NewPayrollEnrollRs>(),
                                 Make<&F::NewCompanyInfo>(),
                                 Make<&F::NewCompanyInfoMod>(),
                                 Make<&F::NewContact>(),
                                 Make<&F::NewTaxServiceStatus>(),
                                 Make<&F::NewDirectDepositStatus>(),
                                 Make<&F::NewTaxServiceQuit>(),
                                 Make<&F::NewTerminationInfo>(),
                                 Make<&F::NewDirectDepositQuit>(),
                                 Make<&F::NewPayrollUpdateRs>(),
                                 Make<&F::NewPayrollUpdateData>(),
                                 Make<&F::NewRateChange>()};

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST(KRDataObjFactory, KeepsTheOrderOfItsOperations) {
  std::ptrdiff_t place = 2;  // After the destructor's two.
  EXPECT_EQ(VtablePlaceOf(&F::GetVersion), place);
  for (const Operation& operation : kOperations) EXPECT_EQ(operation.place, ++place);
}
#endif

TEST(KRDataObjFactory, GivesEveryObjectItsVersion) {
  F factory(2);
  for (const Operation& operation : kOperations) operation.expectVersion(factory);
}

TEST(KRDataObjFactory, LeavesTheVersionOfAMessageSetToItsTag) {
  F factory(2);
  const std::unique_ptr<KRMessageSetRs> set(factory.NewMessageSetRs(1));
  EXPECT_EQ(set->GetMsgSetVersion(), 0);
  set->SetType(KRTag_BANKMSGSRSV2);
  EXPECT_EQ(set->GetMsgSetVersion(), 2);
}

}  // namespace
