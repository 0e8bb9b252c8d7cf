// Files: bodies, subfiles, boundaries, copies, the factory and what a plain file refuses.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/signon/status.h"
#include "krofx/model/factory.h"
#include "support/factory_in_force.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"
#include "support/vtable_places.h"

namespace {

using namespace krofx::testing;

TEST(KRFile, StartsWithTypeAndVersionOfItsClass) {
  KRFile file;
  EXPECT_EQ(file.GetType(), KRTag_MIME);
  EXPECT_EQ(file.GetMsgSetVersion(), 0);
  KRFileOFX ofx;
  EXPECT_EQ(ofx.GetType(), KRTag_MIME);
  EXPECT_EQ(ofx.GetMsgSetVersion(), 0xffff);
  KRFileRq request;
  EXPECT_EQ(request.GetType(), KRTag_OFXFILERQ);
  EXPECT_EQ(request.GetMsgSetVersion(), 0xffff);
  KRFileRs response;
  EXPECT_EQ(response.GetType(), KRTag_OFXFILERS);
  EXPECT_EQ(response.GetMsgSetVersion(), 0xffff);
}

TEST(KRFile, HasOneTagInAnOFXFileAndNoneInAPlainOne) {
  KRArrayOfTags tags;
  KRFileRq request;
  EXPECT_EQ(request.GetArrayOfValidTags(tags), 1);
  ASSERT_EQ(tags.count, 1);
  EXPECT_EQ(tags.table[0].tag, KRTag_OFX);
  EXPECT_EQ(tags.table[0].versions, 0xffff);
  EXPECT_EQ(request.GetArrayOfRequiredTags(tags), 1);
  ASSERT_EQ(tags.count, 1);
  EXPECT_EQ(tags.table[0].tag, KRTag_OFX);
  EXPECT_EQ(KRFile().GetArrayOfValidTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
}

TEST(KRFile, RefusesTagsAsAPlainFile) {
  KRFile file;
  const KRTagDictionaryEntry entry = {KRTag_OFX, "OFX"};
  EXPECT_EQ(file.HandleTagStart(&entry), KRParseStatus_PlainFile);
  EXPECT_EQ(file.HandleTagElement(&entry, KRString("x")), KRParseStatus_PlainFile);
  EXPECT_EQ(file.HandleTagElement(&entry, "x"), KRParseStatus_PlainFile);
  EXPECT_EQ(file.HandleBoundary(), KRParseStatus_Accepted);
  EXPECT_EQ(file.ValidateHeaders(), 1);
}

TEST(KRFileRq, PassesOverTagsThatAreNotItsBody) {
  const Parsed<KRFileRq> file(HeaderBlock() + "<STATUS></STATUS>" +
                              Aggregate("OFX", SignOnRequestSet()));
  // The end tag of STATUS is handled by the file.
  EXPECT_EQ(file.Status(), KRParseStatus_EndTagMismatch);
  KRFileRq alone;
  const KRTagDictionaryEntry entry = {KRTag_STATUS, "STATUS"};
  EXPECT_EQ(alone.HandleTagStart(&entry), KRParseStatus_Fatal) << "no parser";
}

TEST(KRFileRq, RefusesElements) {
  const Parsed<KRFileRq> file(HeaderBlock() + "<MEMO>hello");
  EXPECT_EQ(file.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(file.Warnings().at(0),
            "INVALIDELEM <MEMO> " + TagNumber(KRTag_OFXFILERQ) + " \"hello\"");
  KRFileRs response;
  TakeWarnings();
  const KRTagDictionaryEntry entry = {KRTag_MEMO, "MEMO"};
  EXPECT_EQ(response.HandleTagElement(&entry, KRString("hello")), KRParseStatus_Invalid);
  EXPECT_EQ(TakeWarnings(),
            Lines{"INVALIDELEM <MEMO> " + TagNumber(KRTag_OFXFILERS) + " \"hello\""});
}

TEST(KRFileRq, NeverShowsAPasswordThatItRefuses) {
  const Parsed<KRFileRq> file(HeaderBlock() + "<USERPASS>secret");
  for (const std::string& line : file.Warnings()) {
    EXPECT_EQ(line.find("secret"), std::string::npos) << line;
  }
}

TEST(KRFileRq, HoldsRequestsAndNotesItsBody) {
  KRFileRq file;
  EXPECT_EQ(file.GetNumberOfRequest(), 0);
  EXPECT_EQ(file.ValidateTag(KRTag_OFX), 0);
  EXPECT_EQ(file.AppendRequest(nullptr), 0);
  EXPECT_EQ(file.ValidateTag(KRTag_OFX), 1) << "noted before the storing";
  auto* request = new KRRequest;
  EXPECT_EQ(file.AppendRequest(request), 1);
  EXPECT_EQ(file.GetRequest(0), request);
  EXPECT_EQ(file.GetChild(0), request);
  EXPECT_EQ(file.GetNumberOfChildren(), 1);
  EXPECT_EQ(file.SetRequest(0, new KRRequest), 1);
  EXPECT_EQ(file.GetNumberOfRequest(), 1);
  EXPECT_EQ(file.GetRequest(1), nullptr);
}

TEST(KRFileRs, HoldsResponses) {
  KRFileRs file;
  EXPECT_EQ(file.SetResponse(1, new KRResponse), 1);
  EXPECT_EQ(file.GetNumberOfResponse(), 2);
  EXPECT_EQ(file.GetResponse(0), nullptr);
  EXPECT_EQ(TextOf(file), HeaderBlock() + InLines("<OFX></OFX>")) << "an empty place is no body";
}

TEST(KRFileRq, WritesItsBodiesUpToTheFirstThatFails) {
  KRFileRq file;
  file.AppendRequest(new KRRequest);
  file.AppendRequest(new KRRequest);
  EXPECT_EQ(TextOf(file), HeaderBlock() + InLines("<OFX></OFX><OFX></OFX>"));
  for (int i = 0; i < 2; ++i) {
    auto* set = new KRMessageSetRq;
    set->SetType(KRTag_SIGNONMSGSRQV1);
    file.GetRequest(0)->AppendMessageSet(set);
  }
  EXPECT_EQ(Build(file), (Built{KRBuildStatus_TreeNotAllowed, HeaderBlock() + "<OFX>\n"}));
}

TEST(KRFile, GivesItsSubfilesAsChildren) {
  KRFile file;
  auto* subfile = new KRFileRs;
  EXPECT_EQ(file.AppendSubfile(subfile), 1);
  EXPECT_EQ(file.AppendSubfile(nullptr), 0);
  EXPECT_EQ(file.GetNumberOfSubfiles(), 1);
  EXPECT_EQ(file.GetSubfile(0), subfile);
  EXPECT_EQ(file.GetSubfile(1), nullptr);
  EXPECT_EQ(file.GetChild(0), subfile);
  EXPECT_EQ(subfile->GetParent(), nullptr) << "the owner sets it";
  // In a file with bodies, the bodies replace the subfiles.
  KRFileRq request;
  request.AppendSubfile(new KRFile);
  EXPECT_EQ(request.GetNumberOfChildren(), 0);
}

KRFile* MakePart(KRFile& parent, const char* body) {
  auto* part = new KRFile;
  part->SetMIMEBody(KRString(body));
  part->SetParent(&parent);
  parent.AppendSubfile(part);
  return part;
}

TEST(KRFile, WritesSubfilesBetweenBoundaries) {
  KRFile file;
  file.SetBoundary(KRString("frontier"));
  MakePart(file, "first");
  MakePart(file, "second one");
  const std::string expected =
      "--frontier\ncontent-length: 6\r\nfirst\n--frontier\ncontent-length: 11\r\nsecond one\n"
      "--frontier--\n";
  EXPECT_EQ(TextOf(file), expected);
  EXPECT_EQ(TextOf(file), expected) << "a rebuild replaces the lengths";
  file.SetMIMEBody(KRString("epilogue"));
  EXPECT_EQ(TextOf(file),
            expected.substr(0, expected.rfind("--frontier--")) + "epilogue\n--frontier--\n");
}

TEST(KRFile, EscapesOnlyTheClosingDelimiter) {
  KRFile file;
  file.SetBoundary(KRString("a&b"));
  MakePart(file, "x");
  EXPECT_EQ(TextOf(file), "--a&b\ncontent-length: 2\r\nx\n--a&amp;b--\n");
}

TEST(KRFile, WritesNoDelimitersWithoutABoundary) {
  KRFile file;
  MakePart(file, "x");
  EXPECT_EQ(TextOf(file), "content-length: 2\r\nx\n");
}

TEST(KRFile, StopsAtAnEmptyPlaceAmongItsSubfiles) {
  KRFile file;
  file.SetBoundary(KRString("frontier"));
  auto* part = new KRFile;
  part->SetParent(&file);
  part->SetMIMEBody(KRString("second"));
  EXPECT_EQ(file.SetSubfile(1, part), 1);
  const Built built = Build(file);
  EXPECT_EQ(built.status, KRBuildStatus_NullArgument);
  EXPECT_EQ(built.text, "") << "no delimiter comes before it";
}

// A part that refuses one header, and one that cannot write any.
class RefusingPart : public KRFileRs {
 public:
  explicit RefusingPart(const char* refused) : m_refused(refused) {}
  KRParseStatus HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name) override {
    if (name != nullptr && *name == m_refused) return KRParseStatus_Fatal;
    return KRFileRs::HandleHeader(tag, value, name);
  }
  u16 AllRequiredPresent() override { return 1; }

 private:
  const char* m_refused;
};

class HeaderlessPart : public KRFile {
 public:
  KRBuildStatus BuildHeaders(KRBuilder*) const override { return KRBuildStatus_EmptyText; }
};

TEST(KRFile, StopsWhenASubfileRefusesItsLengthOrType) {
  for (const char* refused : {"content-length", "content-type"}) {
    KRFile file;
    auto* part = new RefusingPart(refused);
    part->SetParent(&file);
    file.AppendSubfile(part);
    EXPECT_EQ(Build(file).status, KRBuildStatus_Fatal) << refused;
  }
}

TEST(KRFile, WritesASubfileWhoseHeadersFailed) {
  KRFile file;
  auto* part = new HeaderlessPart;
  part->SetParent(&file);
  part->SetMIMEBody(KRString("x"));
  file.AppendSubfile(part);
  EXPECT_EQ(TextOf(file), "x\n");
  // At the top the headers are required.
  EXPECT_EQ(Build(HeaderlessPart()).status, KRBuildStatus_EmptyText);
}

TEST(KRFile, GivesItsOFXSubfilesTheirType) {
  KRFile file;
  auto* part = new KRFileRs;
  part->SetParent(&file);
  part->AddDefaultOFXHeaders(1);
  auto* response = Make<KRResponse>(1).release();
  auto* set = new KRMessageSetRs;
  set->SetType(KRTag_SIGNONMSGSRSV1);
  response->AppendMessageSet(set);
  part->AppendResponse(response);
  file.AppendSubfile(part);
  // A strict build: what is required below is missing.
  EXPECT_EQ(Build(file).status, KRBuildStatus_MissingTag);

  auto* signOn = Make<KRSignOnRs>(1).release();
  const KRTagDictionaryEntry server{KRTag_DTSERVER, ""};
  const KRTagDictionaryEntry language{KRTag_LANGUAGE, ""};
  signOn->HandleTagElement(&server, KRString("20260101"));
  signOn->HandleTagElement(&language, KRString("ENG"));
  auto* status = Make<KRStatus>(1).release();
  status->SetCode(0);
  status->SetSeverity(KRStatusSeverity_INFO);
  signOn->SetStatus(status);
  set->SetSignOnRs(signOn);
  const std::string text = TextOf(file);
  KRString name("content-type");
  ASSERT_NE(part->GetMIMEHeader(&name), nullptr) << text;
  EXPECT_EQ(Str(part->GetMIMEHeader(&name)->value), "application/x-ofx");
  EXPECT_EQ(part->GetNumberMIMEHeaders(), 2);
  // Its MIME headers are not written; the text is a blank line, the OFX headers and the body.
  EXPECT_EQ(text.substr(0, 2 + HeaderBlock().size() + 5), "\r\n" + HeaderBlock() + "<OFX>");
}

TEST(KRFileRq, BuildsItsBodyThoughASubfileFailed) {
  // The subfile lacks what a strict build requires.
  for (const bool request : {true, false}) {
    std::unique_ptr<KRFile> file;
    if (request) {
      auto made = std::make_unique<KRFileRq>();
      made->AppendRequest(new KRRequest);
      file = std::move(made);
    } else {
      auto made = std::make_unique<KRFileRs>();
      made->AppendResponse(new KRResponse);
      file = std::move(made);
    }
    auto* part = new KRFileRs;
    part->SetParent(file.get());
    file->AppendSubfile(part);
    const Built built = Build(*file);
    EXPECT_EQ(built.status, request ? KRBuildStatus_Done : KRBuildStatus_MissingTag);
    EXPECT_EQ(built.text.ends_with("</OFX>\n"), request) << built.text;
  }
}

TEST(KRFile, KeepsTheFactoryForNull) {
  KRDataObjFactory own(2);
  KRFile file;
  EXPECT_EQ(file.SetFactory(&own), 0);
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  EXPECT_EQ(file.SetFactory(nullptr), 0);
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  KRDataObj::SetFactory(nullptr);
}

TEST(KRFile, CopiesHeadersBodyAndSubfilesByTheirType) {
  KRFile source;
  source.SetBoundary(KRString("edge"));
  source.SetMIMEBody(KRString("body"));
  KRString name("X-One");
  source.HandleHeader(KRHeaderTag_None, KRString("1"), &name);
  source.SetHeader(KRHeaderTag_DATA, KRString("OFXSGML"));
  MakePart(source, "plain");
  for (KRFile* part : {static_cast<KRFile*>(new KRFileRq), static_cast<KRFile*>(new KRFileRs)}) {
    part->SetParent(&source);
    source.AppendSubfile(part);
  }

  KRFile copy;
  MakePart(copy, "to be replaced");
  copy.SetHeader(KRHeaderTag_SECURITY, KRString("TYPE1"));
  name = KRString("X-Two");
  copy.HandleHeader(KRHeaderTag_None, KRString("2"), &name);
  EXPECT_EQ(copy.DeepCopyFrom(&source), 1);
  EXPECT_EQ(Str(copy.GetBoundary()), "edge");
  EXPECT_EQ(Str(copy.GetMIMEBody()), "body");
  EXPECT_EQ(Str(*copy.GetHeader(KRHeaderTag_DATA)), "OFXSGML");
  EXPECT_EQ(copy.ValidateHeader(KRHeaderTag_SECURITY), 0);
  EXPECT_EQ(copy.GetNumberMIMEHeaders(), 1);
  EXPECT_EQ(Str(copy.GetMIMEHeader(u16{0})->value), "1");
  EXPECT_NE(copy.GetMIMEHeader(u16{0}), source.GetMIMEHeader(u16{0}));
  ASSERT_EQ(copy.GetNumberOfSubfiles(), 3);
  EXPECT_EQ(Str(copy.GetSubfile(0)->GetMIMEBody()), "plain");
  EXPECT_NE(dynamic_cast<KRFileRq*>(copy.GetSubfile(1)), nullptr);
  EXPECT_NE(dynamic_cast<KRFileRs*>(copy.GetSubfile(2)), nullptr);
  for (u16 i = 0; i < 3; ++i) EXPECT_EQ(copy.GetSubfile(i)->GetParent(), &copy);
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(copy.DeepCopyFrom(&copy), 1);
  EXPECT_EQ(copy.GetNumberOfSubfiles(), 3);
}

TEST(KRFileRs, CopiesItsResponses) {
  const Parsed<KRFileRs> file(BankStatementFile(""));
  ASSERT_EQ(file.Status(), KRParseStatus_Accepted);
  KRFileRs copy;
  copy.AppendResponse(new KRResponse);
  copy.AppendResponse(new KRResponse);
  EXPECT_EQ(copy.DeepCopyFrom(file.Get()), 1);
  EXPECT_EQ(copy.GetNumberOfResponse(), 1);
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
  EXPECT_EQ(copy.DeepCopyFrom(&copy), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*file));
  EXPECT_NE(copy.GetResponse(0), file->GetResponse(0));
}

// Counts the calls, and makes no requests.
class CountingFactory : public KRDataObjFactory {
 public:
  KRMIMEHeader* NewMIMEHeader() override { return Count(), KRDataObjFactory::NewMIMEHeader(); }
  KRFile* NewFile(u16 version) override { return Count(), KRDataObjFactory::NewFile(version); }
  KRFileRq* NewFileRq(u16 version) override {
    return Count(), KRDataObjFactory::NewFileRq(version);
  }
  KRFileRs* NewFileRs(u16 version) override {
    return Count(), KRDataObjFactory::NewFileRs(version);
  }
  KRRequest* NewRequest(u16) override { return Count(), nullptr; }
  KRResponse* NewResponse(u16) override { return Count(), nullptr; }

