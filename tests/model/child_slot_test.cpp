// The slot of one child: which objects own the child, and which only borrow it.

#include "krofx/model/internal/child_slot.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

using krofx::internal::ChildSlot;

// Counts its living objects.
class Counted : public KRDataObj {
 public:
  Counted() { ++Living(); }
  ~Counted() override { --Living(); }
  static int& Living() {
    static int count = 0;
    return count;
  }
};

TEST(ChildSlot, OwnsWhatItIsGiven) {
  {
    ChildSlot slot;
    EXPECT_EQ(slot.Get(), nullptr);
    EXPECT_FALSE(slot.IsBorrowed());
    slot.Set(new Counted);
    auto* second = new Counted;
    slot.Set(second);
    EXPECT_EQ(Counted::Living(), 1);
    slot.Set(second);
    EXPECT_EQ(Counted::Living(), 1) << "its own child again";
    slot.Set(nullptr);
    EXPECT_EQ(Counted::Living(), 0);
    slot.Set(new Counted);
  }
  EXPECT_EQ(Counted::Living(), 0);
}

TEST(ChildSlot, GivesItsChildUp) {
  ChildSlot slot;
  auto* child = new Counted;
  slot.Set(child);
  const std::unique_ptr<KRDataObj> released(slot.Release());
  EXPECT_EQ(released.get(), child);
  EXPECT_EQ(slot.Get(), nullptr);
}

TEST(ChildSlot, BorrowsTheChildOfTheSlotThatItCopies) {
  ChildSlot owner;
  owner.Set(new Counted);
  {
    const ChildSlot copy(owner);
    const ChildSlot copyOfCopy(copy);
    EXPECT_EQ(copyOfCopy.Get(), owner.Get());
    EXPECT_TRUE(copyOfCopy.IsBorrowed());
    EXPECT_FALSE(owner.IsBorrowed());
    const ChildSlot nothing{ChildSlot()};
    EXPECT_FALSE(nothing.IsBorrowed());
  }
  EXPECT_EQ(Counted::Living(), 1);
  ChildSlot copy;
  copy.Set(new Counted);
  copy = owner;
  EXPECT_EQ(Counted::Living(), 1) << "its own was deleted";
  const ChildSlot& itself = copy;
  copy = itself;
  EXPECT_EQ(copy.Get(), owner.Get());
  owner = copy;
  EXPECT_FALSE(owner.IsBorrowed()) << "its own child does not become a loan";
  copy.Set(new Counted);
  EXPECT_EQ(Counted::Living(), 2) << "a borrowed child is not deleted";
  copy.Set(nullptr);
  EXPECT_EQ(Counted::Living(), 1);
}

TEST(ChildSlot, OwnsABorrowedChildThatItIsGiven) {
  ChildSlot owner;
  owner.Set(new Counted);
  {
    ChildSlot copy(owner);
    copy.Set(copy.Get());
    EXPECT_FALSE(copy.IsBorrowed());
    owner.Release();
  }
  EXPECT_EQ(Counted::Living(), 0);
}

}  // namespace
