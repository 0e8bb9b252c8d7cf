// A small linked list of items that know how to copy themselves.

#ifndef KROFX_CORE_COLLECTION_H_
#define KROFX_CORE_COLLECTION_H_

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

/// A node of a KRCollection; derive from it to add content.
class KROFX_API KRCollectionItem : public krofx::internal::HeapObject {
 public:
  /// An item with no neighbours.
  KRCollectionItem() = default;
  /// A copy with the same links.
  KRCollectionItem(const KRCollectionItem& source) = default;
  virtual ~KRCollectionItem();

  /// Copies the links, and the content in a derived class.
  virtual KRCollectionItem& operator=(const KRCollectionItem& source);
  /// @return 1 when `other` is what this item looks for; here the very same object.
  virtual u16 operator==(const KRCollectionItem& other) const;
  /// Makes an empty item of the same class.
  /// @return the item, owned by the caller; null when memory is exhausted.
  virtual KRCollectionItem* Factory() const;

  /// @return the item after this one; null at the end.
  KRCollectionItem* Next() const { return m_next; }
  /// Sets the item after this one; the item is not owned.
  void Next(KRCollectionItem* item) { m_next = item; }
  /// @return the item before this one, if whoever built the list set it.
  KRCollectionItem* Previous() const { return m_previous; }
  /// Sets the item before this one; the item is not owned.
  void Previous(KRCollectionItem* item) { m_previous = item; }

 private:
  KRCollectionItem* m_next = nullptr;
  KRCollectionItem* m_previous = nullptr;
};

/// A list of copies of items, the newest first. It owns the copies that it made.
///
/// A copy of a collection sees the same items and owns none of them: it must not be used after the
/// original has removed them.
class KROFX_API KRCollection {
 public:
  /// An empty collection.
  KRCollection() = default;
  /// Sees the source's items without owning them.
  KRCollection(const KRCollection& source);
  /// Deletes the items that it owns, then sees the source's.
  KRCollection& operator=(const KRCollection& source);
  /// Deletes the items that it owns.
  ~KRCollection();

  /// Puts a copy of `item`, made by its Factory, at the head. Nothing happens when memory is
  /// exhausted (the fire alarm is raised then) or the list has 65535 items. The previous link of
  /// the old head is not set.
  KRCollection& operator+=(const KRCollectionItem& item);
  /// Removes the first element for which `item == element`, deleting it if the collection owns it.
  /// An element after the head goes only if its previous link was set. Nothing happens when no
  /// element matches.
  KRCollection& operator-=(const KRCollectionItem& item);
  /// @return the item at `index`, 0 being the newest; null beyond the end.
  KRCollectionItem* operator[](u16 index) const;
  /// @return how many items there are.
  u16 NumberofItems() const { return m_count; }

 private:
  void RemoveHead();
  void RemoveOwned();

  KRCollectionItem* m_head = nullptr;
  u16 m_count = 0;
  /// The number of items at the head that this collection made itself.
  u16 m_owned = 0;
};

#endif  // KROFX_CORE_COLLECTION_H_
