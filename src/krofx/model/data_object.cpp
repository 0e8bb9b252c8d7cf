// The behaviour of every data object: presence bits, the required rule, descent and versions. What
// a class's table drives is in krofx/model/aggregate.cpp.

#include "krofx/model/data_object.h"

#include "krofx/build/builder.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/tag_index.h"
#include "krofx/model/parser.h"

using krofx::internal::AggregateTable;
using krofx::internal::BuildRows;
using krofx::internal::ChildAt;
using krofx::internal::CopyAggregate;
using krofx::internal::CountChildren;
using krofx::internal::FindTagRow;
using krofx::internal::HandleElement;
using krofx::internal::HandleStart;
using krofx::internal::LogWarning;
using krofx::internal::MissingTagOf;
using krofx::internal::PassVersionDown;
using krofx::internal::Presence;
using krofx::internal::PresenceBits;
using krofx::internal::RulesHold;
using krofx::internal::TypeOf;

namespace {

// The default factory has no state, so it is in static storage: a thread that asked for it can
// never lose it to another thread's destructor.
KRDataObjFactory& DefaultFactory() {
  static KRDataObjFactory factory(1);
  return factory;
}

}  // namespace

// Shared by the whole process, whose threads may construct and destroy objects at once.
std::atomic<KRDataObjFactory*> KRDataObj::m_factoryObj = nullptr;
std::atomic<u16> KRDataObj::m_factoryAllocated = 0;
const char* const KRDataObj::m_verKRSDK = "92";

KRDataObj::KRDataObj(u16 version) : m_version(version) {
  if (m_factoryAllocated.load(std::memory_order_relaxed) != 0) {
    m_factoryAllocated.store(0, std::memory_order_relaxed);
  }
}

KRDataObj::KRDataObj(const KRDataObj& other) : HeapObject(other) { CopyStateFrom(other); }

KRDataObj& KRDataObj::operator=(const KRDataObj& other) {
  CopyStateFrom(other);
  return *this;
}

KRDataObj::~KRDataObj() {
  if (m_factoryAllocated.load(std::memory_order_relaxed) != 0) {
    m_factoryObj.store(nullptr, std::memory_order_relaxed);
    m_factoryAllocated.store(0, std::memory_order_relaxed);
  }
}

void KRDataObj::CopyStateFrom(const KRDataObj& other) {
  m_parser = other.m_parser;
  m_presence = other.m_presence;
  m_type = other.m_type;
  m_version = other.m_version;
}

u16 KRDataObj::SetFactory(KRDataObjFactory* factory) {
  m_factoryObj.store(factory, std::memory_order_release);
  m_factoryAllocated.store(0, std::memory_order_relaxed);
  return 1;
}

KRDataObjFactory* KRDataObj::GetFactory() {
  KRDataObjFactory* factory = m_factoryObj.load(std::memory_order_acquire);
  if (factory != nullptr) return factory;
  factory = &DefaultFactory();
  m_factoryObj.store(factory, std::memory_order_release);
  m_factoryAllocated.store(1, std::memory_order_relaxed);
  return factory;
}

const char* KRDataObj::GetKRSDKVersion() { return m_verKRSDK; }

KRParser* KRDataObj::GetParser() { return m_parser; }

void KRDataObj::SetParser(KRParser* const parser) { m_parser = parser; }

KRParseStatus KRDataObj::SetupForParsing(KRParser* const parser) {
  SetParser(parser);
  return KRParseStatus_Accepted;
}

KRParseStatus KRDataObj::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  const AggregateTable* table = GetTable();
  return table == nullptr ? KRParseStatus_Invalid : HandleStart(*this, *table, *entry);
}

KRParseStatus KRDataObj::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                          const char* const value) {
  return HandleTagElement(entry, KRString(value));
}

KRParseStatus KRDataObj::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                          const KRString& value) {
  if (const AggregateTable* table = GetTable()) {
    return HandleElement(*this, *table, *entry, value);
  }
  // Without this, the two forms would call each other for ever in a class that overrides neither.
  if (m_inElement != 0) return KRParseStatus_Invalid;
  m_inElement = 1;
  const KRParseStatus status = HandleTagElement(entry, static_cast<const char*>(value));
  m_inElement = 0;
  return status;
}

