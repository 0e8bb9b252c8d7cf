// The example bank's answers, in the test's own process: each family in both versions, refusals,
// and texts that are not requests.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "answer.h"

namespace bank_server {
namespace {

constexpr char kDay[] = "20260131120000";
constexpr char kPassword[] = "not-a-real-password";

void ReplaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
    text.replace(at, what.size(), with);
  }
}

// How often a text occurs in another.
std::size_t Times(const std::string& text, const std::string& what) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += what.size()) {
    ++count;
  }
  return count;
}

// Sends requests to one bank in one version. In texts '~' means the 2 of a V2 tag, '#' the version.
class BankServer : public testing::TestWithParam<u16> {
 protected:
  // The text of a request, with a sign-on before the message sets.
  std::string Request(const std::string& sets, const std::string& user = "ada.w",
                      const std::string& password = kPassword) const {
    std::string text =
        "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
        "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n"
        "<OFX><SIGNONMSGSRQV#><SONRQ><DTCLIENT>20260131<USERID>" +
        user + "<USERPASS>" + password +
        "<LANGUAGE>ENG<APPID>TEST<APPVER>0100</SONRQ></SIGNONMSGSRQV#>" + sets + "</OFX>";
    return Versioned(text);
  }

  // One transaction in its message set.
  static std::string In(const std::string& set, const std::string& transaction,
                        const std::string& payload) {
    return "<" + set + "MSGSRQV#><" + transaction + "TRNRQ><TRNUID>t-1<CLTCOOKIE>c-1" + payload +
           "</" + transaction + "TRNRQ></" + set + "MSGSRQV#>";
  }

  // Parses the answer, without a warning, into m_file.
  void Ask(const std::string& request) {
    KRBuffer asked(0, 0);
    asked.WriteLarge(request.data(), static_cast<u32>(request.size()));
    KRBuffer reply(0, 0);
    ASSERT_EQ(m_answerer.Answer(asked, KRDateTime(kDay), reply), Answered::kYes) << request;
    m_text.assign(reply.GetBufferPtr(), reply.GetBufferSize());
    m_file = std::make_unique<KRFileRs>();
    KRSimpleParser parser;
    EXPECT_EQ(parser.Parse(&reply, m_file.get(), 1), KRParseStatus_Accepted) << m_text;
  }

  Answered AskWrongly(const std::string& request) {
    KRBuffer asked(0, 0);
    asked.WriteLarge(request.data(), static_cast<u32>(request.size()));
    KRBuffer reply(0, 0);
    const Answered answered = m_answerer.Answer(asked, KRDateTime(kDay), reply);
    EXPECT_EQ(reply.GetBufferSize(), 0u);
    return answered;
  }

  // The message set of the answer after the sign-on.
  KRMessageSetRs& Set(u16 index = 1) const { return *m_file->GetResponse(0)->GetMessageSet(index); }
  KRSignOnRs& SignOn() const { return *Set(0).GetSignOnRs(); }
  // A transaction of that set, whose status must be `code`.
  KRTransRs& Transaction(s32 code, u16 index = 0) const {
    KRTransRs& transaction = *Set().GetTrans(index);
    EXPECT_EQ(transaction.GetStatus()->GetCode(), code) << m_text;
    EXPECT_STREQ(transaction.GetTransUserID(), "t-1");
    EXPECT_STREQ(transaction.GetClientCookie(), "c-1");
    EXPECT_EQ(transaction.GetStatus()->GetSeverity(),
              code < 2 ? KRStatusSeverity_INFO : KRStatusSeverity_ERROR);
    EXPECT_EQ(transaction.GetActualTrans() != nullptr, code == 0) << m_text;
    return transaction;
  }
  template <class Payload>
  Payload& Answer() const {
    auto* const payload = dynamic_cast<Payload*>(Transaction(0).GetActualTrans());
    if (payload == nullptr) throw std::runtime_error("the answer has another payload, or none");
    return *payload;
  }

