// The one source that includes the library that writes JSON.

#include "output/json.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace krofx::command {

namespace {

using Library = nlohmann::ordered_json;

constexpr int kVersion = 1;

}  // namespace

// The library's values are moved without an exception, but do not say so.
struct Json::Value {  // NOLINT(bugprone-exception-escape)
  Library held;
};

Json::Json() : m_value(std::make_unique<Value>()) {}
Json::~Json() = default;
Json::Json(Json&& other) noexcept = default;
Json& Json::operator=(Json&& other) noexcept = default;

Json Json::Of(bool value) {
  Json json;
  json.m_value->held = value;
  return json;
}

Json Json::Of(long long value) {
  Json json;
  json.m_value->held = value;
  return json;
}

Json Json::Of(const std::string& value) {
  Json json;
  json.m_value->held = value;
  return json;
}

Json Json::Object() {
  Json json;
  json.m_value->held = Library::object();
  return json;
}

Json Json::Array() {
  Json json;
  json.m_value->held = Library::array();
  return json;
}

Json& Json::Set(const std::string& key, Json value) {
  m_value->held[key] = std::move(value.m_value->held);
  return *this;
}

void Json::SetAgain(const std::string& key, Json value) {
  if (!m_value->held.contains(key)) {
    Set(key, std::move(value));
    return;
  }
  Library& held = m_value->held[key];
  if (!held.is_array()) held = Library::array({std::move(held)});
  held.push_back(std::move(value.m_value->held));
}

void Json::Append(Json value) { m_value->held.push_back(std::move(value.m_value->held)); }

std::string Json::Text(std::size_t indent) const {
  const std::string lines = m_value->held.dump(2, ' ', false, Library::error_handler_t::replace);
  // Line ends within texts are escaped: those that are left are those of the layout.
  const std::string blanks(indent, ' ');
  std::string text;
  for (const char character : lines) {
    text += character;
    if (character == '\n') text += blanks;
  }
  return text;
}

std::string Json::HeadOf(const char* format) {
  return std::string("{\n  \"format\": \"") + format +
         "\",\n  \"version\": " + std::to_string(kVersion) + ",\n  \"files\": [";
}

std::string Json::TailOf(bool any) { return any ? "\n  ]\n}\n" : "]\n}\n"; }

Json Json::Output(const char* format) {
  Json output = Object();
  output.Set("format", format).Set("version", kVersion);
  return output;
}

}  // namespace krofx::command