  int m_made = 0;

 private:
  void Count() { ++m_made; }
};

TEST(KRFile, TakesHeadersAndCopiesFromTheFactory) {
  CountingFactory factory;
  const InForce inForce(factory);
  KRFile source;
  KRString name("X-One");
  source.HandleHeader(KRHeaderTag_None, KRString("1"), &name);
  source.HandleHeader(KRHeaderTag_None, KRString("2"), &name);
  EXPECT_EQ(factory.m_made, 1) << "a known name needs no second header";
  source.AppendSubfile(new KRFile);
  source.AppendSubfile(new KRFileRq);
  source.AppendSubfile(new KRFileRs);
  KRFile copy;
  EXPECT_EQ(copy.DeepCopyFrom(&source), 1);
  EXPECT_EQ(factory.m_made, 5);
  // An object that it does not make cannot be copied.
  auto* part = new KRFileRq;
  part->AppendRequest(new KRRequest);
  source.AppendSubfile(part);
  EXPECT_EQ(copy.DeepCopyFrom(&source), 0);
}

TEST(KRFileRq, StopsTheParseWhenTheFactoryMakesNoBody) {
  CountingFactory factory;
  const InForce inForce(factory);
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(Parsed<KRFileRq>(File(SignOnRequestSet())).Status(), KRParseStatus_Fatal);
  EXPECT_TRUE(AlarmIsSet());
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(Parsed<KRFileRs>(File(SignOnResponseSet())).Status(), KRParseStatus_Fatal);
  EXPECT_TRUE(AlarmIsSet());
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(factory.m_made, 2);
}

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST(KRFile, KeepsTheOrderOfItsOperations) {
  ExpectVtableOrder(VtablePlaceOf(&KRFile::BuildHeaders), &KRFile::BuildHeaders,
                    &KRFile::ValidateHeader,
                    static_cast<u16 (KRFile::*)() const>(&KRFile::ValidateHeaders),
                    &KRFile::SetFactory, &KRFileOFX::AddDefaultOFXHeaders);
}
#endif

TEST(KRFile, SharesEverythingInAShallowCopy) {
  const Parsed<KRFileRs> file(BankStatementFile(""));
  {
    const KRFileRs copy(*file);
    EXPECT_EQ(TextOf(copy), TextOf(*file));
    KRFileRs assigned;
    assigned.AppendResponse(new KRResponse);
    assigned = *file;
    EXPECT_EQ(assigned.GetResponse(0), file->GetResponse(0));
  }
  EXPECT_NE(file->GetResponse(0), nullptr);
}

// Walks every allocation of reading, writing and copying a small statement.
TEST(Exhaustion, EndsAParseABuildAndACopyWithoutHarm) {
  const std::string text = BankStatementFile(
      "<STMTTRN><TRNTYPE>CHECK<DTPOSTED>20260104<TRNAMT>-200.00<FITID>00002<CHECKNUM>1000"
      "<NAME>A shop of many things</STMTTRN>");
  TextBuffer buffer(text);
  bool finished = false;
  for (std::size_t nth = 1; !finished; ++nth) {
    auto file = std::make_unique<KRFileRs>();
    KRSimpleParser parser;
    KRParseStatus status;
    {
      const FailingAllocation failing(nth);
      status = parser.Parse(buffer.Get(), file.get(), 1);
      finished = krofx::internal::AllocationFailure::Count() < nth;
    }
    if (status != KRParseStatus_Fatal && status != KRParseStatus_Accepted) {
      // An array that cannot grow a second time raises no alarm: the header block is then short.
      EXPECT_EQ(status, KRParseStatus_Invalid) << nth;
      EXPECT_EQ(Warnings().back().substr(0, 10), "MISSINGTAG") << nth;
    }
    if (status == KRParseStatus_Accepted) {
      EXPECT_EQ(TextOf(*file), TextOf(*Parsed<KRFileRs>(text))) << nth;
    }
    KRSetFireAlarm(KRFireAlarm_None);
  }

  const Parsed<KRFileRs> whole(text);
  ASSERT_EQ(whole.Status(), KRParseStatus_Accepted);
  const std::string written = TextOf(*whole);
  finished = false;
  for (std::size_t nth = 1; !finished; ++nth) {
    KRBuffer target(0, 0);
    KRBuilder builder;
    KRBuildStatus status;
    {
      const FailingAllocation failing(nth);
      status = builder.Build(&target, whole.Get(), KRBuildStringOpt_Strict, 1);
      finished = krofx::internal::AllocationFailure::Count() < nth;
    }
    if (status == KRBuildStatus_Done) {
      EXPECT_EQ(ContentOf(target), written) << nth;
    }
    KRSetFireAlarm(KRFireAlarm_None);
  }

  finished = false;
  for (std::size_t nth = 1; !finished; ++nth) {
    KRFileRs copy;
    u16 copied;
    {
      const FailingAllocation failing(nth);
      copied = copy.DeepCopyFrom(whole.Get());
      finished = krofx::internal::AllocationFailure::Count() < nth;
    }
    if (finished) {
      EXPECT_EQ(copied, 1);
    }
    if (copied != 0 && KRGetFireAlarm() == KRFireAlarm_None) {
      EXPECT_EQ(TextOf(copy), written) << nth;
    }
    KRSetFireAlarm(KRFireAlarm_None);
  }
}

// Counts the headers that arrays ask for, and on request makes none.
class HeaderFactory : public KRDataObjFactory {
 public:
  KRMIMEHeader* NewMIMEHeader() override {
    ++made;
    return refuses ? nullptr : KRDataObjFactory::NewMIMEHeader();
  }

  int made = 0;
  bool refuses = false;
};

TEST(HeaderArray, HoldsNamesAndValuesThatTheFactoryMakes) {
  HeaderFactory factory;
  const InForce inForce(factory);
  KRDynamicArrayMIMEHeader array(1, 1);
  KRMIMEHeader header;
  header.name = "X-Name";
  header.value = "value";
  EXPECT_EQ(array.SetVal(0, header), 1);
  EXPECT_NE(array.Get(0), &header);
  EXPECT_TRUE(array.Get(0)->name == "X-Name");
  EXPECT_TRUE(array.Get(0)->value == "value");
  EXPECT_EQ(array[2].name.IsNull(), 1);
  EXPECT_EQ(array.Entries(), 3);
  EXPECT_EQ(factory.made, 2);
  EXPECT_EQ(array.Set(0, new KRMIMEHeader), 1);
  EXPECT_EQ(array.Set(0, nullptr), 0);
  EXPECT_EQ(array.Get(0)->name.IsNull(), 1);
  array.DeleteAll();
  EXPECT_EQ(array.Entries(), 0);
  factory.refuses = true;
  EXPECT_EQ(array.SetVal(0, header), 0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  KRSetFireAlarm(KRFireAlarm_None);
}

}  // namespace
