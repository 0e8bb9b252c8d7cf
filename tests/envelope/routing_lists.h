// What travels in what, written down once for the tests of the envelope: message sets and their
// children in the order of writing, wrappers and their payloads, synchronisations and their tags.
//
// "TOKEN2(V2+)" means a tag of the second version and later, "(V1)" of the first only.

#ifndef KROFX_TESTS_ENVELOPE_ROUTING_LISTS_H_
#define KROFX_TESTS_ENVELOPE_ROUTING_LISTS_H_

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "krofx/core/tag_dictionary.h"
#include "krofx/model/data_object.h"

namespace krofx::testing {

/// A tag, or the stem of one, and the tags that belong to it.
struct TagList {
  std::string_view name;
  std::string_view tags;
};

/// Message sets in the order of writing, as the stem in front of "MSGSRQ", with the children of the
/// request side in the order of writing. All have both versions but the last, which has only V1.
constexpr TagList kSets[] = {
    {"SIGNON", "SONRQ PINCHTRNRQ CHALLENGETRNRQ"},
    {"SIGNUP", "ENROLLTRNRQ ACCTINFOTRNRQ CHGUSERINFOTRNRQ CHGUSERINFOSYNCRQ ACCTTRNRQ ACCTSYNCRQ"},
    {"BANK",
     "STMTTRNRQ STMTENDTRNRQ INTRATRNRQ RECINTRATRNRQ STPCHKTRNRQ BANKMAILTRNRQ BANKMAILSYNCRQ "
     "STPCHKSYNCRQ INTRASYNCRQ RECINTRASYNCRQ"},
    {"CREDITCARD", "CCSTMTTRNRQ CCSTMTENDTRNRQ"},
    {"INVSTMT", "INVSTMTTRNRQ INVMAILTRNRQ INVMAILSYNCRQ"},
    {"INTERXFER", "INTERTRNRQ MULTIINTERTRNRQ(V2+) RECINTERTRNRQ INTERSYNCRQ RECINTERSYNCRQ"},
    {"WIREXFER", "WIRETRNRQ WIRESYNCRQ"},
    {"BILLPAY",
     "PAYEETRNRQ PAYEESYNCRQ PMTTRNRQ RECPMTTRNRQ PMTINQTRNRQ PMTMAILTRNRQ PMTSYNCRQ RECPMTSYNCRQ "
     "PMTMAILSYNCRQ"},
    {"EMAIL", "MAILTRNRQ MAILSYNCRQ GETMIMETRNRQ"},
    {"SECLIST", "SECLISTTRNRQ"},
    {"PROF", "PROFTRNRQ"},
    {"NORV.BRAND", "NORV.BRANDTRNRQ NORV.MKTTIERTRNRQ"},
    {"NORV.CLOG", "NORV.CLIENTLOGTRNRQ"},
    {"NORV.SURVEY", "NORV.SURVEYTRNRQ"},
    {"NORV.USLFI", "NORV.FIUSAGELOGTRNRQ"},
    {"NORV.USLCU", "NORV.CUUSAGELOGTRNRQ"},
    {"N.PAYROLL", "N.PAYROLLUPDATERQ N.PAYROLLENROLLTRNRQ"},
};

/// Wrappers of requests and their payloads.
constexpr TagList kRequestPayloads[] = {
    {"ACCTINFOTRNRQ", "ACCTINFORQ"},
    {"ACCTTRNRQ", "ACCTRQ"},
    {"BANKMAILTRNRQ", "BANKMAILRQ"},
    {"CCSTMTENDTRNRQ", "CCSTMTENDRQ"},
    {"CCSTMTTRNRQ", "CCSTMTRQ"},
    {"CHALLENGETRNRQ", "CHALLENGERQ"},
    {"CHGUSERINFOTRNRQ", "CHGUSERINFORQ"},
    {"ENROLLTRNRQ", "ENROLLRQ"},
    {"GETMIMETRNRQ", "GETMIMERQ"},
    {"N.PAYROLLENROLLTRNRQ", "N.PAYROLLENROLLRQ"},
    {"N.PAYROLLTRNRQ", "N.PAYROLLRQ"},
    {"INTERTRNRQ", "INTERRQ INTERMODRQ INTERCANRQ"},
    {"INTRATRNRQ", "INTRARQ INTRAMODRQ INTRACANRQ"},
    {"NORV.BRANDTRNRQ", "NORV.BRANDRQ"},
    {"NORV.CLIENTLOGTRNRQ", "NORV.CLIENTLOGRQ"},
    {"NORV.CUUSAGELOGTRNRQ", "NORV.CUUSAGELOGRQ"},
    {"NORV.FIUSAGELOGTRNRQ", "NORV.FIUSAGELOGRQ"},
    {"NORV.MKTTIERTRNRQ", "NORV.MKTTIERRQ"},
    {"NORV.SURVEYTRNRQ", "NORV.SURVEYRQ"},
    {"INVMAILTRNRQ", "INVMAILRQ"},
    {"INVSTMTTRNRQ", "INVSTMTRQ"},
    {"MAILTRNRQ", "MAILRQ"},
    {"MULTIINTERTRNRQ", "INTERRQ(V2+)"},
    {"PAYEETRNRQ", "PAYEERQ PAYEEMODRQ PAYEEDELRQ"},
    {"PINCHTRNRQ", "PINCHRQ"},
    {"PMTINQTRNRQ", "PMTINQRQ"},
    {"PMTMAILTRNRQ", "PMTMAILRQ"},
    {"PMTTRNRQ", "PMTRQ PMTMODRQ PMTCANCRQ"},
    {"PROFTRNRQ", "PROFRQ"},
    {"RECINTERTRNRQ", "RECINTERRQ RECINTERMODRQ RECINTERCANRQ"},
    {"RECINTRATRNRQ", "RECINTRARQ RECINTRAMODRQ RECINTRACANRQ"},
    {"RECPMTTRNRQ", "RECPMTRQ RECPMTMODRQ RECPMTCANCRQ"},
    {"SECLISTTRNRQ", "SECLISTRQ"},
    {"STMTENDTRNRQ", "STMTENDRQ"},
    {"STMTTRNRQ", "STMTRQ"},
    {"STPCHKTRNRQ", "STPCHKRQ"},
    {"WIRETRNRQ", "WIRERQ WIRECANRQ"},
};

/// Wrappers of responses and their payloads.
constexpr TagList kResponsePayloads[] = {
    {"ACCTINFOTRNRS", "ACCTINFORS"},
    {"ACCTTRNRS", "ACCTRS"},
    {"BANKMAILTRNRS", "BANKMAILRS CHKMAILRS DEPMAILRS"},
    {"CCSTMTENDTRNRS", "CCSTMTENDRS"},
    {"CCSTMTTRNRS", "CCSTMTRS"},
    {"CHALLENGETRNRS", "CHALLENGERS"},
    {"CHGUSERINFOTRNRS", "CHGUSERINFORS"},
    {"ENROLLTRNRS", "ENROLLRS"},
    {"GETMIMETRNRS", "GETMIMERS"},
    {"N.PAYROLLENROLLTRNRS", "N.PAYROLLENROLLRS"},
    {"N.PAYROLLTRNRS", "N.PAYROLLRS"},
    {"INTERTRNRS", "INTERCANRS INTERMODRS INTERRS"},
    {"INTRATRNRS", "INTRACANRS INTRAMODRS INTRARS"},
    {"NORV.BRANDTRNRS", "NORV.BRANDRS"},
    {"NORV.CLIENTLOGTRNRS", ""},
    {"NORV.CUUSAGELOGTRNRS", ""},
    {"NORV.FIUSAGELOGTRNRS", ""},
    {"NORV.MKTTIERTRNRS", "NORV.MKTTIERRS"},
    {"NORV.SURVEYTRNRS", ""},
    {"INVMAILTRNRS", "INVMAILRS"},
    {"INVSTMTTRNRS", "INVSTMTRS"},
    {"MAILTRNRS", "MAILRS"},
    {"MULTIINTERTRNRS", "INTERRS(V2+)"},
    {"PAYEETRNRS", "PAYEEMODRS PAYEERS PAYEEDELRS"},
    {"PINCHTRNRS", "PINCHRS"},
    {"PMTINQTRNRS", "PMTINQRS"},
    {"PMTMAILTRNRS", "PMTMAILRS"},
    {"PMTTRNRS", "PMTCANCRS PMTMODRS PMTRS"},
    {"PROFTRNRS", "PROFRS"},
    {"RECINTERTRNRS", "RECINTERCANRS RECINTERMODRS RECINTERRS"},
    {"RECINTRATRNRS", "RECINTRACANRS RECINTRAMODRS RECINTRARS"},
    {"RECPMTTRNRS", "RECPMTCANCRS RECPMTMODRS RECPMTRS"},
    {"SECLISTTRNRS", "SECLISTRS"},
    {"STMTENDTRNRS", "STMTENDRS"},
    {"STMTTRNRS", "STMTRS"},
    {"STPCHKTRNRS", "STPCHKRS"},
    {"WIRETRNRS", "WIRERS WIRECANRS"},
};

/// Synchronisations of requests and their valid tags; "standard" is kStandardRequest.
constexpr TagList kRequestSyncs[] = {
    {"ACCTSYNCRQ", "standard ACCTTRNRQ"},
    {"BANKMAILSYNCRQ", "standard INCIMAGES USEHTML BANKACCTFROM CCACCTFROM BANKMAILTRNRQ"},
    {"CHGUSERINFOSYNCRQ", "standard CHGUSERINFOTRNRQ"},
    {"N.PAYROLLUPDATERQ", "TOKEN REJECTIFMISSING N.PAYROLLTRNRQ"},
    {"INTERSYNCRQ", "standard BANKACCTFROM CCACCTFROM(V2+) MULTIINTERTRNRQ(V2+) INTERTRNRQ"},
    {"INTRASYNCRQ", "standard BANKACCTFROM CCACCTFROM(V2+) INTRATRNRQ"},
    {"INVMAILSYNCRQ", "standard INCIMAGES USEHTML INVACCTFROM INVMAILTRNRQ"},
    {"MAILSYNCRQ", "standard INCIMAGES USEHTML MAILTRNRQ"},
    {"PAYEESYNCRQ", "standard BANKACCTFROM PAYEETRNRQ"},
    {"PMTMAILSYNCRQ", "standard BANKACCTFROM INCIMAGES USEHTML PMTMAILTRNRQ"},
    {"PMTSYNCRQ", "standard BANKACCTFROM PMTTRNRQ"},
    {"RECINTERSYNCRQ", "standard BANKACCTFROM CCACCTFROM(V2+) RECINTERTRNRQ"},
    {"RECINTRASYNCRQ", "standard BANKACCTFROM CCACCTFROM(V2+) RECINTRATRNRQ"},
    {"RECPMTSYNCRQ", "standard BANKACCTFROM RECPMTTRNRQ"},
    {"STPCHKSYNCRQ", "standard BANKACCTFROM STPCHKTRNRQ"},
    {"WIRESYNCRQ", "standard BANKACCTFROM WIRETRNRQ"},
};

/// Synchronisations of responses and their valid tags; "standard" is kStandardResponse.
constexpr TagList kResponseSyncs[] = {
    {"ACCTSYNCRS", "standard ACCTTRNRS"},
    {"BANKMAILSYNCRS", "standard BANKACCTFROM CCACCTFROM BANKMAILTRNRS"},
    {"CHGUSERINFOSYNCRS", "standard CHGUSERINFOTRNRS"},
    {"N.PAYROLLUPDATERS",
     "TOKEN N.TAXSERVSTATUS N.DDSTATUS N.PAYCHKNEXTID N.PAYROLLTXNEXTID N.EMPNEXTID N.PITEMNEXTID "
     "N.PAYROLLTRNRS N.PAYROLLUPDATEDATA"},
    {"INTERSYNCRS", "standard BANKACCTFROM CCACCTFROM(V2+) INTERTRNRS MULTIINTERTRNRS(V2+)"},
    {"INTRASYNCRS", "standard BANKACCTFROM CCACCTFROM(V2+) INTRATRNRS"},
    {"INVMAILSYNCRS", "standard INVACCTFROM INVMAILTRNRS"},
    {"MAILSYNCRS", "standard MAILTRNRS"},
    {"PAYEESYNCRS", "standard BANKACCTFROM PAYEETRNRS"},
    {"PMTMAILSYNCRS", "standard BANKACCTFROM PMTMAILTRNRS"},
    {"PMTSYNCRS", "standard BANKACCTFROM PMTTRNRS"},
    {"RECINTERSYNCRS", "standard BANKACCTFROM CCACCTFROM(V2+) RECINTERTRNRS"},
    {"RECINTRASYNCRS", "standard BANKACCTFROM CCACCTFROM(V2+) RECINTRATRNRS"},
    {"RECPMTSYNCRS", "standard BANKACCTFROM RECPMTTRNRS"},
    {"STPCHKSYNCRS", "standard BANKACCTFROM STPCHKTRNRS"},
    {"WIRESYNCRS", "standard BANKACCTFROM WIRETRNRS"},
};

constexpr std::string_view kStandardRequest =
    "TOKEN(V1) TOKEN2(V2+) TOKENONLY REFRESH REJECTIFMISSING NORV.REFRESH";
constexpr std::string_view kStandardResponse =
    "TOKEN(V1) TOKEN2(V2+) LOSTSYNC NORV.REFRESH SYNCERROR(V2+) NORV.SYNCERROR";

/// The words of a list.
inline std::vector<std::string> Words(std::string_view text) {
  std::istringstream in{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

/// A tag without its versions: "TOKEN2" of "TOKEN2(V2+)".
inline std::string Bare(std::string_view word) {
  return std::string(word.substr(0, word.find('(')));
}

/// The id of a tag, without the versions after it.
inline KRTagID Id(std::string_view word) {
  const std::string bare = Bare(word);
  KRTagID id = KRTag_None;
  KRTagDictionary::TheKRTagDictionary()->GetTagID(bare.c_str(), static_cast<u16>(bare.size()), &id,
                                                  KRCaseType_Exact);
  return id;
}

/// The same tag of the response side: RS for RQ.
inline std::string Response(std::string_view request) {
  std::string tag(request);
  const std::size_t at = tag.rfind("RQ");
  return at == std::string::npos ? tag : tag.replace(at, 2, "RS");
}

/// The valid table of an object, in the form of the lists above.
inline std::string ValidTags(const KRDataObj& object) {
  KRArrayOfTags tags;
  object.GetArrayOfValidTags(tags);
  std::string text;
  for (u16 i = 0; i < tags.count; ++i) {
    if (i != 0) text += ' ';
    text += KRTagDictionary::TheKRTagDictionary()->GetTagString(tags.table[i].tag);
    if (tags.table[i].versions == 0x1) text += "(V1)";
    if (tags.table[i].versions == 0x2) text += "(V2)";
    if (tags.table[i].versions == 0xfffe) text += "(V2+)";
  }
  return text;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_ENVELOPE_ROUTING_LISTS_H_