  std::string Versioned(std::string text) const {
    ReplaceAll(text, "#", GetParam() == 2 ? "2" : "1");
    ReplaceAll(text, "~", GetParam() == 2 ? "2" : "");
    return text;
  }

  static std::string Checking(const std::string& number = "00718220946") {
    return BankAccount("FROM", number, "CHECKING");
  }
  static std::string BankAccount(const std::string& end, const std::string& number,
                                 const std::string& type) {
    return "<BANKACCT" + end + "><BANKID>211370545<ACCTID>" + number + "<ACCTTYPE~>" + type +
           "</BANKACCT" + end + ">";
  }
  static std::string Statement(const std::string& inside) {
    return In("BANK", "STMT", "<STMTRQ>" + inside + "</STMTRQ>");
  }
  static std::string Card(const std::string& inside) {
    return In(
        "CREDITCARD", "CCSTMT",
        "<CCSTMTRQ><CCACCTFROM><ACCTID>5500111122224410</CCACCTFROM>" + inside + "</CCSTMTRQ>");
  }
  static std::string Investment(const std::string& number, const std::string& transactions,
                                const std::string& positions, const std::string& balance) {
    return In("INVSTMT", "INVSTMT",
              "<INVSTMTRQ><INVACCTFROM><BROKERID>harborfed.example<ACCTID>" + number +
                  "</INVACCTFROM><INCTRAN>" + transactions + "</INCTRAN><INCOO>N<INCPOS><INCLUDE>" +
                  positions + "</INCPOS><INCBAL>" + balance + "</INVSTMTRQ>");
  }
  static std::string Transfer(const std::string& from, const std::string& to,
                              const std::string& rest, const std::string& id = "t-1") {
    std::string text =
        In("BANK", "INTRA", "<INTRARQ><XFERINFO>" + from + to + rest + "</XFERINFO></INTRARQ>");
    ReplaceAll(text, "t-1", id);
    return text;
  }
  std::string Ledger(const std::string& account) {
    Ask(Request(Statement(account)));
    return static_cast<const char*>(Answer<KRBankStatementRs>().GetLedgerBal()->GetBalAmt());
  }
  std::vector<std::string> Bookings(const KRGenericStatementRs& statement) const {
    std::vector<std::string> ids;
    const KRBankTransactionList* list = statement.GetBankTranList();
    for (u16 index = 0; list != nullptr && index < list->GetNumStatementTx(); ++index) {
      ids.push_back(std::string(list->GetStatementTx(index)->GetFITId()));
    }
    return ids;
  }

  Bank m_bank;
  Answerer m_answerer{m_bank};
  std::unique_ptr<KRFileRs> m_file;
  std::string m_text;
};

INSTANTIATE_TEST_SUITE_P(Versions, BankServer, testing::Values(u16{1}, u16{2}),
                         [](const auto& test) { return "V" + std::to_string(test.param); });

// ---- Sign-on ----

TEST_P(BankServer, LetsAUserIn) {
  Ask(Request(Statement(Checking())));
  EXPECT_EQ(SignOn().GetStatus()->GetCode(), 0);
  EXPECT_STREQ(SignOn().GetFI()->GetOrg(), "HARBORFED");
  EXPECT_EQ(SignOn().GetDtServer(), KRDateTime(kDay));
  EXPECT_EQ(Set(0).GetMsgSetVersion(), GetParam());
  EXPECT_EQ(Set(1).GetMsgSetVersion(), GetParam());
  EXPECT_NE(m_text.find(GetParam() == 2 ? "VERSION:151" : "VERSION:102"), std::string::npos);
}

TEST_P(BankServer, AnswersABareSignOn) {
  Ask(Request(""));
  EXPECT_EQ(SignOn().GetStatus()->GetCode(), 0);
}

