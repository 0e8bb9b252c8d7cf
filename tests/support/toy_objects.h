// A small hand-written aggregate for tests of parsers. It accepts the few tags of its table, as
// child, element or both, records every call, and refuses what a test wants refused.

#ifndef KROFX_TESTS_SUPPORT_TOY_OBJECTS_H_
#define KROFX_TESTS_SUPPORT_TOY_OBJECTS_H_

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "krofx/model/data_object.h"
#include "krofx/model/parser.h"
#include "support/parse_text.h"

namespace krofx::testing {

/// Every toy takes these tags; MEMO2 only in the second message-set version.
inline constexpr KRTagTableEntry kToyTags[] = {
    {KRTag_OFX, 0xffff},         {KRTag_STATUS, 0xffff},      {KRTag_CODE, 0xffff},
    {KRTag_MEMO, 0xffff},        {KRTag_MEMO2, 0x2},          {KRTag_USERID, 0xffff},
    {KRTag_USERPASS, 0xffff},    {KRTag_NEWUSERPASS, 0xffff}, {KRTag_SONRQ, 0xffff},
    {KRTag_ONETIMEPASS, 0xffff}, {KRTag_NAME, 0xffff},
};

/// The calls that a group of toys got, in order, and the results that they must return.
struct Notebook {
  std::vector<std::string> lines;
  /// Status for a start tag, an element or an end tag; what is not named here is accepted.
  std::map<KRTagID, KRParseStatus> refusedStarts;
  std::map<KRTagID, KRParseStatus> refusedElements;
  std::map<KRTagID, KRParseStatus> refusedEnds;
  KRParseStatus headerStatus = KRParseStatus_Accepted;
  /// The tag that a toy of this type requires.
  std::map<KRTagID, KRTagTableEntry> required;
};

class ToyAggregate : public KRDataObj {
 public:
  explicit ToyAggregate(Notebook& notebook, KRTagID type = KRTag_None, u16 version = 1)
      : KRDataObj(version), m_notebook(notebook) {
    SetType(type);
  }

  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override {
    Note("start", *entry);
    const auto refused = m_notebook.refusedStarts.find(entry->tagID);
    if (refused != m_notebook.refusedStarts.end()) return refused->second;
    m_children.push_back(std::make_unique<ToyAggregate>(m_notebook));
    return PushAndSetObject(m_children.back().get(), entry->tagID);
  }
  using KRDataObj::HandleTagElement;
  KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                 const KRString& value) override {
    m_notebook.lines.push_back(std::string("element ") + entry->text + "=" + Str(value));
    const auto refused = m_notebook.refusedElements.find(entry->tagID);
    if (refused != m_notebook.refusedElements.end()) return refused->second;
    SetTag(entry->tagID);
    return KRParseStatus_Accepted;
  }
  KRParseStatus HandleTagEnd(const KRTagDictionaryEntry* const entry) override {
    Note("end", *entry);
    const auto refused = m_notebook.refusedEnds.find(entry->tagID);
    if (refused != m_notebook.refusedEnds.end()) return refused->second;
    return KRDataObj::HandleTagEnd(entry);
  }
  KRParseStatus HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name) override {
    m_notebook.lines.push_back("header " + std::to_string(tag) + " " +
                               (name == nullptr ? "(no name)" : Str(*name)) + ": " + Str(value));
    return m_notebook.headerStatus;
  }
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override {
    tags = {kToyTags, static_cast<u16>(std::size(kToyTags)), nullptr};
    return 1;
  }
  u16 GetArrayOfRequiredTags(KRArrayOfTags& tags) const override {
    tags = {};
    const auto row = m_notebook.required.find(const_cast<ToyAggregate*>(this)->GetType());
    if (row != m_notebook.required.end()) tags = {&row->second, 1, nullptr};
    return 1;
  }
  KRDataObj* GetChild(u16 index) const override {
    return index < m_children.size() ? m_children[index].get() : nullptr;
  }
  u16 GetNumberOfChildren() const override { return static_cast<u16>(m_children.size()); }

 private:
  void Note(const char* what, const KRTagDictionaryEntry& entry) {
    m_notebook.lines.push_back(std::string(what) + " " + entry.text);
  }

  Notebook& m_notebook;
  std::vector<std::unique_ptr<ToyAggregate>> m_children;
};

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_TOY_OBJECTS_H_
