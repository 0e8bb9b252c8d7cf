// Walks over object trees: what is missing, the repair of CheckFree's invoices, the search in an
// array.

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "krofx/model/internal/aggregate.h"
#include "krofx/model/value_arrays.h"
#include "krofx/model/value_kinds.h"
#include "krofx/values/utility.h"

namespace {

// An object that lacks the required tags that a test names. Owns its children; a null child is an
// empty slot.
class Node : public KRDataObj {
 public:
  explicit Node(KRTagID type = KRTag_None, std::initializer_list<KRTagID> missing = {})
      : KRDataObj(1), m_missing(missing) {
    SetType(type);
  }
  ~Node() override {
    for (KRDataObj* child : m_children) delete child;
  }

  template <class Child>
  Child* Add(Child* child) {
    m_children.push_back(child);
    return child;
  }

  u16 AllRequiredPresent() override { return m_missing.empty(); }
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override {
    bool passed = after == KRTag_None;
    for (const KRTagID tag : m_missing) {
      if (passed) return tag;
      passed = tag == after;
    }
    return KRTag_None;
  }
  KRDataObj* GetChild(u16 index) const override { return m_children[index]; }
  u16 GetNumberOfChildren() const override { return static_cast<u16>(m_children.size()); }

 private:
  std::vector<KRTagID> m_missing;
  std::vector<KRDataObj*> m_children;
};

// What AllRequiredPresent reports about a tree.
struct Missing {
  u16 result;
  KRDataObj* object;
  KRTagID tag;
};
Missing Check(KRDataObj& root) {
  Missing missing{7, &root, KRTag_AUCTION};
  missing.result = KRUtility::AllRequiredPresent(&missing.object, &missing.tag);
  return missing;
}

TEST(AllRequiredPresent, HoldsForACompleteTree) {
  Node root;
  root.Add<Node>(nullptr);
  root.Add(new Node)->Add(new Node);
  const Missing missing = Check(root);
  EXPECT_EQ(missing.result, 1);
  EXPECT_EQ(missing.object, &root);
  EXPECT_EQ(missing.tag, KRTag_None);
}

TEST(AllRequiredPresent, NamesNoTagWhenTheRootItselfIsIncomplete) {
  Node root(KRTag_BAL, {KRTag_NAME});
  root.Add(new Node(KRTag_BAL, {KRTag_DESC}));
  const Missing missing = Check(root);
  EXPECT_EQ(missing.result, 0);
  EXPECT_EQ(missing.object, &root);
  EXPECT_EQ(missing.tag, KRTag_None);
}

TEST(AllRequiredPresent, NamesTheFirstIncompleteObjectHoweverDeep) {
  Node root;
  root.Add(new Node)->Add(new Node);
  Node* deep =
      root.Add(new Node)->Add(new Node)->Add(new Node(KRTag_BAL, {KRTag_DESC, KRTag_NAME}));
  deep->Add(new Node(KRTag_BAL, {KRTag_VALUE}));
  root.Add(new Node(KRTag_BAL, {KRTag_NAME}));
  const Missing missing = Check(root);
  EXPECT_EQ(missing.result, 0);
  EXPECT_EQ(missing.object, deep);
  EXPECT_EQ(missing.tag, KRTag_DESC);
}

TEST(AllRequiredPresent, NeedsNoPlaceForTheTagButAnObject) {
  Node root;
  Node* child = root.Add(new Node(KRTag_BAL, {KRTag_NAME}));
  KRDataObj* object = &root;
  EXPECT_EQ(KRUtility::AllRequiredPresent(&object, nullptr), 0);
  EXPECT_EQ(object, child);

  KRTagID tag = KRTag_NAME;
  object = nullptr;
  EXPECT_EQ(KRUtility::AllRequiredPresent(&object, &tag), 0);
  EXPECT_EQ(tag, KRTag_None);
  EXPECT_EQ(KRUtility::AllRequiredPresent(nullptr, nullptr), 0);
}

TEST(GetNextMissingRequiredTag, ListsTheTagsOfOneObjectOneByOne) {
  Node root(KRTag_BAL, {KRTag_NAME, KRTag_DESC});
  KRDataObj* holder = nullptr;
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_None), KRTag_NAME);
  EXPECT_EQ(holder, &root);
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_NAME), KRTag_DESC);
  EXPECT_EQ(holder, &root);
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_DESC), KRTag_None);
  EXPECT_EQ(holder, nullptr);
}

