// A stream hands out what a parse of the same text puts into lists, one by one, and leaves the rest
// as the parse has it.

#include "krofx/stream/stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "krofx/messages/billpay/payments.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/model/factory.h"
#include "krofx/parse/simple_parser.h"
#include "stream/streamed.h"
#include "support/factory_in_force.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"

namespace {

using krofx::Stream;
using krofx::StreamElement;
using krofx::StreamOptions;
using krofx::StreamState;
using namespace krofx::testing;

StreamOptions Unchecked() {
  StreamOptions options;
  options.checkRequired = false;
  return options;
}

// The texts of the wanted elements that are in a tree.
void CollectElements(KRDataObj& object, Lines& out) {
  const u16 count = object.GetNumberOfChildren();
  for (u16 index = 0; index < count; ++index) {
    KRDataObj* const child = object.GetChild(index);
    if (child == nullptr) continue;
    const bool inInvestments = dynamic_cast<KRInvTranList*>(&object) != nullptr;
    const bool wanted =
        inInvestments || dynamic_cast<KRClosing*>(child) != nullptr ||
        dynamic_cast<KRCCClosing*>(child) != nullptr ||
        dynamic_cast<KRPosDebt*>(child) != nullptr || dynamic_cast<KRPosMF*>(child) != nullptr ||
        dynamic_cast<KRPosOpt*>(child) != nullptr || dynamic_cast<KRPosOther*>(child) != nullptr ||
        dynamic_cast<KRPosStock*>(child) != nullptr ||
        dynamic_cast<KRSalaryLine*>(child) != nullptr ||
        dynamic_cast<KRHourlyWageLine*>(child) != nullptr ||
        dynamic_cast<KRAdjustmentLine*>(child) != nullptr ||
        dynamic_cast<KRTaxLine*>(child) != nullptr ||
        dynamic_cast<KRDirectDepositLine*>(child) != nullptr ||
        dynamic_cast<KRTxLine*>(child) != nullptr ||
        (dynamic_cast<KRBankStatementTx*>(child) != nullptr &&
         dynamic_cast<KRBankTransactionList*>(&object) != nullptr);
    if (wanted) {
      out.push_back(Written(child));
    } else {
      CollectElements(*child, out);
    }
  }
}

// A stream against a parse of the same text.
void ExpectAsParsed(const std::string& text) {
  SCOPED_TRACE(text);
  std::unique_ptr<KRFile> file;
  TextBuffer buffer(text);
  Stream stream(Unchecked());
  WantMuch(stream);
  stream.Open(*buffer);
  Streamed streamed;
  TakeAll(stream, streamed);
  TakeEnd(stream, streamed);
  ASSERT_NE(stream.Root(), nullptr);
  if (dynamic_cast<KRFileRq*>(stream.Root()) != nullptr) {
    file = std::make_unique<KRFileRq>();
  } else {
    file = std::make_unique<KRFileRs>();
  }
  KRSimpleParser parser;
  EXPECT_EQ(parser.Parse(buffer.Get(), file.get(), 0), streamed.status);
  EXPECT_EQ(parser.GetNumberParseExceptions(), streamed.warnings.size());
  Lines expected;
  CollectElements(*file, expected);
  Lines got = streamed.texts;
  CollectElements(*stream.Root(), got);
  std::sort(expected.begin(), expected.end());
  std::sort(got.begin(), got.end());
  EXPECT_EQ(got, expected);
}

TEST(Stream, GivesTheElementsOfEveryExampleAsAParseDoes) {
  std::size_t elements = 0;
  for (const auto& [name, text] : ExampleTexts()) {
    ExpectAsParsed(text);
    elements += StreamText(text).elements.size();
  }
  EXPECT_GT(elements, 100u);
}

TEST(Stream, TellsAccountPlaceAndPathOfAnElement) {
  const std::string text =
      BankStatementFile("\r\n" + NumberedTransaction(1) + NumberedTransaction(2));
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  ASSERT_NE(stream.Next(), nullptr);
  const StreamElement* const element = stream.Next();
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(Str(element->Path()), "OFX/BANKMSGSRSV1/STMTTRNRS[1]/STMTRS/BANKTRANLIST/STMTTRN[2]");
  EXPECT_EQ(element->Number(), 2u);
  EXPECT_EQ(element->Tag(), KRTag_STMTTRN);
  EXPECT_EQ(element->Where().offset, text.rfind("<STMTTRN>"));
  EXPECT_EQ(element->Where().line, 20u);
  EXPECT_EQ(element->Where().column, 1u);
  ASSERT_NE(element->Account(), nullptr);
  EXPECT_EQ(Str(element->Account()->GetAccountID()), "1029384756");
  ASSERT_NE(element->Within<KRGenericStatementRs>(), nullptr);
  EXPECT_EQ(Str(element->Within<KRGenericStatementRs>()->GetCurrencyDefault()), "USD");
  EXPECT_EQ(element->Within<KRTransRs>()->GetActualTrans(),
            element->Within<KRGenericStatementRs>());
  ASSERT_NE(element->As<KRBankStatementTx>(), nullptr);
  EXPECT_EQ(element->As<KRClosing>(), nullptr);
  EXPECT_EQ(Str(element->As<KRBankStatementTx>()->GetFITId()), "2");
  EXPECT_EQ(element->Around(0), &element->Object());
  EXPECT_EQ(element->Around(5), stream.Root()->GetChild(0));
  EXPECT_EQ(element->Around(6), stream.Root());
  EXPECT_EQ(element->Around(7), nullptr);
}

TEST(Stream, KeepsTheStatementWithoutItsTransactions) {
  Stream stream;
  stream.Want<KRBankStatementTx>();
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  stream.Open(std::string_view(text));
  EXPECT_EQ(stream.ForEach([](const StreamElement&) {}), KRParseStatus_Accepted);
  EXPECT_EQ(stream.State(), StreamState::kEnded);
  const auto* const statement = FindIn<KRGenericStatementRs>(stream.Root());
  ASSERT_NE(statement, nullptr);
  ASSERT_NE(statement->GetBankTranList(), nullptr);
  EXPECT_EQ(statement->GetBankTranList()->GetNumStatementTx(), 0);
  EXPECT_EQ(Str(KRString(static_cast<const char*>(statement->GetLedgerBal()->GetBalAmt()))),
            "1523.75");
  const std::unique_ptr<KRFile> root = stream.TakeRoot();
  EXPECT_NE(root, nullptr);
  EXPECT_EQ(stream.Root(), nullptr);
}

TEST(Stream, LeavesInTheTreeWhatNobodyWants) {
  Stream stream;
  stream.Want<KRClosing>();
  const std::string text = BankStatementFile(NumberedTransaction(1));
  stream.Open(std::string_view(text));
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(FindIn<KRBankTransactionList>(stream.Root())->GetNumStatementTx(), 1);
}

// A statement with `count` transactions, 1 to `count`.
std::string Many(int count, const std::string& between) {
  std::string text;
  for (int i = 1; i <= count; ++i) {
    text += "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1<FITID>" + std::to_string(i) +
            "</STMTTRN>" + between;
  }
  return BankStatementFile(text);
}

// A transaction that knows what was in it when its end tag came.
class Booking : public KRBankStatementTx {
 public:
  std::string atEnd;

