// An OFX text as a list of tags that can be damaged and written out in many ways.

#ifndef KROFX_TESTS_READER_DAMAGE_DOCUMENT_H_
#define KROFX_TESTS_READER_DAMAGE_DOCUMENT_H_

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace krofx::testing {

/// Random choices that are the same on every machine.
class Dice {
 public:
  explicit Dice(unsigned seed) : m_random(seed) {}
  /// A number from 0 to the one below `limit`, which is above 0.
  std::size_t Below(std::size_t limit) { return m_random() % limit; }
  /// One of some values.
  template <class Values>
  auto& OneOf(Values& values) {
    return values[Below(std::size(values))];
  }

 private:
  std::mt19937 m_random;
};

/// A tag, with what follows it up to the next one.
struct Token {
  enum class Type { kStart, kElement, kEnd, kLiteral };

  Type type = Type::kLiteral;
  std::string tag;
  std::string value;       ///< Of an element as it is written; of a literal all that is written.
  std::size_t number = 0;  ///< Stays the same in all copies of a document; 0 for a new one.

  bool Is(Type wanted, std::string_view name) const { return type == wanted && tag == name; }
};

/// How a character is encoded.
enum class Encoding { kBytes, kUtf16LittleEndian, kUtf16BigEndian };

/// A text in pieces.
struct Document {
  std::string front;   ///< What is in front of the header.
  std::string header;  ///< The header with its blank line.
  std::vector<Token> tokens;
  std::string lineEnd = "\r\n";
  bool indented = false;
  bool closed = false;     ///< Elements have end tags.
  bool lowerCase = false;  ///< Of tags.
  bool blanksInTags = false;
  Encoding encoding = Encoding::kBytes;

  /// The tokens of a text as the builder writes it: one tag a line.
  explicit Document(const std::string& text);

  /// The text.
  std::string Text() const;
  /// The places of the tokens for which a condition holds.
  template <class Condition>
  std::vector<std::size_t> Find(Condition condition) const {
    std::vector<std::size_t> places;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
      if (condition(tokens[at])) places.push_back(at);
    }
    return places;
  }
  /// The place of the token with a number, or the number of tokens.
  std::size_t PlaceOf(std::size_t number) const;
  /// The tags that are open in front of a token, from the outermost.
  std::vector<std::string> OpenAt(std::size_t place) const;
  void Insert(std::size_t place, const Token& token) {
    tokens.insert(tokens.begin() + static_cast<std::ptrdiff_t>(place), token);
  }
  void Remove(std::size_t place) {
    tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(place));
  }
};

}  // namespace krofx::testing

#endif  // KROFX_TESTS_READER_DAMAGE_DOCUMENT_H_
