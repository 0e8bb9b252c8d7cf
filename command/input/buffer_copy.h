// Copies of texts that are needed twice.

#ifndef KROFX_COMMAND_INPUT_BUFFER_COPY_H_
#define KROFX_COMMAND_INPUT_BUFFER_COPY_H_

#include <memory>
#include <utility>

#include "krofx/core/buffer.h"

namespace krofx::command {

/// @return a copy of a text; null when memory is exhausted.
inline std::unique_ptr<KRBuffer> CopyOf(const KRBuffer& text) {
  auto copy = std::make_unique<KRBuffer>(text.GetBufferSize(), 4096);
  const bool whole =
      copy != nullptr && copy->WriteLarge(text.GetBufferPtr(), text.GetBufferSize()) == KRBufferOK;
  return whole ? std::move(copy) : nullptr;
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_BUFFER_COPY_H_
