// Groups what a report lists, and words each group.

#include "checking/summary.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace krofx::command {

namespace {

using krofx::MendingKind;

// How a number of things is called.
struct Wording {
  std::string_view one;
  std::string_view several;
};

struct MendingWording {
  MendingKind kind;
  Wording words;
};

constexpr Wording kUnknownTag = {"unknown tag", "unknown tags"};

constexpr MendingWording kMendings[] = {
    {MendingKind::kHeaderMissing, {"missing header", "missing headers"}},
    {MendingKind::kHeaderLayout, {"header in another layout", "headers in another layout"}},
    {MendingKind::kHeaderFieldMissing, {"missing header field", "missing header fields"}},
    {MendingKind::kHeaderFieldUnknown, {"unknown header field", "unknown header fields"}},
    {MendingKind::kHeaderValue, {"wrong header value", "wrong header values"}},
    {MendingKind::kHeaderForm, {"header of another version", "headers of another version"}},
    {MendingKind::kTextInFront, {"text before the OFX text", "texts before the OFX text"}},
    {MendingKind::kByteOrderMark, {"byte order mark", "byte order marks"}},
    {MendingKind::kWideCharacters, {"text in UTF-16 or UTF-32", "texts in UTF-16 or UTF-32"}},
    {MendingKind::kCharset, {"wrong name of a character set", "wrong names of character sets"}},
    {MendingKind::kControlCharacter,
     {"value with control characters", "values with control characters"}},
    {MendingKind::kBareLessThan, {"\"<\" that opens no tag", "\"<\" that open no tag"}},
    {MendingKind::kCharacterReference,
     {"unknown character reference", "unknown character references"}},
    {MendingKind::kDecimalComma, {"amount with a decimal comma", "amounts with a decimal comma"}},
    {MendingKind::kThousands,
     {"number with thousands separators", "numbers with thousands separators"}},
    {MendingKind::kAmbiguousSeparator,
     {"number judged by the others", "numbers judged by the others"}},
    {MendingKind::kAmountSign, {"amount with a misplaced sign", "amounts with a misplaced sign"}},
    {MendingKind::kAmountDecoration,
     {"number with other characters", "numbers with other characters"}},
    {MendingKind::kAmountAbsent, {"word in place of a number", "words in place of numbers"}},
    {MendingKind::kNumberRefused, {"unreadable number left out", "unreadable numbers left out"}},
    {MendingKind::kAmountUndecided, {"ambiguous number left out", "ambiguous numbers left out"}},
    {MendingKind::kNumberZeros, {"number with needless zeros", "numbers with needless zeros"}},
    {MendingKind::kNumberExponent, {"number with an exponent", "numbers with an exponent"}},
    {MendingKind::kDateAbsent, {"date that stands for none", "dates that stand for none"}},
    {MendingKind::kDateForm, {"date in another form", "dates in another form"}},
    {MendingKind::kDateZone, {"time zone in another form", "time zones in another form"}},
    {MendingKind::kDateRefused, {"unreadable date left out", "unreadable dates left out"}},
    {MendingKind::kDateZoneLost, {"time zone left out", "time zones left out"}},
    {MendingKind::kDateTimeLost, {"time of day left out", "times of day left out"}},
    {MendingKind::kDateOrder, {"date judged by the others", "dates judged by the others"}},
    {MendingKind::kTransactionType, {"unknown transaction type", "unknown transaction types"}},
    {MendingKind::kBoolean, {"yes or no in another form", "yes or no in another form"}},
    {MendingKind::kKeyword, {"keyword in another form", "keywords in another form"}},
    {MendingKind::kWordAbsent, {"word that stands for nothing", "words that stand for nothing"}},
    {MendingKind::kKeywordRefused, {"unknown keyword left out", "unknown keywords left out"}},
    {MendingKind::kEmptyElement, {"empty element", "empty elements"}},
    {MendingKind::kMissingEnd, {"missing end tag", "missing end tags"}},
    {MendingKind::kStrayEnd, {"stray end tag", "stray end tags"}},
    {MendingKind::kCutOff, {"place where it breaks off", "places where it breaks off"}},
    {MendingKind::kJoined, {"repeated aggregate joined", "repeated aggregates joined"}},
    {MendingKind::kReplaced, {"repeated aggregate replaced", "repeated aggregates replaced"}},
    {MendingKind::kOwnWrapper, {"answer without a wrapper", "answers without a wrapper"}},
    {MendingKind::kMissingStart, {"missing start tag", "missing start tags"}},
    {MendingKind::kMisplaced, {"misplaced tag left out", "misplaced tags left out"}},
    {MendingKind::kStrayText, {"stray text left out", "stray texts left out"}},
    {MendingKind::kPrivateTag, kUnknownTag},
    {MendingKind::kLaterTag, {"tag of a later version", "tags of a later version"}},
    {MendingKind::kUnknownTag, kUnknownTag},
    {MendingKind::kLetterCase, {"tag in lower case", "tags in lower case"}},
    {MendingKind::kTagForm, {"tag in another form", "tags in another form"}},
    {MendingKind::kTooDeep, {"aggregate too deep left out", "aggregates too deep left out"}},
    {MendingKind::kIncomplete, {"incomplete aggregate left out", "incomplete aggregates left out"}},
    {MendingKind::kTextRefused, {"refused text left out", "refused texts left out"}},
    {MendingKind::kEarlyEnd, {"end tag that came too early", "end tags that came too early"}},
    {MendingKind::kMoved, {"answer in the wrong message set", "answers in the wrong message set"}},
    {MendingKind::kAccountKind, {"account of another kind", "accounts of another kind"}},
    {MendingKind::kPayeeText, {"payee that is a text", "payees that are texts"}},
    {MendingKind::kRepeatedElement, {"element with two values", "elements with two values"}},
    {MendingKind::kMultipartDamage, {"damaged multipart text", "damaged multipart texts"}},
};

constexpr const MendingWording* FindWording(MendingKind kind) {
  return std::find_if(std::begin(kMendings), std::end(kMendings),
                      [kind](const MendingWording& each) { return each.kind == kind; });
}

// A new kind does not compile until it has words here.
#define KROFX_HAS_WORDS(number, name, english, repeat, sentence) \
  static_assert(FindWording(MendingKind::name) != std::end(kMendings), english);
KROFX_MENDING_KINDS(KROFX_HAS_WORDS)
#undef KROFX_HAS_WORDS

struct WarningWording {
  std::string_view name;
  Wording words;
};

constexpr WarningWording kWarnings[] = {
    {"KRPW_UNKNOWNTAG", kUnknownTag},
    {"KRPW_INVALIDAGG", {"misplaced tag", "misplaced tags"}},
    {"KRPW_INVALIDELEM", {"misplaced tag", "misplaced tags"}},
    {"KRPW_BADFORMAT", {"value in a wrong form", "values in a wrong form"}},
    {"KRPW_OUTOFRANGE", {"number out of range", "numbers out of range"}},
    {"KRPW_INVALIDENDAGG", {"stray end tag", "stray end tags"}},
    {kMissingTagWarning, {"missing tag", "missing tags"}},
    {"KRPW_LOWERCASE", {"tag in lower case", "tags in lower case"}},
    {"KRPW_EXTRAAGG", {"repeated aggregate", "repeated aggregates"}},
    {"KRPW_TOOLONG", {"text that is too long", "texts that are too long"}},
};

constexpr Wording kWarning = {"warning", "warnings"};
constexpr Wording kMissing = {"missing tag", "missing tags"};
constexpr Wording kUnmetRule = {"choice of tags not met", "choices of tags not met"};

// More lines than these are a list for --details.
constexpr std::size_t kMostLines = 3;

class Groups {
 public:
  // A line of 0 is none.
  void Add(const Wording& words, std::size_t line, std::size_t count = 1) {
    if (count == 0) return;
    auto group = std::find_if(m_groups.begin(), m_groups.end(), [&words](const Group& each) {
      return each.words.several == words.several;
    });
    if (group == m_groups.end()) group = m_groups.insert(group, Group{words});
    group->count += count;
    if (line > 0) group->lines.push_back(line);
  }

