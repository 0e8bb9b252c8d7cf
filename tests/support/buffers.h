// Filling and reading whole byte buffers.

#ifndef KROFX_TESTS_SUPPORT_BUFFERS_H_
#define KROFX_TESTS_SUPPORT_BUFFERS_H_

#include <gtest/gtest.h>

#include <string>

#include "krofx/core/buffer.h"

/// Writes any number of bytes.
inline KRBufferResult Put(KRBuffer& buffer, const std::string& bytes) {
  return buffer.WriteLarge(bytes.data(), static_cast<u32>(bytes.size()));
}

/// The content as it is in memory.
inline std::string Content(const KRBuffer& buffer) {
  return std::string(buffer.GetBufferPtr(), buffer.GetBufferSize());
}

/// Expects the three numbers of a buffer.
inline void ExpectState(const KRBuffer& buffer, u32 allocation, u32 size, u32 offset) {
  EXPECT_EQ(buffer.GetBufferAllocation(), allocation);
  EXPECT_EQ(buffer.GetBufferSize(), size);
  EXPECT_EQ(buffer.GetBufferOffset(), offset);
}

#endif  // KROFX_TESTS_SUPPORT_BUFFERS_H_
