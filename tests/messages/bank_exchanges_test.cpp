// A minimal complete exchange in every wrapper of sign-up, transfers, wires, stop checks and mail:
// each is read without a warning, found complete, and written as it was read, in both versions.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// One payload in its wrapper. In the texts, words in capitals behind "@" stand for what recurs
// (Expanded), and "~" behind a tag for the 2 that the tag has in the second version.
struct Exchange {
  const char* set;
  const char* wrapper;
  const char* payload;
  const char* content;
  u16 versions = 3;
};

constexpr Exchange kRequests[] = {
    {"SIGNUPMSGSRQ", "ENROLLTRNRQ", "ENROLLRQ",
     "<FIRSTNAME>Ada<MIDDLENAME>A<LASTNAME>Byron<ADDR1>1 Main St<CITY>Bath<STATE>SO"
     "<POSTALCODE>BA1<COUNTRY>GBR<DAYPHONE>1<EVEPHONE>2<EMAIL>ada@example.com<TAXID>3"
     "<SECURITYNAME>Gordon<DATEBIRTH>18151210"},
    {"SIGNUPMSGSRQ", "ACCTINFOTRNRQ", "ACCTINFORQ", "<DTACCTUP>19990101"},
    {"SIGNUPMSGSRQ", "ACCTTRNRQ", "ACCTRQ", "<SVCADD>@TOBANK</SVCADD><SVC~>BANKSVC"},
    {"BANKMSGSRQ", "INTRATRNRQ", "INTRARQ", "@INFO"},
    {"BANKMSGSRQ", "INTRATRNRQ", "INTRAMODRQ", "<SRVRTID~>s1@INFO"},
    {"BANKMSGSRQ", "INTRATRNRQ", "INTRACANRQ", "<SRVRTID~>s1"},
    {"BANKMSGSRQ", "RECINTRATRNRQ", "RECINTRARQ", "@OFTEN<INTRARQ>@INFO</INTRARQ>", 1},
    {"BANKMSGSRQ", "RECINTRATRNRQ", "RECINTRARQ", "@OFTEN@INFO", 2},
    {"BANKMSGSRQ", "RECINTRATRNRQ", "RECINTRAMODRQ",
     "<RECSRVRTID>m1@OFTEN<INTRARQ>@INFO</INTRARQ><MODPENDING>Y", 1},
    {"BANKMSGSRQ", "RECINTRATRNRQ", "RECINTRAMODRQ", "<RECSRVRTID2>m1@OFTEN@INFO<MODPENDING>Y", 2},
    {"BANKMSGSRQ", "RECINTRATRNRQ", "RECINTRACANRQ", "<RECSRVRTID~>m1<CANPENDING>N"},
    {"BANKMSGSRQ", "STPCHKTRNRQ", "STPCHKRQ", "@BANK<CHKRANGE><CHKNUMSTART>100</CHKRANGE>"},
    {"BANKMSGSRQ", "BANKMAILTRNRQ", "BANKMAILRQ", "@BANK@MAIL"},
    {"INVSTMTMSGSRQ", "INVMAILTRNRQ", "INVMAILRQ", "@BROKER@MAIL"},
    {"INTERXFERMSGSRQ", "INTERTRNRQ", "INTERRQ", "@INFO"},
    {"INTERXFERMSGSRQ", "INTERTRNRQ", "INTERMODRQ", "<SRVRTID~>s1@INFO"},
    {"INTERXFERMSGSRQ", "INTERTRNRQ", "INTERCANRQ", "<SRVRTID~>s1"},
    {"INTERXFERMSGSRQ", "MULTIINTERTRNRQ", "INTERRQ", "@INFO", 2},
    {"INTERXFERMSGSRQ", "RECINTERTRNRQ", "RECINTERRQ", "@OFTEN<INTERRQ>@INFO</INTERRQ>", 1},
    {"INTERXFERMSGSRQ", "RECINTERTRNRQ", "RECINTERRQ", "@OFTEN@INFO", 2},
    {"INTERXFERMSGSRQ", "RECINTERTRNRQ", "RECINTERMODRQ", "<RECSRVRTID>m1@OFTEN<MODPENDING>Y", 1},
    {"INTERXFERMSGSRQ", "RECINTERTRNRQ", "RECINTERMODRQ", "<RECSRVRTID2>m1@OFTEN@INFO<MODPENDING>Y",
     2},
    {"INTERXFERMSGSRQ", "RECINTERTRNRQ", "RECINTERCANRQ", "<RECSRVRTID~>m1<CANPENDING>N"},
    {"WIREXFERMSGSRQ", "WIRETRNRQ", "WIRERQ",
     "@BANK@PAYEE<WIREDESTBANK><EXTBANKDESC><NAME>Bank<BANKID>026009593<ADDR1>2 High St<CITY>Bath"
     "<STATE>SO<POSTALCODE>BA1</EXTBANKDESC></WIREDESTBANK><TRNAMT>250.25"},
    {"WIREXFERMSGSRQ", "WIRETRNRQ", "WIRECANRQ", "<SRVRTID~>s1"},
    {"EMAILMSGSRQ", "MAILTRNRQ", "MAILRQ", "@MAIL"},
    {"EMAILMSGSRQ", "GETMIMETRNRQ", "GETMIMERQ", "<URL~>https://bank.example/part1"},
};

