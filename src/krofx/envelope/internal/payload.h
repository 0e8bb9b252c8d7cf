// The payload of a transaction wrapper, and those that a parse has replaced.

#ifndef KROFX_ENVELOPE_INTERNAL_PAYLOAD_H_
#define KROFX_ENVELOPE_INTERNAL_PAYLOAD_H_

#include "krofx/envelope/internal/side.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/child_slot.h"
#include "krofx/model/value_arrays.h"

namespace krofx::internal {

/// Owns the payload of a wrapper. A second payload in a parse replaces the first one without a
/// warning. A caller that has a pointer to the first can use it until the wrapper is destroyed.
class KROFX_API Payload {
 public:
  /// @return the payload; null when there is none.
  KRTransBase* Get() const { return static_cast<KRTransBase*>(m_slot.Get()); }
  /// Takes ownership of `payload` and deletes the one held before.
  void Set(KRTransBase* payload) { m_slot.Set(payload); }
  /// Gives up the payload without deleting it.
  void Disconnect() { m_slot.Release(); }

  /// Makes the payload of a tag through the factory. It replaces the one held, which exists until
  /// this object is destroyed.
  /// @return 0; 3 no factory or no memory; 4 the tag is not that of a payload.
  KRParseStatus Make(Side side, KRTagID tag);
  /// Makes this a deep copy of `source`.
  /// @return 1; 0 no factory or no memory.
  u16 CopyFrom(const Payload& source);

 private:
  ChildSlot m_slot;
  KRDynamicArrayDataObj m_replaced{1, 1};
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_PAYLOAD_H_
