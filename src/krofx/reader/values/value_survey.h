// What the values of a text look like as a whole, for values that are ambiguous by themselves.

#ifndef KROFX_READER_VALUES_VALUE_SURVEY_H_
#define KROFX_READER_VALUES_VALUE_SURVEY_H_

#include <cstddef>
#include <span>
#include <string_view>

#include "krofx/core/tags.h"
#include "krofx/reader/tags/scanner.h"

namespace krofx::internal {

class Charset;

/// Which sign is in front of the decimals.
enum class DecimalSign : u8 {
  kUnknown,  ///< No number shows it, or some show the one and some the other.
  kPoint,
  kComma,
};

/// What comes first in a date such as "01/02/2026".
enum class DayOrder : u8 {
  kUnknown,  ///< No date shows it, or some show the one and some the other.
  kDayFirst,
  kMonthFirst,
};

/// @return the tags of all elements whose values are decimal numbers.
std::span<const KRTagID> DecimalTags();

/// The elements of a text of which only a part is in memory.
class WholeText {
 public:
  /// Takes elements.
  class Visitor {
   public:
    virtual void OnElement(KRTagID tag, std::string_view text) = 0;

   protected:
    ~Visitor() = default;
  };

  /// Shows all elements that the dictionary knows, with their texts as written.
  virtual void ShowElements(Visitor& visitor) = 0;

 protected:
  ~WholeText() = default;
};

/// The elements of one text. Asking costs a walk over the text, so answers are worked out at the
/// first question and kept. Not to be used by two threads at once.
class ValueSurvey {
 public:
  /// @param text the whole text, which must outlive the survey.
  /// @param charset the one that it is in.
  ValueSurvey(std::string_view text, const TagDictionary& dictionary, const Charset& charset)
      : m_text(text), m_dictionary(dictionary), m_charset(charset) {}

  /// Looks at a text as a whole of which this one is a part; null for none.
  void SetWholeText(WholeText* whole) { m_whole = whole; }
  /// @return the character set of the text.
  const Charset& CharsetOfText() const { return m_charset; }

  /// @return the decimal sign of the text: the one that the other numbers in elements of this tag
  ///         show, or, when they show none, the one that all numbers of the text show.
  DecimalSign DecimalSignOf(KRTagID tag) const;

  /// @return whether what this survey has answered would be answered alike if the elements of
  ///         another one were of its text too.
  bool AgreesWith(const ValueSurvey& other) const;

  /// @return what comes first in the dates of the text that can be read in one way only.
  DayOrder OrderOfDays() const;

  /// Calls `visit(tag, text)` for each element that the dictionary knows, with its text as written.
  template <class Visit>
  void ForEachElement(Visit visit) const {
    if (m_whole != nullptr) {
      class Caller final : public WholeText::Visitor {
       public:
        explicit Caller(Visit& its) : m_visit(its) {}
        void OnElement(KRTagID tag, std::string_view text) override { m_visit(tag, text); }

       private:
        Visit& m_visit;
      } caller(visit);
      m_whole->ShowElements(caller);
      return;
    }
    Scanner scanner(m_text, m_dictionary, false);
    ScannedTag tag;
    for (scanner.Next(tag); tag.type != ScannedTag::Type::kEndOfText; scanner.Next(tag)) {
      if (tag.entry != nullptr && !tag.text.IsEmpty())
        visit(tag.entry->tagID, scanner.View(tag.text));
    }
  }

 private:
  // Bits: the numbers of a tag show the point, the comma.
  static constexpr u8 kShowsPoint = 1;
  static constexpr u8 kShowsComma = 2;
  static constexpr std::size_t kMostDecimalTags = 128;

  // Which sign bits stand for.
  static DecimalSign SignOf(u8 shown);
  // The order that two bits stand for.
  static DayOrder OrderOf(bool dayFirst, bool monthFirst);
  void LookAtNumbers() const;
  void LookAtDates() const;

  std::string_view m_text;
  WholeText* m_whole = nullptr;
  const TagDictionary& m_dictionary;
  const Charset& m_charset;
  mutable bool m_looked = false;
  mutable u8 m_shown[kMostDecimalTags] = {};
  mutable u8 m_shownByAny = 0;
  mutable bool m_lookedAtDates = false;
  mutable bool m_dayFirst = false;
  mutable bool m_monthFirst = false;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_VALUE_SURVEY_H_
