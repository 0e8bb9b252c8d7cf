// What a file is that is not OFX, in a sentence for the person who has it.

#ifndef KROFX_READER_FILE_REFUSAL_H_
#define KROFX_READER_FILE_REFUSAL_H_

#include <string_view>

#include "krofx/core/string.h"

namespace krofx::internal {

/// Says what a file is and what to do instead, without a capital letter and a full stop.
/// @param bytes the file as it came.
KRString DescribeForeignFile(std::string_view bytes);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_REFUSAL_H_