  KRParseStatus HandleTagEnd(const KRTagDictionaryEntry* const entry) override {
    const KRParseStatus status = KRBankStatementTx::HandleTagEnd(entry);
    atEnd = Str(GetFITId());
    return status;
  }
};

// Makes every third transaction of the host's class, and none from the `refused`-th on.
class MixedFactory : public KRDataObjFactory {
 public:
  explicit MixedFactory(int refused = 0) : KRDataObjFactory(1), m_refused(refused) {}
  KRBankStatementTx* NewBankStatementTx(u16 version) override {
    if (++m_made >= m_refused && m_refused != 0) return nullptr;
    KRBankStatementTx* const made = m_made % 3 == 0 ? new Booking : new KRBankStatementTx;
    made->SetMsgSetVersion(version != 0 ? version : GetVersion());
    return made;
  }

 private:
  int m_refused;
  int m_made = 0;
};

TEST(Stream, HandsOutObjectsOfAHostAmongThoseOfTheLibrary) {
  for (const char* const between : {"", "<!-- a comment -->"}) {
    MixedFactory factory;
    const InForce inForce(factory);
    const std::string text = Many(8, between);
    Stream stream;
    stream.Want<KRBankStatementTx>();
    stream.Open(std::string_view(text));
    Lines ids;
    while (const StreamElement* const element = stream.Next()) {
      auto* const booking = element->As<Booking>();
      const std::string id = Str(element->As<KRBankStatementTx>()->GetFITId());
      ids.push_back((booking != nullptr ? "own " : "") + id);
      EXPECT_TRUE(booking == nullptr || booking->atEnd == id) << id;
    }
    EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(ids, (Lines{"1", "2", "own 3", "4", "5", "own 6", "7", "8"})) << between;
  }
}

TEST(Stream, EndsWhenTheFactoryMakesNoElement) {
  MixedFactory factory(5);
  const InForce inForce(factory);
  const std::string text = Many(8, "");
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  int count = 0;
  while (stream.Next() != nullptr) ++count;
  EXPECT_EQ(count, 4);
  EXPECT_EQ(stream.Status(), KRParseStatus_Fatal);
}

TEST(Stream, LetsAListBeCopiedWhileItsElementsCome) {
  for (const char* const between : {"", "<!-- a comment -->"}) {
    const std::string text = Many(8, between);
    Stream stream;
    stream.Want<KRBankStatementTx>();
    stream.Open(std::string_view(text));
    std::vector<KRBankTransactionList> copies;
    Lines ids;
    while (const StreamElement* const element = stream.Next()) {
      ids.push_back(Str(element->As<KRBankStatementTx>()->GetFITId()));
      copies.push_back(*element->Within<KRBankTransactionList>());
    }
    EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(ids, (Lines{"1", "2", "3", "4", "5", "6", "7", "8"})) << between;
  }
}

// The list holds securities of all kinds.
TEST(Stream, KeepsWhatNobodyWantsOfAListThatIsCopied) {
  const auto security = [](const std::string& tag, const std::string& number) {
    return Aggregate(tag, Aggregate("SECINFO", Aggregate("SECID", "<UNIQUEID>" + number +
                                                                      "<UNIQUEIDTYPE>CUSIP") +
                                                   "<SECNAME>Mills"));
  };
  for (const std::string between : {"", "<!-- a comment -->", "<ACME.X>1"}) {
    const std::string text = ResponseFile(
        "SECLISTMSGSRS",
        Aggregate("SECLIST", security("STOCKINFO", "1") + between + security("OTHERINFO", "2") +
                                 security("STOCKINFO", "3") + security("OTHERINFO", "4") + between +
                                 security("STOCKINFO", "5") + security("OTHERINFO", "6")));
    Stream stream(MendingOptions());
    stream.WantTag(KRTag_STOCKINFO);
    stream.Open(std::string_view(text));
    std::vector<KRSecList> copies;
    std::size_t count = 0;
    while (const StreamElement* const element = stream.Next()) {
      ++count;
      copies.push_back(*element->Within<KRSecList>());
    }
    EXPECT_EQ(count, 3u);
    const std::string rest = Written(stream.Root());
    for (const char* const number : {"2", "4", "6"}) {
      EXPECT_NE(rest.find("<UNIQUEID>" + std::string(number)), std::string::npos)
          << between << rest;
    }
  }
}

// A list of a host that keeps its transactions itself.
class Journal : public KRBankTransactionList {
 public:
  std::vector<std::unique_ptr<KRDataObj>> kept;
  bool hasMark = false;