TEST_P(BankServer, RefusesAWrongPasswordAndTellsNothing) {
  const std::string sets = Statement(Checking() + "<INCTRAN><INCLUDE>Y</INCTRAN>") + Card("") +
                           In("PROF", "PROF",
                              "<PROFRQ><CLIENTROUTING>NONE<DTPROFUP>19900101"
                              "</PROFRQ>");
  for (const char* wrong : {"not-a-real-passwor", "not-a-real-password1", "Not-a-real-password",
                            "not-her-password-either"}) {
    Ask(Request(sets, "ada.w", wrong));
    EXPECT_EQ(SignOn().GetStatus()->GetCode(), 15500);
    EXPECT_EQ(SignOn().GetStatus()->GetSeverity(), KRStatusSeverity_ERROR);
    for (u16 index = 1; index <= 3; ++index) {
      EXPECT_EQ(Set(index).GetTrans(0)->GetStatus()->GetCode(), 15500);
      EXPECT_EQ(Set(index).GetTrans(0)->GetActualTrans(), nullptr);
    }
    EXPECT_EQ(m_text.find("00718220946"), std::string::npos);
    EXPECT_EQ(m_text.find("BALAMT"), std::string::npos);
  }
}

TEST_P(BankServer, RefusesAnUnknownUser) {
  Ask(Request(Statement(Checking()), "nobody"));
  EXPECT_EQ(SignOn().GetStatus()->GetCode(), 15500);
  Transaction(15500);
}

TEST_P(BankServer, NeverRepeatsAPassword) {
  Ask(Request(Statement(Checking())));
  EXPECT_EQ(m_text.find(kPassword), std::string::npos);
  Ask(Request(Statement(Checking()), "ada.w", "another-secret"));
  EXPECT_EQ(m_text.find("another-secret"), std::string::npos);
}

// ---- Profile and accounts ----

TEST_P(BankServer, TellsItsProfile) {
  m_bank.SetUrl("https://127.0.0.1:4711/ofx");
  Ask(Request(In("PROF", "PROF", "<PROFRQ><CLIENTROUTING>NONE<DTPROFUP>19900101</PROFRQ>")));
  const KRProfileRs& profile = Answer<KRProfileRs>();
  EXPECT_STREQ(profile.GetFIName(), "Harbor Federal Bank");
  const KRMessageSetList& list = *profile.GetMsgSetList();
  ASSERT_EQ(list.GetNumMessageSetProfile(), 7);
  for (u16 index = 0; index < 7; ++index) {
    EXPECT_EQ(list.GetMessageSetProfile(index)->GetNumMessageSetVersion(), GetParam());
  }
  EXPECT_EQ(Times(m_text, "https://127.0.0.1:4711/ofx"), 7u * GetParam());
}

TEST_P(BankServer, TellsItsProfileToUsersWithoutAName) {
  const std::string anonymous = "anonymous00000000000000000000000";
  Ask(Request(In("PROF", "PROF", "<PROFRQ><CLIENTROUTING>NONE<DTPROFUP>19900101</PROFRQ>"),
              anonymous, anonymous));
  Answer<KRProfileRs>();
  Ask(Request(Statement(Checking()), anonymous, anonymous));
  Transaction(2003);
}

TEST_P(BankServer, SaysWhenAClientHasTheLatest) {
  Ask(Request(In("PROF", "PROF", "<PROFRQ><CLIENTROUTING>NONE<DTPROFUP>20251115</PROFRQ>")));
  Transaction(1);
  Ask(Request(In("SIGNUP", "ACCTINFO", "<ACCTINFORQ><DTACCTUP>20260101</ACCTINFORQ>")));
  Transaction(1);
}

TEST_P(BankServer, ListsTheAccountsOfTheUser) {
  Ask(Request(In("SIGNUP", "ACCTINFO", "<ACCTINFORQ><DTACCTUP>19900101</ACCTINFORQ>")));
  EXPECT_EQ(Answer<KRAccountInfoRs>().GetNumAccountInfo(), 4);
  for (const char* number : {"00718220946", "00718220954", "5500111122224410", "7-4401-22"}) {
    EXPECT_NE(m_text.find(number), std::string::npos) << number;
  }
  EXPECT_EQ(m_text.find("00718330011"), std::string::npos);
}

// ---- Statements ----