constexpr Exchange kResponses[] = {
    {"SIGNUPMSGSRS", "ENROLLTRNRS", "ENROLLRS", ""},
    {"SIGNUPMSGSRS", "ACCTINFOTRNRS", "ACCTINFORS", "<DTACCTUP>20260105"},
    {"SIGNUPMSGSRS", "ACCTTRNRS", "ACCTRS",
     "<SVCDEL>@BANK</SVCDEL><SVC~>BANKSVC<SVCSTATUS~>ACTIVE"},
    {"BANKMSGSRS", "INTRATRNRS", "INTRARS", "<CURDEF>USD<SRVRTID~>s1@INFO"},
    {"BANKMSGSRS", "INTRATRNRS", "INTRAMODRS", "<SRVRTID~>s1@INFO"},
    {"BANKMSGSRS", "INTRATRNRS", "INTRACANRS", "<SRVRTID~>s1"},
    {"BANKMSGSRS", "RECINTRATRNRS", "RECINTRARS",
     "<RECSRVRTID>m1@OFTEN<INTRARS><CURDEF>USD<SRVRTID>s1@INFO</INTRARS>", 1},
    {"BANKMSGSRS", "RECINTRATRNRS", "RECINTRARS", "<RECSRVRTID2>m1@OFTEN@INFO", 2},
    {"BANKMSGSRS", "RECINTRATRNRS", "RECINTRAMODRS", "<RECSRVRTID>m1@OFTEN<MODPENDING>Y", 1},
    {"BANKMSGSRS", "RECINTRATRNRS", "RECINTRAMODRS", "<RECSRVRTID2>m1@OFTEN@INFO<MODPENDING>Y", 2},
    {"BANKMSGSRS", "RECINTRATRNRS", "RECINTRACANRS", "<RECSRVRTID~>m1<CANPENDING>N"},
    {"BANKMSGSRS", "STPCHKTRNRS", "STPCHKRS",
     "<CURDEF>USD@BANK<STPCHKNUM><CHECKNUM>100<CHKSTATUS>0</STPCHKNUM><FEE>30.25<FEEMSG>None"},
    {"BANKMSGSRS", "BANKMAILTRNRS", "BANKMAILRS", "<CCACCTFROM><ACCTID>44</CCACCTFROM>@MAIL"},
    {"BANKMSGSRS", "BANKMAILTRNRS", "CHKMAILRS", "@BANK@MAIL<CHECKNUM>100"},
    {"BANKMSGSRS", "BANKMAILTRNRS", "DEPMAILRS", "@BANK@MAIL<TRNAMT>20.25"},
    {"INVSTMTMSGSRS", "INVMAILTRNRS", "INVMAILRS", "@BROKER@MAIL"},
    {"INTERXFERMSGSRS", "INTERTRNRS", "INTERRS", "<CURDEF>USD<SRVRTID~>s1@INFO<REFNUM>r1"},
    {"INTERXFERMSGSRS", "INTERTRNRS", "INTERMODRS", "<SRVRTID~>s1@INFO"},
    {"INTERXFERMSGSRS", "INTERTRNRS", "INTERCANRS", "<SRVRTID~>s1"},
    {"INTERXFERMSGSRS", "MULTIINTERTRNRS", "INTERRS", "<CURDEF>USD<SRVRTID2>s1@INFO", 2},
    {"INTERXFERMSGSRS", "RECINTERTRNRS", "RECINTERRS",
     "<RECSRVRTID>m1@OFTEN<INTERRS><CURDEF>USD<SRVRTID>s1@INFO</INTERRS>", 1},
    {"INTERXFERMSGSRS", "RECINTERTRNRS", "RECINTERRS", "<RECSRVRTID2>m1@OFTEN@INFO", 2},
    {"INTERXFERMSGSRS", "RECINTERTRNRS", "RECINTERMODRS", "<RECSRVRTID>m1@OFTEN<MODPENDING>Y", 1},
    {"INTERXFERMSGSRS", "RECINTERTRNRS", "RECINTERMODRS", "<RECSRVRTID2>m1@OFTEN@INFO<MODPENDING>Y",
     2},
    {"INTERXFERMSGSRS", "RECINTERTRNRS", "RECINTERCANRS", "<RECSRVRTID~>m1<CANPENDING>N"},
    {"WIREXFERMSGSRS", "WIRETRNRS", "WIRERS", "<CURDEF>USD<SRVRTID~>s1@BANK@PAYEE<TRNAMT>250.25"},
    {"WIREXFERMSGSRS", "WIRETRNRS", "WIRECANRS", "<SRVRTID~>s1"},
    {"EMAILMSGSRS", "MAILTRNRS", "MAILRS", "@MAIL"},
    {"EMAILMSGSRS", "GETMIMETRNRS", "GETMIMERS", "<URL~>https://bank.example/part1"},
};

