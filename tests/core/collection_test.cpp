// The collection: order, removal, ownership, copies.

#include "krofx/core/collection.h"

#include <gtest/gtest.h>

#include "support/failing_allocation.h"

namespace {

/// An item with a number, equal to items of the same number.
class Numbered : public KRCollectionItem {
 public:
  explicit Numbered(int number) : m_number(number) { ++s_alive; }
  ~Numbered() override { --s_alive; }
  Numbered& operator=(const KRCollectionItem& source) override {
    KRCollectionItem::operator=(source);
    m_number = static_cast<const Numbered&>(source).m_number;
    return *this;
  }
  u16 operator==(const KRCollectionItem& other) const override {
    return m_number == static_cast<const Numbered&>(other).m_number ? 1 : 0;
  }
  KRCollectionItem* Factory() const override { return new Numbered(0); }

  int m_number;
  static int s_alive;
};
int Numbered::s_alive = 0;

int NumberAt(const KRCollection& collection, u16 index) {
  KRCollectionItem* item = collection[index];
  return item == nullptr ? -1 : static_cast<Numbered*>(item)->m_number;
}

void Add(KRCollection& collection, int count) {
  for (int i = 0; i < count; ++i) collection += Numbered(i);
}

TEST(KRCollectionItem, IsEqualToItselfAlone) {
  KRCollectionItem one;
  KRCollectionItem other;
  EXPECT_EQ(one == one, 1);
  EXPECT_EQ(one == other, 0);
}

TEST(KRCollectionItem, CopiesItsLinks) {
  KRCollectionItem before;
  KRCollectionItem next;
  KRCollectionItem item;
  item.Next(&next);
  item.Previous(&before);
  KRCollectionItem copy;
  copy = item;
  EXPECT_EQ(copy.Next(), &next);
  EXPECT_EQ(copy.Previous(), &before);
  KRCollectionItem* made = item.Factory();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->Next(), nullptr);
  delete made;
}

TEST(KRCollection, PutsTheNewestFirst) {
  {
    KRCollection collection;
    EXPECT_EQ(collection.NumberofItems(), 0);
    Add(collection, 3);
    EXPECT_EQ(collection.NumberofItems(), 3);
    EXPECT_EQ(NumberAt(collection, 0), 2);
    EXPECT_EQ(NumberAt(collection, 1), 1);
    EXPECT_EQ(NumberAt(collection, 2), 0);
    EXPECT_EQ(collection[0]->Previous(), nullptr);
    EXPECT_EQ(collection[1]->Previous(), nullptr);
    EXPECT_EQ(collection[0]->Next(), collection[1]);
    EXPECT_EQ(Numbered::s_alive, 3);
  }
  EXPECT_EQ(Numbered::s_alive, 0);
}

TEST(KRCollection, LinksItsOwnCopyOnly) {
  KRCollectionItem elsewhere;
  Numbered item(1);
  item.Previous(&elsewhere);
  item.Next(&elsewhere);
  KRCollection collection;
  collection += item;
  EXPECT_EQ(collection[0]->Previous(), nullptr);
  EXPECT_EQ(collection[0]->Next(), nullptr);
  EXPECT_EQ(item.Next(), &elsewhere);
}

TEST(KRCollection, HasNothingBeyondItsEnd) {
  KRCollection collection;
  EXPECT_EQ(collection[0], nullptr);
  Add(collection, 2);
  EXPECT_EQ(collection[2], nullptr);
  EXPECT_EQ(collection[65535], nullptr);
}

TEST(KRCollection, RemovesItsHead) {
  KRCollection collection;
  Add(collection, 3);
  collection -= Numbered(2);
  EXPECT_EQ(collection.NumberofItems(), 2);
  EXPECT_EQ(NumberAt(collection, 0), 1);
  EXPECT_EQ(Numbered::s_alive, 2);
  collection -= *collection[0];
  EXPECT_EQ(collection.NumberofItems(), 1);
}

