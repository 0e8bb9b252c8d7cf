// The kinds of tag that OFX text is made of, shared by the engine that reads and the builder that
// writes.

#ifndef KROFX_CORE_TAG_TYPE_H_
#define KROFX_CORE_TAG_TYPE_H_

#include "krofx/core/types.h"

/// A kind of tag.
enum KRTagType : s32 {
  KRTagType_Unreadable = -1,  ///< The item could not be read; never written.
  KRTagType_Start = 0,        ///< Start of an aggregate: no text follows the tag.
  KRTagType_End = 1,          ///< End of an aggregate.
  KRTagType_Element = 2,      ///< An element: a tag followed by its text.
  KRTagType_EndOfInput = 3,   ///< The input has ended; never written.
};

#endif  // KROFX_CORE_TAG_TYPE_H_