TEST_P(BankServer, TellsABankStatement) {
  Ask(Request(Statement(Checking() + "<INCTRAN><INCLUDE>Y</INCTRAN>")));
  const KRBankStatementRs& statement = Answer<KRBankStatementRs>();
  EXPECT_EQ(Bookings(statement).size(), 10u);
  EXPECT_EQ(statement.GetLedgerBal()->GetBalAmt(), KRPrecisionInteger("3495.45"));
  EXPECT_EQ(statement.GetAvailBal()->GetBalAmt(), KRPrecisionInteger("3495.45"));
  EXPECT_STREQ(statement.GetBankAcctFrom()->GetAccountID(), "00718220946");
  const KRBankStatementTx& check = *statement.GetBankTranList()->GetStatementTx(1);
  EXPECT_STREQ(check.GetCheckNum(), "2041");
  EXPECT_EQ(check.GetTxAmount(), KRPrecisionInteger("-1425.00"));
  const KRString& memo = GetParam() == 2 ? static_cast<const KRString&>(check.GetMemo2())
                                         : static_cast<const KRString&>(check.GetMemo());
  EXPECT_STREQ(memo, "J. Whitcomb, rent December");
  EXPECT_STREQ(statement.GetBankTranList()->GetStatementTx(9)->GetName(), "PINE & OAK BOOKS");
}

TEST_P(BankServer, HonoursTheDaysThatAreAsked) {
  Ask(Request(
      Statement(Checking() + "<INCTRAN><DTSTART>20251231<DTEND>20260109<INCLUDE>Y</INCTRAN>")));
  const std::vector<std::string> expected = {"2025123109460006", "2026010209460007",
                                             "2026010909460008"};
  EXPECT_EQ(Bookings(Answer<KRBankStatementRs>()), expected);
  EXPECT_EQ(Answer<KRBankStatementRs>().GetBankTranList()->GetDtStart(), KRDateTime("20251231"));
  EXPECT_EQ(Answer<KRBankStatementRs>().GetBankTranList()->GetDtEnd(), KRDateTime("20260109"));
  // The balance is still today's.
  EXPECT_EQ(Answer<KRBankStatementRs>().GetLedgerBal()->GetBalAmt(), KRPrecisionInteger("3495.45"));
}

TEST_P(BankServer, TellsNoBookingsThatNobodyAskedFor) {
  Ask(Request(Statement(Checking())));
  EXPECT_EQ(Answer<KRBankStatementRs>().GetBankTranList(), nullptr);
  Ask(Request(Statement(Checking() + "<INCTRAN><INCLUDE>N</INCTRAN>")));
  EXPECT_EQ(Answer<KRBankStatementRs>().GetBankTranList(), nullptr);
}

TEST_P(BankServer, TellsACardStatement) {
  Ask(Request(Card("<INCTRAN><DTSTART>20260101<INCLUDE>Y</INCTRAN>")));
  const KRCCStatementRs& statement = Answer<KRCCStatementRs>();
  EXPECT_EQ(Bookings(statement), (std::vector<std::string>{"C-2026010701", "C-2026011201"}));
  EXPECT_EQ(statement.GetLedgerBal()->GetBalAmt(), KRPrecisionInteger("-62.15"));
  EXPECT_EQ(statement.GetAvailBal()->GetBalAmt(), KRPrecisionInteger("2437.85"));
}