  KRParseStatus PushAndSetObject(KRDataObj* child, KRTagID tag) override {
    if (tag == KRTag_STMTTRN) {
      DisconnectStatementTx(static_cast<u16>(GetNumStatementTx() - 1));
      kept.emplace_back(child);
      if (hasMark && GetNumStatementTx() == 0) {
        auto* const mark = new KRBankStatementTx;
        mark->SetFITId("mark");
        AppendStatementTx(mark);
      }
    }
    return KRBankTransactionList::PushAndSetObject(child, tag);
  }
};

class JournalFactory : public KRDataObjFactory {
 public:
  explicit JournalFactory(bool hasMark) : KRDataObjFactory(1), m_hasMark(hasMark) {}
  KRBankTransactionList* NewBankTransactionList(u16 version) override {
    auto* const made = new Journal;
    made->hasMark = m_hasMark;
    made->SetMsgSetVersion(version != 0 ? version : GetVersion());
    return made;
  }

 private:
  bool m_hasMark;
};

TEST(Stream, LeavesToAListOfAHostWhatItKeepsItself) {
  for (const bool hasMark : {false, true}) {
    for (const std::string between : {"", "<ACME.X>1\n"}) {
      JournalFactory factory(hasMark);
      const InForce inForce(factory);
      const std::string text = Many(4, between);
      Stream stream(MendingOptions());
      stream.Want<KRBankStatementTx>();
      stream.Open(std::string_view(text));
      Lines ids;
      while (const StreamElement* const element = stream.Next()) {
        ids.push_back(Str(element->As<KRBankStatementTx>()->GetFITId()));
      }
      EXPECT_EQ(ids, (Lines{"1", "2", "3", "4"}));
      EXPECT_EQ(stream.Mendings().empty(), between.empty());
      auto* const journal = dynamic_cast<Journal*>(FindIn<KRBankTransactionList>(stream.Root()));
      ASSERT_NE(journal, nullptr);
      Lines kept;
      for (const auto& each : journal->kept) {
        kept.push_back(Str(dynamic_cast<KRBankStatementTx&>(*each).GetFITId()));
      }
      EXPECT_EQ(kept, ids);
      ASSERT_EQ(journal->GetNumStatementTx(), hasMark ? 1 : 0);
      if (hasMark) {
        EXPECT_EQ(Str(journal->GetStatementTx(0)->GetFITId()), "mark");
      }
    }
  }
}

// Only so much text is read ahead, which is few elements here.
TEST(Stream, GivesElementsThatAreFarFromEachOther) {
  const std::string text = Many(70, std::string(3000, '\n'));
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  std::size_t count = 0;
  std::size_t at = 0;
  for (const StreamElement& element : stream) {
    EXPECT_EQ(Str(element.As<KRBankStatementTx>()->GetFITId()), std::to_string(++count));
    at = text.find("<STMTTRN>", at + 1);
    EXPECT_EQ(element.Where().offset, at);
  }
  EXPECT_EQ(count, 70u);
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
}

// The third invoice is open, and not in its list yet, when its items are read. What comes after a
// comment is not read in one go.
TEST(Stream, GivesElementsThatAreInsideOthers) {
  const auto invoice = [](const std::string& number) {
    return Aggregate(
        "INVOICE", "<INVNO>" + number + "<INVTOTALAMT>2<INVPAIDAMT>2<INVDATE>20260105<INVDESC>Oil" +
                       Aggregate("LINEITEM", "<LITMAMT>1<LITMDESC>a" + number) +
                       Aggregate("LINEITEM", "<LITMAMT>1<LITMDESC>b" + number + "<!-- one -->"));
  };
  const std::string text = RequestFile(
      "BILLPAYMSGSRQ",
      RequestWrapper(
          "PMTTRNRQ",
          Aggregate("PMTRQ",
                    Aggregate("PMTINFO",
                              "<BANKACCTFROM><BANKID>1<ACCTID>4711<ACCTTYPE>CHECKING</BANKACCTFROM>"
                              "<TRNAMT>6" +
                                  Aggregate("EXTDPMT", "<EXTDPMTDSC>oil" +
                                                           Aggregate("EXTDPMTINV",
                                                                     invoice("1") + invoice("2") +
                                                                         invoice("3")))))));
  Lines expected;
  for (const std::string number : {"1", "2", "3"}) {
    const std::string path = "INVOICE[" + number + "]";
    expected.push_back(path + "/LINEITEM[1] a" + number);
    expected.push_back(path + "/LINEITEM[2] b" + number);
    expected.push_back(path + " " + number);
  }
  for (const std::size_t piece : {std::size_t{0}, std::size_t{1}, std::size_t{50}}) {
    Stream stream(Unchecked());
    stream.WantTag(KRTag_INVOICE).WantTag(KRTag_LINEITEM);
    Lines got;
    const auto take = [&] {
      while (const StreamElement* const element = stream.Next()) {
        const std::string path = Str(element->Path());
        const auto* const line = element->As<KRLineItem>();
        const auto* const whole = element->As<KRInvoice>();
        ASSERT_TRUE(line != nullptr || whole != nullptr);
        got.push_back(
            path.substr(path.find("INVOICE[")) + " " +
            (line != nullptr ? Str(line->GetLineItemDesc()) : Str(whole->GetInvoiceNum())));
        EXPECT_TRUE(whole == nullptr || whole->GetNumLineItem() == 0);
        EXPECT_EQ(text.compare(element->Where().offset, 2, line != nullptr ? "<L" : "<I"), 0);
      }
    };
    Pour(stream, text, piece, take);
    EXPECT_EQ(got, expected) << piece;
    EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
  }
}

TEST(Stream, CountsBeyondSixteenBits) {
  constexpr std::size_t kCount = 70000;
  std::string transactions;
  for (std::size_t number = 1; number <= kCount; ++number) {
    transactions += NumberedTransaction(number);
  }
  const std::string text = BankStatementFile(transactions);
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  std::size_t count = 0;
  std::string path;
  for (const StreamElement& element : stream) {
    ++count;
    ASSERT_EQ(Str(element.As<KRBankStatementTx>()->GetFITId()), std::to_string(count));
    ASSERT_EQ(element.Number(), count);
    if (count == kCount) path = Str(element.Path());
  }
  EXPECT_EQ(count, kCount);
  EXPECT_EQ(path, "OFX/BANKMSGSRSV1/STMTTRNRS[1]/STMTRS/BANKTRANLIST/STMTTRN[70000]");
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
  EXPECT_TRUE(stream.Problem().IsEmpty());
}

TEST(Stream, SaysWhenAListThatIsKeptIsFull) {
  std::string transactions;
  for (std::size_t number = 1; number <= 66000; ++number) {
    transactions += NumberedTransaction(number);
  }
  const std::string text = BankStatementFile(transactions);
  Stream stream;
  stream.Open(std::string_view(text));
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.Status(), KRParseStatus_Fatal);
  EXPECT_NE(Str(stream.Problem()).find("65535"), std::string::npos);
}

