// The build itself: its arguments, where it writes, its result, and the object that failed.

#include <gtest/gtest.h>

#include <thread>

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"
#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"
#include "support/build_objects.h"

using krofx::internal::AllocationFailure;
using krofx::testing::Content;
using krofx::testing::Outcome;
using krofx::testing::Write;
using krofx::testing::WritingObject;

namespace {

constexpr auto kStrict = KRBuildStringOpt_Strict;

// An aggregate whose CODE is required, around an optional child.
class StrictObject : public WritingObject {
 public:
  using WritingObject::WritingObject;

  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override { return GiveTable(tags); }
  u16 GetArrayOfRequiredTags(KRArrayOfTags& tags) const override { return GiveTable(tags); }
  KRDataObj* GetChild(u16 index) const override { return index == 0 ? child : nullptr; }
  u16 GetNumberOfChildren() const override { return 1; }

  KRDataObj* child = nullptr;

 private:
  static u16 GiveTable(KRArrayOfTags& tags) {
    static constexpr KRTagTableEntry kTable[] = {{KRTag_CODE, 0xffff}};
    tags.table = kTable;
    tags.count = 1;
    return 1;
  }
};

// A buffer that accepts at most 600 bytes.
class SmallBuffer : public KRBuffer {
 public:
  SmallBuffer() : KRBuffer(0, 0) {}

 protected:
  u32 GetMaxBufferSize() override { return 600; }
};

TEST(KRBuilder, TakesItsLineEndAsANumberToo) {
  const auto blankLine = [](KRBuilder& builder) { return builder.AddBlankLine(); };
  const Outcome crLf{KRBuildStatus_Done, "\r\n"};
  for (KRBuilder builder :
       {KRBuilder(2, 0), KRBuilder(KRBuildStringCrLfOpt_CRLF, 0), KRBuilder()}) {
    EXPECT_EQ(Write(builder, blankLine), crLf);
  }
}

TEST(BuilderBuild, RefusesNullArguments) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  WritingObject root;
  EXPECT_EQ(builder.Build(nullptr, &root, kStrict, 0), KRBuildStatus_NullArgument);
  EXPECT_EQ(builder.Build(&buffer, nullptr, kStrict, 0), KRBuildStatus_NullArgument);
  EXPECT_EQ(builder.GetBuffer(), nullptr);
  EXPECT_EQ(builder.GetFailingObject(), nullptr);
}

TEST(BuilderBuild, WritesBehindWhatTheBufferHolds) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  buffer += "before ";
  WritingObject root([](KRBuilder& b) { return b.AddTagStart(KRTag_OFX); });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 0), KRBuildStatus_Done);
  EXPECT_EQ(Content(buffer), "before <OFX>\n");
  EXPECT_EQ(builder.GetBuffer(), &buffer);
  EXPECT_EQ(builder.GetFailingObject(), nullptr);
}

TEST(BuilderBuild, WritesAnAggregateWithItsTagsOnLinesOfTheirOwn) {
  const WritingObject status(
      [](KRBuilder& b) {
        b.AddTagKRSLong(KRTag_CODE, 0);
        return b.AddTagKRString(KRTag_SEVERITY, KRString("INFO"));
      },
      KRTag_STATUS);
  EXPECT_EQ(Write([&](KRBuilder& b) { return status.BuildObject(&b, KRTag_None); }),
            (Outcome{KRBuildStatus_Done, "<STATUS>\n<CODE>0\n<SEVERITY>INFO\n</STATUS>\n"}));
}

TEST(BuilderBuild, FailsOnAnObjectWithoutATag) {
  const WritingObject untyped;
  EXPECT_EQ(Write([&](KRBuilder& b) { return untyped.BuildObject(&b, KRTag_None); }),
            (Outcome{KRBuildStatus_NullArgument, ""}));
}

TEST(BuilderBuild, StopsAtTheFirstFailureAndBlamesTheDeepestObject) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  const KRString blank(" ");
  WritingObject child([&](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, blank); },
                      KRTag_PAYEE);
  WritingObject root([&](KRBuilder& b) { return child.BuildObject(&b, KRTag_None); });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 1), KRBuildStatus_EmptyText);
  EXPECT_EQ(builder.GetFailingObject(), &child);
  EXPECT_EQ(Content(buffer), "<PAYEE>\n");
}

