// What a data object holds, as a plain tree of tags and typed values.
//
// The tree is what the object itself would write: it is made by building the object with a builder
// that keeps the parts instead of the text. So any aggregate can be shown without knowledge of its
// class, in wire order, and one that the library learns later needs nothing here. Passwords never
// get into the tree.

#ifndef KROFX_COMMAND_INPUT_ELEMENT_TREE_H_
#define KROFX_COMMAND_INPUT_ELEMENT_TREE_H_

#include <string_view>

#include "krofx/krofx.h"
#include "output/masking.h"
#include "output/text_arena.h"

namespace krofx::command {

/// How a value is meant.
enum class ValueKind : u8 {
  kText,     ///< Text or a keyword.
  kAmount,   ///< An exact decimal, with all the places that it was given with.
  kDate,     ///< A date, in the form of ISO 8601.
  kInteger,  ///< A whole number.
  kBoolean,  ///< "true" or "false".
  kBlank,    ///< A payroll value that says that it is blank, in words.
};

struct Element;

/// The elements of an aggregate, in their order.
class ElementList {
 public:
  class Iterator {
   public:
    explicit Iterator(const Element* at) : m_at(at) {}
    const Element& operator*() const { return *m_at; }
    inline Iterator& operator++();
    bool operator==(const Iterator&) const = default;

   private:
    const Element* m_at;
  };

  Iterator begin() const { return Iterator(m_first); }
  Iterator end() const { return Iterator(nullptr); }
  bool empty() const { return m_first == nullptr; }
  /// @return the first of them, after which the others follow; null for none.
  Element* First() const { return m_first; }
  inline void Append(Element& element);

 private:
  Element* m_first = nullptr;
  Element* m_last = nullptr;
};

/// An aggregate with its children, or an element with its value. The arena that it was made in owns
/// its texts and its children.
struct Element {
  std::string_view tag;
  std::string_view value;
  ElementList children;
  Element* next = nullptr;  ///< The one after it in the same aggregate.
  KRTagID id = KRTag_None;
  bool isAggregate = false;
  ValueKind kind = ValueKind::kText;
  Disclosure disclosure = Disclosure::kAll;

  /// @return the first child of this tag, or null.
  const Element* Find(std::string_view childTag) const;
};

inline ElementList::Iterator& ElementList::Iterator::operator++() {
  m_at = m_at->next;
  return *this;
}

inline void ElementList::Append(Element& element) {
  (m_last == nullptr ? m_first : m_last->next) = &element;
  m_last = &element;
}

/// Takes apart what `object` holds: the children of the result are its members, or, for a file, its
/// bodies.
/// @param arena owns the result.
/// @param text the text that the object was read from, whose character set its values are in; null
///        for one that was not read.
/// @param mayHaveCards whether accounts without a bank or broker are taken for cards, whose numbers
///        are hidden: see ParsedFile::MayHaveMovedCards.
const Element& ReadElements(KRDataObj& object, TextArena& arena,
                            const krofx::OfxText* text = nullptr, bool mayHaveCards = false);

/// Takes apart one aggregate of a file, with its own tag.
/// @param inPayroll whether it is in a message set of payroll.
const Element& ReadElement(KRDataObj& object, KRTagID tag, bool inPayroll, TextArena& arena,
                           const krofx::OfxText* text, bool mayHaveCards = false);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_ELEMENT_TREE_H_
