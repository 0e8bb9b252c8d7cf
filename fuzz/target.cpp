// The list of targets, the properties that they test, and their choices.

#include "target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace krofx::fuzz {

namespace {

const Target*& Head() {
  static const Target* head = nullptr;
  return head;
}

void Show(const char* which, std::string_view text) {
  std::fprintf(stderr, "--- %s, %zu bytes\n", which, text.size());
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fputc('\n', stderr);
}

}  // namespace

Target::Target(const char* name, void (*run)(Bytes bytes))
    : m_name(name), m_run(run), m_next(Head()) {
  Head() = this;
}

const Target* Target::First() { return Head(); }

void Expect(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

void ExpectSame(std::string_view first, std::string_view second, const char* property) {
  if (first == second) return;
  Show("first", first);
  Show("second", second);
  Expect(false, property);
}

unsigned char Choices::TakeByte() {
  if (m_bytes.empty()) return 0;
  const auto byte = static_cast<unsigned char>(m_bytes.front());
  m_bytes.remove_prefix(1);
  return byte;
}

std::size_t Choices::Below(std::size_t count) {
  std::size_t number = TakeByte();
  if (count > 256) number = number << 8 | TakeByte();
  return number % count;
}

Bytes Choices::Text(std::size_t most) {
  const std::size_t length = std::min(Below(most + 1), m_bytes.size());
  const Bytes text = m_bytes.substr(0, length);
  m_bytes.remove_prefix(length);
  return text;
}

}  // namespace krofx::fuzz