TEST(GetNextMissingRequiredTag, GoesOnInTheChildrenWhenTheObjectHasNoMore) {
  Node root(KRTag_BAL, {KRTag_NAME});
  root.Add<Node>(nullptr);
  root.Add(new Node);
  Node* first = root.Add(new Node)->Add(new Node(KRTag_BAL, {KRTag_DESC}));
  Node* second = root.Add(new Node(KRTag_BAL, {KRTag_NAME, KRTag_VALUE}));
  KRDataObj* holder = nullptr;
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_None), KRTag_NAME);
  EXPECT_EQ(holder, &root);
  // The first incomplete child lacks nothing after NAME, but the next one does.
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_NAME), KRTag_VALUE);
  EXPECT_EQ(holder, second);
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(first, &holder, KRTag_None), KRTag_DESC);
  EXPECT_EQ(holder, first);
}

TEST(GetNextMissingRequiredTag, FindsNothingInACompleteTreeOrWithoutOne) {
  Node root;
  root.Add(new Node);
  KRDataObj* holder = &root;
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, &holder, KRTag_None), KRTag_None);
  EXPECT_EQ(holder, nullptr);
  holder = &root;
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(nullptr, &holder, KRTag_None), KRTag_None);
  EXPECT_EQ(holder, nullptr);
  EXPECT_EQ(KRUtility::GetNextMissingRequiredTag(&root, nullptr, KRTag_None), KRTag_None);
}

// An aggregate that follows its table, as generated classes do, and has children of any kind.
class TableNode : public Node {
 public:
  TableNode(const krofx::internal::AggregateTable& table, KRTagID type)
      : Node(type), m_table(table) {}
  u16 AllRequiredPresent() override { return KRDataObj::AllRequiredPresent(); }
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override {
    return KRDataObj::GetFirstMissingRequiredTag(after);
  }

 protected:
  const krofx::internal::AggregateTable* GetTable() const override { return &m_table; }

 private:
  const krofx::internal::AggregateTable& m_table;
};

using krofx::internal::AggregateTable;
using krofx::internal::kFixedText;
using krofx::internal::kNumber;
using krofx::internal::MemberOf;
using krofx::internal::Row;
using krofx::internal::StoredNumber;
using krofx::internal::StoredText;

AggregateTable MakeTable(const char* name, KRArrayOfTags valid, KRArrayOfTags required,
                         const Row* rows) {
  AggregateTable table{};
  table.className = name;
  table.valid = valid;
  table.required = required;
  table.rows = rows;
  return table;
}

class Invoice : public TableNode {
 public:
  explicit Invoice(KRTagID type = KRTag_INVOICE) : TableNode(Table(), type) {}

  StoredText<KRString32> m_number;
  StoredText<KRString80> m_description;

 private:
  static const AggregateTable& Table() {
    static const KRTagTableEntry tags[] = {{KRTag_INVNO, 0xffff}, {KRTag_INVDESC, 0xffff}};
    static const Row rows[] = {
        {.member = &MemberOf<&Invoice::m_number>::Address, .value = &kFixedText<KRString32>},
        {.member = &MemberOf<&Invoice::m_description>::Address, .value = &kFixedText<KRString80>}};
    static const AggregateTable table =
        MakeTable("Invoice", {tags, 2, nullptr}, {tags, 2, nullptr}, rows);
    return table;
  }
};

