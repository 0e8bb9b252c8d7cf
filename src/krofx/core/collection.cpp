// Linking, unlinking and deleting the items of a collection.

#include "krofx/core/collection.h"

#include "krofx/core/thread.h"

KRCollectionItem::~KRCollectionItem() = default;

KRCollectionItem& KRCollectionItem::operator=(const KRCollectionItem& source) = default;

u16 KRCollectionItem::operator==(const KRCollectionItem& other) const {
  return this == &other ? 1 : 0;
}

KRCollectionItem* KRCollectionItem::Factory() const { return new KRCollectionItem; }

KRCollection::KRCollection(const KRCollection& source)
    : m_head(source.m_head), m_count(source.m_count) {}

KRCollection& KRCollection::operator=(const KRCollection& source) {
  if (this == &source) return *this;
  RemoveOwned();
  m_head = source.m_head;
  m_count = source.m_count;
  return *this;
}

KRCollection::~KRCollection() { RemoveOwned(); }

KRCollection& KRCollection::operator+=(const KRCollectionItem& item) {
  if (m_count == 65535) return *this;
  KRCollectionItem* const copy = item.Factory();
  if (copy == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return *this;
  }
  *copy = item;
  copy->Next(m_head);
  copy->Previous(nullptr);
  m_head = copy;
  ++m_count;
  ++m_owned;
  return *this;
}

KRCollection& KRCollection::operator-=(const KRCollectionItem& item) {
  KRCollectionItem* before = nullptr;
  KRCollectionItem* element = m_head;
  u16 index = 0;
  while (index < m_count && element != nullptr && item.operator==(*element) == 0) {
    before = element;
    element = element->Next();
    ++index;
  }
  if (index == m_count || element == nullptr) return *this;
  if (before == nullptr) {
    RemoveHead();
  } else if (element->Previous() != nullptr && index < m_owned) {
    KRCollectionItem* const after = element->Next();
    before->Next(after);
    if (after != nullptr && after->Previous() == element) after->Previous(before);
    delete element;
    --m_count;
    --m_owned;
  }
  return *this;
}

KRCollectionItem* KRCollection::operator[](u16 index) const {
  if (index >= m_count) return nullptr;
  KRCollectionItem* element = m_head;
  for (; index > 0 && element != nullptr; --index) element = element->Next();
  return element;
}

void KRCollection::RemoveHead() {
  KRCollectionItem* const head = m_head;
  m_head = head->Next();
  --m_count;
  if (m_owned == 0) return;
  --m_owned;
  if (m_owned > 0 && m_head->Previous() == head) m_head->Previous(nullptr);
  delete head;
}

void KRCollection::RemoveOwned() {
  while (m_owned > 0) RemoveHead();
}
