// Parses header lines and composes them again.

#include "krofx/transport/curl/internal/request_headers.h"

#include <strings.h>

#include <cstring>

#include "krofx/core/memory.h"
#include "krofx/transport/curl/curl_code.h"

namespace krofx::internal {

namespace {

constexpr char kContentType[] = "Content-Type";

// These headers determine where a message ends, which only libcurl may decide.
constexpr const char* kFraming[] = {"Content-Length", "Transfer-Encoding", "Expect"};

// The characters of a header's name.
bool IsTokenCharacter(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z') ||
         (character != '\0' && std::strchr("!#$%&'*+-.^_`|~", character) != nullptr);
}

// Text, also beyond ASCII; no control character except the tab.
bool IsValueCharacter(char character) {
  return character == '\t' || (static_cast<unsigned char>(character) >= ' ' && character != 0x7f);
}

bool IsBlank(char character) { return character == ' ' || character == '\t'; }

bool IsName(const char* text, std::size_t length, const char* name) {
  return std::strlen(name) == length && strncasecmp(text, name, length) == 0;
}

}  // namespace

u16 RequestHeaders::Set(const char* contentType, const char* extraHeaders) {
  curl_slist_free_all(m_list);
  m_list = nullptr;
  m_hasContentType = false;
  u16 code = VYNCurlCode_Success;
  const char* at = extraHeaders == nullptr ? "" : extraHeaders;
  while (*at != '\0' && code == VYNCurlCode_Success) {
    const std::size_t toEnd = std::strcspn(at, "\n");
    const std::size_t length =
        toEnd > 0 && at[toEnd - 1] == '\r' && at[toEnd] == '\n' ? toEnd - 1 : toEnd;
    if (length > 0) code = AddExtra(at, length);
    at += at[toEnd] == '\0' ? toEnd : toEnd + 1;
  }
  if (code == VYNCurlCode_Success && contentType != nullptr && !m_hasContentType) {
    code = AddLine(kContentType, sizeof kContentType - 1, contentType, std::strlen(contentType));
  }
  // An empty value switches off libcurl's own line: some servers never answer an expectation.
  if (code == VYNCurlCode_Success) {
    curl_slist* const longer = curl_slist_append(m_list, "Expect:");
    if (longer == nullptr) code = VYNCurlCode_NoMemory;
    if (longer != nullptr) m_list = longer;
  }
  if (code != VYNCurlCode_Success) {
    curl_slist_free_all(m_list);
    m_list = nullptr;
  }
  return code;
}

u16 RequestHeaders::AddExtra(const char* line, std::size_t length) {
  std::size_t nameLength = 0;
  while (nameLength < length && IsTokenCharacter(line[nameLength])) ++nameLength;
  if (nameLength == 0 || nameLength == length || line[nameLength] != ':') {
    return VYNCurlCode_BadHeader;
  }
  for (const char* const name : kFraming) {
    if (IsName(line, nameLength, name)) return VYNCurlCode_BadHeader;
  }
  if (IsName(line, nameLength, kContentType)) m_hasContentType = true;
  return AddLine(line, nameLength, line + nameLength + 1, length - nameLength - 1);
}

u16 RequestHeaders::AddLine(const char* name, std::size_t nameLength, const char* value,
                            std::size_t valueLength) {
  while (valueLength > 0 && IsBlank(*value)) {
    ++value;
    --valueLength;
  }
  while (valueLength > 0 && IsBlank(value[valueLength - 1])) --valueLength;
  for (std::size_t i = 0; i < valueLength; ++i) {
    if (!IsValueCharacter(value[i])) return VYNCurlCode_BadHeader;
  }
  const std::size_t room = nameLength + valueLength + sizeof ": ";
  auto* const line = static_cast<char*>(Allocate(room));
  if (line == nullptr) return VYNCurlCode_NoMemory;
  std::memcpy(line, name, nameLength);
  // For libcurl "Name:" means to leave out a line, and "Name;" is a line with an empty value.
  char* at = line + nameLength;
  *at++ = valueLength == 0 ? ';' : ':';
  if (valueLength != 0) *at++ = ' ';
  std::memcpy(at, value, valueLength);
  at[valueLength] = '\0';
  curl_slist* const longer = curl_slist_append(m_list, line);
  Free(line);
  if (longer == nullptr) return VYNCurlCode_NoMemory;
  m_list = longer;
  return VYNCurlCode_Success;
}

}  // namespace krofx::internal
