// The arrays of values that write themselves: what they store, and the text they become.

#include "krofx/model/value_arrays.h"

#include <gtest/gtest.h>

#include <string>

#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/model/factory.h"
#include "krofx/model/value_kinds.h"
#include "support/build_objects.h"

using krofx::internal::AllocationFailure;
using krofx::internal::StoreResult;
using krofx::testing::Outcome;
using krofx::testing::Write;
using krofx::testing::WritingObject;

namespace {

constexpr auto kLenient = KRBuildStringOpt_Lenient;

template <class Array>
Outcome Build(const Array& array, KRTagID tag, KRBuildStringOpt option = KRBuildStringOpt_Strict) {
  return Write([&](KRBuilder& b) { return array.Build(&b, tag); }, option);
}

// Counts what arrays ask for, and on request makes nothing.
class CountingFactory : public KRDataObjFactory {
 public:
  KRDataObj* NewDataObj(u16 version) override {
    ++made;
    return refuses ? nullptr : KRDataObjFactory::NewDataObj(version);
  }
  KRString* NewString(u16 version) override {
    ++made;
    return refuses ? nullptr : KRDataObjFactory::NewString(version);
  }
  u16* NewUShort() override {
    ++made;
    return refuses ? nullptr : KRDataObjFactory::NewUShort();
  }
  KRLanguage* NewLanguage() override {
    ++made;
    return refuses ? nullptr : KRDataObjFactory::NewLanguage();
  }
  KRParseException* NewParseException() override {
    ++made;
    return refuses ? nullptr : KRDataObjFactory::NewParseException();
  }

  int made = 0;
  bool refuses = false;
};

// Installs a factory for one test.
class WithFactory : public ::testing::Test {
 protected:
  WithFactory() {
    KRDataObj::SetFactory(&m_factory);
    KRSetFireAlarm(KRFireAlarm_None);
  }
  ~WithFactory() override { KRDataObj::SetFactory(nullptr); }

  CountingFactory m_factory;
};

using DataObjArray = WithFactory;
using StringArray = WithFactory;
using NumberArray = WithFactory;
using LanguageArray = WithFactory;
using WarningArray = WithFactory;

// An aggregate that writes only its tags, and records its destruction.
class Mortal : public KRDataObj {
 public:
  explicit Mortal(KRTagID tag, int* deaths = nullptr) : KRDataObj(1), m_deaths(deaths) {
    SetType(tag);
  }
  ~Mortal() override {
    if (m_deaths != nullptr) ++*m_deaths;
  }