// A synchronisation: what stands in it before its transactions, and which those are.
struct Sync {
  const char* set;
  const char* tag;
  const char* head;
  const char* wrapper;
};

constexpr Sync kRequestSyncs[] = {
    {"SIGNUPMSGSRQ", "ACCTSYNCRQ", "", "ACCTTRNRQ"},
    {"BANKMSGSRQ", "BANKMAILSYNCRQ", "<INCIMAGES>N<USEHTML>N@BANK", "BANKMAILTRNRQ"},
    {"BANKMSGSRQ", "STPCHKSYNCRQ", "@BANK", "STPCHKTRNRQ"},
    {"BANKMSGSRQ", "INTRASYNCRQ", "@BANK", "INTRATRNRQ"},
    {"BANKMSGSRQ", "RECINTRASYNCRQ", "@BANK", "RECINTRATRNRQ"},
    {"INVSTMTMSGSRQ", "INVMAILSYNCRQ", "<INCIMAGES>N<USEHTML>N@BROKER", "INVMAILTRNRQ"},
    {"INTERXFERMSGSRQ", "INTERSYNCRQ", "@BANK", "INTERTRNRQ"},
    {"INTERXFERMSGSRQ", "INTERSYNCRQ", "@BANK", "MULTIINTERTRNRQ"},
    {"INTERXFERMSGSRQ", "RECINTERSYNCRQ", "@BANK", "RECINTERTRNRQ"},
    {"WIREXFERMSGSRQ", "WIRESYNCRQ", "@BANK", "WIRETRNRQ"},
    {"EMAILMSGSRQ", "MAILSYNCRQ", "<INCIMAGES>N<USEHTML>N", "MAILTRNRQ"},
};