TEST(Stream, GivesAnElementAsSoonAsItsEndTagIsThere) {
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  const std::size_t end = text.find("</STMTTRN>") + std::string("</STMTTRN>").size();
  Stream stream;
  stream.Want<KRBankStatementTx>();
  ASSERT_TRUE(stream.Feed(std::string_view(text).substr(0, end - 1)));
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.State(), StreamState::kHungry);
  ASSERT_TRUE(stream.Feed(std::string_view(text).substr(end - 1, 1)));
  EXPECT_NE(stream.Next(), nullptr);
  EXPECT_EQ(stream.State(), StreamState::kReading);
  EXPECT_EQ(stream.Next(), nullptr);
  ASSERT_TRUE(stream.Feed(std::string_view(text).substr(end)));
  EXPECT_NE(stream.Next(), nullptr);
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.State(), StreamState::kEnded);
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
}

TEST(Stream, RefusesAPieceBeforeTheOneBeforeItIsRead) {
  Stream stream;
  stream.Want<KRBankStatementTx>();
  EXPECT_TRUE(stream.Feed("<OFX>"));
  EXPECT_FALSE(stream.Feed("<BANKMSGSRSV1>"));
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_TRUE(stream.Feed("<BANKMSGSRSV1>"));
  stream.Finish();
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_FALSE(stream.Feed("<STMTTRNRS>"));
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
}

