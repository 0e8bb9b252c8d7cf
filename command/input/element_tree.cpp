// Reads the tree out of a builder that notes tags and values in place of writing them.

#include "input/element_tree.h"

#include <cmath>
#include <cstdlib>

#include "output/safe_text.h"

namespace krofx::command {

namespace {

// The file and its body are above the message sets.
constexpr std::size_t kMessageSetDepth = 2;

bool AllDigits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

// OFX writes an amount without zeros around it; here it gets back the places that it was given
// with, and a digit before the point.
std::string AmountText(const KRPrecisionInteger& value) {
  const char* const text = value;
  std::string out = text == nullptr ? "" : text;
  const std::size_t digits = out.starts_with('-') ? 1 : 0;
  if (out.compare(digits, 1, ".") == 0) out.insert(digits, 1, '0');
  const std::size_t point = out.find('.');
  const std::size_t places = point == std::string::npos ? 0 : out.size() - point - 1;
  const std::size_t wanted = value.Decimal();
  if (wanted > places && wanted <= KRPrecisionInteger::kMaxDecimals) {
    if (places == 0) out += '.';
    out.append(wanted - places, '0');
  }
  return out;
}

// Turns "[-5:EST]", hours with an optional fraction, into "-05:00"; empty when it is not of that
// form.
std::string ZoneText(std::string_view zone) {
  std::string hours(zone.substr(0, zone.find_first_of(":]")));
  char* end = nullptr;
  const double value = std::strtod(hours.c_str(), &end);
  if (hours.empty() || *end != '\0' || value < -24 || value > 24) return "";
  const long minutes = std::lround(std::abs(value) * 60);
  const std::string two[] = {std::to_string(100 + minutes / 60),
                             std::to_string(100 + minutes % 60)};
  return (value < 0 ? "-" : "+") + two[0].substr(1) + ":" + two[1].substr(1);
}

// Turns YYYYMMDD, YYYYMMDDHHMMSS.XXX[zone] and what is between into the form of ISO 8601. What is
// not of that form stays as it is. OFX texts that the library writes leave out a zone that is GMT
// by its name, and a time of midnight in it.
std::string DateText(std::string_view text, bool isUniversal) {
  const std::string_view digits = text.substr(0, text.find_first_of(".["));
  if ((digits.size() != 8 && digits.size() != 12 && digits.size() != 14) || !AllDigits(digits)) {
    return std::string(text);
  }
  const auto part = [digits](std::size_t start) { return std::string(digits.substr(start, 2)); };
  std::string out = std::string(digits.substr(0, 4)) + "-" + part(4) + "-" + part(6);
  if (digits.size() > 8) out += "T" + part(8) + ":" + part(10);
  if (digits.size() > 12) out += ":" + part(12);
  std::string_view rest = text.substr(digits.size());
  const std::string_view fraction = rest.substr(0, rest.find('['));
  if (fraction.find_first_not_of(".0") != std::string_view::npos) out += fraction;
  rest.remove_prefix(fraction.size());
  if (isUniversal) return out + (digits.size() == 8 ? "T00:00:00+00:00" : "+00:00");
  if (rest.starts_with('[') && digits.size() > 8) out += ZoneText(rest.substr(1));
  return out;
}

// Gathers elements where a builder writes text. Values that the library writes in a way of its own
// pass through a buffer, which holds one value at a time.
class ElementGatherer : public KRPayrollBuilder {
 public:
  ElementGatherer(Element& root, TextArena& arena, const krofx::OfxText* text)
      : m_text(text), m_arena(arena), m_path{&root} {}

  void Gather(KRDataObj& object) {
    Build(&m_buffer, &object, KRBuildStringOpt_Lenient, 0);
    TakeValue();
  }

  KRBuildStatus AddTagStart(KRTagID tag) override {
    Element& element = Append(tag);
    element.isAggregate = true;
    if (m_path.size() == kMessageSetDepth) m_inPayroll = element.tag.starts_with("N.PAYROLL");
    m_path.push_back(&element);
    return KRBuildStatus_Done;
  }
  KRBuildStatus AddTagEnd(KRTagID tag) override {
    TakeValue();
    // The end tag of an element, such as the body of a letter, closes nothing.
    if (m_path.size() > 1 && m_path.back()->id == tag) m_path.pop_back();
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
    if (m_element == nullptr || m_hasText || IsPassword(m_element->id)) return KRBuildStatus_Done;
    KRString plain(m_text == nullptr ? text : m_text->ToUtf8(text));
    if (m_text == nullptr) plain.FromCDATA();
    SetText({static_cast<const char*>(plain), plain.GetStrLength()});
    return KRBuildStatus_Done;
  }

