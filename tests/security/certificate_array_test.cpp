// The array of certificates, by the rules of all arrays that own their elements.

#include "krofx/security/certificate_array.h"

#include <gtest/gtest.h>

#include "support/failing_allocation.h"

namespace {

// Records its destruction.
class Witness : public KRCert {
 public:
  explicit Witness(int& destroyed) : m_destroyed(destroyed) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() override { ++m_destroyed; }

 private:
  int& m_destroyed;
};

// Makes the step of growth public.
class GrowingArray : public KRDynamicArrayCert {
 public:
  using KRDynamicArrayCert::KRDynamicArrayCert;
  using KRDynamicArrayCert::Reallocate;
};

TEST(KRDynamicArrayCert, BeginsWithoutSlots) {
  KRDynamicArrayCert array(2, 3);
  EXPECT_EQ(array.Entries(), 0);
  EXPECT_EQ(array.Allocated(), 0);
  EXPECT_EQ(array.Get(0), nullptr);
  EXPECT_EQ(array.UnSet(0), 0);
  array.Clear();
  EXPECT_EQ(array.Entries(), 0);
}

TEST(KRDynamicArrayCert, GrowsByTheInitialSizeFirstAndByTheStepLater) {
  KRDynamicArrayCert array(2, 3);
  array.Set(0, new KRCert);
  EXPECT_EQ(array.Allocated(), 2);
  array.Set(2, new KRCert);
  EXPECT_EQ(array.Allocated(), 5);
  array.Set(9, new KRCert);
  EXPECT_EQ(array.Allocated(), 11);
}

TEST(KRDynamicArrayCert, TakesZeroAsOne) {
  KRDynamicArrayCert array(0, 0);
  array.Set(0, new KRCert);
  EXPECT_EQ(array.Allocated(), 1);
  array.Set(1, new KRCert);
  EXPECT_EQ(array.Allocated(), 2);
}

TEST(KRDynamicArrayCert, RefusesNull) {
  KRDynamicArrayCert array(1, 1);
  EXPECT_EQ(array.Set(5, nullptr), 0);
  EXPECT_EQ(array.Entries(), 0);
  EXPECT_EQ(array.Allocated(), 0);
}

TEST(KRDynamicArrayCert, LeavesNullSlotsBelowAFarIndex) {
  KRDynamicArrayCert array(1, 1);
  auto* const first = new KRCert;
  auto* const far = new KRCert;
  EXPECT_EQ(array.Set(0, first), 1);
  EXPECT_EQ(array.Set(100, far), 1);
  EXPECT_EQ(array.Entries(), 101);
  EXPECT_EQ(array.Get(0), first);
  for (u16 index = 1; index < 100; ++index) EXPECT_EQ(array.Get(index), nullptr);
  EXPECT_EQ(array.Get(100), far);
  EXPECT_EQ(array.Get(101), nullptr);
}

TEST(KRDynamicArrayCert, KeepsItsEntriesWhenALowerIndexIsSet) {
  KRDynamicArrayCert array(10, 1);
  array.Set(4, new KRCert);
  array.Set(1, new KRCert);
  EXPECT_EQ(array.Entries(), 5);
}

TEST(KRDynamicArrayCert, DestroysWhatASlotHeld) {
  int destroyed = 0;
  KRDynamicArrayCert array(1, 1);
  array.Set(0, new Witness(destroyed));
  auto* const second = new Witness(destroyed);
  EXPECT_EQ(array.Set(0, second), 1);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(array.Get(0), second);
  EXPECT_EQ(array.Set(0, second), 1);
  EXPECT_EQ(destroyed, 1);
}

TEST(KRDynamicArrayCert, GivesUpAnElementAndKeepsItsPlace) {
  int destroyed = 0;
  auto* const kept = new Witness(destroyed);
  {
    KRDynamicArrayCert array(4, 1);
    array.Set(0, kept);
    array.Set(1, new Witness(destroyed));
    EXPECT_EQ(array.UnSet(0), 1);
    EXPECT_EQ(array.Get(0), nullptr);
    EXPECT_EQ(array.Entries(), 2);
    EXPECT_EQ(array.UnSet(3), 1) << "a slot after the entries";
    EXPECT_EQ(array.UnSet(4), 0) << "no slot";
    EXPECT_EQ(destroyed, 0);
  }
  EXPECT_EQ(destroyed, 1);
  delete kept;
}

TEST(KRDynamicArrayCert, ClearsWithoutDestroying) {
  int destroyed = 0;
  auto* const kept = new Witness(destroyed);
  {
    KRDynamicArrayCert array(4, 1);
    array.Set(2, kept);
    array.Clear();
    EXPECT_EQ(array.Entries(), 0);
    EXPECT_EQ(array.Allocated(), 4);
    EXPECT_EQ(array.Get(2), nullptr);
    array.Set(0, new Witness(destroyed));
    EXPECT_EQ(array.Entries(), 1);
  }
  EXPECT_EQ(destroyed, 1);
  delete kept;
}

TEST(KRDynamicArrayCert, DestroysItsElementsAtItsEnd) {
  int destroyed = 0;
  {
    KRDynamicArrayCert array(1, 1);
    array.Set(0, new Witness(destroyed));
    array.Set(7, new Witness(destroyed));
  }
  EXPECT_EQ(destroyed, 2);
}

TEST(KRDynamicArrayCert, GrowsOneStepForItsSubclasses) {
  GrowingArray array(2, 5);
  array.Reallocate();
  EXPECT_EQ(array.Allocated(), 2);
  array.Reallocate();
  EXPECT_EQ(array.Allocated(), 7);
  EXPECT_EQ(array.Entries(), 0);
  EXPECT_EQ(array.Get(6), nullptr);
}

TEST(KRDynamicArrayCert, LeavesTheElementToTheCallerWhenMemoryRunsOut) {
  int destroyed = 0;
  auto* const refused = new Witness(destroyed);
  {
    KRDynamicArrayCert array(1, 1);
    const FailingAllocation failing(1, true);
    EXPECT_EQ(array.Set(0, refused), 0);
    EXPECT_EQ(array.Entries(), 0);
    EXPECT_TRUE(AlarmIsSet());
  }
  EXPECT_EQ(destroyed, 0);
  delete refused;
}

TEST(KRDynamicArrayCert, RefusesTheIndexWhoseEntryCannotBeCounted) {
  int destroyed = 0;
  auto* const refused = new Witness(destroyed);
  KRDynamicArrayCert array(1000, 60000);
  EXPECT_EQ(array.Set(65535, refused), 0);
  EXPECT_EQ(array.Set(65534, refused), 1);
  EXPECT_EQ(array.Entries(), 65535);
}

}  // namespace
