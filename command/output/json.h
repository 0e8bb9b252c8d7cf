// JSON as the command writes it: the order of keys is kept, and the outermost object says which
// form it has. One source includes the library that writes it, whose headers are slow to compile.

#ifndef KROFX_COMMAND_OUTPUT_JSON_H_
#define KROFX_COMMAND_OUTPUT_JSON_H_

#include <concepts>
#include <cstddef>
#include <memory>
#include <string>

namespace krofx::command {

/// A value of JSON.
class Json {
 public:
  /// The value null.
  Json();
  Json(bool value) : Json(Of(value)) {}
  Json(std::integral auto value) : Json(Of(static_cast<long long>(value))) {}
  Json(const std::string& value) : Json(Of(value)) {}
  Json(const char* value) : Json(Of(std::string(value))) {}
  ~Json();
  Json(Json&& other) noexcept;
  Json& operator=(Json&& other) noexcept;

  static Json Object();
  static Json Array();

  /// Adds a member to an object. A key that is there gets the new value.
  Json& Set(const std::string& key, Json value);
  /// Adds a member to an object. A key that is there gets a list of its values.
  void SetAgain(const std::string& key, Json value);
  /// Adds an element to an array.
  void Append(Json value);

  /// @param indent how many blanks its lines after the first have before them.
  /// @return the text of a value that is a part of another one.
  std::string Text(std::size_t indent) const;
  /// What comes before the files of an output, and what comes after them. An output is an object
  /// with the name and version of its form; its files follow each other with commas between them.
  /// The version is that of docs/json.md: keys may be added within it; what is there keeps its
  /// meaning.
  /// @param any whether there is a file.
  static std::string HeadOf(const char* format);
  static std::string TailOf(bool any);
  /// How far in the files are.
  static constexpr std::size_t kFileIndent = 4;
  /// @return an object with the name and version of a form, to which the members of an output are
  ///         added.
  static Json Output(const char* format);

 private:
  struct Value;

  static Json Of(bool value);
  static Json Of(long long value);
  static Json Of(const std::string& value);

  std::unique_ptr<Value> m_value;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_JSON_H_