TEST(Stream, StopsWhenTheHostHasEnough) {
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  int count = 0;
  EXPECT_EQ(stream.ForEach([&count](const StreamElement&) { return ++count < 1; }),
            KRParseStatus_Accepted);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(stream.State(), StreamState::kEnded);
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_NE(FindIn<KRGenericStatementRs>(stream.Root()), nullptr);
}

TEST(Stream, StopsBeforeElementsThatWereReadAhead) {
  std::string transactions;
  for (std::size_t number = 1; number <= 10; ++number) transactions += NumberedTransaction(number);
  const std::string text = BankStatementFile(transactions + "<STMTTRN><UNKNOWN>1</STMTTRN>");
  for (std::size_t enough = 1; enough <= 10; ++enough) {
    Stream stream;
    stream.Want<KRBankStatementTx>();
    stream.Open(std::string_view(text));
    for (std::size_t number = 1; number <= enough; ++number) ASSERT_NE(stream.Next(), nullptr);
    EXPECT_TRUE(stream.Warnings().empty());
    stream.Stop();
    EXPECT_EQ(stream.Next(), nullptr);
    EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
    EXPECT_TRUE(stream.HasMoreTags());
  }
}

TEST(Stream, TakesElementsOutOfTheirList) {
  std::string transactions;
  for (std::size_t number = 1; number <= 100; ++number) transactions += NumberedTransaction(number);
  const std::string text = BankStatementFile(transactions);
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  std::size_t count = 0;
  for (const StreamElement& element : stream) {
    EXPECT_EQ(element.Number(), ++count);
    const auto* const list = element.Within<KRBankTransactionList>();
    ASSERT_NE(list, nullptr);
    for (u16 index = 0; index < list->GetNumStatementTx(); ++index) {
      EXPECT_NE(list->GetStatementTx(index), &element.Object());
    }
  }
  EXPECT_EQ(count, 100u);
}

TEST(Stream, ReadsABufferOfADerivedClass) {
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  ServingBuffer buffer(text);
  Stream stream;
  WantMuch(stream);
  stream.Open(buffer);
  Streamed streamed;
  TakeAll(stream, streamed);
  TakeEnd(stream, streamed);
  EXPECT_EQ(streamed, StreamText(text));
}

TEST(Stream, ReadsAFile) {
  const TempFolder folder;
  const std::string name = folder.Name("statement.ofx");
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  std::ofstream(name, std::ios::binary) << text;
  Stream stream;
  WantMuch(stream);
  ASSERT_TRUE(stream.OpenFile(name.c_str()));
  Streamed streamed;
  TakeAll(stream, streamed);
  TakeEnd(stream, streamed);
  EXPECT_EQ(streamed, StreamText(text));
}

// A file that the host has mapped into its memory.
class MappedFile {
 public:
  explicit MappedFile(const std::string& name) {
    const int file = open(name.c_str(), O_RDONLY);
    struct stat status {};
    if (fstat(file, &status) == 0) m_size = static_cast<std::size_t>(status.st_size);
    m_bytes = mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, file, 0);
    close(file);
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile() { munmap(m_bytes, m_size); }

