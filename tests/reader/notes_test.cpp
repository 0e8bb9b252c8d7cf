// What a person hears of a reading: one list of notes with sentences, and all that is missing.

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "krofx/messages/banking/statements.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/billpay/payments.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/messages/signon/status.h"
#include "krofx/reader/reading.h"
#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// Two transactions: an amount with a comma, and a tag that may not be there.
std::string Damaged() {
  return BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-11,76<FITID>1<NAME>Grocer</STMTTRN>"
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260106<TRNAMT>-7<FITID>2<FOO>3<NAME>Baker</STMTTRN>");
}

Lines NoteLines(const Reading& reading) {
  Lines lines;
  for (const ReadNote& note : reading.Warnings()) {
    lines.push_back(std::string(note.mended ? "mended " : "") + Str(note.kind) + " <" +
                    Str(note.tag) + ">: " + note.sentence);
  }
  return lines;
}

TEST(ReadNotes, SayWhatWasMendedInOrderWithSentencesAndPlaces) {
  const std::string text = Damaged();
  const Reading reading = Read(text);
  EXPECT_EQ(NoteLines(reading),
            (Lines{"mended decimal-comma <TRNAMT>: a comma was taken as the decimal sign",
                   "mended unknown-tag <FOO>: a tag that OFX does not have was left out with all "
                   "that is in it"}));
  const List<ReadNote> notes = reading.Warnings();
  EXPECT_EQ(Str(notes[0].path), "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN[1]");
  EXPECT_EQ(notes[0].offset, text.find("<TRNAMT>-11,76"));
  EXPECT_EQ(notes[0].line, reading.mendings[0].place.line);
  EXPECT_EQ(notes[0].column, reading.mendings[0].place.column);
  EXPECT_GT(notes[0].line, 0u);
  EXPECT_EQ(Str(notes[0].was), "-11,76");
  EXPECT_EQ(Str(notes[0].taken), "-11.76");
}

TEST(ReadNotes, PutMendingsAndWarningsInTheOrderOfTheFile) {
  // A text that is too long is kept and warned of; a date that must be there is missing.
  const auto transaction = [](const std::string& amount, std::size_t length) {
    return "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>" + amount + "<FITID>1<NAME>" +
           std::string(length, 'x') + "</STMTTRN>";
  };
  const std::string dateless = "<STMTTRN><TRNTYPE>DEBIT<TRNAMT>-2,50<FITID>2</STMTTRN>";
  const std::string first = BankStatementFile(transaction("-1,50", 40) + dateless);
  const std::string second = BankStatementFile(transaction("-3.00", 50) + transaction("-4,00", 5));
  const Reading reading = Read(first + second);
  Lines order;
  for (const ReadNote& note : reading.Warnings()) {
    order.push_back(std::to_string(note.text) + " " + (note.mended ? "mended " : "") +
                    Str(note.tag));
    EXPECT_EQ(note.line == 0, Str(note.tag) == "DTPOSTED");
  }
  EXPECT_EQ(order, (Lines{"0 mended TRNAMT", "0 NAME", "0 mended TRNAMT", "0 DTPOSTED", "1 NAME",
                          "1 mended TRNAMT"}));
}

TEST(ReadNotes, HaveASentenceForAKindThatAHostMadeUp) {
  Reading reading;
  Mending mending;
  mending.kind = static_cast<MendingKind>(9999);
  ASSERT_TRUE(reading.mendings.Append(std::move(mending)));
  ASSERT_EQ(reading.Warnings().size(), 1u);
  EXPECT_STREQ(reading.Warnings()[0].sentence, SentenceOf(KRPW_UNKNOWNEXCEPTION));
}

TEST(ReadNotes, SayWhatWasNotMendedWhenReadingToTheLetter) {
  ReadOptions options;
  options.strict = true;
  std::string text = Damaged();
  text.replace(text.find("-11,76"), 6, "-11.76");
  EXPECT_EQ(NoteLines(Read(text, options)),
            (Lines{"KRPW_UNKNOWNTAG <FOO>: a tag that OFX does not have, or text that cannot be "
                   "read, was passed over"}));
}

