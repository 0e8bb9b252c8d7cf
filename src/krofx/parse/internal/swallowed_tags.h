// How often a parse has taken another tag for attributes, for readers that must not lose it: the
// parse itself says nothing of it.

#ifndef KROFX_PARSE_INTERNAL_SWALLOWED_TAGS_H_
#define KROFX_PARSE_INTERNAL_SWALLOWED_TAGS_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// @return how many tags of the texts in memory that this thread has parsed had lost their '>', so
///         that the beginning of the next tag was read as attributes.
KROFX_API std::size_t& SwallowedTags();

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_SWALLOWED_TAGS_H_
