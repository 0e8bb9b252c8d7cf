// Reads the tree out of a builder that notes tags and values in place of writing them.

#include "input/element_tree.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "output/safe_text.h"

namespace krofx::command {

namespace {

// The file and its body are above the message sets.
constexpr std::size_t kMessageSetDepth = 2;

std::size_t CountDigits(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) -
                                  text.begin());
}

// OFX writes an amount without zeros around it; here it gets back the places that it was given
// with, and a digit before the point.
void AppendAmount(std::string& out, std::string_view text, std::size_t wanted) {
  if (text.starts_with('-')) {
    out += '-';
    text.remove_prefix(1);
  }
  if (text.starts_with('.')) out += '0';
  out += text;
  const std::size_t point = text.find('.');
  const std::size_t places = point == std::string_view::npos ? 0 : text.size() - point - 1;
  if (wanted > places && wanted <= KRPrecisionInteger::kMaxDecimals) {
    if (places == 0) out += '.';
    out.append(wanted - places, '0');
  }
}

void AppendTwoDigits(std::string& out, long value) {
  out += static_cast<char>('0' + value / 10);
  out += static_cast<char>('0' + value % 10);
}

// Turns "[-5:EST]", hours with an optional fraction, into "-05:00"; adds nothing when it is not of
// that form.
void AppendZone(std::string& out, std::string_view zone) {
  std::string_view hours = zone.substr(0, zone.find_first_of(":]"));
  if (hours.starts_with('+')) hours.remove_prefix(1);
  double value = 0;
  const char* const end = hours.data() + hours.size();
  const std::from_chars_result read = std::from_chars(hours.data(), end, value);
  if (read.ec != std::errc() || read.ptr != end || !(value >= -24 && value <= 24)) return;
  const long minutes = std::lround(std::abs(value) * 60);
  out += value < 0 ? '-' : '+';
  AppendTwoDigits(out, minutes / 60);
  out += ':';
  AppendTwoDigits(out, minutes % 60);
}

// Turns YYYYMMDD, YYYYMMDDHHMMSS.XXX[zone] and what is between into the form of ISO 8601. What is
// not of that form stays as it is. OFX texts that the library writes leave out a zone that is GMT
// by its name, and a time of midnight in it.
void AppendDate(std::string& out, std::string_view text, bool isUniversal) {
  const std::string_view digits = text.substr(0, CountDigits(text));
  const std::string_view rest = text.substr(digits.size());
  if ((digits.size() != 8 && digits.size() != 12 && digits.size() != 14) ||
      !(rest.empty() || rest.starts_with('.') || rest.starts_with('['))) {
    out += text;
    return;
  }
  // 2026-01-31T12:00:00, as far as the digits go.
  char iso[] = "____-__-__T__:__:__";
  constexpr std::size_t kPlaces[] = {0, 1, 2, 3, 5, 6, 8, 9, 11, 12, 14, 15, 17, 18};
  for (std::size_t index = 0; index < digits.size(); ++index) iso[kPlaces[index]] = digits[index];
  out.append(iso, kPlaces[digits.size() - 1] + 1);
  const std::string_view fraction = rest.substr(0, rest.find('['));
  if (fraction.find_first_not_of(".0") != std::string_view::npos) out += fraction;
  if (isUniversal) {
    out += digits.size() == 8 ? "T00:00:00+00:00" : "+00:00";
  } else if (fraction.size() < rest.size() && digits.size() > 8) {
    AppendZone(out, rest.substr(fraction.size() + 1));
  }
}

// Whether a text can be shown as it is: printable ASCII without character references and CDATA
// sections.
bool IsAsMeant(std::string_view text) {
  return IsPlainText(text) && text.find('&') == std::string_view::npos &&
         text.find('<') == std::string_view::npos;
}

// Gathers elements where a builder writes text. Values that the library writes in a way of its own
// pass through a buffer, which holds one value at a time.
class ElementGatherer : public KRPayrollBuilder {
 public:
  explicit ElementGatherer(TextArena& arena) : m_arena(arena) {}

  void Gather(KRDataObj& object, const krofx::OfxText* text, Element& root) {
    m_text = text;
    m_path.assign(1, &root);
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
    const std::string_view bytes(text, text.GetStrLength());
    if (IsAsMeant(bytes)) {
      m_isPlain = true;
      SetText(bytes);
      return KRBuildStatus_Done;
    }
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
    m_scratch.clear();
    AppendAmount(m_scratch, Written(), value.Decimal());
    SetText(m_scratch);
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

  // What the library wrote into the buffer.
  std::string_view Written() const {
    if (m_buffer.GetBufferPtr() == nullptr) return {};
    std::string_view text(m_buffer.GetBufferPtr(), m_buffer.GetBufferSize());
    if (text.ends_with('\n')) text.remove_suffix(1);
    return text;
  }

  // Ends the current element: what the library wrote into the buffer for it is its value, unless
  // the value is known already.
  void TakeValue() {
    if (m_element != nullptr) {
      if (m_element->kind == ValueKind::kDate) {
        m_scratch.clear();
        AppendDate(m_scratch, Written(), m_isUniversal);
        m_element->value = m_arena.Copy(m_scratch);
      } else {
        if (!m_hasText && !IsPassword(m_element->id)) m_element->value = m_arena.Copy(Written());
        MakeFit(m_element->value);
      }
    }
    m_element = nullptr;
    m_hasText = false;
    m_isPlain = false;
    m_isUniversal = false;
    m_buffer.SetBufferOffset(0);
    m_buffer.SetBufferSize(0);
  }

  // Makes a value fit for output.
  void MakeFit(std::string_view& value) {
    if (!m_isPlain && !IsPlainText(value)) value = m_arena.Copy(SafeText(value));
    if (MayNamePassword(value)) value = m_arena.Copy(WithoutPassword(value));
  }

  const krofx::OfxText* m_text = nullptr;
  TextArena& m_arena;
  KRBuffer m_buffer{256, 256};
  std::vector<Element*> m_path;
  Element* m_element = nullptr;
  bool m_hasText = false;
  bool m_inPayroll = false;
  bool m_isPlain = false;
  bool m_isUniversal = false;
  std::string m_scratch;
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
  ElementGatherer(arena).Gather(object, text, root);
  return root;
}

class PartReader::Gatherer : public ElementGatherer {
 public:
  using ElementGatherer::ElementGatherer;
};

PartReader::PartReader(TextArena& arena)
    : m_arena(arena), m_gatherer(std::make_unique<Gatherer>(arena)) {}

PartReader::~PartReader() = default;

const Element& PartReader::Read(KRDataObj& aggregate, const krofx::OfxText* text) {
  Element& root = m_arena.Make<Element>();
  const char* const tag = KRTagDictionary::TheKRTagDictionary()->GetTagString(aggregate.GetType());
  root.tag = tag == nullptr ? "?" : tag;
  root.id = aggregate.GetType();
  root.isAggregate = true;
  m_gatherer->Gather(aggregate, text, root);
  return root;
}

}  // namespace krofx::command
