// Exchanges of bill payment: payees, payments, recurring ones, inquiries and mail.

#include "krofx/messages/billpay/payments.h"
#include "exchanges/exchanges.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/billpay/recurring_payments.h"

namespace krofx::testing {
namespace {

constexpr Exchange kExchanges[] = {
    {"BILLPAYMSGSRQ", "PAYEETRNRQ", "PAYEERQ", Is<KRPayeeRq>, "@PAYEE"},
    {"BILLPAYMSGSRQ", "PAYEETRNRQ", "PAYEERQ", Is<KRPayeeRq>, "<PAYEEID~>p1"},
    {"BILLPAYMSGSRQ", "PAYEETRNRQ", "PAYEEMODRQ", Is<KRPayeeModifyRq>, "<PAYEELSTID~>7"},
    {"BILLPAYMSGSRQ", "PAYEETRNRQ", "PAYEEDELRQ", Is<KRPayeeDeleteRq>, "<PAYEELSTID~>7"},
    {"BILLPAYMSGSRQ", "PMTTRNRQ", "PMTRQ", Is<KRPaymentRq>, "@PAYMENT"},
    {"BILLPAYMSGSRQ", "PMTTRNRQ", "PMTMODRQ", Is<KRPaymentModifyRq>, "<SRVRTID~>s1@PAYMENT"},
    {"BILLPAYMSGSRQ", "PMTTRNRQ", "PMTCANCRQ", Is<KRPaymentCancelRq>, "<SRVRTID~>s1"},
    {"BILLPAYMSGSRQ", "RECPMTTRNRQ", "RECPMTRQ", Is<KRRecPaymentRq>, "@OFTEN@PAYMENT"},
    {"BILLPAYMSGSRQ", "RECPMTTRNRQ", "RECPMTMODRQ", Is<KRRecPaymentModifyRq>,
     "<RECSRVRTID~>m1@OFTEN@PAYMENT<MODPENDING>Y"},
    {"BILLPAYMSGSRQ", "RECPMTTRNRQ", "RECPMTCANCRQ", Is<KRRecPaymentCancelRq>,
     "<RECSRVRTID~>m1<CANPENDING>N"},
    {"BILLPAYMSGSRQ", "PMTINQTRNRQ", "PMTINQRQ", Is<KRPaymentInquiryRq>, "<SRVRTID~>s1"},
    {"BILLPAYMSGSRQ", "PMTMAILTRNRQ", "PMTMAILRQ", Is<KRPaymentMailRq>, "@MAIL"},

    {"BILLPAYMSGSRS", "PAYEETRNRS", "PAYEERS", Is<KRPayeeRs>, "<PAYEELSTID~>7"},
    {"BILLPAYMSGSRS", "PAYEETRNRS", "PAYEEMODRS", Is<KRPayeeModifyRs>, "<PAYEELSTID~>7"},
    {"BILLPAYMSGSRS", "PAYEETRNRS", "PAYEEDELRS", Is<KRPayeeDeleteRs>, "<PAYEELSTID~>7"},
    {"BILLPAYMSGSRS", "PMTTRNRS", "PMTRS", Is<KRPaymentRs>,
     "<SRVRTID~>s1<PAYEELSTID~>7<CURDEF>USD@PAYMENT@STATE"},
    {"BILLPAYMSGSRS", "PMTTRNRS", "PMTMODRS", Is<KRPaymentModifyRs>, "<SRVRTID~>s1@PAYMENT"},
    {"BILLPAYMSGSRS", "PMTTRNRS", "PMTCANCRS", Is<KRPaymentCancelRs>, "<SRVRTID~>s1"},
    {"BILLPAYMSGSRS", "RECPMTTRNRS", "RECPMTRS", Is<KRRecPaymentRs>,
     "<RECSRVRTID~>m1<PAYEELSTID~>7<CURDEF>USD@OFTEN@PAYMENT"},
    {"BILLPAYMSGSRS", "RECPMTTRNRS", "RECPMTMODRS", Is<KRRecPaymentModifyRs>,
     "<RECSRVRTID~>m1@OFTEN@PAYMENT<MODPENDING>Y"},
    {"BILLPAYMSGSRS", "RECPMTTRNRS", "RECPMTCANCRS", Is<KRRecPaymentCancelRs>,
     "<RECSRVRTID~>m1<CANPENDING>N"},
    {"BILLPAYMSGSRS", "PMTINQTRNRS", "PMTINQRS", Is<KRPaymentInquiryRs>, "<SRVRTID~>s1@STATE"},
    {"BILLPAYMSGSRS", "PMTMAILTRNRS", "PMTMAILRS", Is<KRPaymentMailRs>,
     "@MAIL<SRVRTID~>s1@PAYMENT"},
};

constexpr Sync kSyncs[] = {
    {"BILLPAYMSGSRQ", "PAYEESYNCRQ", "@ASK", "PAYEETRNRQ"},
    {"BILLPAYMSGSRQ", "PMTSYNCRQ", "@ASK@BANK", "PMTTRNRQ"},
    {"BILLPAYMSGSRQ", "RECPMTSYNCRQ", "@ASK@BANK", "RECPMTTRNRQ"},
    {"BILLPAYMSGSRQ", "PMTMAILSYNCRQ", "@ASK@NOHTML", "PMTMAILTRNRQ"},

    {"BILLPAYMSGSRS", "PAYEESYNCRS", "@TOKEN", "PAYEETRNRS"},
    {"BILLPAYMSGSRS", "PMTSYNCRS", "@TOKEN@BANK", "PMTTRNRS"},
    {"BILLPAYMSGSRS", "RECPMTSYNCRS", "@TOKEN@BANK", "RECPMTTRNRS"},
    {"BILLPAYMSGSRS", "PMTMAILSYNCRS", "@TOKEN@BANK", "PMTMAILTRNRS"},
};

}  // namespace

const Family kPaymentFamily{"Payment", kExchanges, kSyncs};

}  // namespace krofx::testing
