// Reads the tree out of a builder that notes tags and values in place of writing them.

#include "input/element_tree.h"

#include <algorithm>
#include <string>

#include "input/parsed_file.h"
#include "input/shown_values.h"
#include "krofx/host/words.h"

namespace krofx::command {

namespace {

// The file and its body are above the message sets.
constexpr std::size_t kMessageSetDepth = 2;

void SetTag(Element& element, KRTagID tag) {
  const char* const text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
  element.tag = text == nullptr ? "?" : text;
  element.id = tag;
}

// Gathers elements where a builder writes text. Values that the library writes in a way of its own
// pass through a buffer, which holds one value at a time.
class ElementGatherer : public KRPayrollBuilder {
 public:
  ElementGatherer(TextArena& arena, bool mayHaveCards)
      : m_arena(arena), m_mayHaveCards(mayHaveCards) {}

  void Gather(KRDataObj& object, const krofx::OfxText* text, Element& root,
              bool inPayroll = false) {
    m_text = text;
    m_inPayroll = inPayroll;
    m_path.assign(1, &root);
    Build(&m_buffer, &object, KRBuildStringOpt_Lenient, 0);
    TakeValue();
  }

  KRBuildStatus AddTagStart(KRTagID tag) override {
    Element& element = Append(tag);
    element.isAggregate = true;
    if (m_path.size() == kMessageSetDepth && m_path.front()->id == KRTag_None) {
      m_inPayroll = element.tag.starts_with("N.PAYROLL");
    }
    m_path.push_back(&element);
    return KRBuildStatus_Done;
  }
  KRBuildStatus AddTagEnd(KRTagID tag) override {
    TakeValue();
    // The end tag of an element, such as the body of a letter, closes nothing.
    if (m_path.size() > 1 && m_path.back()->id == tag) {
      HideLostPassword(*m_path.back());
      if (m_mayHaveCards) HideMovedCard(*m_path.back());
      m_path.pop_back();
    }
    return KRBuildStatus_Done;
  }
  KRBuildStatus AddTagElement(KRTagID tag) override {
    m_element = &Append(tag);
    return KRBuildStatus_Done;
  }
  KRBuildStatus AddHeader(KRHeaderTag, const KRString&) override { return KRBuildStatus_Done; }
  KRBuildStatus AddBlankLine() override { return KRBuildStatus_Done; }

  using KRBuilder::AddString;
  KRBuildStatus AddString(const KRString& text, KRBuildStringMacroOpt,
                          KRBuildStringCrLfOpt) override {
    if (m_element == nullptr || IsPassword(m_element->id)) return KRBuildStatus_Done;
    const std::string_view value = krofx::ToText(text);
    if (IsAmongPasswords()) {
      const std::string shown = FirstLineWithoutTags(value);
      SetText(ShownText(shown, m_text, m_arena));
    } else {
      SetText(ShownText(value, m_text, m_arena));
    }
    return KRBuildStatus_Done;
  }

  KRBuildStatus AddAmount(const KRPrecisionInteger& value) override { return Number(value); }
  KRBuildStatus AddQuantity(const KRPrecisionInteger& value) override { return Number(value); }
  KRBuildStatus AddUnitPrice(const KRPrecisionInteger& value) override { return Number(value); }
  KRBuildStatus AddRate(const KRPercent& value) override { return Number(value); }
  KRBuildStatus AddDateTime(const KRDateTime& value) override {
    return Value(ValueKind::kDate, ShownDate(value));
  }
  // The signs of dollars and percent are a part of the value.
  KRBuildStatus AddPayrollAmount(const KRPayrollAmount& value) override {
    if (value.IsEmpty() != 0) return Blank();
    const char* const text = value;
    Note(ValueKind::kAmount);
    SetText(FitText(text == nullptr ? "" : text, m_arena));
    return KRBuildStatus_Done;
  }
  KRBuildStatus AddPayrollDateTime(const KRPayrollDateTime& value) override {
    return value.IsEmpty() != 0 ? Blank() : AddDateTime(value);
  }
  KRBuildStatus AddKRBoolean(u16 value) override {
    Note(ValueKind::kBoolean);
    SetText(value == 0 ? "false" : "true");
    return KRBuildStatus_Done;
  }
  KRBuildStatus AddKRSShort(s16 value) override { return Integer(std::to_string(value)); }
  KRBuildStatus AddKRUShort(u16 value) override { return Integer(std::to_string(value)); }
  KRBuildStatus AddKRUShort(u16 value, char, u16) override {
    return Integer(std::to_string(value));
  }
  KRBuildStatus AddKRSLong(s32 value) override { return Integer(std::to_string(value)); }
  KRBuildStatus AddKRULong(u32 value) override { return Integer(std::to_string(value)); }

