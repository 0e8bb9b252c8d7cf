// Properties of every aggregate. Those of its rows are in every_row_test.cpp.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "krofx/core/internal/slot_block.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/embedded_child.h"
#include "support/every_class.h"
#include "support/ofx_text.h"
#include "support/text_setters.h"

namespace krofx::testing {
namespace {

using namespace krofx::internal;

class EveryClass : public ::testing::Test {
 protected:
  ~EveryClass() override { KRParseLogger::TheKRParseLogger()->DeleteAll(); }

  const ClassMap m_classes = FindEveryTable();
};

// Of the classes in schemas, those with the word "aggregate". The four of them that no exchange
// holds are named in every_class.h.
constexpr std::ptrdiff_t kMadeByFactory = 338;
// Those with the word "base", which have a table for the classes that derive from them. A class
// with the word "abstract" has none.
constexpr std::ptrdiff_t kBases = 24;
// Slots that several rows can fill, in all tables.
constexpr int kSharedSlots = 44;

TEST_F(EveryClass, IsFound) {
  const auto isMade = [](const auto& entry) { return entry.second.table->create != nullptr; };
  const auto made = std::count_if(m_classes.begin(), m_classes.end(), isMade);
  EXPECT_EQ(made, kMadeByFactory);
  EXPECT_EQ(std::ssize(m_classes) - made, kBases);
}

TEST_F(EveryClass, CountsItsChildrenWithinSixteenBits) {
  for (const auto& [name, any] : m_classes) {
    SCOPED_TRACE(name);
    const auto object = any.Make();
    u32 lists = 0;
    for (u8 i = 0; i < any.table->childRowCount; ++i) {
      const Row& row = any.table->rows[any.table->childRows[i]];
      if (row.array == nullptr) continue;
      // Only the last entry, as a host may set it.
      KRDataObj* child = row.create(*KRDataObj::GetFactory());
      ASSERT_EQ(row.array->set(row.member(*object), SlotBlock::kMaxIndex, child), 1);
      ++lists;
    }
    const u16 count = object->GetNumberOfChildren();
    if (lists == 0) {
      EXPECT_LT(count, 100);
    } else {
      EXPECT_EQ(count, 65535);
    }
  }
}

TEST_F(EveryClass, TakesNoElementWhereAChildStands) {
  for (const auto& [name, any] : m_classes) {
    for (u16 position = 0; position < any.table->valid.count; ++position) {
      const Row& row = any.table->rows[position];
      const KRTagID tag = any.table->valid.table[position].tag;
      const KRTagDictionaryEntry entry{tag, ""};
      // A child that is a part of its parent is written as a value is, and read as a child is.
      if (row.create == nullptr && row.value != &kEmbedded<KRAddrInfo>) continue;
      SCOPED_TRACE(name + " " + std::to_string(tag));
      EXPECT_EQ(any.Make()->HandleTagElement(&entry, KRString("x")), KRParseStatus_Invalid);
    }
  }
}

TEST_F(EveryClass, FillsASharedSlotUnderTheTagThatIsMeantOrNone) {
  int slots = 0;
  for (const auto& [name, any] : m_classes) {
    for (u8 i = 0; i < any.table->childRowCount; ++i) {
      const u8 position = any.table->childRows[i];
      if (!any.table->rows[position].shared) continue;
      SCOPED_TRACE(name);
      ++slots;
      const auto object = any.Make();
      auto& slot = *static_cast<ChildSlot*>(any.table->rows[position].member(*object));
      std::vector<KRTagID> valid;
      for (u16 other = 0; other < any.table->valid.count; ++other) {
        const Row& row = any.table->rows[other];
        const KRTagID tag = any.table->valid.table[other].tag;
        if (row.shared && row.member(*object) == &slot && object->IsValidTag(tag) != 0) {
          valid.push_back(tag);
        }
      }
      // With nothing there, and again over the nothing that is present then.
      for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(SetSharedChild(*object, slot, nullptr), valid.size() == 1 ? 1 : 0);
      }
      EXPECT_EQ(TakeWarnings(), Lines());
      for (const KRTagID tag : valid) {
        KRDataObj* child = any.table->rows[position].create(*KRDataObj::GetFactory());
        child->SetType(tag);
        EXPECT_EQ(SetSharedChild(*object, slot, child), 1);
        EXPECT_EQ(object->ValidateTag(tag), 1);
        EXPECT_EQ(ClearSharedChild(*object, slot), 1);
        EXPECT_EQ(object->ValidateTag(tag), 0);
        EXPECT_EQ(slot.Get(), child);
        EXPECT_EQ(SetSharedChild(*object, slot, nullptr), 1);
        EXPECT_EQ(object->ValidateTag(tag), 1) << "present over nothing";
        EXPECT_EQ(ClearSharedChild(*object, slot), 1);
        // What is written under no tag of the slot leaves none of them present.
        child = any.table->rows[position].create(*KRDataObj::GetFactory());
        child->SetType(tag);
        EXPECT_EQ(SetSharedChild(*object, slot, child), 1);
        KRDataObj* stranger = any.table->rows[position].create(*KRDataObj::GetFactory());
        stranger->SetType(KRTag_OFX);
        EXPECT_EQ(SetSharedChild(*object, slot, stranger), 0);
        EXPECT_EQ(slot.Get(), stranger);
        EXPECT_EQ(object->ValidateTag(tag), 0);
      }
      EXPECT_EQ(TakeWarnings(), Lines());
    }
  }
  EXPECT_EQ(slots, kSharedSlots);
}

TEST_F(EveryClass, KeepsChildrenOutOfListsThatAreNotTheirs) {
  for (const auto& [name, any] : m_classes) {
    const auto object = any.Make();
    for (u8 i = 0; i < any.table->childRowCount; ++i) {
      const Row& list = any.table->rows[any.table->childRows[i]];
      if (list.array == nullptr) continue;
      for (u16 position = 0; position < any.table->valid.count; ++position) {
        const Row& row = any.table->rows[position];
        if (row.create == nullptr) continue;
        const std::unique_ptr<KRDataObj> child(row.create(*KRDataObj::GetFactory()));
        child->SetType(any.table->valid.table[position].tag);
        EXPECT_EQ(BelongsElsewhere(*object, list.member(*object), child.get()),
                  row.member(*object) != list.member(*object))
            << name;
      }
    }
  }
}

TEST_F(EveryClass, StoresTextsByInheritedSettersWhetherItsOwnTableHasTheTagOrNot) {
  EXPECT_GE(InheritedTextSetters().size(), 190u);
  for (const TextSetter& setter : InheritedTextSetters()) {
    SCOPED_TRACE(setter.name);
    for (const u16 version : {u16{0}, u16{1}, u16{2}}) {
      const auto object = setter.make();
      object->SetMsgSetVersion(version);
      const u16 noted = setter.set(*object, KRString("7"));
      EXPECT_EQ(noted, object->AnyValidPresent());
      EXPECT_EQ(Str(setter.get(*object)), "7");
      EXPECT_EQ(setter.set(*object, KRString()), 3);
      EXPECT_EQ(setter.get(*object).IsEmpty(), 1);
    }
  }
  EXPECT_EQ(TakeWarnings(), Lines());
}

}  // namespace
}  // namespace krofx::testing