KRParseStatus KRDataObj::HandleTagEnd(const KRTagDictionaryEntry* const entry) {
  if (m_parser == nullptr) return KRParseStatus_Fatal;
  if (entry->tagID == GetType()) {
    m_parser->PopObject();
    return KRParseStatus_Accepted;
  }
  LogWarning(KRPW_INVALIDENDAGG, KRString(), KRString(entry->text), entry->tagID, this);
  return KRParseStatus_EndTagMismatch;
}

KRParseStatus KRDataObj::HandleHeader(KRHeaderTag /*tag*/, const KRString& /*value*/,
                                      KRString* /*name*/) {
  return KRParseStatus_Accepted;
}

u16 KRDataObj::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  const AggregateTable* table = GetTable();
  tags = table == nullptr ? KRArrayOfTags() : table->valid;
  return 1;
}

u16 KRDataObj::GetArrayOfRequiredTags(KRArrayOfTags& tags) const {
  const AggregateTable* table = GetTable();
  tags = table == nullptr ? KRArrayOfTags() : table->required;
  return 1;
}

KRBuildStatus KRDataObj::Build(KRBuilder* builder) const {
  const AggregateTable* table = GetTable();
  return table == nullptr ? KRBuildStatus_Done : BuildRows(*this, *table, *builder);
}

KRBuildStatus KRDataObj::BuildObject(KRBuilder* builder, KRTagID tag) const {
  if (tag == KRTag_None) tag = TypeOf(*this);
  KRBuildStatus status = builder->AddTagStart(tag);
  if (status != KRBuildStatus_Done) return status;
  status = Build(builder);
  if (status != KRBuildStatus_Done) return status;
  return builder->AddTagEnd(tag);
}

KRParseStatus KRDataObj::PushAndSetObject(KRDataObj* child, KRTagID tag) {
  if (child == nullptr) return KRParseStatus_Fatal;
  if (tag != KRTag_None) {
    child->SetType(tag);
    if (SetTag(tag) == 0) return KRParseStatus_Invalid;
  }
  if (const u16 version = GetMsgSetVersion(); version != 0) child->SetMsgSetVersion(version);
  if (m_parser == nullptr) return KRParseStatus_Fatal;
  return m_parser->PushObject(child) != 0 ? KRParseStatus_Accepted : KRParseStatus_StackFull;
}

u16 KRDataObj::ProcessResponse() {
  // The count is compared as a signed 16-bit number, so an object with more than 32,767 children
  // is not walked.
  for (s16 index = 0; index < static_cast<s16>(GetNumberOfChildren()); ++index) {
    if (KRDataObj* child = GetChild(static_cast<u16>(index))) child->ProcessResponse();
  }
  return 1;
}

u16 KRDataObj::ProcessRequest(const ServerImpl* /*server*/) { return 1; }

int KRDataObj::FindPosition(KRTagID tag) const {
  KRArrayOfTags tags;
  if (GetArrayOfValidTags(tags) == 0 || tags.count == 0) return -1;
  const int position = FindTagRow(tags, tag, GetMsgSetVersion());
  // Rows after the last bit have no presence bit, so they are not valid.
  return position < PresenceBits::kCount ? position : -1;
}

u16 KRDataObj::IsValidTag(KRTagID tag) const { return FindPosition(tag) >= 0 ? 1 : 0; }

u16 KRDataObj::SetTag(KRTagID tag) {
  const int position = FindPosition(tag);
  if (position < 0) return 0;
  m_presence.Set(position);
  return 1;
}

u16 KRDataObj::ClearTag(KRTagID tag) {
  const int position = FindPosition(tag);
  if (position < 0) {
    LogWarning(KRPW_UNKNOWNTAG, KRString(), KRString(), tag, nullptr);
    return 0;
  }
  m_presence.Clear(position);
  return 1;
}

u16 KRDataObj::ValidateTag(KRTagID tag) const {
  const int position = FindPosition(tag);
  return position >= 0 && m_presence.Has(position) ? 1 : 0;
}

