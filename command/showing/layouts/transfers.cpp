// Transfers within a bank and between banks, their recurring models, and wires: from where to
// where, how much, when, and what became of it.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

// A model of the first version wraps a whole transfer, so the paths look one level deeper too.
constexpr std::string_view kAccount =
    "XFERINFO/BANKACCTFROM/ACCTID|XFERINFO/CCACCTFROM/ACCTID|*/XFERINFO/BANKACCTFROM/ACCTID|"
    "*/XFERINFO/CCACCTFROM/ACCTID|BANKACCTFROM/ACCTID";

constexpr FieldSpec kFields[] = {
    {"SRVRTID|SRVRTID2", "server_id", "Server ID"},
    {"RECSRVRTID|RECSRVRTID2", "model_id", "Model"},
    {"CURDEF|*/CURDEF", "currency", "Currency"},
    {"XFERINFO/TRNAMT|*/XFERINFO/TRNAMT|TRNAMT", "amount", "Amount"},
    {"XFERINFO/BANKACCTFROM/BANKID|*/XFERINFO/BANKACCTFROM/BANKID|BANKACCTFROM/BANKID", "from_bank",
     "From bank"},
    {kAccount, "from_account", "From"},
    {"XFERINFO/BANKACCTTO/BANKID|*/XFERINFO/BANKACCTTO/BANKID|WIREBENEFICIARY/BANKACCTTO/BANKID",
     "to_bank", "To bank"},
    {"XFERINFO/BANKACCTTO/ACCTID|XFERINFO/CCACCTTO/ACCTID|*/XFERINFO/BANKACCTTO/ACCTID|"
     "*/XFERINFO/CCACCTTO/ACCTID|WIREBENEFICIARY/BANKACCTTO/ACCTID",
     "to_account", "To"},
    {"WIREBENEFICIARY/NAME", "payee", "Payee"},
    {"WIREDESTBANK/EXTBANKDESC/NAME", "payee_bank", "Payee's bank"},
    {"XFERINFO/DTDUE|*/XFERINFO/DTDUE|DTDUE", "due", "Due"},
    {"XFERINFO/DTAVAIL|*/XFERINFO/DTAVAIL", "available", "Available", true},
    {"RECURRINST/FREQ", "frequency", "Recurs"},
    {"RECURRINST/NINSTS", "times", "Times"},
    {"DTXFERPRJ|*/DTXFERPRJ", "projected", "Projected for"},
    {"DTPOSTED|*/DTPOSTED", "posted", "Posted"},
    {"XFERPRCSTS/XFERPRCCODE|*/XFERPRCSTS/XFERPRCCODE", "processing_status", "Processing"},
    {"XFERPRCSTS/DTXFERPRC|*/XFERPRCSTS/DTXFERPRC", "processing_date", "on"},
    {"REFNUM|*/REFNUM", "reference", "Reference"},
    {"XFERINFO/MEMO2|*/XFERINFO/MEMO2|WIREBENEFICIARY/MEMO|WIREBENEFICIARY/MEMO2", "memo", "Memo"},
    {"PAYINSTRUCT", "instruction", "Instruction"},
    {"FEE", "fee", "Fee"},
    {"CONFMSG", "confirmation", "Confirmation"},
    {"MODPENDING", "modify_pending", "Pending ones too"},
    {"CANPENDING", "cancel_pending", "Pending ones too"},
};

constexpr Layout Transfer(std::string_view tag, std::string_view kind, std::string_view title) {
  return {tag, kind, title, kAccount, kFields, {}};
}

constexpr Layout kLayouts[] = {
    Transfer("INTRARQ", "transfer-request", "Request for a transfer"),
    Transfer("INTRARS", "transfer", "Transfer"),
    Transfer("INTRAMODRQ", "transfer-change-request", "Request to change a transfer"),
    Transfer("INTRAMODRS", "transfer-change", "Changed transfer"),
    Transfer("INTRACANRQ", "transfer-cancel-request", "Request to cancel a transfer"),
    Transfer("INTRACANRS", "transfer-cancel", "Cancelled transfer"),
    Transfer("INTERRQ", "interbank-transfer-request", "Request for an interbank transfer"),
    Transfer("INTERRS", "interbank-transfer", "Interbank transfer"),
    Transfer("INTERMODRQ", "interbank-transfer-change-request",
             "Request to change an interbank transfer"),
    Transfer("INTERMODRS", "interbank-transfer-change", "Changed interbank transfer"),
    Transfer("INTERCANRQ", "interbank-transfer-cancel-request",
             "Request to cancel an interbank transfer"),
    Transfer("INTERCANRS", "interbank-transfer-cancel", "Cancelled interbank transfer"),
    Transfer("RECINTRARQ", "recurring-transfer-request", "Request for a recurring transfer"),
    Transfer("RECINTRARS", "recurring-transfer", "Recurring transfer"),
    Transfer("RECINTRAMODRQ", "recurring-transfer-change-request",
             "Request to change a recurring transfer"),
    Transfer("RECINTRAMODRS", "recurring-transfer-change", "Changed recurring transfer"),
    Transfer("RECINTRACANRQ", "recurring-transfer-cancel-request",
             "Request to end a recurring transfer"),
    Transfer("RECINTRACANRS", "recurring-transfer-cancel", "Ended recurring transfer"),
    Transfer("RECINTERRQ", "recurring-interbank-transfer-request",
             "Request for a recurring interbank transfer"),
    Transfer("RECINTERRS", "recurring-interbank-transfer", "Recurring interbank transfer"),
    Transfer("RECINTERMODRQ", "recurring-interbank-transfer-change-request",
             "Request to change a recurring interbank transfer"),
    Transfer("RECINTERMODRS", "recurring-interbank-transfer-change",
             "Changed recurring interbank transfer"),
    Transfer("RECINTERCANRQ", "recurring-interbank-transfer-cancel-request",
             "Request to end a recurring interbank transfer"),
    Transfer("RECINTERCANRS", "recurring-interbank-transfer-cancel",
             "Ended recurring interbank transfer"),
    Transfer("WIRERQ", "wire-request", "Request for a wire"),
    Transfer("WIRERS", "wire", "Wire"),
    Transfer("WIRECANRQ", "wire-cancel-request", "Request to cancel a wire"),
    Transfer("WIRECANRS", "wire-cancel", "Cancelled wire"),
};

}  // namespace

const std::span<const Layout> kTransfers = kLayouts;

}  // namespace krofx::command::layouts