constexpr Sync kResponseSyncs[] = {
    {"SIGNUPMSGSRS", "ACCTSYNCRS", "", "ACCTTRNRS"},
    {"BANKMSGSRS", "BANKMAILSYNCRS", "@BANK", "BANKMAILTRNRS"},
    {"BANKMSGSRS", "STPCHKSYNCRS", "@BANK", "STPCHKTRNRS"},
    {"BANKMSGSRS", "INTRASYNCRS", "@BANK", "INTRATRNRS"},
    {"BANKMSGSRS", "RECINTRASYNCRS", "@BANK", "RECINTRATRNRS"},
    {"INVSTMTMSGSRS", "INVMAILSYNCRS", "@BROKER", "INVMAILTRNRS"},
    {"INTERXFERMSGSRS", "INTERSYNCRS", "@BANK", "INTERTRNRS"},
    {"INTERXFERMSGSRS", "INTERSYNCRS", "@BANK", "MULTIINTERTRNRS"},
    {"INTERXFERMSGSRS", "RECINTERSYNCRS", "@BANK", "RECINTERTRNRS"},
    {"WIREXFERMSGSRS", "WIRESYNCRS", "@BANK", "WIRETRNRS"},
    {"EMAILMSGSRS", "MAILSYNCRS", "", "MAILTRNRS"},
};

std::string Expanded(const std::string& text, u16 version) {
  const std::string from = BankAccountText("BANKACCTFROM", version);
  const std::string to = BankAccountText("BANKACCTTO", version);
  const std::map<std::string, std::string> words = {
      {"BANK", from},
      {"TOBANK", to},
      {"BROKER", "<INVACCTFROM><BROKERID>b.example<ACCTID>77</INVACCTFROM>"},
      {"INFO", Aggregate("XFERINFO", from + to + "<TRNAMT>10.25")},
      {"OFTEN", Aggregate("RECURRINST", "<FREQ>MONTHLY")},
      {"PAYEE", Aggregate("WIREBENEFICIARY", "<NAME>Mill" + to)},
      {"MAIL", Aggregate("MAIL",
                         "<USERID>ada<DTCREATED>20260105<FROM>Ada<TO>Bank<SUBJECT>Hello"
                         "<MSGBODY>Hi</MSGBODY><INCIMAGES>N<USEHTML>N")},
  };
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '~') {
      if (version == 2) result += '2';
      continue;
    }
    std::size_t end = i + 1;
    while (end < text.size() && text[end] >= 'A' && text[end] <= 'Z') ++end;
    const auto word = text[i] == '@' ? words.find(text.substr(i + 1, end - i - 1)) : words.end();
    if (word == words.end()) {
      result += text[i];
    } else {
      result += word->second;
      i = end - 1;
    }
  }
  return result;
}

template <class Root>
void ExpectFixedPoint(const std::string& text) {
  const Parsed<Root> file(text, 1, 1);
  EXPECT_EQ(file.Warnings(), Lines());
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  KRDataObj* lacking = file.Get();
  KRTagID missing = KRTag_None;
  EXPECT_EQ(KRUtility::AllRequiredPresent(&lacking, &missing), 1) << lacking->GetType();
  EXPECT_EQ(Build(*file, KRBuildStringOpt_Strict, 1), (Built{KRBuildStatus_Done, InLines(text)}));
}

std::string WrapperText(const Exchange& exchange, u16 version, bool request) {
  const std::string payload = Aggregate(exchange.payload, Expanded(exchange.content, version));
  return request ? RequestWrapper(exchange.wrapper, payload)
                 : ResponseWrapper(exchange.wrapper, payload);
}

