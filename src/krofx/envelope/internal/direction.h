// What differs between the two directions of the envelope, requests and responses.
//
// Each class of the envelope that exists once for each direction is a template over its Side, or
// calls functions that take one. What differs between the sides is here and in the routing tables
// (krofx/envelope/internal/routing.h).

#ifndef KROFX_ENVELOPE_INTERNAL_DIRECTION_H_
#define KROFX_ENVELOPE_INTERNAL_DIRECTION_H_

#include "krofx/core/tags.h"
#include "krofx/envelope/internal/side.h"

class KRDataObjFactory;
class KRDynamicArrayRequest;
class KRDynamicArrayResponse;
class KRMessageSetRq;
class KRMessageSetRs;
class KRRequest;
class KRResponse;
class KRSignOnRq;
class KRSignOnRs;
class KRSyncRq;
class KRSyncRs;
class KRTransRq;
class KRTransRs;

namespace krofx::internal {

/// The classes of a side, its tags, and its operations of the factory. Each operation gives null
/// when memory is exhausted.
template <Side kSide>
struct Direction;

/// Requests.
template <>
struct Direction<Side::kRequest> {
  using Trans = KRTransRq;
  using Sync = KRSyncRq;
  using SignOn = KRSignOnRq;
  using MessageSet = KRMessageSetRq;
  using Body = KRRequest;
  using Bodies = KRDynamicArrayRequest;

  static constexpr KRTagID kSignOn = KRTag_SONRQ;
  static constexpr KRTagID kSignOnSets[] = {KRTag_SIGNONMSGSRQV1, KRTag_SIGNONMSGSRQV2};

  static Trans* NewTrans(KRDataObjFactory& factory, KRTagID tag);
  static Sync* NewSync(KRDataObjFactory& factory, KRTagID tag);
  static SignOn* NewSignOn(KRDataObjFactory& factory);
  static MessageSet* NewMessageSet(KRDataObjFactory& factory);
  static Body* NewBody(KRDataObjFactory& factory);
};

/// Responses.
template <>
struct Direction<Side::kResponse> {
  using Trans = KRTransRs;
  using Sync = KRSyncRs;
  using SignOn = KRSignOnRs;
  using MessageSet = KRMessageSetRs;
  using Body = KRResponse;
  using Bodies = KRDynamicArrayResponse;

  static constexpr KRTagID kSignOn = KRTag_SONRS;
  static constexpr KRTagID kSignOnSets[] = {KRTag_SIGNONMSGSRSV1, KRTag_SIGNONMSGSRSV2};

  static Trans* NewTrans(KRDataObjFactory& factory, KRTagID tag);
  static Sync* NewSync(KRDataObjFactory& factory, KRTagID tag);
  static SignOn* NewSignOn(KRDataObjFactory& factory);
  static MessageSet* NewMessageSet(KRDataObjFactory& factory);
  static Body* NewBody(KRDataObjFactory& factory);
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_DIRECTION_H_
