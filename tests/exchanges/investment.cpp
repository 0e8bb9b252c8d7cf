// Exchanges of investment statements, their mail and securities.

#include "exchanges/exchanges.h"
#include "krofx/messages/banking/mail.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/investment/statement.h"

namespace krofx::testing {
namespace {

constexpr Exchange kExchanges[] = {
    {"INVSTMTMSGSRQ", "INVSTMTTRNRQ", "INVSTMTRQ", Is<KRInvStmtRq>,
     "@BROKER<INCTRAN><INCLUDE>Y</INCTRAN><INCOO>N<INCPOS><INCLUDE>Y</INCPOS><INCBAL>Y"},
    {"INVSTMTMSGSRQ", "INVMAILTRNRQ", "INVMAILRQ", Is<KRInvestmentMailRq>, "@BROKER@MAIL"},
    {"SECLISTMSGSRQ", "SECLISTTRNRQ", "SECLISTRQ", Is<KRSecListRq>, "<SECRQ><TICKER>MILL</SECRQ>"},

    {"INVSTMTMSGSRS", "INVSTMTTRNRS", "INVSTMTRS", Is<KRInvStmtRs>,
     "<DTASOF>20260131<CURDEF>USD@BROKER"},
    {"INVSTMTMSGSRS", "INVMAILTRNRS", "INVMAILRS", Is<KRInvestmentMailRs>, "@BROKER@MAIL"},
    {"SECLISTMSGSRS", "SECLISTTRNRS", "SECLISTRS", Is<KRSecListRs>},
};

constexpr Sync kSyncs[] = {
    {"INVSTMTMSGSRQ", "INVMAILSYNCRQ", "@ASK@NOHTML@BROKER", "INVMAILTRNRQ"},
    {"INVSTMTMSGSRS", "INVMAILSYNCRS", "@TOKEN@BROKER", "INVMAILTRNRS"},
};

}  // namespace

const Family kInvestmentFamily{"Investment", kExchanges, kSyncs};

}  // namespace krofx::testing
