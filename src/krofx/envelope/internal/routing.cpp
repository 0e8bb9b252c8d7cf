// Looking things up in the compiled routing tables.

#include "krofx/envelope/internal/routing.h"

namespace krofx::internal {

namespace {

template <class Row, class Matches>
const Row* FindIn(const Rows<Row>& table, Matches matches) {
  for (const Row& row : table) {
    if (matches(row)) return &row;
  }
  return nullptr;
}

const PayloadRoute* PayloadIn(const TransactionRoute& route, KRTagID tag) {
  for (u8 i = 0; i < route.payloadCount; ++i) {
    if (route.payloads[i].tag == tag) return &route.payloads[i];
  }
  return nullptr;
}

bool Lists(const KRArrayOfTags& tags, KRTagID tag) { return FindTagRow(tags, tag, 0xffff) >= 0; }

}  // namespace

const TransactionRoute* FindTransaction(Side side, KRTagID wrapper) {
  return FindIn(Transactions(side),
                [wrapper](const TransactionRoute& row) { return row.wrapper == wrapper; });
}

const SyncRoute* FindSync(Side side, KRTagID wrapper) {
  return FindIn(Syncs(side), [wrapper](const SyncRoute& row) { return row.wrapper == wrapper; });
}

const MessageSetRoute* FindMessageSet(Side side, KRTagID tag) {
  return FindIn(MessageSets(side), [tag](const MessageSetRoute& row) { return row.tag == tag; });
}

const PayloadRoute* FindPayload(Side side, KRTagID tag) {
  for (const TransactionRoute& route : Transactions(side)) {
    if (const PayloadRoute* payload = PayloadIn(route, tag)) return payload;
  }
  return nullptr;
}

KRTagID WrapperOfPayload(KRTagID payload) {
  for (const TransactionRoute& route : Transactions(Side::kRequest)) {
    if (route.mapped && PayloadIn(route, payload) != nullptr) return route.wrapper;
  }
  return KRTag_None;
}

KRTagID SyncOfPayload(KRTagID payload) {
  // The payroll wrapper itself is asked for too, beside its payload.
  if (payload == KRTag_N_PAYROLLTRNRQ) return KRTag_N_PAYROLLUPDATERQ;
  for (const TransactionRoute& route : Transactions(Side::kRequest)) {
    if (PayloadIn(route, payload) == nullptr) continue;
    for (const SyncRoute& sync : Syncs(Side::kRequest)) {
      if (sync.mapped && Lists(sync.valid, route.wrapper)) return sync.wrapper;
    }
  }
  return KRTag_None;
}

KRTagID FamilyOf(KRTagID tag) {
  const FamilyRoute* row =
      FindIn(Families(), [tag](const FamilyRoute& route) { return route.tag == tag; });
  return row == nullptr ? KRTag_None : row->family;
}

}  // namespace krofx::internal