 private:
  Element& Append(KRTagID tag) {
    TakeValue();
    Element& element = m_arena.Make<Element>();
    m_path.back()->children.Append(element);
    SetTag(element, tag);
    element.disclosure = DisclosureOf(element.tag, m_path.back()->tag, m_inPayroll);
    return element;
  }

  // Every account but that of a card has the number or the name of its bank or broker.
  static void HideMovedCard(const Element& aggregate) {
    if (!IsAccount(aggregate.tag) || aggregate.Find("BANKID") != nullptr ||
        aggregate.Find("BROKERID") != nullptr) {
      return;
    }
    for (Element* each = aggregate.children.First(); each != nullptr; each = each->next) {
      const bool isNumber = each->id == KRTag_ACCTID || each->id == KRTag_ACCTKEY;
      if (isNumber && each->disclosure == Disclosure::kAll) each->disclosure = Disclosure::kCard;
    }
  }

  // A password comes right after the user. When it is missing, damage to a tag may have made it the
  // user's name.
  static void HideLostPassword(const Element& aggregate) {
    if (aggregate.id != KRTag_SONRQ && aggregate.id != KRTag_PINCHRQ) return;
    Element* user = nullptr;
    for (Element* each = aggregate.children.First(); each != nullptr; each = each->next) {
      if (IsPassword(each->id) || each->id == KRTag_USERKEY) return;
      if (each->id == KRTag_USERID) user = each;
    }
    if (user != nullptr && !user->value.ends_with(kNotShown)) user->value = kNotShown;
  }

  bool IsAmongPasswords() const {
    return std::any_of(m_path.begin(), m_path.end(),
                       [](const Element* element) { return HoldsPasswords(element->id); });
  }

  // Values come after the tag of their element.
  void Note(ValueKind kind) { m_element->kind = kind; }
  void SetText(std::string_view text) {
    m_element->value = m_arena.Copy(text);
    m_hasText = true;
  }
  KRBuildStatus Value(ValueKind kind, const krofx::ValueText& text) {
    Note(kind);
    SetText(text);
    return KRBuildStatus_Done;
  }
  KRBuildStatus Number(const KRPrecisionInteger& value) {
    return Value(ValueKind::kAmount, ShownNumber(value));
  }
  KRBuildStatus Blank() {
    Note(ValueKind::kBlank);
    SetText("(blank)");
    return KRBuildStatus_Done;
  }
  KRBuildStatus Integer(const std::string& text) {
    Note(ValueKind::kInteger);
    SetText(text);
    return KRBuildStatus_Done;
  }

  // What the library wrote into the buffer.
  std::string_view Written() const {
    std::string_view text = ViewOf(m_buffer);
    if (text.ends_with('\n')) text.remove_suffix(1);
    return text;
  }

  // Ends the current element: what the library wrote into the buffer for it is its value, unless
  // the value is known already.
  void TakeValue() {
    if (m_element != nullptr && !m_hasText && !IsPassword(m_element->id)) {
      m_element->value = m_arena.Copy(FitText(Written(), m_arena));
    }
    m_element = nullptr;
    m_hasText = false;
    m_buffer.SetBufferOffset(0);
    m_buffer.SetBufferSize(0);
  }

  const krofx::OfxText* m_text = nullptr;
  TextArena& m_arena;
  const bool m_mayHaveCards;
  KRBuffer m_buffer{256, 256};
  std::vector<Element*> m_path;
  Element* m_element = nullptr;
  bool m_hasText = false;
  bool m_inPayroll = false;
};

}  // namespace

const Element* Element::Find(std::string_view childTag) const {
  for (const Element& child : children) {
    if (child.tag == childTag) return &child;
  }
  return nullptr;
}

const Element& ReadElement(KRDataObj& object, KRTagID tag, bool inPayroll, TextArena& arena,
                           const krofx::OfxText* text, bool mayHaveCards) {
  Element& root = arena.Make<Element>();
  root.isAggregate = true;
  SetTag(root, tag);
  ElementGatherer(arena, mayHaveCards).Gather(object, text, root, inPayroll);
  return root;
}

const Element& ReadElements(KRDataObj& object, TextArena& arena, const krofx::OfxText* text,
                            bool mayHaveCards) {
  Element& root = arena.Make<Element>();
  root.isAggregate = true;
  ElementGatherer(arena, mayHaveCards).Gather(object, text, root);
  return root;
}

}  // namespace krofx::command