TEST(BuilderBuild, KeepsTheFailingObjectOfAnEarlierBuild) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  WritingObject bad([](KRBuilder& b) { return b.AddTagStart(KRTag_None); });
  WritingObject worse([](KRBuilder& b) { return b.AddTagEnd(KRTag_None); });
  WritingObject good;
  builder.Build(&buffer, &bad, kStrict, 0);
  EXPECT_EQ(builder.Build(&buffer, &good, kStrict, 0), KRBuildStatus_Done);
  EXPECT_EQ(builder.GetFailingObject(), &bad);
  builder.Build(&buffer, &worse, kStrict, 0);
  EXPECT_EQ(builder.GetFailingObject(), &bad);
}

TEST(BuilderBuild, ReportsAMissingTagBehindTheWrittenText) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  StrictObject root([](KRBuilder& b) { return b.AddTagStart(KRTag_STATUS); });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 1), KRBuildStatus_MissingTag);
  EXPECT_EQ(Content(buffer), "<STATUS>\n");
  EXPECT_EQ(builder.GetFailingObject(), &root);
}

TEST(BuilderBuild, BlamesTheChildThatLacksATag) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  StrictObject child;
  StrictObject root;
  root.SetTag(KRTag_CODE);
  root.child = &child;
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 1), KRBuildStatus_MissingTag);
  EXPECT_EQ(builder.GetFailingObject(), &child);
}

TEST(BuilderBuild, LooksForMissingTagsOnlyWhenAsked) {
  KRBuffer buffer(0, 0);
  StrictObject root;
  EXPECT_EQ(KRBuilder().Build(&buffer, &root, kStrict, 0), KRBuildStatus_Done);
  root.SetTag(KRTag_CODE);
  EXPECT_EQ(KRBuilder().Build(&buffer, &root, kStrict, 1), KRBuildStatus_Done);
}

TEST(BuilderBuild, KeepsTheFirstFailureOverAMissingTag) {
  KRBuffer buffer(0, 0);
  StrictObject root([](KRBuilder& b) { return b.AddKRUShort(1), KRBuildStatus_TreeNotAllowed; });
  EXPECT_EQ(KRBuilder().Build(&buffer, &root, kStrict, 1), KRBuildStatus_TreeNotAllowed);
}

TEST(BuilderBuild, EndsInFatalWhenTheAlarmWasRaised) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  WritingObject root([](KRBuilder&) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return KRBuildStatus_Done;
  });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 0), KRBuildStatus_Fatal);
  EXPECT_EQ(builder.GetFailingObject(), &root);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

TEST(BuilderBuild, EndsInFatalWhateverFailedBefore) {
  KRBuilder builder;
  KRBuffer buffer(0, 0);
  WritingObject child([](KRBuilder& b) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return b.AddTagStart(KRTag_None);
  });
  WritingObject root([&](KRBuilder& b) { return child.Build(&b); });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 0), KRBuildStatus_Fatal);
  EXPECT_EQ(builder.GetFailingObject(), &child);
}

TEST(BuilderBuild, ClearsAnOldAlarmFirst) {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(Write([](KRBuilder&) { return KRBuildStatus_Done; }).status, KRBuildStatus_Done);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

TEST(BuilderBuild, EndsInFatalOnAThreadThatIsNotAttached) {
  KRBuildStatus status = KRBuildStatus_Done;
  std::thread([&] {
    KRDetachThread(KRCurrentThreadId());
    status = Write([](KRBuilder&) { return KRBuildStatus_Done; }).status;
  }).join();
  EXPECT_EQ(status, KRBuildStatus_Fatal);
}

TEST(BuilderBuild, EndsInFatalWhenTheBufferIsFull) {
  KRBuilder builder;
  SmallBuffer buffer;
  WritingObject root([](KRBuilder& b) {
    for (int i = 0; i < 100; ++i) b.AddTagStart(KRTag_STATUS);
    return KRBuildStatus_Done;
  });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 0), KRBuildStatus_Fatal);
}

TEST(BuilderBuild, EndsInFatalWhenTheBufferTakesAnotherOnlyInPart) {
  KRBuilder builder;
  SmallBuffer buffer;
  KRBuffer source(0, 0);
  for (int i = 0; i < 700; ++i) source += 'x';
  WritingObject root([&](KRBuilder& b) { return b.AddBuffer(&source); });
  EXPECT_EQ(builder.Build(&buffer, &root, kStrict, 0), KRBuildStatus_Fatal);
}

