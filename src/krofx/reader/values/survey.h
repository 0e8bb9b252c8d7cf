// What the values of a text look like as a whole, for values that do not tell alone what they mean.

#ifndef KROFX_READER_VALUES_SURVEY_H_
#define KROFX_READER_VALUES_SURVEY_H_

#include <string_view>

#include "krofx/core/tags.h"
#include "krofx/reader/scanner.h"

namespace krofx::internal {

/// The elements of one text. Asking costs a walk over the text, so answers are worked out at the
/// first question and kept.
class ValueSurvey {
 public:
  /// @param text the whole text, which must outlive the survey.
  ValueSurvey(std::string_view text, const TagDictionary& dictionary)
      : m_text(text), m_dictionary(dictionary) {}

  /// Calls `visit(tag, text)` for each element that the dictionary knows, with its text as written.
  template <class Visit>
  void ForEachElement(Visit visit) const {
    Scanner scanner(m_text, m_dictionary, false);
    ScannedTag tag;
    for (scanner.Next(tag); tag.type != ScannedTag::Type::kEndOfText; scanner.Next(tag)) {
      if (tag.entry != nullptr && !tag.text.IsEmpty())
        visit(tag.entry->tagID, scanner.View(tag.text));
    }
  }

 private:
  std::string_view m_text;
  const TagDictionary& m_dictionary;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_SURVEY_H_
