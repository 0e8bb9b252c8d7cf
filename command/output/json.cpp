// The one source that includes the library that writes JSON.

#include "output/json.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace krofx::command {

namespace {

using Library = nlohmann::ordered_json;

constexpr int kVersion = 1;

}  // namespace

struct Json::Value {
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

std::string Json::TextOf(const char* format, Json files) {
  Json all = Object();
  all.Set("format", format).Set("version", kVersion).Set("files", std::move(files));
  return all.m_value->held.dump(2, ' ', false, Library::error_handler_t::replace) + "\n";
}

}  // namespace krofx::command