class Discount : public TableNode {
 public:
  explicit Discount(KRTagID type = KRTag_DISCOUNT) : TableNode(Table(), type) {}

  StoredNumber<KRPercent> m_rate;
  StoredText<KRString80> m_description;

 private:
  static const AggregateTable& Table() {
    static const KRTagTableEntry tags[] = {{KRTag_DSCRATE, 0xffff}, {KRTag_DSCDESC, 0xffff}};
    static const Row rows[] = {
        {.member = &MemberOf<&Discount::m_rate>::Address,
         .value = &kNumber<KRPercent, &KRBuilder::AddTagKRRate>},
        {.member = &MemberOf<&Discount::m_description>::Address, .value = &kFixedText<KRString80>}};
    static const AggregateTable table =
        MakeTable("Discount", {tags, 2, nullptr}, {tags + 1, 1, nullptr}, rows);
    return table;
  }
};

u16 Patch(KRDataObj& root) {
  KRDataObj* object = &root;
  KRTagID tag = KRTag_AUCTION;
  const u16 result = KRUtility::PatchCheckFreeOFX(&object, &tag);
  EXPECT_EQ(object, &root);
  EXPECT_EQ(tag, KRTag_None);
  return result;
}

TEST(PatchCheckFreeOFX, CompletesAnInvoiceAnywhereInTheTree) {
  Node root;
  root.Add<Node>(nullptr);
  Invoice* invoice = root.Add(new Node)->Add(new Invoice);
  EXPECT_EQ(Check(root).result, 0);
  EXPECT_EQ(Patch(root), 1);
  EXPECT_STREQ(invoice->m_description.Get(), "An invoice");
  EXPECT_STREQ(invoice->m_number.Get(), "0");
  EXPECT_EQ(Check(root).result, 1);
}

TEST(PatchCheckFreeOFX, LeavesAloneWhatTheInvoiceSays) {
  Invoice invoice;
  invoice.m_number = KRString("17");
  invoice.SetTag(KRTag_INVNO);
  EXPECT_EQ(Patch(invoice), 1);
  EXPECT_STREQ(invoice.m_number.Get(), "17");
  EXPECT_STREQ(invoice.m_description.Get(), "An invoice");

  Invoice described;
  described.m_description = KRString("Water");
  described.SetTag(KRTag_INVDESC);
  EXPECT_EQ(Patch(described), 1);
  EXPECT_STREQ(described.m_number.Get(), "0");
  EXPECT_STREQ(described.m_description.Get(), "Water");
}

TEST(PatchCheckFreeOFX, TakesATextThatWasClearedForOneThatIsThere) {
  Invoice invoice;
  invoice.m_description = KRString("Water");
  EXPECT_EQ(Patch(invoice), 1);
  EXPECT_STREQ(invoice.m_description.Get(), "Water");
  EXPECT_EQ(invoice.ValidateTag(KRTag_INVDESC), 0);
}

TEST(PatchCheckFreeOFX, RepairsDescriptionAndRateOfADiscount) {
  Invoice invoice;
  Discount* discount = invoice.Add(new Discount);
  discount->m_rate = "150";
  EXPECT_EQ(Patch(invoice), 1);
  EXPECT_STREQ(discount->m_description.Get(), "Discount applied");
  EXPECT_EQ(static_cast<KRPercent>(discount->m_rate).IsZero(), 1);
  EXPECT_EQ(discount->ValidateTag(KRTag_DSCRATE), 1);
}

TEST(PatchCheckFreeOFX, DoesNotInventARate) {
  Discount discount;
  EXPECT_EQ(Patch(discount), 1);
  EXPECT_EQ(discount.ValidateTag(KRTag_DSCDESC), 1);
  EXPECT_EQ(discount.ValidateTag(KRTag_DSCRATE), 0);
}