TEST(BuilderBuild, SurvivesEveryFailedAllocation) {
  const KRString text("A & B");
  const auto write = [&](KRBuilder& b) {
    for (int i = 0; i < 20; ++i) {
      b.AddTagKRString(KRTag_NAME, text);
      b.AddTagKRBuyType(KRTag_BUYTYPE, KRBuyType_BUY);
      b.AddTagKRFrequency(KRTag_FREQ, KRFrequency_WEEKLY);
      b.AddTagKRAmount(KRTag_BALAMT, KRPrecisionInteger(1250, 2));
      b.AddTagKRDateTime(KRTag_DTASOF, KRDateTime(2000, 1, 2, 0, 0, 0, 0, 0, 0));
    }
    return KRBuildStatus_Done;
  };
  const Outcome whole = Write(write);
  ASSERT_EQ(whole.status, KRBuildStatus_Done);

  std::size_t failed = 0;
  for (std::size_t nth = 1;; ++nth) {
    KRBuffer buffer(0, 0);
    KRBuilder builder;
    WritingObject root(write);
    AllocationFailure::FailAt(nth);
    const KRBuildStatus status = builder.Build(&buffer, &root, kStrict, 0);
    const bool reached = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    if (!reached) {
      EXPECT_EQ(status, KRBuildStatus_Done);
      EXPECT_EQ(Content(buffer), whole.text);
      break;
    }
    EXPECT_EQ(status, KRBuildStatus_Fatal) << nth;
    EXPECT_EQ(builder.GetFailingObject(), &root);
    ++failed;
  }
  EXPECT_GT(failed, 0u);
}

TEST(BuilderCopies, ShareTheBufferAndTheFailingObject) {
  KRBuilder builder(KRBuildStringCrLfOpt_LF, 1);
  KRBuffer buffer(0, 0);
  WritingObject root([](KRBuilder& b) { return b.AddTagStart(KRTag_None); });
  builder.Build(&buffer, &root, kStrict, 0);

  KRBuilder copy(builder);
  EXPECT_EQ(copy.GetBuffer(), &buffer);
  EXPECT_EQ(copy.GetFailingObject(), &root);
  copy.AddBlankLine();
  copy.AddTagElement(KRTag_CODE);
  EXPECT_EQ(Content(buffer), "\n<CODE></CODE>");

  KRBuilder assigned;
  assigned = copy;
  assigned.AddTagElement(KRTag_CODE);
  EXPECT_EQ(Content(buffer), "\n<CODE></CODE><CODE></CODE>");
}

TEST(BuilderFailingObject, IsWhatWasRecorded) {
  KRBuilder builder;
  WritingObject object;
  builder.SetFailingObject(&object);
  EXPECT_EQ(builder.GetFailingObject(), &object);
  builder.SetFailingObject(nullptr);
  EXPECT_EQ(builder.GetFailingObject(), nullptr);
}

TEST(BuilderWithoutBuffer, RefusesToWrite) {
  KRBuilder b;
  KRBuffer source(0, 0);
  const KRString text("x");
  const KRBuildStatus statuses[] = {
      b.AddTagStart(KRTag_OFX),
      b.AddTagEnd(KRTag_OFX),
      b.AddTagElement(KRTag_CODE),
      b.AddHeader(KRHeaderTag_DATA, text),
      b.AddBlankLine(),
      b.AddKRSShort(1),
      b.AddKRUShort(1),
      b.AddKRUShort(1, '0', 4),
      b.AddKRSLong(1),
      b.AddKRULong(1),
      b.AddKRChar('x'),
      b.AddKRBoolean(1),
      b.AddString(text, KRBuildStringMacroOpt_Escape, KRBuildStringCrLfOpt_NewLine),
      b.AddAmount(KRPrecisionInteger(1, 0)),
      b.AddDateTime(KRDateTime("20000101")),
      b.AddTime(KRTime("120000")),
      b.AddBankTxType(KRBankTxType_CREDIT),
      b.AddBuyType(KRBuyType_BUY),
      b.AddTagKRString(KRTag_NAME, text),
      b.AddTagKRFrequency(KRTag_FREQ, KRFrequency_WEEKLY),
      b.AddBuffer(&source),
  };
  for (KRBuildStatus status : statuses) EXPECT_EQ(status, KRBuildStatus_NullArgument);
  EXPECT_EQ(b.GetBuffer(), nullptr);
}

}  // namespace
