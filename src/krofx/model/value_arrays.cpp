// How the arrays of values make their elements and write them.

#include "krofx/model/value_arrays.h"

#include <utility>

#include "krofx/build/builder.h"
#include "krofx/build/internal/writing.h"
#include "krofx/model/factory.h"
#include "krofx/values/internal/keyword_table.h"
#include "krofx/values/keywords.h"

using krofx::internal::KeywordTraits;
using krofx::internal::WithTag;

namespace {

// Writes each element that is there, up to the first that cannot be written.
// @param write writes one element and returns its KRBuildStatus.
template <class Array, class Write>
KRBuildStatus WriteEach(const Array& array, KRBuilder* builder, Write write) {
  if (builder == nullptr) return KRBuildStatus_NullArgument;
  for (u16 index = 0; index < array.Entries(); ++index) {
    auto* const element = array.Get(index);
    if (element == nullptr) continue;
    const KRBuildStatus status = write(*element);
    if (status != KRBuildStatus_Done) return status;
  }
  return KRBuildStatus_Done;
}

// Writes each number as the keyword of the enumeration E, as a string.
template <class E>
KRBuildStatus WriteKeywords(const KRDynamicArrayUShort& array, KRBuilder* builder, KRTagID tag) {
  return WriteEach(array, builder, [&](u16 value) {
    KRString text;
    if (!KeywordTraits<E>::ToText(static_cast<E>(value), text)) {
      return KRBuildStatus_NoTextForm;
    }
    return builder->AddTagKRString(tag, text);
  });
}

}  // namespace

namespace krofx::internal {

Lender& Lender::operator=(const Lender& other) {
  if (this != &other) TakeBack();
  return *this;
}

bool Lender::MakeRoom(KRDynamicArrayDataObj& array, u32 count) const {
  // KRDynamicArray::Clear knows of no lender.
  if (array.Entries() == 0) array.LeaveLender();
  if (array.m_lender != nullptr && array.m_lender != this) return false;
  const u32 entries = array.Entries() + count;
  if (entries > SlotBlock::kMaxIndex + 1u) return false;
  return count == 0 || array.m_block.GrowTo(static_cast<u16>(entries - 1));
}

void Lender::Lend(KRDynamicArrayDataObj& array, KRDataObj& element) {
  if (array.m_lender == nullptr) Join(array);
  array.m_block.PutBorrowed(array.Entries(), &element);
}

void Lender::TakeBack() {
  while (m_first != nullptr) {
    m_first->m_block.DropBorrowed();
    Leave(*m_first);
  }
}

void Lender::Join(KRDynamicArrayDataObj& array) {
  array.m_lender = this;
  array.m_nextBorrower = m_first;
  m_first = &array;
}

void Lender::Leave(KRDynamicArrayDataObj& array) {
  KRDynamicArrayDataObj** link = &m_first;
  while (*link != &array) link = &(*link)->m_nextBorrower;
  *link = array.m_nextBorrower;
  array.m_lender = nullptr;
  array.m_nextBorrower = nullptr;
}

}  // namespace krofx::internal

// A copy has the elements that the source borrows, so it joins their lender too.
KRDynamicArrayDataObj::KRDynamicArrayDataObj(const KRDynamicArrayDataObj& source)
    : ElementArray(source) {
  if (source.m_lender != nullptr) source.m_lender->Join(*this);
}

KRDynamicArrayDataObj& KRDynamicArrayDataObj::operator=(const KRDynamicArrayDataObj& source) {
  if (this == &source) return *this;
  LeaveLender();
  ElementArray::operator=(source);
  if (source.m_lender != nullptr) source.m_lender->Join(*this);
  return *this;
}

KRDynamicArrayDataObj::~KRDynamicArrayDataObj() { LeaveLender(); }

void KRDynamicArrayDataObj::LeaveLender() {
  if (m_lender != nullptr) m_lender->Leave(*this);
}

