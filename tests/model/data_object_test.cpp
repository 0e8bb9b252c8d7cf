// The contract of every data object: presence bits, required tags, descent, versions, the factory's
// life, and misuse.

#include "krofx/model/data_object.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/model/factory.h"
#include "krofx/model/parser.h"
#include "support/build_objects.h"
#include "support/parse_text.h"

namespace {

using namespace krofx::testing;

Lines TakeLog() {
  Lines lines = Warnings();
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  return lines;
}

// NAME in both versions, MEMO in the first, MEMO2 in the second, DESC by two rows of one tag each.
constexpr KRTagTableEntry kValid[] = {{KRTag_NAME, 0xffff},
                                      {KRTag_MEMO, 0x1},
                                      {KRTag_MEMO2, 0x2},
                                      {KRTag_DESC, 0x2},
                                      {KRTag_DESC, 0x1}};
constexpr KRTagTableEntry kRequired[] = {
    {KRTag_NAME, 0xffff}, {KRTag_MEMO, 0x1}, {KRTag_MEMO2, 0x2}};

class Sample : public KRDataObj {
 public:
  explicit Sample(u16 version = 1) : KRDataObj(version) { SetType(KRTag_BAL); }
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override {
    tags = {kValid, static_cast<u16>(std::size(kValid))};
    return 1;
  }
  u16 GetArrayOfRequiredTags(KRArrayOfTags& tags) const override {
    tags = {kRequired, static_cast<u16>(std::size(kRequired))};
    return 1;
  }
};

TEST(KRDataObj, StartsEmpty) {
  KRDataObj object;
  EXPECT_EQ(object.GetType(), KRTag_None);
  EXPECT_EQ(object.GetMsgSetVersion(), 0);
  EXPECT_EQ(object.GetParser(), nullptr);
  EXPECT_EQ(object.GetChild(0), nullptr);
  EXPECT_EQ(object.GetNumberOfChildren(), 0);
  EXPECT_STREQ(KRDataObj::GetKRSDKVersion(), "92");
}

TEST(KRDataObj, HasDefaultsThatHoldNothing) {
  KRDataObj object(1);
  KRArrayOfTags tags{kValid, 3};
  EXPECT_EQ(object.GetArrayOfValidTags(tags), 1);
  EXPECT_EQ(tags.table, nullptr);
  EXPECT_EQ(tags.count, 0);
  EXPECT_EQ(object.GetArrayOfRequiredTags(tags), 1);
  EXPECT_EQ(tags.count, 0);
  const KRTagDictionaryEntry entry = {KRTag_NAME, "NAME"};
  EXPECT_EQ(object.HandleTagStart(&entry), KRParseStatus_Invalid);
  KRString name("x");
  EXPECT_EQ(object.HandleHeader(KRHeaderTag_DATA, name, &name), KRParseStatus_Accepted);
  EXPECT_EQ(object.AllRequiredPresent(), 1);
  EXPECT_EQ(object.AnyValidPresent(), 0);
  EXPECT_EQ(object.OneValidPresent(), 0);
  EXPECT_EQ(object.IsTagRequired(KRTag_NAME), 0);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
  EXPECT_EQ(object.SetTag(KRTag_NAME), 0);
  EXPECT_EQ(object.ProcessRequest(nullptr), 1);
  KRTransBase payload;
  EXPECT_EQ(payload.GetMsgSetVersion(), 0);
  EXPECT_EQ(payload.DeepCopyFrom(&payload), 0);
}

TEST(KRDataObj, KeepsTagsByTheirVersion) {
  Sample first(1);
  EXPECT_EQ(first.IsValidTag(KRTag_NAME), 1);
  EXPECT_EQ(first.IsValidTag(KRTag_MEMO), 1);
  EXPECT_EQ(first.IsValidTag(KRTag_MEMO2), 0);
  EXPECT_EQ(first.IsValidTag(KRTag_CODE), 0);
  TakeLog();
  EXPECT_EQ(first.SetTag(KRTag_MEMO2), 0);
  EXPECT_EQ(TakeLog(), Lines()) << "silently";
  EXPECT_EQ(first.ClearTag(KRTag_MEMO2), 0);
  EXPECT_EQ(TakeLog(), Lines{"UNKNOWNTAG " + std::to_string(KRTag_MEMO2)});
  EXPECT_EQ(first.SetTag(KRTag_MEMO), 1);
  EXPECT_EQ(first.ValidateTag(KRTag_MEMO), 1);
  EXPECT_EQ(first.ClearTag(KRTag_MEMO), 1);
  EXPECT_EQ(first.ValidateTag(KRTag_MEMO), 0);
}

TEST(KRDataObj, FindsTheLaterRowOfATagForItsVersion) {
  // Each row has a bit of its own: what is present in one version is not in the other.
  Sample object(1);
  EXPECT_EQ(object.SetTag(KRTag_DESC), 1);
  EXPECT_EQ(object.ValidateTag(KRTag_DESC), 1);
  object.SetMsgSetVersion(2);
  EXPECT_EQ(object.IsValidTag(KRTag_DESC), 1);
  EXPECT_EQ(object.ValidateTag(KRTag_DESC), 0);
}

TEST(KRDataObj, HasNoValidTagWithoutAVersion) {
  Sample object(0);
  for (const KRTagTableEntry& row : kValid) {
    EXPECT_EQ(object.SetTag(row.tag), 0);
    EXPECT_EQ(object.IsValidTag(row.tag), 0);
  }
  EXPECT_EQ(object.AllRequiredPresent(), 0);
  EXPECT_EQ(KRDataObj(0).AllRequiredPresent(), 1) << "a class with no required row";
}

TEST(KRDataObj, IsCompleteByTheRequiredRowsOfItsVersion) {
  Sample object(1);
  EXPECT_EQ(object.AllRequiredPresent(), 0);
  object.SetTag(KRTag_NAME);
  EXPECT_EQ(object.AllRequiredPresent(), 0);
  object.SetTag(KRTag_MEMO);
  EXPECT_EQ(object.AllRequiredPresent(), 1);
  object.SetMsgSetVersion(2);
  EXPECT_EQ(object.AllRequiredPresent(), 0);
}

TEST(KRDataObj, NamesMissingTagsOneBehindTheOther) {
  Sample object(1);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_None), KRTag_NAME);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_NAME), KRTag_MEMO);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_MEMO), KRTag_None);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_CODE), KRTag_None);
  object.SetTag(KRTag_NAME);
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_NAME), KRTag_None)
      << "present, so it is not met among the missing";
  EXPECT_EQ(object.GetFirstMissingRequiredTag(KRTag_None), KRTag_MEMO);
}