TEST_P(BankServer, TellsAnInvestmentStatementAndItsSecurities) {
  Ask(Request(Investment("7-4401-22", "<INCLUDE>Y", "Y", "Y")));
  const KRInvStmtRs& statement = Answer<KRInvStmtRs>();
  EXPECT_EQ(statement.GetInvTranList()->GetNumBuyStock(), 1);
  EXPECT_EQ(statement.GetInvTranList()->GetNumSellStock(), 1);
  EXPECT_EQ(statement.GetInvTranList()->GetNumBuyMF(), 1);
  EXPECT_EQ(statement.GetInvTranList()->GetNumIncome(), 1);
  EXPECT_EQ(statement.GetInvTranList()->GetNumInvBankTran(), 1);
  EXPECT_EQ(statement.GetInvPosList()->GetPosMF(0)->GetInvPos()->GetMktVal(),
            KRPrecisionInteger("1001.31741"));
  EXPECT_EQ(statement.GetInvPosList()->GetPosStock(0)->GetInvPos()->GetUnits(),
            KRPrecisionInteger("40"));
  EXPECT_EQ(statement.GetInvBal()->GetAvailCash(), KRPrecisionInteger("2318.47"));
  const KRSecList& securities = *Set(2).GetSecList();
  EXPECT_STREQ(securities.GetStockInfo(0)->GetSecInfo()->GetTicker(), "GRML");
  EXPECT_STREQ(securities.GetMFInfo(0)->GetSecInfo()->GetTicker(), "HRBLX");
}

TEST_P(BankServer, TellsOnlyThePartsOfAnInvestmentStatementThatAreAsked) {
  Ask(Request(Investment("7-4401-22", "<DTSTART>20260101<INCLUDE>Y", "N", "N")));
  const KRInvStmtRs& statement = Answer<KRInvStmtRs>();
  EXPECT_EQ(statement.GetInvTranList()->GetNumBuyStock(), 0);
  EXPECT_EQ(statement.GetInvTranList()->GetNumSellStock(), 1);
  EXPECT_EQ(statement.GetInvPosList(), nullptr);
  EXPECT_EQ(statement.GetInvBal(), nullptr);
  EXPECT_EQ(Set(2).GetSecList()->GetNumMFInfo(), 0);
  Ask(Request(Investment("7-4401-22", "<INCLUDE>N", "N", "Y")));
  EXPECT_EQ(Answer<KRInvStmtRs>().GetInvTranList(), nullptr);
  EXPECT_EQ(m_file->GetResponse(0)->GetNumMessageSet(), 2);
}

TEST_P(BankServer, DescribesSecurities) {
  const std::string wanted = "<SECRQ><SECID><UNIQUEID>931142103<UNIQUEIDTYPE>CUSIP</SECID></SECRQ>";
  const auto list = [](const std::string& inside) {
    return In("SECLIST", "SECLIST", "<SECLISTRQ>" + inside + "</SECLISTRQ>");
  };
  Ask(Request(list(wanted + "<SECRQ><TICKER>HRBLX</SECRQ>")));
  Answer<KRSecListRs>();
  EXPECT_EQ(Set().GetSecList()->GetNumStockInfo(), 1);
  EXPECT_EQ(Set().GetSecList()->GetNumMFInfo(), 1);
  Ask(Request(list(wanted + "<SECRQ><TICKER>NONE</SECRQ>")));
  Transaction(2028);
  EXPECT_EQ(Set().GetSecList(), nullptr);
}

TEST_P(BankServer, KnowsOnlyTheAccountsOfTheUser) {
  // Another customer's account, no account, and the customer's own under another bank or type.
  for (const std::string& account :
       {Checking("00718330011"), Checking("1"), BankAccount("FROM", "00718220946", "SAVINGS"),
        std::string("<BANKACCTFROM><BANKID>999999999<ACCTID>00718220946<ACCTTYPE~>CHECKING"
                    "</BANKACCTFROM>")}) {
    Ask(Request(Statement(account + "<INCTRAN><INCLUDE>Y</INCTRAN>")));
    Transaction(2003);
  }
  Ask(Request(Investment("7-4401-23", "<INCLUDE>Y", "Y", "Y")));
  Transaction(2003);
  Ask(Request(Card(""), "grace.h", "not-her-password-either"));
  Transaction(2003);
}

TEST_P(BankServer, RefusesDaysThatEndBeforeTheyBegin) {
  const std::string days = "<DTSTART>20260110<DTEND>20260109<INCLUDE>Y";
  Ask(Request(Statement(Checking() + "<INCTRAN>" + days + "</INCTRAN>")));
  Transaction(2027);
  Ask(Request(Investment("7-4401-22", days, "Y", "Y")));
  Transaction(2027);
}