TEST(ReadNotes, NameTheTagAndNotTheOperationThatRefusedADate) {
  ReadOptions options;
  options.strict = true;
  std::string text = Damaged();
  text.replace(text.find("-11,76"), 6, "-11.76");
  text.replace(text.find("20260105<TRNAMT>"), 8, "20269905");
  const Reading reading = Read(text, options);
  ASSERT_FALSE(reading.warnings.empty());
  for (const ReadWarning& warning : reading.warnings) {
    EXPECT_EQ(Str(warning.tagText).find("Convert"), std::string::npos) << Str(warning.tagText);
  }
  EXPECT_EQ(Str(reading.warnings[0].tagText), "DTPOSTED");
}

TEST(ReadNotes, HaveASentenceForEveryWarning) {
  for (u32 warning = KRPW_UNKNOWNEXCEPTION; warning <= KRPW_EMPTYELEM; ++warning) {
    EXPECT_GT(std::string(SentenceOf(static_cast<KRParseWarning>(warning))).size(), 10u);
  }
  EXPECT_STREQ(SentenceOf(static_cast<KRParseWarning>(99)), SentenceOf(KRPW_UNKNOWNEXCEPTION));
}

TEST(ReadNotes, GiveTheRootAsWhatItIs) {
  const Reading response = Read(BankStatementFile(""));
  EXPECT_EQ(response.Response(), response.root);
  EXPECT_EQ(response.Request(), nullptr);
  EXPECT_EQ(response.Kind(), TextKind::kResponse);
  EXPECT_TRUE(response.IsRead());
  const Reading request = Read(RequestFile("BANKMSGSRQ", ""));
  EXPECT_EQ(request.Request(), request.root);
  EXPECT_EQ(request.Response(), nullptr);
  const Reading nothing = Read(std::string_view("no OFX at all"));
  EXPECT_EQ(nothing.Response(), nullptr);
  EXPECT_EQ(nothing.Kind(), std::nullopt);
  EXPECT_FALSE(nothing.IsRead());
}

TEST(ReadNotes, GiveTheFirstResponseOfAMultipartText) {
  const Reading reading = ReadFile(KROFX_EXAMPLES "/multipart.mime");
  EXPECT_EQ(reading.Kind(), TextKind::kMultipart);
  ASSERT_NE(reading.Response(), nullptr);
  EXPECT_NE(static_cast<KRFile*>(reading.Response()), reading.root);
}

TEST(MissingTags, AreAllNamedWithTheirPaths) {
  const Reading reading =
      Read(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<TRNAMT>-1<FITID>1<NAME>A</STMTTRN>"
                             "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<NAME>B</STMTTRN>"));
  Lines lines;
  for (const MissingTag& missing : reading.Missing()) {
    lines.push_back(Str(missing.path) + ": " + Str(missing.sentence));
    EXPECT_EQ(missing.text, 0u);
    EXPECT_EQ("<" + Str(missing.tagText) + "> is missing", Str(missing.sentence));
  }
  const std::string list = "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/";
  EXPECT_EQ(lines, (Lines{list + "STMTTRN[1]: <DTPOSTED> is missing",
                          list + "STMTTRN[2]: <TRNAMT> is missing",
                          list + "STMTTRN[2]: <FITID> is missing"}));
}

TEST(MissingTags, SayWhichChoiceIsMissed) {
  const Parsed<KRXferInfo> transfer("<TRNAMT>5");
  const List<MissingTag> missing = FindMissing(*transfer);
  ASSERT_FALSE(missing.empty());
  EXPECT_EQ(missing[0].tag, KRTag_None);
  EXPECT_TRUE(missing[0].tagText.IsEmpty());
  EXPECT_EQ(missing[0].choices.size(), 2u);
  EXPECT_EQ(Str(missing[0].sentence),
            "one of <BANKACCTFROM> and <CCACCTFROM> must be there, and none is");
}

TEST(MissingTags, AreNamedWhenTheyAreNeededBesideOthers) {
  const Parsed<KRDiscount> discount("<DSCDESC>Early<DSCRATE>5");
  const List<MissingTag> missing = FindMissing(*discount);
  ASSERT_EQ(missing.size(), 1u);
  EXPECT_EQ(missing[0].tag, KRTag_DSCAMT);
  EXPECT_TRUE(missing[0].choices.empty());
  EXPECT_EQ(Str(missing[0].sentence), "<DSCAMT> is missing");
}

