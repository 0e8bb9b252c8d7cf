// Trees that a host builds: the bytes choose a class, its members and what they are set to. What is
// written of such a tree is read and written again, as the same text; a deep copy of it is written
// as it is.
//
// Members are set by what the setters of all classes call, since nothing public sets a member of
// any class from a text: a parse does, but knows other rules, and has targets of its own.

#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "any_class.h"
#include "krofx/model/internal/embedded_child.h"
#include "trees.h"

namespace {

using namespace krofx::fuzz;
using namespace krofx::internal;

// Deeper than any exchange, and less deep than what a parse refuses.
constexpr int kMostDepth = 6;

constexpr const char* kSamples[] = {
    "Y",    "N",      "0",        "1",         "-1",    "65535",     "2147483647",
    "1.50", "-12.5",  "99.99",    "+7",        "ENG",   "20260131",  "20260131235959.999[-5:EST]",
    "0730", "173000", "CHECKING", "a & b < c", "<TAG>", "&amp;",     "]]>",
    "CODE", "INFO",   "USD",      "DEBIT",     "BUY",   "SENDFUNDS", "x",
};
// What few kinds of values take: those of payroll, and keywords that are not held as a keyword.
constexpr const char* kRareSamples[] = {
    "$5",      "$-7.25",  "12.5%",     "^@~*",      "__OFX_EMPTY_STRING__",
    "UNKNOWN", "SAVINGS", "CREDIT",    "MONEYMRKT", "CMA",
    "MONDAY",  "FRIDAY",  "BANKSVC",   "CCSVC",     "BPSVC",
    "PRESSVC", "DELDATE", "PROCDATE1", "FIXED",     "HWTOKEN",
    "DEU",
};
// A choice from here on is of a keyword, or of a rare sample.
constexpr std::size_t kFirstKeyword = 192;

// The keyword of a number; the number is halved while there is none. Empty for other values.
std::string KeywordOf(const ValueKind& kind, u32 number) {
  if (kind.form != ValueForm::kKeyword || kind.writeCommon == nullptr) return "";
  for (;; number /= 2) {
    // In bytes, as which any enumeration may be read.
    alignas(u32) unsigned char value[sizeof number];
    std::memcpy(value, &number, sizeof number);
    char text[64];
    const char* const end = kind.writeCommon(value, text, text + sizeof text);
    if (end != nullptr) return std::string(text, static_cast<std::size_t>(end - text));
    if (number == 0) return "";
  }
}

class Filler {
 public:
  Filler(Choices& choices, u16 version) : m_choices(choices), m_version(version) {}

  void Fill(KRDataObj& object, int depth) {
    const AggregateTable* const table = ObjectAccess::TableOf(object);
    if (table == nullptr || table->valid.count == 0) return;
    for (std::size_t steps = m_choices.Below(16) + 1; steps > 0 && !m_choices.AtEnd(); --steps) {
      const auto position = static_cast<u16>(m_choices.Below(table->valid.count));
      const Row& row = table->rows[position];
      const KRTagID tag = table->valid.table[position].tag;
      // What another version has may be held, and written by arrays, but is not read back.
      if (object.IsValidTag(tag) == 0) continue;
      // A payroll sign-on writes these two, and reads them as texts of its own.
      const bool isOfSignOn = tag == KRTag_APPID || tag == KRTag_APPVER;
      if (isOfSignOn && object.IsValidTag(KRTag_N_ONSERVICE) != 0) continue;
      if (row.value != nullptr) {
        const KRString text = ChooseText(*row.value);
        // A language without a text is a value, which is written as a tag alone.
        if (row.value->form == ValueForm::kLanguage && text.IsEmpty() != 0) continue;
        SetFromText(object, tag, *row.value, row.member(object), text);
      } else if (row.create != nullptr && depth < kMostDepth) {
        SetChildOf(object, row, tag, depth);
      }
    }
  }

 private:
  KRString ChooseText(const ValueKind& kind) {
    const std::size_t choice = m_choices.Below(256);
    if (choice >= kFirstKeyword) {
      const std::size_t number = choice - kFirstKeyword;
      const std::string keyword = KeywordOf(kind, static_cast<u32>(number));
      return KRString(keyword.empty() ? kRareSamples[number % std::size(kRareSamples)]
                                      : keyword.c_str());
    }
    const std::size_t which = choice % (std::size(kSamples) + 4);
    if (which < std::size(kSamples)) return KRString(kSamples[which]);
    // A text ends at its first NUL, and reading takes white space at its ends away.
    std::string text = std::string(m_choices.Text(40)).c_str();
    constexpr char kWhite[] = " \t\r\n\v\f";
    text.erase(text.find_last_not_of(kWhite) + 1);
    text.erase(0, text.find_first_not_of(kWhite));
    return KRString(text.c_str());
  }

  void SetChildOf(KRDataObj& object, const Row& row, KRTagID tag, int depth) {
    std::unique_ptr<KRDataObj> child(row.create(*KRDataObj::GetFactory()));
    child->SetType(tag);
    child->SetMsgSetVersion(m_version);
    Fill(*child, depth + 1);
    void* const member = row.member(object);
    if (row.array == nullptr) {
      auto& slot = *static_cast<ChildSlot*>(member);
      if (row.shared) {
        SetSharedChild(object, slot, child.release());
      } else {
        SetChild(object, slot, tag, child.release());
      }
    } else if (!BelongsElsewhere(object, member, child.get()) &&
               row.array->set(member, row.array->entries(member), child.get()) == 1) {
      child.release();
      object.SetTag(tag);
    }
  }

  Choices& m_choices;
  const u16 m_version;
};

void Run(Bytes bytes) {
  Choices choices(bytes);
  const krofx::testing::AnyClass& any = ChooseClass(choices);
  const u16 version = static_cast<u16>(1 + choices.Below(2));
  const auto tree = any.Make(version);
  Filler(choices, version).Fill(*tree, 0);

  const std::string written = Written(*tree);
  ExpectSame(written, Written<HostBuilder>(*tree), "both ways of writing come to one text");
  const std::string strict = Written(*tree, KRBuildStringOpt_Strict);
  ExpectSame(strict, Written<HostBuilder>(*tree, KRBuildStringOpt_Strict),
             "strict writing is one, too");
  const auto copied = any.Make(version);
  Expect(CopyObject(*copied, *tree) == 1, "a tree can be copied");
  ExpectSame(written, Written(*copied), "a copy is written as its original");

  if (IsText(strict)) {
    const auto again = any.Make(version);
    again->SetType(tree->GetType());
    std::string warnings;
    ReadInto<KRSimpleParser>(*again, strict, true, &warnings);
    ExpectSame(strict, Written(*again), "a written text is written again");
  }
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

const Target kTarget("setters", &Run);

}  // namespace