  std::string_view Bytes() const { return {static_cast<const char*>(m_bytes), m_size}; }

 private:
  void* m_bytes = MAP_FAILED;
  std::size_t m_size = 0;
};

TEST(Stream, ReadsAFileThatIsMapped) {
  const TempFolder folder;
  const std::string name = folder.Name("statement.ofx");
  std::string transactions;
  for (std::size_t number = 1; number <= 3000; ++number) {
    transactions += NumberedTransaction(number);
  }
  const std::string text = BankStatementFile(transactions);
  std::ofstream(name, std::ios::binary) << text;
  const MappedFile mapped(name);
  Stream stream;
  WantMuch(stream);
  stream.Open(mapped.Bytes());
  Streamed streamed;
  TakeAll(stream, streamed);
  TakeEnd(stream, streamed);
  EXPECT_EQ(streamed, StreamText(text));
  EXPECT_EQ(streamed.texts.size(), 3000u);
}

// Windows are many here, and lines end in three ways.
TEST(Stream, CountsLinesOfAllKinds) {
  constexpr const char* kEnds[] = {"\n", "\r\n", "\r", "\n\n", "\r\n\r", "\r\r\n"};
  std::string transactions;
  for (std::size_t number = 1; number <= 2000; ++number) {
    transactions += "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250101<TRNAMT>-1<FITID>" +
                    std::to_string(number) + "</STMTTRN>" + kEnds[number % std::size(kEnds)];
  }
  const std::string text = BankStatementFile(transactions);
  StreamOptions options;
  options.window = 4096;
  Stream stream(options);
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  std::size_t line = 1;
  std::size_t at = 0;
  std::size_t begin = 0;
  std::size_t count = 0;
  for (const StreamElement& element : stream) {
    // Some ask rarely.
    if (++count % 100 > 50) continue;
    const krofx::Place& place = element.Where();
    for (; at < place.offset; ++at) {
      if (text[at] == '\n' || (text[at] == '\r' && text[at + 1] != '\n')) {
        ++line;
        begin = at + 1;
      }
    }
    ASSERT_EQ(text.compare(place.offset, 9, "<STMTTRN>"), 0) << count;
    ASSERT_EQ(place.line, line) << count;
    ASSERT_EQ(place.column, place.offset - begin + 1) << count;
  }
  EXPECT_EQ(count, 2000u);
}

TEST(Stream, SaysWhyAFileCannotBeOpened) {
  Stream stream;
  EXPECT_FALSE(stream.OpenFile("/no/such/file.ofx"));
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.State(), StreamState::kEnded);
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
  EXPECT_NE(Str(stream.Problem()).find("cannot be opened"), std::string::npos);
}

TEST(Stream, SaysWhyATextEndsEarly) {
  const std::string whole = BankStatementFile(NumberedTransaction(1));
  const std::string otherEnd = BankStatementFile("<STMTTRN><TRNTYPE>DEBIT</BANKTRANLIST>");
  for (const std::string& text :
       {std::string(), std::string("<html></html>"), whole.substr(0, whole.size() / 2), otherEnd}) {
    Stream stream;
    stream.Want<KRBankStatementTx>();
    stream.Open(std::string_view(text));
    EXPECT_GT(stream.ForEach([](const StreamElement&) {}), KRParseStatus_Fatal) << text;
    EXPECT_LT(stream.Status(), KRParseStatus_Warnings) << text;
    EXPECT_FALSE(stream.Problem().IsEmpty()) << text;
  }
  Stream stream;
  stream.Open(std::string_view(whole));
  EXPECT_EQ(stream.ForEach([](const StreamElement&) {}), KRParseStatus_Accepted);
  EXPECT_TRUE(stream.Problem().IsEmpty());
}

TEST(Stream, CannotReadAFolder) {
  const TempFolder folder;
  Stream stream;
  stream.OpenFile(folder.Name("").c_str());
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
  EXPECT_FALSE(stream.Problem().IsEmpty());
}

TEST(Stream, WarnsOfWhatAnElementLacks) {
  const std::string text =
      BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<TRNAMT>-1</STMTTRN>" + NumberedTransaction(2));
  const Streamed streamed = StreamText(text);
  EXPECT_EQ(streamed.status, KRParseStatus_Warnings);
  EXPECT_EQ(streamed.elements.size(), 2u);
  ASSERT_EQ(streamed.warnings.size(), 1u);
  EXPECT_NE(streamed.warnings[0].find("STMTTRN[1]"), std::string::npos);
  EXPECT_EQ(StreamText(text, 0, Unchecked()).status, KRParseStatus_Accepted);
}