  std::string Text() {
    std::stable_sort(m_groups.begin(), m_groups.end(), [](const Group& left, const Group& right) {
      return left.count > right.count;
    });
    std::string text;
    for (Group& group : m_groups) {
      if (!text.empty()) text += ", ";
      text += std::to_string(group.count) + " ";
      text.append(group.count == 1 ? group.words.one : group.words.several);
      text += PlacesOf(group);
    }
    return text;
  }

 private:
  struct Group {
    Wording words;
    std::size_t count = 0;
    std::vector<std::size_t> lines = {};
  };

  // Lines that follow each other, or a few single ones.
  static std::string PlacesOf(Group& group) {
    std::vector<std::size_t>& lines = group.lines;
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    if (lines.empty()) return "";
    if (lines.size() == 1) return " (line " + std::to_string(lines.front()) + ")";
    if (lines.back() - lines.front() + 1 == lines.size()) {
      return " (lines " + std::to_string(lines.front()) + "-" + std::to_string(lines.back()) + ")";
    }
    if (lines.size() > kMostLines) return "";
    std::string text;
    for (const std::size_t line : lines) text += (text.empty() ? "" : ", ") + std::to_string(line);
    return " (lines " + text + ")";
  }

  std::vector<Group> m_groups;
};

Wording WordingOf(const Warning& warning) {
  for (const WarningWording& each : kWarnings) {
    if (warning.name == each.name) return each.words;
  }
  return kWarning;
}

}  // namespace

std::string SummaryOf(const Report& report) {
  if (report.verdict == kExitClean) return "clean";
  if (report.verdict == kExitUnusable) return "not usable: " + report.file.GetProblem();
  Groups groups;
  for (const krofx::Mending& each : report.file.GetMendings()) {
    groups.Add(FindWording(each.kind)->words, each.place.line);
  }
  for (const Warning& each : report.warnings) {
    // What is missing is counted once.
    if (each.name == kMissingTagWarning && !report.missing.listed.empty()) continue;
    groups.Add(WordingOf(each), each.place.line);
  }
  for (const MissingTag& each : report.missing.listed) {
    groups.Add(each.tag.empty() ? kUnmetRule : kMissing, 0);
  }
  groups.Add(kMissing, 0, report.missing.unlisted);
  std::string text = "usable; " + groups.Text();
  const std::size_t more = report.file.CountUnrecorded();
  return more == 0 ? text : text + ", " + std::to_string(more) + " more";
}

void VerdictCounts::Add(ExitStatus verdict) {
  ++(verdict == kExitClean ? m_clean : verdict == kExitWarnings ? m_warnings : m_unusable);
}

std::string VerdictCounts::Text() const {
  const std::size_t all = m_clean + m_warnings + m_unusable;
  std::string text = std::to_string(all) + (all == 1 ? " file" : " files");
  const char* separator = ": ";
  const auto add = [&](std::size_t count, const char* what) {
    if (count == 0) return;
    text.append(separator).append(std::to_string(count)).append(what);
    separator = ", ";
  };
  add(m_clean, " clean");
  add(m_warnings, " with warnings");
  add(m_unusable, " not usable");
  return text;
}

}  // namespace krofx::command
