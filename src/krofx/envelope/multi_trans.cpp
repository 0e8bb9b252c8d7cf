// The wrappers of several transfers. Their payloads are rows of their tables, so they use the table
// for what the wrappers of one payload do by hand.

#include "krofx/envelope/multi_trans.h"

#include "krofx/envelope/internal/missing_tags.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::MissingTags;

KRParseStatus KRMultiTransRq::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  return KRTransBase::HandleTagStart(entry);
}

KRBuildStatus KRMultiTransRq::Build(KRBuilder* builder) const {
  return KRTransBase::Build(builder);
}

u16 KRMultiTransRq::AllRequiredPresent() {
  return m_actualTrans.Entries() == 0 ? static_cast<u16>(0) : KRTransBase::AllRequiredPresent();
}

KRTagID KRMultiTransRq::GetFirstMissingRequiredTag(KRTagID after) {
  return KRDataObj::GetFirstMissingRequiredTag(after);
}

KRDataObj* KRMultiTransRq::GetChild(u16 index) const { return m_actualTrans.Get(index); }

u16 KRMultiTransRq::GetNumberOfChildren() const { return m_actualTrans.Entries(); }

KRParseStatus KRMultiTransRs::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  return KRTransBase::HandleTagStart(entry);
}

KRBuildStatus KRMultiTransRs::Build(KRBuilder* builder) const {
  return KRTransBase::Build(builder);
}

u16 KRMultiTransRs::AllRequiredPresent() {
  return ValidateTag(KRTag_TRNUID) == 0 ? static_cast<u16>(0) : KRTransBase::AllRequiredPresent();
}

KRTagID KRMultiTransRs::GetFirstMissingRequiredTag(KRTagID after) {
  MissingTags missing(after);
  if (ValidateTag(KRTag_TRNUID) == 0) missing.Add(KRTag_TRNUID);
  KRTagID tag = KRTag_None;
  while ((tag = KRDataObj::GetFirstMissingRequiredTag(tag)) != KRTag_None) missing.Add(tag);
  return missing.Found();
}

KRDataObj* KRMultiTransRs::GetChild(u16 index) const { return m_actualTrans.Get(index); }

u16 KRMultiTransRs::GetNumberOfChildren() const { return m_actualTrans.Entries(); }
