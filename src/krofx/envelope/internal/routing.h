// What travels in what: the tables of message sets and wrappers.
//
// One wrapper class serves every wrapper tag and one message-set class every set; the object's type
// selects its row here. The rows are compiled from routing.schema.

#ifndef KROFX_ENVELOPE_INTERNAL_ROUTING_H_
#define KROFX_ENVELOPE_INTERNAL_ROUTING_H_

#include "krofx/envelope/internal/side.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

/// A payload tag and its class.
struct PayloadRoute {
  KRTagID tag;
  /// Makes the payload.
  CreateChild create;
};

/// What a transaction wrapper requires of the tags of its payloads.
enum class PayloadRule : u8 {
  kHeld,     ///< Nothing more than every wrapper requires.
  kPayload,  ///< The tag of its only payload is present.
  kChoice,   ///< An odd number of the tags is present.
  kAny,      ///< At least one of them is present.
};

/// Whether a status of a response excuses a missing payload.
enum class Excuse : u8 {
  kNone,   ///< It does not.
  kHeld,   ///< The status's value does.
  kShown,  ///< It does when the value is present too.
};

/// One transaction wrapper.
struct TransactionRoute {
  KRTagID wrapper;
  KRArrayOfTags valid;
  const PayloadRoute* payloads;
  /// The tags of several payloads; null for a wrapper of one.
  const KRTagID* payloadTags;
  u8 payloadCount;
  PayloadRule rule;
  Excuse error;     ///< A severity of ERROR.
  Excuse upToDate;  ///< A code of 1.
  bool mapped;      ///< Found from its payload's tag.
};

/// One synchronisation wrapper.
struct SyncRoute {
  KRTagID wrapper;
  KRArrayOfTags valid;
  bool eitherAccount;
  const KRTagID* needs;
  u8 needsCount;
  bool mapped;
};

/// One message set of one version.
struct MessageSetRoute {
  KRTagID tag;
  /// Its children, in the order of writing.
  KRArrayOfTags valid;
};

/// A request's tag and the message set that a profile lists for it.
struct FamilyRoute {
  KRTagID tag;
  KRTagID family;
};

/// @return the row of a tag; null when the table has none.
const TransactionRoute* FindTransaction(Side side, KRTagID wrapper);
const SyncRoute* FindSync(Side side, KRTagID wrapper);
const MessageSetRoute* FindMessageSet(Side side, KRTagID tag);
/// @return the payload of a tag in any wrapper of the side; null when no wrapper carries it.
const PayloadRoute* FindPayload(Side side, KRTagID tag);
/// @return the tags of all message sets of a side, each with its version, in the order of writing.
KRArrayOfTags MessageSetTags(Side side);

/// @return the wrapper of a request's payload tag, 0 when it has none.
KRTagID WrapperOfPayload(KRTagID payload);
/// @return the synchronisation wrapper of a request's payload tag, 0 when it has none.
KRTagID SyncOfPayload(KRTagID payload);
/// @return the message set, without a version, that a profile lists for a request's tag; 0 for
///         none.
KRTagID FamilyOf(KRTagID tag);

/// A compiled table.
template <class Row>
struct Rows {
  const Row* rows;
  u16 count;
  const Row* begin() const { return rows; }
  const Row* end() const { return rows + count; }
};
Rows<TransactionRoute> Transactions(Side side);
Rows<SyncRoute> Syncs(Side side);
Rows<MessageSetRoute> MessageSets(Side side);
Rows<FamilyRoute> Families();

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_ROUTING_H_
