// Asking objects about their tags, through their tables and those of the envelope.

#include "krofx/reader/structure/aggregate_role.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "krofx/core/tag_dictionary.h"
#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/tag_index.h"

namespace krofx::internal {

namespace {

// How many aggregates may be missing around a tag.
constexpr int kMostMissing = 2;

bool IsMessageSet(KRTagID type) {
  return FindMessageSet(Side::kResponse, type) != nullptr ||
         FindMessageSet(Side::kRequest, type) != nullptr;
}

bool IsWrapper(KRTagID type) {
  return FindTransaction(Side::kResponse, type) != nullptr ||
         FindTransaction(Side::kRequest, type) != nullptr;
}

// Whether what an object takes beside the rows of its table are aggregates.
bool HoldsAggregates(KRDataObj& object) {
  const KRTagID type = object.GetType();
  return type == KRTag_OFXFILERS || type == KRTag_OFXFILERQ || type == KRTag_OFX ||
         IsMessageSet(type) || IsWrapper(type);
}

// The version of a message set: the last character of its tag.
u16 VersionOfSet(KRTagID set) {
  KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  const char* const name = dictionary == nullptr ? nullptr : dictionary->GetTagString(set);
  const std::string_view text = name == nullptr ? std::string_view() : name;
  return text.empty() ? u16{0} : static_cast<u16>(text.back() - '0');
}

// The message set of a version that a side carries a tag in.
KRTagID SetAround(Side side, KRTagID tag, u16 version = 1) {
  for (const MessageSetRoute& set : MessageSets(side)) {
    if (FindTagRow(set.valid, tag, version) >= 0 && VersionOfSet(set.tag) == version) {
      return set.tag;
    }
  }
  return KRTag_None;
}

// The wrapper that a side carries a payload in.
KRTagID WrapperAround(Side side, KRTagID tag) {
  for (const TransactionRoute& route : Transactions(side)) {
    for (u8 index = 0; index < route.payloadCount; ++index) {
      if (route.payloads[index].tag == tag) return route.wrapper;
    }
  }
  return KRTag_None;
}

// A child as it would be made, for a question to it.
class Sample {
 public:
  Sample(KRDataObj& parent, CreateChild create, KRTagID tag) {
    KRDataObjFactory* const factory = KRDataObj::GetFactory();
    m_object = factory == nullptr ? nullptr : create(*factory);
    if (m_object == nullptr) return;
    m_object->SetType(tag);
    if (const u16 version = parent.GetMsgSetVersion(); version != 0) {
      m_object->SetMsgSetVersion(version);
    }
  }
  Sample(const Sample&) = delete;
  Sample& operator=(const Sample&) = delete;
  ~Sample() { delete m_object; }
  KRDataObj* Get() const { return m_object; }