TEST(KRDataObj, AnswersTheSameWhateverTagIsAskedToBeRequired) {
  for (const KRTagID tag : {KRTag_None, KRTag_NAME, KRTag_DESC, KRTag_CODE}) {
    Sample object(1);
    EXPECT_EQ(object.IsTagRequired(tag), 0);
    object.SetTag(KRTag_DESC);
    EXPECT_EQ(object.IsTagRequired(tag), 0) << "DESC is not required";
    object.SetTag(KRTag_MEMO);
    EXPECT_EQ(object.IsTagRequired(tag), 1);
  }
}

TEST(KRDataObj, CountsValidTags) {
  Sample object(1);
  EXPECT_EQ(object.AnyValidPresent(), 0);
  EXPECT_EQ(object.OneValidPresent(), 0);
  object.SetTag(KRTag_MEMO);
  EXPECT_EQ(object.AnyValidPresent(), 1);
  EXPECT_EQ(object.OneValidPresent(), 1);
  object.SetTag(KRTag_NAME);
  EXPECT_EQ(object.AnyValidPresent(), 1);
  EXPECT_EQ(object.OneValidPresent(), 0);
}

// Ninety-eight rows of one tag each.
class Wide : public KRDataObj {
 public:
  Wide() : KRDataObj(1) {
    for (u32 i = 0; i < 98; ++i) m_rows.push_back({static_cast<KRTagID>(i + 1), 0xffff});
  }
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override {
    tags = {m_rows.data(), static_cast<u16>(m_rows.size())};
    return 1;
  }

 private:
  std::vector<KRTagTableEntry> m_rows;
};

TEST(KRDataObj, HasABitForEachOf96RowsAndNoneBehind) {
  for (u32 set = 1; set <= 98; ++set) {
    Wide object;
    EXPECT_EQ(object.SetTag(static_cast<KRTagID>(set)), set <= 96 ? 1 : 0);
    for (u32 tag = 1; tag <= 98; ++tag) {
      EXPECT_EQ(object.ValidateTag(static_cast<KRTagID>(tag)), tag == set && set <= 96 ? 1 : 0);
    }
  }
}