u16 KRDataObj::AllRequiredPresent() {
  const Presence presence(*this);
  const u16 version = GetMsgSetVersion();
  const AggregateTable* table = GetTable();
  KRArrayOfTags required;
  if ((table == nullptr || !table->rulesOnly) && GetArrayOfRequiredTags(required) != 0) {
    // A class with required rows cannot be complete while its version is unknown.
    if (version == 0 && required.count != 0) return 0;
    for (u16 row = 0; row < required.count; ++row) {
      const KRTagTableEntry& entry = required.table[row];
      if ((entry.versions & version) != 0 && !presence.Has(entry.tag)) return 0;
    }
  }
  return table == nullptr ? 1 : RulesHold(presence, *table);
}

KRTagID KRDataObj::GetFirstMissingRequiredTag(KRTagID after) {
  bool passed = after == KRTag_None;
  const AggregateTable* table = GetTable();
  KRArrayOfTags required;
  if ((table == nullptr || !table->rulesOnly) && GetArrayOfRequiredTags(required) != 0) {
    for (u16 row = 0; row < required.count; ++row) {
      if ((required.table[row].versions & GetMsgSetVersion()) == 0) continue;
      const KRTagID tag = required.table[row].tag;
      if (ValidateTag(tag) != 0) continue;
      if (passed) return tag;
      passed = tag == after;
    }
  }
  if (table == nullptr || table->ruleCount == 0) return KRTag_None;
  const Presence presence(*this);
  for (u8 rule = 0; rule < table->ruleCount; ++rule) {
    const KRTagID tag = MissingTagOf(presence, table->rules[rule]);
    if (tag == KRTag_None) continue;
    if (passed) return tag;
    passed = tag == after;
  }
  return KRTag_None;
}

u16 KRDataObj::IsTagRequired(KRTagID /*tag*/) {
  KRArrayOfTags required;
  if (GetArrayOfRequiredTags(required) == 0) return 0;
  for (u16 row = 0; row < required.count; ++row) {
    if ((required.table[row].versions & GetMsgSetVersion()) == 0) continue;
    if (ValidateTag(required.table[row].tag) != 0) return 1;
  }
  return 0;
}

u16 KRDataObj::AnyValidPresent() {
  KRArrayOfTags valid;
  if (GetArrayOfValidTags(valid) == 0) return 0;
  for (u16 row = 0; row < valid.count; ++row) {
    if (ValidateTag(valid.table[row].tag) != 0) return 1;
  }
  return 0;
}

u16 KRDataObj::OneValidPresent() {
  KRArrayOfTags valid;
  if (GetArrayOfValidTags(valid) == 0) return 0;
  u16 seen = 0;
  for (u16 row = 0; row < valid.count; ++row) {
    if (ValidateTag(valid.table[row].tag) == 0) continue;
    if (++seen > 1) return 0;
  }
  return seen;
}

u16 KRDataObj::SetMsgSetVersion(u16 version) {
  m_version = version;
  if (const AggregateTable* table = GetTable()) {
    PassVersionDown(*this, *table, version);
  }
  return 1;
}

u16 KRDataObj::GetMsgSetVersion() const { return m_version; }

u16 KRDataObj::GetMsgSetVersionFromTag() const {
  const KRTagID type = TypeOf(*this);
  if (type == KRTag_None) return 0;
  KRTagDictionary* dictionary = KRTagDictionary::TheKRTagDictionary();
  const char* text = dictionary == nullptr ? nullptr : dictionary->GetTagString(type);
  if (text == nullptr || *text == '\0') return 0;
  while (text[1] != '\0') ++text;
  return *text == '1' ? 1 : *text == '2' ? 2 : 0;
}

KRTagID KRDataObj::GetType() { return m_type; }

void KRDataObj::SetType(KRTagID tag) { m_type = tag; }

KRDataObj* KRDataObj::GetChild(u16 index) const {
  const AggregateTable* table = GetTable();
  return table == nullptr ? nullptr : ChildAt(*this, *table, index);
}

u16 KRDataObj::GetNumberOfChildren() const {
  const AggregateTable* table = GetTable();
  return table == nullptr ? static_cast<u16>(0) : CountChildren(*this, *table);
}

u16 KRDataObj::CopyBaseMembersFrom(KRDataObj* source) {
  if (source == nullptr) return 0;
  CopyStateFrom(*source);
  return 1;
}

const AggregateTable* KRDataObj::GetTable() const { return nullptr; }

KRTransBase::KRTransBase() : KRDataObj(0) {}

u16 KRTransBase::DeepCopyFrom(KRTransBase* source) { return CopyAggregate(*this, source); }
