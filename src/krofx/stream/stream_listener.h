// Hearing of what is out of order in a streamed text while it is read.

#ifndef KROFX_STREAM_STREAM_LISTENER_H_
#define KROFX_STREAM_STREAM_LISTENER_H_

#include "krofx/core/export.h"
#include "krofx/reader/reading.h"

namespace krofx {

/// Hears of each warning and mending, also of those beyond the number that the stream keeps. The
/// operations are called on the thread that reads, and must not use the stream.
class KROFX_API StreamListener {
 public:
  /// A warning: something was out of order.
  virtual void OnWarning(const ReadWarning& warning) = 0;
  /// A mending: something was out of order, and the element has what was meant. In the path,
  /// elements of lists have a number, as in that of a StreamElement.
  virtual void OnMending(const Mending& /*mending*/) {}

 protected:
  ~StreamListener() = default;
};

}  // namespace krofx

#endif  // KROFX_STREAM_STREAM_LISTENER_H_
