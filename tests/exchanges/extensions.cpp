// Exchanges of the service extensions: brands, marketing tiers, logs, surveys and usage. Reports of
// a client are answered by a status only.

#include "exchanges/exchanges.h"
#include "krofx/extensions/branding.h"
#include "krofx/extensions/client_logs.h"
#include "krofx/extensions/surveys.h"
#include "krofx/extensions/usage.h"

namespace krofx::testing {
namespace {

constexpr Exchange kExchanges[] = {
    {"NORV.BRANDMSGSRQ", "NORV.BRANDTRNRQ", "NORV.BRANDRQ", Is<KRNorvBrandRq>,
     "@SOFTWARE<NORV.SELECTBYBID>@BRAND</NORV.SELECTBYBID>"},
    {"NORV.BRANDMSGSRQ", "NORV.MKTTIERTRNRQ", "NORV.MKTTIERRQ", Is<KRNorvMktTierRq>,
     "<NORV.TIERDTUPDATE>20260101"},
    {"NORV.CLOGMSGSRQ", "NORV.CLIENTLOGTRNRQ", "NORV.CLIENTLOGRQ", Is<KRNorvClientLogRq>,
     "<NORV.REGID>r1<NORV.PLATFORMINFO><NORV.SWINFO><NORV.SWVERSION>1</NORV.SWINFO>"
     "</NORV.PLATFORMINFO>"},
    {"NORV.SURVEYMSGSRQ", "NORV.SURVEYTRNRQ", "NORV.SURVEYRQ", Is<KRNorvSurveyRq>,
     "<NORV.REGID>r1<NORV.SURVEYINFO><NORV.SURVEYID>s1<NORV.SURVEYITEM><NORV.QSTLABEL>1"
     "<NORV.ASWLABEL>a</NORV.SURVEYITEM></NORV.SURVEYINFO>"},
    {"NORV.USLFIMSGSRQ", "NORV.FIUSAGELOGTRNRQ", "NORV.FIUSAGELOGRQ", Is<KRNorvFiUsageLogRQ>,
     "<NORV.FIUSAGE><NORV.UID2>u1<NORV.BID>7<URL~>https://bank.example/ofx<NORV.HTTPSTATUS>200"
     "<DTSTART>20260105<DTEND>20260105<NORV.SESSIONID>1@USED</NORV.FIUSAGE>"},
    {"NORV.USLCUMSGSRQ", "NORV.CUUSAGELOGTRNRQ", "NORV.CUUSAGELOGRQ", Is<KRNorvCuUsageLogRQ>,
     "<NORV.CUUSAGE><NORV.REGID>r1<NORV.SESSIONID>1<DTSTART>20260105<DTEND>20260105"
     "<NORV.HTTPSTATUS>200@USED</NORV.CUUSAGE>"},

    {"NORV.BRANDMSGSRS", "NORV.BRANDTRNRS", "NORV.BRANDRS", Is<KRNorvBrandRs>,
     "@SOFTWARE<NORV.BRANDDATALIST><NORV.BRANDDATA>@BRAND</NORV.BRANDDATA></NORV.BRANDDATALIST>"},
    {"NORV.BRANDMSGSRS", "NORV.MKTTIERTRNRS", "NORV.MKTTIERRS", Is<KRNorvMktTierRs>,
     "<NORV.TIERDTUPDATE>20260101"},
    {"NORV.CLOGMSGSRS", "NORV.CLIENTLOGTRNRS", "", nullptr},
    {"NORV.SURVEYMSGSRS", "NORV.SURVEYTRNRS", "", nullptr},
    {"NORV.USLFIMSGSRS", "NORV.FIUSAGELOGTRNRS", "", nullptr},
    {"NORV.USLCUMSGSRS", "NORV.CUUSAGELOGTRNRS", "", nullptr},
};

}  // namespace

const Family kExtensionFamily{"Extension", kExchanges, {}};

}  // namespace krofx::testing