TEST(KRDataObj, TakesItsOwnEndTagAlone) {
  Sample root(1);
  Sample child(1);
  const KRTagDictionaryEntry own = {KRTag_BAL, "BAL"};
  const KRTagDictionaryEntry other = {KRTag_STATUS, "STATUS"};
  EXPECT_EQ(child.HandleTagEnd(&own), KRParseStatus_Fatal) << "no parser";
  KRParser parser;
  KRBuffer buffer(0, 0);
  EXPECT_EQ(parser.Parse(&buffer, &root, 0), KRParseStatus_Accepted);
  EXPECT_EQ(root.GetParser(), &parser);
  EXPECT_EQ(root.PushAndSetObject(&child, KRTag_None), KRParseStatus_Accepted);
  TakeLog();
  EXPECT_EQ(child.HandleTagEnd(&other), KRParseStatus_EndTagMismatch);
  EXPECT_EQ(TakeLog(), Lines{"INVALIDENDAGG <STATUS> " + std::to_string(KRTag_STATUS)});
  EXPECT_EQ(parser.GetCurrentObj(), &child);
  EXPECT_EQ(parser.GetDepth(), 1);
  EXPECT_EQ(child.HandleTagEnd(&own), KRParseStatus_Accepted);
  EXPECT_EQ(parser.GetCurrentObj(), &root);
  EXPECT_EQ(root.HandleTagEnd(&own), KRParseStatus_Accepted) << "the result of the pop is its own";
}

TEST(KRDataObj, DescendsIntoAChild) {
  Sample root(1);
  Sample child(2);
  EXPECT_EQ(root.PushAndSetObject(nullptr, KRTag_NAME), KRParseStatus_Fatal);
  EXPECT_EQ(root.PushAndSetObject(&child, KRTag_NAME), KRParseStatus_Fatal) << "no parser";
  EXPECT_EQ(child.GetType(), KRTag_NAME);
  EXPECT_EQ(root.ValidateTag(KRTag_NAME), 1) << "present from its start tag on";
  EXPECT_EQ(child.GetMsgSetVersion(), 1) << "the version flows down";

  KRParser parser;
  KRBuffer buffer(0, 0);
  parser.Parse(&buffer, &root, 0);
  EXPECT_EQ(root.PushAndSetObject(&child, KRTag_MEMO2), KRParseStatus_Invalid);
  EXPECT_EQ(child.GetType(), KRTag_MEMO2) << "the type is set all the same";
  EXPECT_EQ(parser.GetDepth(), 0);
  EXPECT_EQ(root.PushAndSetObject(&child, KRTag_NAME), KRParseStatus_Accepted);
  EXPECT_EQ(child.GetParser(), &parser);
}

TEST(KRDataObj, LeavesTheVersionOfAChildWhenItHasNoneItself) {
  KRDataObj root(0);
  Sample child(2);
  EXPECT_EQ(root.PushAndSetObject(&child, KRTag_None), KRParseStatus_Fatal);
  EXPECT_EQ(child.GetMsgSetVersion(), 2);
  EXPECT_EQ(child.GetType(), KRTag_BAL);
}

TEST(KRDataObj, OpensTenObjectsAndNotEleven) {
  KRParser parser;
  KRBuffer buffer(0, 0);
  std::vector<std::unique_ptr<Sample>> objects;
  for (int i = 0; i < 12; ++i) objects.push_back(std::make_unique<Sample>(1));
  parser.Parse(&buffer, objects[0].get(), 0);
  for (std::size_t i = 1; i <= 10; ++i) {
    EXPECT_EQ(objects[i - 1]->PushAndSetObject(objects[i].get(), KRTag_NAME),
              KRParseStatus_Accepted);
  }
  EXPECT_EQ(objects[10]->PushAndSetObject(objects[11].get(), KRTag_NAME), KRParseStatus_StackFull);
  EXPECT_EQ(parser.GetCurrentObj(), objects[10].get());
}

TEST(KRDataObj, EndsAnElementThatNoFormTakes) {
  KRDataObj object(1);
  const KRTagDictionaryEntry entry = {KRTag_NAME, "NAME"};
  EXPECT_EQ(object.HandleTagElement(&entry, KRString("x")), KRParseStatus_Invalid);
  EXPECT_EQ(object.HandleTagElement(&entry, "x"), KRParseStatus_Invalid);
  EXPECT_EQ(object.HandleTagElement(&entry, static_cast<const char*>(nullptr)),
            KRParseStatus_Invalid);
}

TEST(KRDataObj, HandsAnElementToTheFormThatAClassOverrides) {
  class TakesText : public KRDataObj {
   public:
    using KRDataObj::HandleTagElement;
    KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const,
                                   const char* const value) override {
      taken = value;
      return KRParseStatus_Accepted;
    }
    std::string taken;
  };
  TakesText object;
  const KRTagDictionaryEntry entry = {KRTag_NAME, "NAME"};
  EXPECT_EQ(object.HandleTagElement(&entry, KRString("one")), KRParseStatus_Accepted);
  EXPECT_EQ(object.HandleTagElement(&entry, KRString("two")), KRParseStatus_Accepted);
  EXPECT_EQ(object.taken, "two");
}