// ---- Transfers ----

TEST_P(BankServer, MakesATransferOnBothAccounts) {
  Ask(Request(Transfer(Checking(), BankAccount("TO", "00718220954", "SAVINGS"),
                       "<TRNAMT>125.50<DTDUE>20260131")));
  const KRIntraRs& made = Answer<KRIntraRs>();
  const KRString& id = GetParam() == 2
                           ? static_cast<const KRString&>(made.GetServerTransactionID2())
                           : static_cast<const KRString&>(made.GetServerTransactionID());
  EXPECT_STREQ(id, "HF-000001");
  EXPECT_EQ(made.GetXferInfo()->GetTranAmount(), KRPrecisionInteger("125.5"));
  EXPECT_EQ(made.GetDtPosted(), KRDateTime(kDay));
  EXPECT_EQ(Ledger(Checking()), "3369.95");
  EXPECT_EQ(Ledger(BankAccount("FROM", "00718220954", "SAVINGS")), "6789.35");
  Ask(Request(Statement(Checking() + "<INCTRAN><DTSTART>20260131<INCLUDE>Y</INCTRAN>")));
  EXPECT_EQ(Bookings(Answer<KRBankStatementRs>()), std::vector<std::string>{"HF-000001-1"});
}

TEST_P(BankServer, PaysACard) {
  Ask(Request(
      Transfer(Checking(), "<CCACCTTO><ACCTID>5500111122224410</CCACCTTO>", "<TRNAMT>62.15")));
  Answer<KRIntraRs>();
  Ask(Request(Card("")));
  EXPECT_EQ(Answer<KRCCStatementRs>().GetLedgerBal()->GetBalAmt(), KRPrecisionInteger::KRZero);
}

TEST_P(BankServer, MakesATransferOnce) {
  const std::string request =
      Request(Transfer(Checking(), BankAccount("TO", "00718220954", "SAVINGS"), "<TRNAMT>1"));
  Ask(request);
  Transaction(0);
  Ask(request);
  Transaction(2019);
  EXPECT_EQ(Ledger(Checking()), "3494.45");
}

TEST_P(BankServer, RefusesTransfersThatItCannotMake) {
  const std::string savings = BankAccount("TO", "00718220954", "SAVINGS");
  const struct {
    std::string from;
    std::string to;
    std::string rest;
    s32 code;
  } cases[] = {
      {Checking("00718330011"), savings, "<TRNAMT>1", 2006},
      {Checking(), BankAccount("TO", "00718330011", "CHECKING"), "<TRNAMT>1", 2009},
      {Checking(), BankAccount("TO", "00718220946", "CHECKING"), "<TRNAMT>1", 2009},
      {Checking(), savings, "<TRNAMT>0", 2012},
      {Checking(), savings, "<TRNAMT>.001", 2012},
      {Checking(), savings, "<TRNAMT>.0000000000000000000000000001", 2012},
      {Checking(), savings, "<TRNAMT>9999999999999999999999999999", 2012},
      {Checking(), savings, "<TRNAMT>999999999.99", 10504},
      {Checking(), savings, "<TRNAMT>3495.46", 10504},
      {Checking(), savings, "<TRNAMT>1<DTDUE>20260201", 2015},
      {Checking(), "", "<TRNAMT>1", 2000},
      {Checking(), savings, "", 2000},
  };
  for (const auto& each : cases) {
    Ask(Request(Transfer(each.from, each.to, each.rest)));
    Transaction(each.code);
    EXPECT_EQ(Ledger(Checking()), "3495.45");
  }
}

TEST_P(BankServer, DrawsAnAccountToItsEnd) {
  Ask(Request(
      Transfer(Checking(), BankAccount("TO", "00718220954", "SAVINGS"), "<TRNAMT>3495.45")));
  Transaction(0);
  EXPECT_EQ(Ledger(Checking()), "0");
}

// ---- What it cannot do ----