class Counting : public krofx::StreamListener {
 public:
  void OnWarning(const krofx::ReadWarning&) override { ++m_count; }
  int m_count = 0;
};

TEST(Stream, KeepsSomeWarningsAndTellsAll) {
  std::string transactions;
  for (std::size_t number = 1; number <= 30; ++number) {
    transactions += NumberedTransaction(number) + "<UNKNOWN>1";
  }
  const std::string text = BankStatementFile(transactions);
  StreamOptions options;
  options.maxRecords = 10;
  Counting counting;
  Stream stream(options);
  stream.SetListener(&counting);
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  EXPECT_EQ(stream.ForEach([](const StreamElement&) {}), KRParseStatus_Warnings);
  EXPECT_EQ(counting.m_count, 30);
  EXPECT_EQ(stream.Warnings().size(), 10u);
  EXPECT_EQ(stream.Unrecorded(), 20u);
}

TEST(Stream, LetsTheHostParseBetweenElements) {
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  Lines ids;
  for (const StreamElement& element : stream) {
    EXPECT_EQ(Parsed<KRFileRs>(BankStatementFile("<STMTTRN><TRNTYPE>X</STMTTRN>")).Status(),
              KRParseStatus_Invalid);
    ids.push_back(Str(element.As<KRBankStatementTx>()->GetFITId()));
  }
  EXPECT_EQ(ids, (Lines{"1", "2"}));
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
}

TEST(Stream, DropsWholeStatements) {
  std::string wrappers;
  for (int number = 0; number < 5; ++number) {
    wrappers += ResponseWrapper(
        "STMTTRNRS", Aggregate("STMTRS", "<CURDEF>USD" + BankAccountText("BANKACCTFROM") +
                                             Aggregate("LEDGERBAL", "<BALAMT>1<DTASOF>20260131")));
  }
  const std::string text = ResponseFile("BANKMSGSRS", wrappers);
  Stream stream;
  stream.Want<KRTransRs>();
  stream.Open(std::string_view(text));
  std::size_t count = 0;
  for (const StreamElement& element : stream) {
    EXPECT_EQ(element.Number(), ++count);
    EXPECT_NE(element.As<KRTransRs>()->GetActualTrans(), nullptr);
  }
  EXPECT_EQ(count, 5u);
  EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
  std::size_t kept = 0;
  for (KRMessageSetRs* set = nullptr; kept == 0;) {
    set = FindIn<KRMessageSetRs>(stream.Root()->GetChild(0)->GetChild(1));
    ASSERT_NE(set, nullptr);
    kept = set->GetNumTrans();
  }
  EXPECT_EQ(kept, 1u);
}

TEST(Stream, DropsNoWrapperThatNobodyWants) {
  const std::string statement =
      Aggregate("STMTRS", "<CURDEF>USD" + BankAccountText("BANKACCTFROM") +
                              Aggregate("LEDGERBAL", "<BALAMT>1<DTASOF>20260131"));
  const std::string wanted = ResponseWrapper("STMTTRNRS", statement);
  const std::string other = ResponseWrapper(
      "STMTENDTRNRS", Aggregate("STMTENDRS", "<CURDEF>USD" + BankAccountText("BANKACCTFROM")));
  const std::string text = ResponseFile("BANKMSGSRS", wanted + other + wanted + other);
  std::string damaged = text;
  damaged.insert(damaged.find("<STMTTRNRS>"), "<ACME.X>1");
  for (const std::string& each : {text, damaged}) {
    Stream stream(MendingOptions());
    stream.WantTag(KRTag_STMTTRNRS);
    stream.Open(std::string_view(each));
    std::size_t count = 0;
    while (stream.Next() != nullptr) ++count;
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(stream.Status(), each == text ? KRParseStatus_Accepted : KRParseStatus_Warnings);
    const std::string rest = Written(stream.Root());
    EXPECT_NE(rest.find("<STMTENDTRNRS>"), rest.rfind("<STMTENDTRNRS>"));
  }
}

TEST(Stream, ReadsTextsInOtherCharacters) {
  std::string text = BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250101<TRNAMT>1<FITID>1"
      "<NAME>Caf\xE9</STMTTRN>");
  Stream stream;
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  const StreamElement* const element = stream.Next();
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(Str(element->ToUtf8(element->As<KRBankStatementTx>()->GetName())), "Caf\xC3\xA9");
}

TEST(Stream, WantsWhatIsUnderATag) {
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  Stream stream;
  stream.WantTag(KRTag_STMTTRN).WantTag(KRTag_CLOSING);
  stream.Open(std::string_view(text));
  int count = 0;
  stream.ForEach([&count](const StreamElement&) { ++count; });
  EXPECT_EQ(count, 2);
}

