// Arrays of owned elements: growth, ownership, sharing, limits, exhausted memory.

#include "krofx/core/array.h"

#include <gtest/gtest.h>

#include <vector>

#include "krofx/core/internal/hooks.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "support/failing_allocation.h"

namespace {

/// An element that counts how many of its kind are alive.
class Counted : public krofx::internal::HeapObject {
 public:
  explicit Counted(int number = 0) : m_number(number) { ++s_alive; }
  Counted(const Counted& source) : m_number(source.m_number) { ++s_alive; }
  Counted& operator=(const Counted& source) = default;
  virtual ~Counted() { --s_alive; }

  int m_number;
  static int s_alive;
};
int Counted::s_alive = 0;

/// What an array makes when it must make an element itself.
class Substitute : public Counted {
 public:
  Substitute() : Counted(-1) {}
  ~Substitute() override { ++s_destroyed; }
  static int s_destroyed;
};
int Substitute::s_destroyed = 0;

class Numbers : public krofx::internal::ElementArray<Counted> {
 public:
  using ElementArray::ElementArray;
  using ElementArray::Reallocate;

 protected:
  Counted* NewElement() const override { return new Substitute; }
};

using Cells = krofx::internal::ElementArray<u16>;

/// A plain struct, of which an array holds one in each slot.
struct Row {
  u32 key;
  const char* text;
};

struct ArrayTest : ::testing::Test {
  void SetUp() override {
    KRSetFireAlarm(KRFireAlarm_None);
    Counted::s_alive = 0;
  }
  void TearDown() override { EXPECT_EQ(Counted::s_alive, 0); }
};

void Fill(Numbers& array, int count) {
  for (int i = 0; i < count; ++i) ASSERT_EQ(array.Append(new Counted(i)), 1);
}

std::vector<int> NumbersIn(const Numbers& array) {
  std::vector<int> numbers;
  for (u16 i = 0; i < array.Entries(); ++i) {
    numbers.push_back(array.Get(i) == nullptr ? -99 : array.Get(i)->m_number);
  }
  return numbers;
}

// ---- Growth ----

TEST_F(ArrayTest, TakesZeroAsOneAndNoMemoryAtFirst) {
  Numbers array(0, 0);
  EXPECT_EQ(array.InitialSize(), 1);
  EXPECT_EQ(array.GrowStep(), 1);
  EXPECT_EQ(array.Allocated(), 0);
  EXPECT_EQ(array.Entries(), 0);
  EXPECT_EQ(array.Get(0), nullptr);
}

TEST_F(ArrayTest, GrowsInStepsToReachAnIndex) {
  Numbers array(5, 5);
  auto* element = new Counted(7);
  EXPECT_EQ(array.Set(7, element), 1);
  EXPECT_EQ(array.Allocated(), 10);
  EXPECT_EQ(array.Entries(), 8);
  EXPECT_EQ(array.Get(3), nullptr);
  EXPECT_EQ(array.Get(7), element);
  EXPECT_EQ(array.Get(8), nullptr);
}

TEST_F(ArrayTest, TakesTheInitialSizeFirstAndTheStepLater) {
  Numbers array(6, 1);
  EXPECT_EQ(array.AllocatedTo(0), 1);
  EXPECT_EQ(array.Allocated(), 6);
  EXPECT_EQ(array.AllocatedTo(6), 1);
  EXPECT_EQ(array.Allocated(), 7);
}

TEST_F(ArrayTest, AnnouncesItsStepsHoweverLongItGets) {
  Numbers array(5, 5);
  for (u16 i = 0; i < 1000; ++i) {
    ASSERT_EQ(array.Append(new Counted(i)), 1);
    ASSERT_EQ(array.Allocated(), i / 5 * 5 + 5);
  }
  EXPECT_EQ(array.Get(999)->m_number, 999);
}

TEST_F(ArrayTest, CountsAnIndexAsUsedWithoutAnElement) {
  Numbers array(2, 2);
  EXPECT_EQ(array.AllocatedTo(4), 1);
  EXPECT_EQ(array.Entries(), 5);
  for (u16 i = 0; i < 5; ++i) EXPECT_EQ(array.Get(i), nullptr);
  EXPECT_EQ(array.AllocatedTo(1), 1);
  EXPECT_EQ(array.Entries(), 5);
}

TEST_F(ArrayTest, GrowsByOneStepAtATime) {
  Numbers array(3, 2);
  EXPECT_EQ(array.Reallocate(), 1);
  EXPECT_EQ(array.Allocated(), 3);
  EXPECT_EQ(array.Reallocate(), 1);
  EXPECT_EQ(array.Allocated(), 5);
  EXPECT_EQ(array.Entries(), 0);
}

TEST_F(ArrayTest, HoldsUpTo65535EntriesAndRefusesTheNext) {
  Numbers array(5, 5);
  EXPECT_EQ(array.AllocatedTo(65533), 1);
  EXPECT_EQ(array.Append(new Counted(1)), 1);
  EXPECT_EQ(array.Entries(), 65535);
  EXPECT_EQ(array.Allocated(), 65535);
  Counted refused(2);
  EXPECT_EQ(array.Append(&refused), 0);
  EXPECT_EQ(array.Set(65535, &refused), 0);
  EXPECT_EQ(array.SetVal(65535, refused), 0);
  EXPECT_EQ(array.AllocatedTo(65535), 0);
  EXPECT_EQ(array.Reallocate(), 0);
  EXPECT_EQ(array.Entries(), 65535);
  EXPECT_EQ(array.Get(65534)->m_number, 1);
  EXPECT_FALSE(AlarmIsSet());
}

TEST_F(ArrayTest, StopsAt65535SlotsWhateverItsStep) {
  Numbers array(65534, 65535);
  EXPECT_EQ(array.AllocatedTo(65534), 1);
  EXPECT_EQ(array.Allocated(), 65535);
}

// ---- Ownership ----

TEST_F(ArrayTest, DestroysWhatItReplaces) {
  Numbers array(1, 1);
  array.Set(0, new Counted(1));
  EXPECT_EQ(array.Set(0, new Counted(2)), 1);
  EXPECT_EQ(Counted::s_alive, 1);
  EXPECT_EQ(array.Get(0)->m_number, 2);
}

TEST_F(ArrayTest, RefusesNull) {
  Numbers array(1, 1);
  array.Set(0, new Counted(1));
  EXPECT_EQ(array.Set(0, nullptr), 0);
  EXPECT_EQ(array.Append(nullptr), 0);
  EXPECT_EQ(array.Entries(), 1);
  EXPECT_EQ(array.Get(0)->m_number, 1);
}

TEST_F(ArrayTest, SurvivesBeingGivenWhatItHolds) {
  Numbers array(1, 1);
  array.Set(0, new Counted(1));
  EXPECT_EQ(array.Set(0, array.Get(0)), 1);
  EXPECT_EQ(array.Get(0)->m_number, 1);
}

TEST_F(ArrayTest, ClosesUpBehindAnElementTakenOut) {
  Numbers array(5, 5);
  Fill(array, 3);
  Counted* taken = array.Get(1);
  EXPECT_EQ(array.UnSet(1), 1);
  EXPECT_EQ(NumbersIn(array), (std::vector<int>{0, 2}));
  EXPECT_EQ(taken->m_number, 1);
  EXPECT_EQ(array.UnSet(2), 0);
  EXPECT_EQ(array.AllocatedTo(2), 1);
  EXPECT_EQ(array.Get(2), nullptr);
  delete taken;
}

TEST_F(ArrayTest, TakesTheLastElementOut) {
  Numbers array(2, 2);
  Fill(array, 2);
  Counted* taken = array.Get(1);
  EXPECT_EQ(array.UnSet(1), 1);
  EXPECT_EQ(array.Entries(), 1);
  EXPECT_EQ(array.UnSet(1), 0);
  delete taken;
}

TEST_F(ArrayTest, ClearGivesItsElementsUp) {
  Counted one(1);
  Counted two(2);
  {
    Numbers array(1, 1);
    array.Append(&one);
    array.Append(&two);
    array.Clear();
    EXPECT_EQ(array.Entries(), 0);
    EXPECT_EQ(array.Allocated(), 2);
    EXPECT_EQ(array.Get(0), nullptr);
  }
  EXPECT_EQ(Counted::s_alive, 2);
  Numbers untouched(1, 1);
  untouched.Clear();
  EXPECT_EQ(untouched.Allocated(), 0);
}

TEST_F(ArrayTest, DeleteAllDestroysAndStartsAnew) {
  Numbers array(5, 2);
  Fill(array, 6);
  array.DeleteAll();
  EXPECT_EQ(Counted::s_alive, 0);
  EXPECT_EQ(array.Allocated(), 0);
  EXPECT_EQ(array.Entries(), 0);
  EXPECT_EQ(array.Set(0, new Counted(9)), 1);
  EXPECT_EQ(array.Allocated(), 5);
  EXPECT_EQ(array.Get(0)->m_number, 9);
  array.DeleteAll();
  array.DeleteAll();
}

TEST_F(ArrayTest, IsDestroyedThroughItsBase) {
  auto* array = new Numbers(1, 1);
  Fill(*array, 3);
  KRDynamicArray* base = array;
  delete base;
  EXPECT_EQ(Counted::s_alive, 0);
}

TEST_F(ArrayTest, DestroysElementsThroughTheirVirtualDestructor) {
  Substitute::s_destroyed = 0;
  {
    Numbers array(1, 1);
    array.Append(new Substitute);
  }
  EXPECT_EQ(Substitute::s_destroyed, 1);
}

// ---- Elements that the array makes ----

TEST_F(ArrayTest, SetValMakesAnElementOfTheHosts) {
  Numbers array(1, 1);
  array.Set(0, new Counted(1));
  EXPECT_EQ(array.SetVal(0, Counted(5)), 1);
  EXPECT_EQ(array.SetVal(2, Counted(6)), 1);
  EXPECT_EQ(NumbersIn(array), (std::vector<int>{5, -99, 6}));
  EXPECT_NE(dynamic_cast<Substitute*>(array.Get(0)), nullptr);
}

TEST_F(ArrayTest, IndexingMakesWhatIsNotThere) {
  Numbers array(2, 2);
  EXPECT_EQ(array[3].m_number, -1);
  EXPECT_EQ(array.Entries(), 4);
  EXPECT_EQ(array.Get(0), nullptr);
  array[3].m_number = 8;
  EXPECT_EQ(array[3].m_number, 8);
  EXPECT_EQ(array.Get(3)->m_number, 8);
}

TEST_F(ArrayTest, HoldsCellsOfIntegers) {
  Cells array(1, 1);
  EXPECT_EQ(array.SetVal(0, 7), 1);
  array[2] = 9;
  EXPECT_EQ(*array.Get(0), 7);
  EXPECT_EQ(array.Get(1), nullptr);
  EXPECT_EQ(*array.Get(2), 9);
  u16* cell = krofx::internal::MakeElement<u16>();
  *cell = 3;
  EXPECT_EQ(array.Set(0, cell), 1);
  EXPECT_EQ(array.Get(0), cell);
}

TEST_F(ArrayTest, HoldsStringsAndPlainStructs) {
  krofx::internal::ElementArray<KRString> strings(1, 1);
  EXPECT_EQ(strings.SetVal(0, KRString("abc")), 1);
  strings[1] = "def";
  EXPECT_TRUE(*strings.Get(0) == "abc");
  EXPECT_TRUE(*strings.Get(1) == "def");
  krofx::internal::ElementArray<Row> rows(1, 1);
  EXPECT_EQ(rows.SetVal(0, Row{1, "one"}), 1);
  EXPECT_EQ(rows[1].key, 0u);
  EXPECT_STREQ(rows.Get(0)->text, "one");
}

TEST_F(ArrayTest, AsksTheObjectModelForElements) {
  static int asked;
  asked = 0;
  const krofx::internal::Hooks before = krofx::internal::hooks;
  krofx::internal::hooks.newUShort = []() -> u16* {
    ++asked;
    return nullptr;
  };
  Cells array(1, 1);
  EXPECT_EQ(array.SetVal(0, 7), 0);
  krofx::internal::hooks = before;
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(array.SetVal(0, 7), 1);
  KRParseException* exception = krofx::internal::MakeElement<KRParseException>();
  ASSERT_NE(exception, nullptr);
  delete exception;
}

TEST_F(ArrayTest, BaseCannotWriteItself) {
  Numbers array(1, 1);
  const KRDynamicArray& base = array;
  EXPECT_EQ(base.Build(nullptr, static_cast<KRTagID>(0)), KRBuildStatus_NoArrayWriter);
  EXPECT_EQ(static_cast<u32>(KRBuildStatus_NoArrayWriter), 6u);
  EXPECT_EQ(base.OkToAlloc(9), 1);
}

// ---- Copies ----

TEST_F(ArrayTest, CopiesShareTheElements) {
  Numbers array(2, 2);
  Fill(array, 2);
  Numbers copy(array);
  EXPECT_EQ(copy.Get(1), array.Get(1));
  EXPECT_EQ(copy.Entries(), 2);
  EXPECT_EQ(copy.InitialSize(), 2);
  copy.Set(0, new Counted(8));
  EXPECT_EQ(array.Get(0)->m_number, 8);
  EXPECT_EQ(Counted::s_alive, 2);
}

TEST_F(ArrayTest, ElementsLiveUntilTheLastCopyGoes) {
  Numbers copy(1, 1);
  {
    Numbers array(2, 2);
    Fill(array, 2);
    copy = array;
    Numbers third(array);
    third.DeleteAll();
  }
  EXPECT_EQ(Counted::s_alive, 2);
  EXPECT_EQ(NumbersIn(copy), (std::vector<int>{0, 1}));
}

TEST_F(ArrayTest, CopiesFollowEachOthersGrowth) {
  Numbers array(1, 1);
  Fill(array, 1);
  {
    Numbers copy(array);
    for (int i = 0; i < 50; ++i) copy.Append(new Counted(i));
    EXPECT_EQ(array.Get(0), copy.Get(0));
    EXPECT_EQ(array.Entries(), 1);
  }
  EXPECT_EQ(array.Get(0)->m_number, 0);
  EXPECT_EQ(Counted::s_alive, 51);
}

TEST_F(ArrayTest, AssignmentLetsGoOfWhatWasHeld) {
  Numbers array(1, 1);
  Fill(array, 2);
  Numbers other(3, 4);
  Fill(other, 3);
  other = array;
  EXPECT_EQ(Counted::s_alive, 2);
  EXPECT_EQ(other.GrowStep(), 1);
  const Numbers& self = other;
  other = self;
  EXPECT_EQ(NumbersIn(other), (std::vector<int>{0, 1}));
}

TEST_F(ArrayTest, CopiesOfAnEmptyArrayShareNothing) {
  Numbers array(1, 1);
  Numbers copy(array);
  Fill(array, 1);
  EXPECT_EQ(copy.Entries(), 0);
  Fill(copy, 2);
  EXPECT_EQ(array.Entries(), 1);
}

// ---- Exhausted memory ----

TEST_F(ArrayTest, RaisesTheAlarmOnlyWhenItsFirstMemoryFails) {
  Numbers array(2, 2);
  Counted refused(1);
  {
    FailingAllocation failing(1);
    EXPECT_EQ(array.Set(0, &refused), 0);
    EXPECT_TRUE(AlarmIsSet());
  }
  EXPECT_EQ(array.Allocated(), 0);
  Fill(array, 2);
  {
    FailingAllocation failing(1);
    EXPECT_EQ(array.Set(2, &refused), 0);
    EXPECT_FALSE(AlarmIsSet());
  }
  EXPECT_EQ(array.Allocated(), 2);
  EXPECT_EQ(NumbersIn(array), (std::vector<int>{0, 1}));
  Fill(array, 1);
  EXPECT_EQ(array.Entries(), 3);
}

TEST_F(ArrayTest, KeepsItsElementWhenANewOneCannotBeMade) {
  Numbers array(2, 2);
  array.Set(0, new Counted(1));
  const Counted value(5);
  {
    FailingAllocation failing(1, true);
    EXPECT_EQ(array.SetVal(0, value), 0);
    EXPECT_TRUE(AlarmIsSet());
    EXPECT_EQ(array.SetVal(1, value), 0);
  }
  EXPECT_EQ(NumbersIn(array), (std::vector<int>{1}));
}

TEST_F(ArrayTest, StaysAsItIsForAnIndexThatCannotBeAndWhenItIsAssignedToItself) {
  Numbers array(2, 2);
  array.Set(0, new Counted(1));
  EXPECT_EQ(array.SetVal(65535, Counted(5)), 0);
  const Numbers& same = array;
  array = same;
  EXPECT_EQ(NumbersIn(array), (std::vector<int>{1}));
}

TEST_F(ArrayTest, GivesAFreshSpareWhenIndexingFails) {
  Cells array(1, 1);
  Cells other(1, 1);
  array[0] = 3;
  FailingAllocation failing(1, true);
  u16& spare = array[1];
  EXPECT_TRUE(AlarmIsSet());
  spare = 5;
  EXPECT_EQ(array.Entries(), 1);
  EXPECT_EQ(*array.Get(0), 3);
  EXPECT_EQ(other[7], 0);
  EXPECT_EQ(&other[7], &spare);
}

TEST_F(ArrayTest, OfCellsStaysAsItIsWhateverFails) {
  Cells array(1, 1);
  array[0] = 3;
  array[0] = 4;
  const Cells& same = array;
  array = same;
  for (const std::size_t nth : {1U, 2U}) {  // room, and the cell
    const FailingAllocation failing(nth);
    EXPECT_EQ(array.SetVal(3, 5), 0) << nth;
  }
  EXPECT_EQ(array.SetVal(65535, 5), 0);
  {
    const FailingAllocation failing(1);
    array[1] = 7;  // There is room by now.
    EXPECT_TRUE(AlarmIsSet());
  }
  EXPECT_EQ(array.Set(1, nullptr), 0);
  EXPECT_EQ(array.Entries(), 1);
  EXPECT_EQ(*array.Get(0), 4);
}

TEST_F(ArrayTest, GivesASpareForAnIndexThatCannotBe) {
  krofx::internal::ElementArray<KRString> array(1, 1);
  array[65535] = "lost";
  EXPECT_TRUE(AlarmIsSet());
  EXPECT_EQ(array.Entries(), 0);
  EXPECT_EQ(array.Allocated(), 0);
  EXPECT_TRUE(array[65535] == "");
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST_F(ArrayTest, SilentArraysRaiseNoAlarmByGrowing) {
  class Silent : public krofx::internal::ElementArray<Row> {
   public:
    Silent() : ElementArray(1, 1, krofx::internal::GrowthAlarm::kSilent) {}
  };
  Silent array;
  FailingAllocation failing(1);
  EXPECT_EQ(array.AllocatedTo(0), 0);
  EXPECT_FALSE(AlarmIsSet());
}

}  // namespace