  KRBuildStatus AddAmount(const KRPrecisionInteger& value) override {
    return Number(KRBuilder::AddAmount(value), value);
  }
  KRBuildStatus AddQuantity(const KRPrecisionInteger& value) override {
    return Number(KRBuilder::AddQuantity(value), value);
  }
  KRBuildStatus AddUnitPrice(const KRPrecisionInteger& value) override {
    return Number(KRBuilder::AddUnitPrice(value), value);
  }
  KRBuildStatus AddRate(const KRPercent& value) override {
    return Number(KRBuilder::AddRate(value), value);
  }
  KRBuildStatus AddDateTime(const KRDateTime& value) override {
    Note(ValueKind::kDate);
    m_isUniversal = value.GetTimeZone().GetStrLength() > 0 && value.GetGMTOffset() == 0 &&
                    value.GetGMTOffsetFraction() == 0;
    return KRBuilder::AddDateTime(value);
  }
  // The signs of dollars and percent are a part of the value.
  KRBuildStatus AddPayrollAmount(const KRPayrollAmount& value) override {
    if (value.IsEmpty() != 0) return Blank();
    const char* const text = value;
    Note(ValueKind::kAmount);
    SetText(text == nullptr ? "" : text);
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
    const char* const text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
    element.tag = text == nullptr ? "?" : text;
    element.id = tag;
    element.disclosure = DisclosureOf(element.tag, m_path.back()->tag, m_inPayroll);
    return element;
  }

  void Note(ValueKind kind) {
    if (m_element != nullptr) m_element->kind = kind;
  }
  void SetText(std::string_view text) {
    if (m_element != nullptr) m_element->value = m_arena.Copy(text);
    m_hasText = true;
  }
  KRBuildStatus Number(KRBuildStatus status, const KRPrecisionInteger& value) {
    if (status != KRBuildStatus_Done) return status;
    Note(ValueKind::kAmount);
    SetText(AmountText(value));
    return status;
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

  // Ends the current element: what the library wrote into the buffer for it is its value, unless
  // the value is known already.
  void TakeValue() {
    if (m_element != nullptr) {
      if (!m_hasText && !IsPassword(m_element->id) && m_buffer.GetBufferPtr() != nullptr) {
        std::string_view text(m_buffer.GetBufferPtr(), m_buffer.GetBufferSize());
        if (text.ends_with('\n')) text.remove_suffix(1);
        m_element->value = m_arena.Copy(text);
      }
      if (m_element->kind == ValueKind::kDate) {
        m_element->value = m_arena.Copy(DateText(m_element->value, m_isUniversal));
      } else {
        if (!IsPlainText(m_element->value)) {
          m_element->value = m_arena.Copy(SafeText(m_element->value));
        }
        if (MayNamePassword(m_element->value)) {
          m_element->value = m_arena.Copy(WithoutPassword(m_element->value));
        }
      }
    }
    m_element = nullptr;
    m_hasText = false;
    m_isUniversal = false;
    m_buffer.SetBufferOffset(0);
    m_buffer.SetBufferSize(0);
  }

  const krofx::OfxText* m_text;
  TextArena& m_arena;
  KRBuffer m_buffer{256, 256};
  std::vector<Element*> m_path;
  Element* m_element = nullptr;
  bool m_hasText = false;
  bool m_inPayroll = false;
  bool m_isUniversal = false;
};

}  // namespace

const Element* Element::Find(std::string_view childTag) const {
  for (const Element& child : children) {
    if (child.tag == childTag) return &child;
  }
  return nullptr;
}

const Element& ReadElements(KRDataObj& object, TextArena& arena, const krofx::OfxText* text) {
  Element& root = arena.Make<Element>();
  root.isAggregate = true;
  ElementGatherer(root, arena, text).Gather(object);
  return root;
}

}  // namespace krofx::command