TEST(Stream, WantsElementsOfEveryClass) {
  const std::string text = BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2));
  Stream stream;
  stream.Want<KRDataObj>();
  stream.Open(std::string_view(text));
  std::vector<KRTagID> tags;
  stream.ForEach([&tags](const StreamElement& element) { tags.push_back(element.Tag()); });
  // A wrapper is an element too, of its message set.
  EXPECT_EQ(tags, (std::vector<KRTagID>{KRTag_STMTTRN, KRTag_STMTTRN, KRTag_STMTTRNRS}));
}

TEST(Stream, NotesAmountsWithACommaAndTagsAfterTheEnd) {
  const std::string clean = BankStatementFile(NumberedTransaction(1));
  const std::string comma = BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250101<TRNAMT>-11,76<FITID>1</STMTTRN>");
  const std::string number = BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250101<TRNAMT>-11.76<FITID>1,234</STMTTRN>");
  for (const std::string& text : {clean, comma, number, clean + "\n", clean + comma}) {
    Stream stream;
    stream.Want<KRBankStatementTx>();
    stream.Open(std::string_view(text));
    stream.ForEach([](const StreamElement&) {});
    EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(stream.MayHaveCommaAmount(), text == comma);
    EXPECT_EQ(stream.HasMoreTags(), text == clean + comma);
  }
}

TEST(Stream, NotesNoTagsBehindANul) {
  const std::string clean = BankStatementFile(NumberedTransaction(1));
  const std::string nul(1, '\0');
  const std::string far(10000, '\n');
  for (const std::string& between : {nul, nul + far, far + nul, far + nul + far, far}) {
    for (const bool plain : {false, true}) {
      const std::string text = clean + between + clean;
      TextBuffer buffer(text);
      StreamOptions options;
      options.window = 4096;
      Stream stream(options);
      if (plain) {
        stream.Open(*buffer.Get());
      } else {
        stream.Open(std::string_view(text));
      }
      EXPECT_EQ(stream.Next(), nullptr);
      EXPECT_EQ(stream.HasMoreTags(), between == far);
    }
  }
}

TEST(Stream, RefusesWhatIsLongerThanItsLimit) {
  StreamOptions options;
  options.window = 4096;
  options.largestItem = 8192;
  const std::string text =
      BankStatementFile("<UNKNOWN><A>" + std::string(20000, 'x') + "</UNKNOWN>");
  const Streamed streamed = StreamText(text, 0, options);
  EXPECT_EQ(streamed.status, KRParseStatus_Fatal);
  options.largestItem = 1 << 20;
  EXPECT_EQ(StreamText(text, 0, options).status, KRParseStatus_Warnings);
}

TEST(Stream, GivesTheSameInSmallWindows) {
  std::string transactions;
  for (std::size_t number = 1; number <= 500; ++number) transactions += NumberedTransaction(number);
  const std::string text = BankStatementFile(transactions);
  StreamOptions small;
  small.window = 4096;
  EXPECT_EQ(StreamText(text, 0, small), StreamText(text));
}

TEST(Stream, EndsWithoutMemory) {
  const std::string text =
      BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2) + NumberedTransaction(3) +
                        "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250203<TRNAMT>-1<FITID>4<NAME>x"
                        "<CURRENCY><CURRATE>1<CURSYM>USD</CURRENCY></STMTTRN><UNKNOWN>1" +
                        NumberedTransaction(5));
  const Streamed whole = StreamText(text);
  ASSERT_EQ(whole.elements.size(), 5u);
  for (const bool andAllLater : {false, true}) {
    for (std::size_t nth = 1; nth < 100000; ++nth) {
      std::size_t count = 0;
      KRParseStatus status;
      bool failed;
      {
        FailingAllocation failing(nth, andAllLater);
        Stream stream;
        stream.Want<KRBankStatementTx>();
        stream.Open(std::string_view(text));
        while (const StreamElement* const element = stream.Next()) {
          ++count;
          ASSERT_EQ(element->As<KRBankStatementTx>()->ValidateTag(KRTag_NAME), 1);
          // What is wrong comes after what was read before it.
          ASSERT_TRUE(count == 5 || stream.Warnings().empty()) << nth;
        }
        status = stream.Status();
        failed = krofx::internal::AllocationFailure::Count() >= nth;
      }
      if (status != KRParseStatus_Fatal) {
        ASSERT_EQ(count, 5u) << nth;
        ASSERT_EQ(status, KRParseStatus_Warnings) << nth;
      }
      if (!failed) break;
    }
  }
}

}  // namespace