TEST(PatchCheckFreeOFX, TouchesNoOtherAggregateAndNothingThatIsComplete) {
  Invoice second(KRTag_INVOICE2);
  EXPECT_EQ(Patch(second), 1);
  EXPECT_EQ(second.AnyValidPresent(), 0);

  Discount complete;
  complete.m_rate = KRPercent("150");
  complete.m_description = KRString("Half");
  complete.SetTag(KRTag_DSCDESC);
  EXPECT_EQ(Patch(complete), 1);
  EXPECT_EQ(complete.ValidateTag(KRTag_DSCRATE), 0);
}

// A host's own invoice, which has no table.
class HostInvoice : public Node {
 public:
  HostInvoice() : Node(KRTag_INVOICE) {}
  u16 AllRequiredPresent() override { return ValidateTag(KRTag_INVDESC); }
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override {
    static const KRTagTableEntry rows[] = {{KRTag_INVDESC, 0xffff}, {KRTag_INVNO, 0xffff}};
    tags.table = rows;
    tags.count = 2;
    return 1;
  }
  using Node::HandleTagElement;
  KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                 const KRString& value) override {
    m_elements.push_back({entry->tagID, static_cast<const char*>(value)});
    SetTag(entry->tagID);
    return KRParseStatus_Accepted;
  }

  std::vector<std::pair<KRTagID, std::string>> m_elements;
};

TEST(PatchCheckFreeOFX, ReachesAnInvoiceWithoutATableThroughItsElements) {
  HostInvoice invoice;
  invoice.SetTag(KRTag_INVNO);
  EXPECT_EQ(Patch(invoice), 1);
  ASSERT_EQ(invoice.m_elements.size(), 1u);
  EXPECT_EQ(invoice.m_elements[0].first, KRTag_INVDESC);
  EXPECT_EQ(invoice.m_elements[0].second, "An invoice");
}

TEST(PatchCheckFreeOFX, ReportsNothingOfWhatStaysMissing) {
  Node root(KRTag_BAL, {KRTag_NAME});
  root.Add(new Node(KRTag_BAL, {KRTag_DESC}));
  EXPECT_EQ(Patch(root), 1);
  KRDataObj* none = nullptr;
  EXPECT_EQ(KRUtility::PatchCheckFreeOFX(&none, nullptr), 0);
  EXPECT_EQ(KRUtility::PatchCheckFreeOFX(nullptr, nullptr), 0);
}

TEST(ObjectToString, NamesAnObjectForLogLines) {
  Node object(KRTag_STMTTRN);
  EXPECT_STREQ(KRUtility::ObjectToString(&object), "STMTTRN");
  EXPECT_STREQ(KRUtility::ObjectToString(nullptr), "OBJECT NULL");
  Node untyped;
  EXPECT_STREQ(KRUtility::ObjectToString(&untyped), "TAG UNKNOWN");
}

TEST(Find, CountsFromOne) {
  KRDynamicArrayDataObj array(5, 5);
  array.Append(new Node(KRTag_BAL));
  array.Append(new Node(KRTag_STMTTRN));
  array.Append(new Node(KRTag_BAL));
  EXPECT_EQ(KRUtility::Find(&array, KRTag_BAL, 0), 1);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_BAL, 1), 1);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_BAL, 2), 3);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_BAL, 4), 0);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_BAL, 65535), 0);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_INVOICE, 0), 0);
  EXPECT_EQ(KRUtility::Find(nullptr, KRTag_BAL, 0), 0);
}

TEST(Find, StopsAtAnEmptySlot) {
  KRDynamicArrayDataObj array(5, 5);
  array.Append(new Node(KRTag_BAL));
  array.Set(2, new Node(KRTag_STMTTRN));
  EXPECT_EQ(KRUtility::Find(&array, KRTag_BAL, 0), 1);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_STMTTRN, 0), 0);
  EXPECT_EQ(KRUtility::Find(&array, KRTag_STMTTRN, 3), 3);
}

}  // namespace