 private:
  KRDataObj* m_object = nullptr;
};

// The payload of a wrapper that holds a tag, if exactly one can.
KRTagID PayloadAround(KRDataObj& wrapper, KRTagID tag) {
  KRTagID around = KRTag_None;
  for (const Side side : {Side::kResponse, Side::kRequest}) {
    const TransactionRoute* const route = FindTransaction(side, wrapper.GetType());
    for (u8 index = 0; route != nullptr && index < route->payloadCount; ++index) {
      const PayloadRoute& payload = route->payloads[index];
      const Sample sample(wrapper, payload.create, payload.tag);
      if (sample.Get() == nullptr || RoleOf(*sample.Get(), tag).role == Role::kNone) continue;
      if (around != KRTag_None) return KRTag_None;
      around = payload.tag;
    }
  }
  return around;
}

// What comes next inside `object`, of the envelope, on the way to a tag.
KRTagID EnvelopeAround(KRDataObj& object, KRTagID tag) {
  const KRTagID type = object.GetType();
  if (IsWrapper(type)) return PayloadAround(object, tag);
  if (type == KRTag_OFXFILERS || type == KRTag_OFXFILERQ) {
    for (const Side side : {Side::kResponse, Side::kRequest}) {
      if ((side == Side::kResponse) != (type == KRTag_OFXFILERS)) continue;
      const bool inside = FindMessageSet(side, tag) != nullptr || SetAround(side, tag) != 0 ||
                          WrapperAround(side, tag) != 0;
      if (inside) return KRTag_OFX;
    }
    return KRTag_None;
  }
  for (const Side side : {Side::kResponse, Side::kRequest}) {
    const KRTagID wrapper = WrapperAround(side, tag);
    if (type == KRTag_OFX) {
      const KRTagID set = SetAround(side, wrapper != KRTag_None ? wrapper : tag);
      if (set != KRTag_None && object.IsValidTag(set) != 0) return set;
    } else if (wrapper != KRTag_None && RoleOf(object, wrapper).role != Role::kNone) {
      return wrapper;
    }
  }
  return KRTag_None;
}

// How many of an object's aggregates can hold a tag, and the last of them. Goes `depth` aggregates
// deep at most.
int CountAround(KRDataObj& object, KRTagID tag, int depth, KRTagID& around) {
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  if (table == nullptr) return 0;
  int count = 0;
  for (u16 position = 0; position < table->valid.count && count < 2; ++position) {
    if (table->rows[position].create == nullptr) continue;
    const KRTagID child = table->valid.table[position].tag;
    const Row* const row = RoleOf(object, child).row;
    if (row == nullptr || row->create == nullptr) continue;
    const Sample sample(object, row->create, child);
    if (sample.Get() == nullptr) return 0;
    KRTagID unused = KRTag_None;
    const bool holds = RoleOf(*sample.Get(), tag).role != Role::kNone ||
                       (depth > 1 && CountAround(*sample.Get(), tag, depth - 1, unused) == 1);
    if (!holds) continue;
    around = child;
    ++count;
  }
  return count;
}

}  // namespace

bool IsOfEnvelope(KRTagID tag) {
  if (tag == KRTag_OFX || tag == KRTag_SONRS || tag == KRTag_SONRQ || tag == KRTag_BANKTRANLIST ||
      tag == KRTag_STMTTRN || tag == KRTag_INVTRANLIST) {
    return true;
  }
  return IsMessageSet(tag) || IsWrapper(tag) || FindSync(Side::kResponse, tag) != nullptr ||
         FindSync(Side::kRequest, tag) != nullptr || FindPayload(Side::kResponse, tag) != nullptr ||
         FindPayload(Side::kRequest, tag) != nullptr;
}

TagRole RoleOf(KRDataObj& object, KRTagID tag) {
  KRArrayOfTags tags;
  object.GetArrayOfValidTags(tags);
  if (tags.table == nullptr || FindTagRow(tags, tag, object.GetMsgSetVersion()) < 0) return {};
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  const Row* const row = table == nullptr ? nullptr : FindRow(*table, tag);
  if (row == nullptr) return {HoldsAggregates(object) ? Role::kAggregate : Role::kEither, nullptr};
  if (row->create != nullptr) return {Role::kAggregate, row};
  if (row->value == nullptr) return {};
  return {row->value->form == ValueForm::kAggregate ? Role::kAggregate : Role::kElement, row};
}

KRDataObj* SingleChild(KRDataObj& object, KRTagID tag, const Row* row) {
  if (row != nullptr) {
    if (row->create == nullptr || row->array != nullptr) return nullptr;
    KRDataObj* const child = static_cast<ChildSlot*>(row->member(object))->Get();
    return child != nullptr && (!row->shared || child->GetType() == tag) ? child : nullptr;
  }
  const KRTagID type = object.GetType();
  const bool set = IsMessageSet(type);
  if (type != KRTag_OFX &&
      !(set && (tag == KRTag_SONRS || tag == KRTag_SONRQ || tag == KRTag_SECLIST))) {
    return nullptr;
  }
  // A sign-on comes first, a list of securities last; message sets are few.
  const u16 count = object.GetNumberOfChildren();
  for (u16 index = 0; index < count; ++index) {
    if (set && index != 0 && index + 1 != count) continue;
    KRDataObj* const child = object.GetChild(index);
    if (child != nullptr && child->GetType() == tag) return child;
  }
  return nullptr;
}

bool IsList(KRDataObj& object) {
  if (IsMessageSet(object.GetType())) return true;
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  if (table == nullptr) return false;
  for (u8 index = 0; index < table->childRowCount; ++index) {
    if (table->rows[table->childRows[index]].array != nullptr) return true;
  }
  return false;
}

KRTagID AggregateAround(KRDataObj& object, KRTagID tag) {
  if (const KRTagID around = EnvelopeAround(object, tag); around != KRTag_None) return around;
  KRTagID around = KRTag_None;
  for (int depth = 1; depth <= kMostMissing; ++depth) {
    const int count = CountAround(object, tag, depth, around);
    if (count == 1) return around;
    if (count > 1) return KRTag_None;
  }
  return KRTag_None;
}

Home HomeOf(KRDataObj& body, KRTagID tag, u16 version) {
  for (const Side side : {Side::kResponse, Side::kRequest}) {
    const KRTagID wrapper = WrapperAround(side, tag);
    const KRTagID set = SetAround(side, wrapper != KRTag_None ? wrapper : tag, version);
    if (set != KRTag_None && body.IsValidTag(set) != 0) return {set, wrapper};
  }
  return {};
}

namespace {

constexpr KRTagID kAccounts[] = {KRTag_BANKACCTFROM, KRTag_CCACCTFROM, KRTag_INVACCTFROM};

}  // namespace

bool IsAccount(KRTagID tag) {
  return std::find(std::begin(kAccounts), std::end(kAccounts), tag) != std::end(kAccounts);
}

KRTagID AccountInPlaceOf(KRDataObj& object, KRTagID tag) {
  if (!IsAccount(tag)) return KRTag_None;
  for (const KRTagID account : kAccounts) {
    const bool holds = account != tag && RoleOf(object, account).role == Role::kAggregate;
    if (holds) return object.ValidateTag(account) == 0 ? account : KRTag_None;
  }
  return KRTag_None;
}

}  // namespace krofx::internal
