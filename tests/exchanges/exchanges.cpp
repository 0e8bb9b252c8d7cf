// The words of the tables of exchanges, and the texts that they expand to.

#include "exchanges/exchanges.h"

#include <map>

#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

const std::map<std::string_view, std::string_view> kWords = {
    {"ACCOUNT", "<BANKID>011000015<ACCTID>1029384756<ACCTTYPE~>CHECKING"},
    {"BANK", "<BANKACCTFROM>@ACCOUNT</BANKACCTFROM>"},
    {"TOBANK", "<BANKACCTTO>@ACCOUNT</BANKACCTTO>"},
    {"CARD", "<CCACCTFROM><ACCTID>44</CCACCTFROM>"},
    {"BROKER", "<INVACCTFROM><BROKERID>b.example<ACCTID>77</INVACCTFROM>"},
    {"PLACE", "<ADDR1>1 Main St<CITY>Bath<STATE>SO<POSTALCODE>BA1"},
    {"BALANCE", "<LEDGERBAL><BALAMT>1523.75<DTASOF>20260131</LEDGERBAL>"},
    {"CLOSED",
     "<FITID>c1<DTCLOSE>20260131<BALCLOSE>1523.75<DTPOSTSTART>20260101<DTPOSTEND>20260131"},
    {"INFO", "<XFERINFO>@BANK@TOBANK<TRNAMT>10.25</XFERINFO>"},
    {"OFTEN", "<RECURRINST><FREQ>MONTHLY</RECURRINST>"},
    {"WIREPAYEE", "<WIREBENEFICIARY><NAME>Mill@TOBANK</WIREBENEFICIARY>"},
    {"MAIL",
     "<MAIL><USERID>ada<DTCREATED>20260105<FROM>Ada<TO>Bank<SUBJECT>Hello<MSGBODY>Hi</MSGBODY>"
     "<INCIMAGES>N<USEHTML>N</MAIL>"},
    {"PAYEE", "<PAYEE~><NAME>Mill@PLACE<PHONE>5551234</PAYEE~>"},
    {"PAYMENT", "<PMTINFO~>@BANK<TRNAMT>42.25@PAYEE<PAYACCT>c77<DTDUE>20260201</PMTINFO~>"},
    {"STATE", "<PMTPRCSTS><PMTPRCCODE>WILLPROCESSON<DTPMTPRC>20260201</PMTPRCSTS>"},
    {"CORE",
     "<MSGSETCORE><VER>#<URL~>https://bank.example/ofx<OFXSEC>NONE<TRANSPSEC>Y<SIGNONREALM>all"
     "<LANGUAGE>ENG<SYNCMODE>LITE<RESPFILEER>Y</MSGSETCORE>"},
    {"SOFTWARE", "<NORV.SW><NORV.SWPRODCD>KROFX<NORV.SWVER>1<NORV.SWOSCD>LINUX</NORV.SW>"},
    {"BRAND", "<NORV.BIDINFO><NORV.BID>7<NORV.DTUPDATE>20260101</NORV.BIDINFO>"},
    {"USED",
     "<NORV.OFXMSGSETINFO><NORV.OFXMSGSET>BANKMSGSET<NORV.VERSION>#<NORV.OFXMESSAGE>"
     "<NORV.MESSAGE~>STMTRQ<NORV.MSGSTATUS>0</NORV.OFXMESSAGE></NORV.OFXMSGSETINFO>"},
    {"ASK", "<TOKEN~>7<REJECTIFMISSING>N"},
    {"TOKEN", "<TOKEN~>7<LOSTSYNC>N"},
    {"NOHTML", "<INCIMAGES>N<USEHTML>N"},
};

}  // namespace

std::string Expanded(std::string_view content, u16 version) {
  std::string result;
  for (std::size_t i = 0; i < content.size(); ++i) {
    if (content[i] == '~') {
      if (version == 2) result += '2';
    } else if (content[i] == '#') {
      result += std::to_string(version);
    } else {
      std::size_t end = i + 1;
      while (end < content.size() && content[end] >= 'A' && content[end] <= 'Z') ++end;
      const auto word =
          content[i] == '@' ? kWords.find(content.substr(i + 1, end - i - 1)) : kWords.end();
      if (word == kWords.end()) {
        result += content[i];
      } else {
        result += Expanded(word->second, version);
        i = end - 1;
      }
    }
  }
  return result;
}

std::string WrapperText(const Exchange& exchange, u16 version) {
  std::string payload = Expanded(exchange.content, version);
  if (*exchange.payload != '\0') payload = Aggregate(exchange.payload, payload);
  return IsRequest(exchange.wrapper) ? RequestWrapper(exchange.wrapper, payload)
                                     : ResponseWrapper(exchange.wrapper, payload);
}

}  // namespace krofx::testing