TEST(KRDataObj, WritesItselfBetweenItsTags) {
  WritingObject object([](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, KRString("x")); },
                       KRTag_BAL);
  EXPECT_EQ(Write([&](KRBuilder& b) { return object.BuildObject(&b, KRTag_None); }),
            (Outcome{KRBuildStatus_Done, "<BAL>\n<NAME>x\n</BAL>\n"}));
  EXPECT_EQ(Write([&](KRBuilder& b) { return object.BuildObject(&b, KRTag_STATUS); }),
            (Outcome{KRBuildStatus_Done, "<STATUS>\n<NAME>x\n</STATUS>\n"}));
}

TEST(KRDataObj, WritesNoEndTagBehindAFailureAndNothingWithoutAType) {
  WritingObject failing([](KRBuilder&) { return KRBuildStatus_EmptyText; }, KRTag_BAL);
  EXPECT_EQ(Write([&](KRBuilder& b) { return failing.BuildObject(&b, KRTag_None); }),
            (Outcome{KRBuildStatus_EmptyText, "<BAL>\n"}));
  WritingObject untyped(nullptr);
  EXPECT_EQ(Write([&](KRBuilder& b) { return untyped.BuildObject(&b, KRTag_None); }),
            (Outcome{KRBuildStatus_NullArgument, ""}));
}

TEST(KRDataObj, ReadsItsVersionFromItsTag) {
  const std::pair<KRTagID, u16> cases[] = {
      {KRTag_BANKMSGSETV1, u16{1}}, {KRTag_BANKMSGSETV2, u16{2}},
      {KRTag_MEMO2, u16{2}},        {KRTag_BAL, u16{0}},
      {KRTag_None, u16{0}},         {static_cast<KRTagID>(999999), u16{0}}};
  for (const auto& [tag, version] : cases) {
    KRDataObj object(1);
    object.SetType(tag);
    EXPECT_EQ(object.GetMsgSetVersionFromTag(), version) << tag;
  }
}

// Claims any number of children, and counts the calls.
class Crowd : public KRDataObj {
 public:
  explicit Crowd(u16 children) : m_children(children) {}
  KRDataObj* GetChild(u16 index) const override {
    ++asked;
    return index % 2 == 0 ? &m_child : nullptr;
  }
  u16 GetNumberOfChildren() const override { return m_children; }
  struct Child : KRDataObj {
    u16 ProcessResponse() override {
      ++calls;
      return 0;
    }
    u32 calls = 0;
  };
  mutable Child m_child;
  mutable u32 asked = 0;

 private:
  u16 m_children;
};

TEST(KRDataObj, WalksItsChildrenWhateverTheyReturn) {
  Crowd crowd(5);
  EXPECT_EQ(crowd.ProcessResponse(), 1);
  EXPECT_EQ(crowd.asked, 5u);
  EXPECT_EQ(crowd.m_child.calls, 3u) << "null places are passed over";
}

TEST(KRDataObj, WalksNoMoreChildrenThanASignedCountHolds) {
  Crowd most(32767);
  most.ProcessResponse();
  EXPECT_EQ(most.asked, 32767u);
  for (const u16 count : {u16{32768}, u16{65535}}) {
    Crowd tooMany(count);
    EXPECT_EQ(tooMany.ProcessResponse(), 1);
    EXPECT_EQ(tooMany.asked, 0u);
  }
}

TEST(KRDataObj, CopiesItsBaseMembers) {
  Sample source(1);
  source.SetTag(KRTag_MEMO);
  source.SetType(KRTag_STATUS);
  KRParser parser;
  source.SetupForParsing(&parser);
  const Sample copied(source);
  Sample assigned(2);
  assigned.SetTag(KRTag_NAME);
  assigned = source;
  Sample deep(2);
  EXPECT_EQ(deep.CopyBaseMembersFrom(&source), 1);
  EXPECT_EQ(deep.CopyBaseMembersFrom(nullptr), 0);
  for (const Sample* copy :
       {&copied, const_cast<const Sample*>(&assigned), const_cast<const Sample*>(&deep)}) {
    auto* object = const_cast<Sample*>(copy);
    EXPECT_EQ(object->GetParser(), &parser);
    EXPECT_EQ(object->GetType(), KRTag_STATUS);
    EXPECT_EQ(object->GetMsgSetVersion(), 1);
    EXPECT_EQ(object->ValidateTag(KRTag_MEMO), 1);
    EXPECT_EQ(object->ValidateTag(KRTag_NAME), 0);
  }
}

TEST(KRTagTableEntry, IsPackedToSixBytes) { EXPECT_EQ(sizeof(KRTagTableEntry), 6u); }

}  // namespace