TEST(KRCollection, LeavesALaterItemWithoutAPreviousLink) {
  KRCollection collection;
  Add(collection, 3);
  collection -= Numbered(1);
  EXPECT_EQ(collection.NumberofItems(), 3);
  EXPECT_EQ(NumberAt(collection, 1), 1);
}

TEST(KRCollection, RemovesALaterItemWhoseLinkWasSet) {
  KRCollection collection;
  Add(collection, 3);
  collection[1]->Previous(collection[0]);
  collection[2]->Previous(collection[1]);
  collection -= Numbered(1);
  EXPECT_EQ(collection.NumberofItems(), 2);
  EXPECT_EQ(NumberAt(collection, 1), 0);
  EXPECT_EQ(collection[1]->Previous(), collection[0]);
  collection -= Numbered(2);
  EXPECT_EQ(collection[0]->Previous(), nullptr);
}

TEST(KRCollection, RemovesItsLastItemAndOneWithoutALinkBack) {
  KRCollection collection;
  Add(collection, 4);
  collection[1]->Previous(collection[0]);
  collection -= Numbered(2);
  EXPECT_EQ(collection.NumberofItems(), 3);
  EXPECT_EQ(NumberAt(collection, 1), 1);
  EXPECT_EQ(collection[1]->Previous(), nullptr);
  collection[2]->Previous(collection[1]);
  collection -= Numbered(0);
  EXPECT_EQ(collection.NumberofItems(), 2);
  EXPECT_EQ(NumberAt(collection, 1), 1);
  EXPECT_EQ(collection[1]->Next(), nullptr);
  EXPECT_EQ(Numbered::s_alive, 2);
}

TEST(KRCollection, RemovesNothingThatItDoesNotHave) {
  KRCollection collection;
  collection -= Numbered(1);
  Add(collection, 2);
  collection -= Numbered(7);
  EXPECT_EQ(collection.NumberofItems(), 2);
}

TEST(KRCollection, CopiesSeeTheItemsWithoutOwningThem) {
  KRCollection collection;
  Add(collection, 2);
  collection[1]->Previous(collection[0]);
  {
    KRCollection copy(collection);
    copy -= Numbered(0);
    EXPECT_EQ(copy.NumberofItems(), 2);
    EXPECT_EQ(copy[1], collection[1]);
    copy += Numbered(9);
    EXPECT_EQ(copy.NumberofItems(), 3);
    EXPECT_EQ(Numbered::s_alive, 3);
    copy -= Numbered(9);
    EXPECT_EQ(Numbered::s_alive, 2);
    copy -= Numbered(1);
    EXPECT_EQ(copy.NumberofItems(), 1);
  }
  EXPECT_EQ(Numbered::s_alive, 2);
  EXPECT_EQ(collection.NumberofItems(), 2);
}

TEST(KRCollection, AssignmentDeletesWhatWasOwned) {
  KRCollection collection;
  Add(collection, 2);
  KRCollection other;
  Add(other, 3);
  other = collection;
  EXPECT_EQ(Numbered::s_alive, 2);
  EXPECT_EQ(other.NumberofItems(), 2);
  EXPECT_EQ(other[0], collection[0]);
  EXPECT_EQ(other[1], collection[1]);
  const KRCollection& self = collection;
  collection = self;
  EXPECT_EQ(collection.NumberofItems(), 2);
}

TEST(KRCollection, HoldsNoMoreThanItCanCount) {
  KRCollection collection;
  Add(collection, 65536);
  EXPECT_EQ(collection.NumberofItems(), 65535);
  EXPECT_EQ(NumberAt(collection, 0), 65534);
}

TEST(KRCollection, RaisesTheAlarmWhenMemoryIsExhausted) {
  KRCollection collection;
  Add(collection, 1);
  const Numbered item(5);
  FailingAllocation failing(1);
  collection += item;
  EXPECT_EQ(collection.NumberofItems(), 1);
  EXPECT_TRUE(AlarmIsSet());
}

}  // namespace
