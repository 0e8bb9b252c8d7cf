// Buffers that somebody owns, as the command does. It is compiled to allow that: KRBuffer has
// virtual operations and no virtual destructor.

#ifndef KROFX_TESTS_COMMAND_OWNED_BUFFERS_H_
#define KROFX_TESTS_COMMAND_OWNED_BUFFERS_H_

#include <memory>
#include <string>

#include "support/buffers.h"

/// A new buffer that holds a text.
inline std::unique_ptr<KRBuffer> NewBuffer(const std::string& text) {
  auto buffer = std::make_unique<KRBuffer>(0, 4096);
  EXPECT_EQ(Put(*buffer, text), KRBufferOK);
  return buffer;
}

#endif  // KROFX_TESTS_COMMAND_OWNED_BUFFERS_H_
