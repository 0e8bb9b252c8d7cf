// The functions of the C library that go through memory, a byte at a time: a search or a copy that
// is made too often then takes more instructions than what is done with its result, and shows in a
// count of them for texts of some kilobytes.

#include <cstddef>

extern "C" {

void* memchr(const void* memory, int byte, std::size_t size) {
  auto* at = static_cast<const unsigned char*>(memory);
  for (; size != 0; --size, ++at) {
    if (*at == static_cast<unsigned char>(byte)) return const_cast<unsigned char*>(at);
  }
  return nullptr;
}

int memcmp(const void* left, const void* right, std::size_t size) {
  auto* a = static_cast<const unsigned char*>(left);
  auto* b = static_cast<const unsigned char*>(right);
  for (; size != 0; --size, ++a, ++b) {
    if (*a != *b) return *a - *b;
  }
  return 0;
}

void* memcpy(void* to, const void* from, std::size_t size) {
  auto* out = static_cast<unsigned char*>(to);
  auto* in = static_cast<const unsigned char*>(from);
  for (; size != 0; --size) *out++ = *in++;
  return to;
}

void* memmove(void* to, const void* from, std::size_t size) {
  if (to <= from) return memcpy(to, from, size);
  auto* out = static_cast<unsigned char*>(to) + size;
  auto* in = static_cast<const unsigned char*>(from) + size;
  for (; size != 0; --size) *--out = *--in;
  return to;
}

void* memset(void* memory, int byte, std::size_t size) {
  auto* out = static_cast<unsigned char*>(memory);
  for (; size != 0; --size) *out++ = static_cast<unsigned char>(byte);
  return memory;
}

std::size_t strlen(const char* text) {
  const char* end = text;
  while (*end != '\0') ++end;
  return static_cast<std::size_t>(end - text);
}

}  // extern "C"