TEST_P(BankServer, SaysWhatItCannotDo) {
  Ask(Request(In("BANK", "STMTEND", "<STMTENDRQ>" + Checking() + "</STMTENDRQ>")));
  Transaction(2000);
  Ask(Request(In("SIGNUP", "CHGUSERINFO", "<CHGUSERINFORQ><CITY>Port Ellis</CHGUSERINFORQ>")));
  Transaction(2000);
}

TEST_P(BankServer, AnswersTheRestOfARequestWithOneBadTransaction) {
  std::string set =
      Versioned("<BANKMSGSRQV#><STMTTRNRQ><TRNUID>t-1<CLTCOOKIE>c-1<STMTRQ>" + Checking("1") +
                "</STMTRQ></STMTTRNRQ><STMTTRNRQ><TRNUID>t-1"
                "<CLTCOOKIE>c-1<STMTRQ>" +
                Checking() + "</STMTRQ></STMTTRNRQ></BANKMSGSRQV#>");
  Ask(Request(set));
  Transaction(2003, 0);
  Transaction(0, 1);
}

TEST_P(BankServer, KnowsWhatIsNoRequest) {
  const std::string whole = Request(Statement(Checking()));
  EXPECT_EQ(AskWrongly(""), Answered::kNotOfx);
  EXPECT_EQ(AskWrongly("user=ada&password=x"), Answered::kNotOfx);
  EXPECT_EQ(AskWrongly("<html><body>Hello</body></html>"), Answered::kNotOfx);
  EXPECT_EQ(AskWrongly(whole.substr(0, whole.size() - 40)), Answered::kNotOfx);
  EXPECT_EQ(AskWrongly(whole.substr(0, whole.find("<OFX>")) + "<OFX></OFX>"), Answered::kNotOfx);
  EXPECT_EQ(AskWrongly(std::string(5000, '\0')), Answered::kNotOfx);
}

TEST_P(BankServer, NeverBreaksOnAShortenedRequest) {
  const std::string whole = Request(Investment("7-4401-22", "<INCLUDE>Y", "Y", "Y"));
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    KRBuffer asked(0, 0);
    asked.WriteLarge(whole.data(), static_cast<u32>(length));
    KRBuffer reply(0, 0);
    EXPECT_NE(m_answerer.Answer(asked, KRDateTime(kDay), reply), Answered::kFailed) << length;
  }
}

TEST_P(BankServer, NeverBreaksOnAGarbledRequest) {
  const std::string whole =
      Request(Statement(Checking() + "<INCTRAN><DTSTART>20260101<INCLUDE>Y</INCTRAN>") + Card("") +
              Investment("7-4401-22", "<INCLUDE>Y", "Y", "Y"));
  const std::string marks = "<>/&;[]#*-.09AY\n";
  u32 state = 1;
  const auto random = [&state](std::size_t below) {
    state = state * 1664525 + 1013904223;
    return (state >> 8) % below;
  };
  for (int run = 0; run < 400; ++run) {
    std::string text = whole;
    for (std::size_t changes = 1 + random(4); changes > 0; --changes) {
      text[random(text.size())] = marks[random(marks.size())];
    }
    KRBuffer asked(0, 0);
    asked.WriteLarge(text.data(), static_cast<u32>(text.size()));
    KRBuffer reply(0, 0);
    EXPECT_NE(m_answerer.Answer(asked, KRDateTime(kDay), reply), Answered::kFailed) << text;
  }
}

TEST_P(BankServer, GivesBackIdentifiersThatAreTooLong) {
  std::string request = Request(Statement(Checking()));
  ReplaceAll(request, "t-1", std::string(100, 'x'));
  KRBuffer asked(0, 0);
  asked.WriteLarge(request.data(), static_cast<u32>(request.size()));
  KRBuffer reply(0, 0);
  EXPECT_EQ(m_answerer.Answer(asked, KRDateTime(kDay), reply), Answered::kYes);
  const std::string text(reply.GetBufferPtr(), reply.GetBufferSize());
  EXPECT_EQ(Times(text, "x"), 36u);
}

}  // namespace
}  // namespace bank_server