u16 KRDynamicArrayDataObj::OkToAlloc(u16 index) const { return index < Entries(); }

KRDataObj* KRDynamicArrayDataObj::Get(u16 index) const { return ElementArray::Get(index); }

void KRDynamicArrayDataObj::Clear() {
  ElementArray::Clear();
  LeaveLender();
}

void KRDynamicArrayDataObj::DeleteAll() {
  ElementArray::DeleteAll();
  LeaveLender();
}

KRBuildStatus KRDynamicArrayDataObj::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder, [&](KRDataObj& element) {
    if (tag != KRTag_None && element.GetType() != tag) return KRBuildStatus_Done;
    return element.BuildObject(builder, KRTag_None);
  });
}

KRDataObj* KRDynamicArrayDataObj::NewElement() const {
  KRDataObjFactory* const factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : factory->NewDataObj(0);
}

KRBuildStatus KRDynamicArrayString::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder,
                   [&](const KRString& text) { return builder->AddTagKRString(tag, text); });
}

KRDynamicArrayStringLen::KRDynamicArrayStringLen(u16 initialSize, u16 growStep, u16 specLength)
    : KRDynamicArrayString(initialSize, growStep), m_specLength(specLength) {}

u16 KRDynamicArrayStringLen::Set(u16 index, KRString* text) {
  if (!AllocatedTo(index) || !KRDynamicArrayString::Set(index, text)) return 0;
  text->SetSpecLength(m_specLength);
  return 1;
}

u16 KRDynamicArrayStringLen::SetVal(u16 index, KRString text) {
  if (!KRDynamicArrayString::SetVal(index, std::move(text))) return 0;
  Get(index)->SetSpecLength(m_specLength);
  return 1;
}

u16 KRDynamicArrayStringLen::SetCopyVal(KRDataObjFactory* factory, u16 index,
                                        const KRString& text) {
  return SetCopy(factory, index, &text);
}

u16 KRDynamicArrayStringLen::SetCopy(KRDataObjFactory* factory, u16 index,
                                     const KRString* const text) {
  if (factory == nullptr || text == nullptr) return 0;
  KRString* const copy = factory->NewString(0);
  if (copy == nullptr) return 0;
  *copy = *text;
  if (Set(index, copy)) return 1;
  delete copy;
  return 0;
}

KRBuildStatus KRDynamicArrayUShort::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder, [&](u16 value) { return builder->AddTagKRUShort(tag, value); });
}

KRBuildStatus KRDynamicArrayBankAccountType::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder, [&](u16 value) {
    return WithTag(*builder, tag, [&] {
      return builder->AddBankAccountType(static_cast<KRBankAccountType>(value));
    });
  });
}

KRBuildStatus KRDynamicArrayBankAccountType2::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder, [&](u16 value) {
    return WithTag(*builder, tag, [&] {
      KRString text;
      if (!KeywordTraits<KRBankAccountType2>::ToText(static_cast<KRBankAccountType2>(value),
                                                     text)) {
        return KRBuildStatus_NoTextForm;
      }
      return builder->AddString(text, KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
    });
  });
}

KRBuildStatus KRDynamicArrayDayOfWeek::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder, [&](u16 value) {
    return builder->AddTagKRDayOfWeek(tag, static_cast<KRDayOfWeek>(value));
  });
}

KRBuildStatus KRDynamicArrayNorvService::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteKeywords<KRNorvService>(*this, builder, tag);
}

KRBuildStatus KRDynamicArrayNorvService2::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteKeywords<KRNorvService2>(*this, builder, tag);
}

KRBuildStatus KRDynamicArrayLanguage::Build(KRBuilder* builder, KRTagID tag) const {
  return WriteEach(*this, builder, [&](const KRLanguage& language) {
    return builder->AddTagKRLanguage(tag, language);
  });
}

KRLanguage* KRDynamicArrayLanguage::NewElement() const {
  KRDataObjFactory* const factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : factory->NewLanguage();
}