 private:
  int* m_deaths;
};

// An array that hides its first element.
class HidingArray : public KRDynamicArrayDataObj {
 public:
  using KRDynamicArrayDataObj::KRDynamicArrayDataObj;
  KRDataObj* Get(u16 index) const override {
    return index == 0 ? nullptr : KRDynamicArrayDataObj::Get(index);
  }
};

void Fill(KRDynamicArrayDataObj& array) {
  array.Append(new Mortal(KRTag_STMTTRN));
  array.Append(new Mortal(KRTag_BANKTRANLIST));
  array.Append(new Mortal(KRTag_STMTTRN));
}

constexpr char kStmtTrn[] = "<STMTTRN>\n</STMTTRN>\n";
constexpr char kList[] = "<BANKTRANLIST>\n</BANKTRANLIST>\n";

TEST_F(DataObjArray, OffersOnlyIndexesInUse) {
  KRDynamicArrayDataObj array(5, 5);
  EXPECT_EQ(array.OkToAlloc(0), 0);
  array.AllocatedTo(1);
  EXPECT_EQ(array.OkToAlloc(1), 1);
  EXPECT_EQ(array.OkToAlloc(2), 0);
}

TEST_F(DataObjArray, WritesAllElementsWithoutATag) {
  KRDynamicArrayDataObj array(5, 5);
  Fill(array);
  EXPECT_EQ(Build(array, KRTag_None),
            (Outcome{KRBuildStatus_Done, std::string(kStmtTrn) + kList + kStmtTrn}));
}

TEST_F(DataObjArray, WritesOnlyTheElementsOfATag) {
  KRDynamicArrayDataObj array(5, 5);
  Fill(array);
  EXPECT_EQ(Build(array, KRTag_STMTTRN).text, std::string(kStmtTrn) + kStmtTrn);
  EXPECT_EQ(Build(array, KRTag_BANKTRANLIST).text, kList);
  EXPECT_EQ(Build(array, KRTag_CODE), (Outcome{KRBuildStatus_Done, ""}));
}

TEST_F(DataObjArray, PassesOverEmptySlots) {
  KRDynamicArrayDataObj array(1, 1);
  array.Set(2, new Mortal(KRTag_STMTTRN));
  EXPECT_EQ(Build(array, KRTag_None).text, kStmtTrn);
  EXPECT_EQ(Build(KRDynamicArrayDataObj(1, 1), KRTag_None), (Outcome{KRBuildStatus_Done, ""}));
}

TEST_F(DataObjArray, StopsAtTheFirstElementThatFails) {
  KRDynamicArrayDataObj array(5, 5);
  array.Append(new Mortal(KRTag_STMTTRN));
  array.Append(
      new WritingObject([](KRBuilder&) { return KRBuildStatus_TreeNotAllowed; }, KRTag_STATUS));
  array.Append(new Mortal(KRTag_STMTTRN));
  EXPECT_EQ(Build(array, KRTag_None),
            (Outcome{KRBuildStatus_TreeNotAllowed, std::string(kStmtTrn) + "<STATUS>\n"}));
}

TEST_F(DataObjArray, IsWalkedThroughGet) {
  HidingArray array(5, 5);
  Fill(array);
  EXPECT_EQ(Build(array, KRTag_None).text, std::string(kList) + kStmtTrn);
}

TEST_F(DataObjArray, NeedsABuilder) {
  KRDynamicArrayDataObj array(5, 5);
  Fill(array);
  EXPECT_EQ(array.Build(nullptr, KRTag_None), KRBuildStatus_NullArgument);
}

TEST_F(DataObjArray, DeletesItsElementsUnlessTheyWereGivenUp) {
  int deaths = 0;
  {
    KRDynamicArrayDataObj array(5, 5);
    array.Append(new Mortal(KRTag_STATUS, &deaths));
    array.Set(0, new Mortal(KRTag_STATUS, &deaths));
    EXPECT_EQ(deaths, 1);
    array.DeleteAll();
    EXPECT_EQ(deaths, 2);
    array.Append(new Mortal(KRTag_STATUS, &deaths));
  }
  EXPECT_EQ(deaths, 3);

  Mortal kept(KRTag_STATUS, &deaths);
  {
    KRDynamicArrayDataObj array(5, 5);
    array.Append(&kept);
    array.Clear();
    EXPECT_EQ(array.Entries(), 0);
  }
  EXPECT_EQ(deaths, 3);
}

TEST_F(DataObjArray, MakesElementsThroughTheFactory) {
  KRDynamicArrayDataObj array(5, 5);
  KRDataObj value(2);
  value.SetType(KRTag_STATUS);
  EXPECT_EQ(array.SetVal(1, value), 1);
  EXPECT_EQ(m_factory.made, 1);
  EXPECT_EQ(array.Get(1)->GetType(), KRTag_STATUS);
  EXPECT_EQ(array.Get(1)->GetMsgSetVersion(), 2);
  EXPECT_EQ(&array[1], array.Get(1));
  EXPECT_EQ(m_factory.made, 1);
  EXPECT_EQ(array[0].GetMsgSetVersion(), 1);
  EXPECT_EQ(m_factory.made, 2);
}

TEST_F(DataObjArray, RaisesTheAlarmWhenTheFactoryGivesNothing) {
  KRDynamicArrayDataObj array(5, 5);
  m_factory.refuses = true;
  EXPECT_EQ(array.SetVal(0, KRDataObj(1)), 0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

TEST_F(StringArray, WritesEachTextAsAnElement) {
  KRDynamicArrayString array(1, 1);
  array.SetVal(0, KRString("A & B"));
  array.SetVal(2, KRString("C"));
  EXPECT_EQ(Build(array, KRTag_NAME), (Outcome{KRBuildStatus_Done, "<NAME>A &amp; B\n<NAME>C\n"}));
}

TEST_F(StringArray, StopsAtAnEmptyText) {
  KRDynamicArrayString array(1, 1);
  array.SetVal(0, KRString("A"));
  array.SetVal(1, KRString(" "));
  array.SetVal(2, KRString("C"));
  EXPECT_EQ(Build(array, KRTag_NAME), (Outcome{KRBuildStatus_EmptyText, "<NAME>A\n"}));
}

TEST_F(StringArray, MakesItsTextsThroughTheFactory) {
  KRDynamicArrayString array(1, 1);
  EXPECT_EQ(array.SetVal(0, KRString("A")), 1);
  EXPECT_EQ(m_factory.made, 1);
  m_factory.refuses = true;
  EXPECT_EQ(array.SetVal(1, KRString("A")), 0);
}

TEST_F(StringArray, WithoutALimitTakesTheLimitOffItsTexts) {
  KRDynamicArrayStringLen array(1, 1);
  KRString limited("abc");
  limited.SetSpecLength(2);
  array.SetVal(0, limited);
  EXPECT_EQ(array.Get(0)->SpecLength(), KRString::kNoSpecLength);
}

TEST_F(StringArray, GivesEachTextItsOwnLimit) {
  KRDynamicArrayString32 array(1, 1);
  KRString text("1234567890123456789012345678901234567890");
  text.SetSpecLength(100);
  EXPECT_EQ(array.SetVal(0, text), 1);
  EXPECT_EQ(array.Append(new KRString(text)), 1);
  EXPECT_EQ(array.SetCopyVal(&m_factory, 2, text), 1);
  EXPECT_EQ(array.SetCopy(&m_factory, 3, &text), 1);
  ASSERT_EQ(array.Entries(), 4);
  for (u16 index = 0; index < 4; ++index) {
    EXPECT_EQ(array.Get(index)->SpecLength(), 32);
    EXPECT_TRUE(*array.Get(index) == text);
  }
  EXPECT_EQ(Build(array, KRTag_NAME), (Outcome{KRBuildStatus_TooLong, "<NAME>"}));
  EXPECT_EQ(Build(array, KRTag_NAME, kLenient).text.substr(0, 39),
            "<NAME>12345678901234567890123456789012\n");
}

template <class Array>
u16 LimitOf() {
  Array array(1, 1);
  array.SetVal(0, KRString("x"));
  return array.Get(0)->SpecLength();
}

TEST_F(StringArray, HasTheLimitOfItsName) {
  EXPECT_EQ(LimitOf<KRDynamicArrayString1>(), 1);
  EXPECT_EQ(LimitOf<KRDynamicArrayString3>(), 3);
  EXPECT_EQ(LimitOf<KRDynamicArrayString9>(), 9);
  EXPECT_EQ(LimitOf<KRDynamicArrayString16>(), 16);
  EXPECT_EQ(LimitOf<KRDynamicArrayString32>(), 32);
  EXPECT_EQ(LimitOf<KRDynamicArrayString64>(), 64);
  EXPECT_EQ(LimitOf<KRDynamicArrayString255>(), 255);
  EXPECT_EQ(LimitOf<KRDynamicArrayString1000>(), 1000);
  EXPECT_EQ(LimitOf<KRDynamicArrayString1024>(), 1024);
}

TEST_F(StringArray, RefusesNullTextsAndFactories) {
  KRDynamicArrayString32 array(1, 1);
  const KRString text("x");
  EXPECT_EQ(array.SetCopy(nullptr, 0, &text), 0);
  EXPECT_EQ(array.SetCopy(&m_factory, 0, nullptr), 0);
  m_factory.refuses = true;
  EXPECT_EQ(array.SetCopy(&m_factory, 0, &text), 0);
  EXPECT_EQ(array.Entries(), 0);
}

TEST_F(StringArray, WithALimitCountsTheIndexOfANullText) {
  KRDynamicArrayString32 array(1, 1);
  EXPECT_EQ(array.Set(2, nullptr), 0);
  EXPECT_EQ(array.Entries(), 3);
  EXPECT_EQ(Build(array, KRTag_NAME), (Outcome{KRBuildStatus_Done, ""}));
}

TEST_F(StringArray, LosesNothingWhenACopyCannotBeStored) {
  const KRString text("x");
  for (std::size_t nth = 1;; ++nth) {
    KRDynamicArrayString32 array(1, 1);
    AllocationFailure::FailAt(nth);
    const u16 result = array.SetCopy(&m_factory, 0, &text);
    const bool reached = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    if (!reached) {
      EXPECT_EQ(result, 1);
      break;
    }
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
    KRSetFireAlarm(KRFireAlarm_None);
  }
}

TEST_F(NumberArray, WritesEachNumberAsAnElement) {
  KRDynamicArrayUShort array(2, 2);
  array.SetVal(0, 7);
  array.SetVal(3, 65535);
  EXPECT_EQ(Build(array, KRTag_CODE), (Outcome{KRBuildStatus_Done, "<CODE>7\n<CODE>65535\n"}));
  EXPECT_EQ(Build(array, KRTag_None), (Outcome{KRBuildStatus_NullArgument, ""}));
}

TEST_F(NumberArray, MakesItsCellsThroughTheFactory) {
  KRDynamicArrayUShort array(2, 2);
  array[1] = 5;
  EXPECT_EQ(m_factory.made, 1);
  EXPECT_EQ(*array.Get(1), 5);
  EXPECT_EQ(array.Get(0), nullptr);
  m_factory.refuses = true;
  EXPECT_EQ(array.SetVal(0, 1), 0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

// What becomes of a text that is read into a row of such an array.
template <class Array>
StoreResult Read(Array& array, const char* text) {
  KRDataObj object;
  return krofx::internal::kRepeated<Array>.fromText(object, KRTag_CODE, &array, KRString(text));
}

TEST_F(NumberArray, TakesOneMoreOfEachTextThatIsANumberOrAKeyword) {
  KRDynamicArrayUShort numbers(1, 1);
  EXPECT_EQ(Read(numbers, "65535"), StoreResult::kStored);
  EXPECT_EQ(Read(numbers, "0"), StoreResult::kStored);
  EXPECT_EQ(Read(numbers, "65536"), StoreResult::kBadFormat);
  EXPECT_EQ(Build(numbers, KRTag_CODE).text, "<CODE>65535\n<CODE>0\n");
  KRDynamicArrayDayOfWeek days(1, 1);
  EXPECT_EQ(Read(days, "TUESDAY"), StoreResult::kStored);
  EXPECT_EQ(Read(days, "YESTERDAY"), StoreResult::kBadFormat);
  EXPECT_EQ(Build(days, KRTag_CODE).text, "<CODE>TUESDAY\n");
  m_factory.refuses = true;
  EXPECT_EQ(Read(numbers, "1"), StoreResult::kCannotStore);
  EXPECT_EQ(Read(days, "MONDAY"), StoreResult::kCannotStore);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(Build(numbers, KRTag_CODE).text, "<CODE>65535\n<CODE>0\n");
}

// An array of two values of an enumeration and one that has no keyword.
template <class Array>
Outcome BuildTwoAndOneBeyond(u16 first, u16 second, u16 beyond) {
  Array array(1, 1);
  array.SetVal(0, first);
  array.SetVal(2, second);
  array.SetVal(3, beyond);
  return Build(array, KRTag_CODE);
}

TEST_F(NumberArray, OfAccountTypesWritesKeywordsUpToTheFirstWithout) {
  EXPECT_EQ(BuildTwoAndOneBeyond<KRDynamicArrayBankAccountType>(0, 5, 6),
            (Outcome{KRBuildStatus_NoTextForm, "<CODE>UNKNOWN\n<CODE>CREDITLINE\n<CODE>"}));
  EXPECT_EQ(BuildTwoAndOneBeyond<KRDynamicArrayBankAccountType2>(0, 4, 5),
            (Outcome{KRBuildStatus_NoTextForm, "<CODE>CHECKING\n<CODE>CMA\n<CODE>"}));
}

TEST_F(NumberArray, OfDaysWritesKeywordsUpToTheFirstWithout) {
  EXPECT_EQ(BuildTwoAndOneBeyond<KRDynamicArrayDayOfWeek>(0, 6, 7),
            (Outcome{KRBuildStatus_NoTextForm, "<CODE>MONDAY\n<CODE>SUNDAY\n<CODE>"}));
}

TEST_F(NumberArray, OfServicesWritesKeywordsAndNoTagWithout) {
  EXPECT_EQ(BuildTwoAndOneBeyond<KRDynamicArrayNorvService>(0, 3, 4),
            (Outcome{KRBuildStatus_NoTextForm, "<CODE>BANKSVC\n<CODE>INVSTMTDLSVC\n"}));
  EXPECT_EQ(BuildTwoAndOneBeyond<KRDynamicArrayNorvService2>(1, 4, 5),
            (Outcome{KRBuildStatus_NoTextForm, "<CODE>CCSVC\n<CODE>PRESSVC\n"}));
}

TEST_F(NumberArray, GoesNoFurtherThanAnUnknownTag) {
  KRDynamicArrayBankAccountType array(1, 1);
  array.SetVal(0, KRBankAccountType_CHECKING);
  EXPECT_EQ(Build(array, KRTag_None), (Outcome{KRBuildStatus_NullArgument, ""}));
}

TEST_F(LanguageArray, WritesEachLanguageAsAnElement) {
  KRDynamicArrayLanguage array(1, 1);
  array.SetVal(0, KRLanguage(KRString("ENG")));
  array.Set(2, new KRLanguage(KRString("FRA")));
  EXPECT_EQ(Build(array, KRTag_LANGUAGE),
            (Outcome{KRBuildStatus_Done, "<LANGUAGE>ENG\n<LANGUAGE>FRA\n"}));
}

TEST_F(LanguageArray, MakesItsLanguagesThroughTheFactory) {
  KRDynamicArrayLanguage array(1, 1);
  EXPECT_EQ(array.SetVal(0, KRLanguage(KRString("ENG"))), 1);
  EXPECT_EQ(m_factory.made, 1);
  m_factory.refuses = true;
  EXPECT_EQ(array.SetVal(1, KRLanguage()), 0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

TEST_F(WarningArray, HoldsRecordsThatTheFactoryMakes) {
  KRDynamicArrayParseException array(1, 1);
  KRParseException record;
  record.m_warning = KRPW_EXTRAAGG;
  EXPECT_EQ(array.SetVal(1, record), 1);
  EXPECT_EQ(array.Get(0), nullptr);
  EXPECT_EQ(array.Get(1)->m_warning, KRPW_EXTRAAGG);
  EXPECT_EQ(array[0].m_warning, KRPW_UNKNOWNEXCEPTION);
  EXPECT_EQ(m_factory.made, 2);
}

TEST(UntypedArray, CannotBeWritten) {
  const KRDynamicArray array(1, 1);
  EXPECT_EQ(Build(array, KRTag_CODE), (Outcome{KRBuildStatus_NoArrayWriter, ""}));
}

}  // namespace