TEST(BankExchanges, RequestsAreFixedPoints) {
  for (const Exchange& exchange : kRequests) {
    for (const u16 version : {u16{1}, u16{2}}) {
      if ((exchange.versions & version) == 0) continue;
      SCOPED_TRACE(std::string(exchange.payload) + VersionSuffix(version));
      ExpectFixedPoint<KRFileRq>(
          RequestFile(exchange.set, WrapperText(exchange, version, true), version));
    }
  }
}

TEST(BankExchanges, ResponsesAreFixedPoints) {
  for (const Exchange& exchange : kResponses) {
    for (const u16 version : {u16{1}, u16{2}}) {
      if ((exchange.versions & version) == 0) continue;
      SCOPED_TRACE(std::string(exchange.payload) + VersionSuffix(version));
      ExpectFixedPoint<KRFileRs>(
          ResponseFile(exchange.set, WrapperText(exchange, version, false), version));
    }
  }
}

// All exchanges of one wrapper, as a synchronisation carries them.
template <std::size_t kCount>
std::string AllOf(const Exchange (&exchanges)[kCount], std::string_view wrapper, u16 version,
                  bool request) {
  std::string text;
  for (const Exchange& exchange : exchanges) {
    if (exchange.wrapper != wrapper || (exchange.versions & version) == 0) continue;
    text += WrapperText(exchange, version, request);
  }
  return text;
}

TEST(BankExchanges, RequestSynchronisationsAreFixedPoints) {
  for (const Sync& sync : kRequestSyncs) {
    for (const u16 version : {u16{1}, u16{2}}) {
      SCOPED_TRACE(std::string(sync.tag) + VersionSuffix(version));
      const std::string head =
          Expanded("<TOKEN~>7<REJECTIFMISSING>N" + std::string(sync.head), version);
      ExpectFixedPoint<KRFileRq>(RequestFile(
          sync.set, Aggregate(sync.tag, head + AllOf(kRequests, sync.wrapper, version, true)),
          version));
    }
  }
}

TEST(BankExchanges, ResponseSynchronisationsAreFixedPoints) {
  for (const Sync& sync : kResponseSyncs) {
    for (const u16 version : {u16{1}, u16{2}}) {
      SCOPED_TRACE(std::string(sync.tag) + VersionSuffix(version));
      const std::string head = Expanded("<TOKEN~>7<LOSTSYNC>N" + std::string(sync.head), version);
      ExpectFixedPoint<KRFileRs>(ResponseFile(
          sync.set, Aggregate(sync.tag, head + AllOf(kResponses, sync.wrapper, version, false)),
          version));
    }
  }
}

TEST(BankExchanges, SynchronisationsCopyTheirTransactionsOverOthers) {
  const auto read = [](const std::string& id) {
    return Parsed<KRFileRq>(RequestFile(
        "BANKMSGSRQ",
        Aggregate("INTRASYNCRQ",
                  Expanded("<TOKEN>7<REJECTIFMISSING>N@BANK", 1) +
                      RequestWrapper("INTRATRNRQ", Aggregate("INTRACANRQ", "<SRVRTID>" + id)))));
  };
  const auto source = read("new");
  const auto target = read("old");
  ASSERT_EQ(FindIn<KRSyncRq>(target.Get())->DeepCopyFrom(FindIn<KRSyncRq>(source.Get())), 1);
  EXPECT_EQ(TextOf(*target), TextOf(*source));
}

TEST(BankExchanges, ErrorsNeedNoPayload) {
  const std::string error = "<TRNUID>1<STATUS><CODE>2000<SEVERITY>ERROR</STATUS>";
  for (const Exchange& exchange : kResponses) {
    if (std::string_view(exchange.wrapper) == "MULTIINTERTRNRS") continue;
    SCOPED_TRACE(exchange.wrapper);
    ExpectFixedPoint<KRFileRs>(ResponseFile(exchange.set, Aggregate(exchange.wrapper, error)));
  }
}

}  // namespace
}  // namespace krofx::testing