TEST(MissingTags, SayWithWhichTagsARuleIsMet) {
  const auto sentence = [](const std::string& payee) {
    const Parsed<KRPaymentInfo> payment(
        "<BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING</BANKACCTFROM><TRNAMT>5" + payee +
        "<PAYACCT>1<DTDUE>20260102");
    const List<MissingTag> missing = FindMissing(*payment);
    return missing.size() == 1 ? Str(missing[0].sentence) : std::string("not one is missing");
  };
  const std::string payee = "<PAYEE><NAME>A<ADDR1>1<CITY>C<STATE>NY<POSTALCODE>1<PHONE>1</PAYEE>";
  EXPECT_EQ(sentence(""), "one or more of <PAYEE> and <PAYEEID> must be there, and none is");
  EXPECT_EQ(sentence("<PAYEEID>1" + payee), "<PAYEE> must not be there beside <PAYEEID>");
}

// A host's own rule, beyond those of the tables.
template <class Class>
class NeverComplete : public Class {
 public:
  u16 AllRequiredPresent() override { return 0; }
};

TEST(MissingTags, SayWhatCouldBeThereWhereTheHostsOwnRuleIsMissed) {
  const auto sentences = [](const KRDataObj& object) {
    Lines lines;
    for (const MissingTag& missing : FindMissing(object)) {
      EXPECT_EQ(missing.tag, KRTag_None);
      lines.push_back(Str(missing.sentence));
    }
    return lines;
  };
  NeverComplete<KRCurrency> currency;
  currency.SetMsgSetVersion(1);
  currency.SetCurrencyRate(KRPrecisionInteger(1, 0));
  currency.SetCurrencySymbol(KRString("EUR"));
  EXPECT_EQ(sentences(currency), Lines{"it is incomplete: a choice that must be made is not"});
  NeverComplete<KRStatus> status;
  status.SetMsgSetVersion(1);
  status.SetCode(0);
  status.SetSeverity(KRStatusSeverity_INFO);
  EXPECT_EQ(sentences(status),
            Lines{"it is incomplete: a choice that must be made is not; it lacks "
                  "one or more of <MESSAGE>"});
  const List<MissingTag> missing = FindMissing(status);
  ASSERT_EQ(missing.size(), 1u);
  EXPECT_EQ(missing[0].choices[0], KRTag_MESSAGE);
  // A list of all tags would not help.
  NeverComplete<KRBankStatementTx> transaction;
  transaction.SetMsgSetVersion(1);
  transaction.SetTxType(KRBankTxType_DEBIT);
  transaction.SetDateTimePosted(KRDateTime("20260105"));
  transaction.SetTxAmount(KRPrecisionInteger(1, 0));
  transaction.SetFITId(KRString("1"));
  EXPECT_EQ(sentences(transaction), Lines{"it is incomplete: a choice that must be made is not"});
}

TEST(MissingTags, AreNoneInWhatIsComplete) {
  EXPECT_TRUE(ReadFile(KROFX_EXAMPLES "/checking.ofx").Missing().empty());
}

TEST(ReadNotes, EndWithAnAlarmWhenMemoryDoes) {
  const Reading reading = Read(Damaged());
  const std::size_t whole = reading.Warnings().size();
  std::size_t nth = 1;
  for (;; ++nth) {
    const FailingAllocation failing(nth);
    const std::size_t size = reading.Warnings().size();
    if (!AlarmIsSet()) {
      EXPECT_EQ(size, whole);
      break;
    }
    EXPECT_LE(size, whole);
  }
  EXPECT_GT(nth, 3u);
}

TEST(MissingTags, EndWithAnAlarmWhenMemoryDoes) {
  const Reading reading = Read(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<NAME>A</STMTTRN>"));
  const std::size_t whole = reading.Missing().size();
  ASSERT_GT(whole, 1u);
  for (std::size_t nth = 1;; ++nth) {
    const FailingAllocation failing(nth);
    const std::size_t size = reading.Missing().size();
    if (!AlarmIsSet()) {
      EXPECT_EQ(size, whole);
      break;
    }
    EXPECT_LE(size, whole);
  }
}

}  // namespace
}  // namespace krofx::testing
