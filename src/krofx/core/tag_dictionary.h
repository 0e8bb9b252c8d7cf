// The dictionary of tags: from the text of a tag to its id and back.
//
// Inside the library a tag is an integer; it is a text only in OFX text. The parse engine looks up
// the id of each tag that it reads, and the builder looks up the text of an id. TagDictionary does
// both for any constant table. KRTagDictionary is the dictionary that the library uses, for the
// table of all tags (generated from core/tags.schema).
//
// Texts are ordered by length first, then by their bytes, so a search mostly compares two lengths
// and seldom looks at a text. An exact lookup does not search: it uses a hash of the text, with the
// same result.

#ifndef KROFX_CORE_TAG_DICTIONARY_H_
#define KROFX_CORE_TAG_DICTIONARY_H_

#include <atomic>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"

namespace krofx::internal {
struct TagDictionaryInspector;
struct TagHashEntry;
}  // namespace krofx::internal

/// How texts of tags are compared.
enum KRCaseType : u32 {
  KRCaseType_Exact = 0,       ///< byte by byte
  KRCaseType_IgnoreCase = 1,  ///< "a" to "z" count as "A" to "Z"
};

/// A row of a table of tags.
struct KRTagDictionaryEntry {
  KRTagID tagID;     ///< the id
  const char* text;  ///< the text on the wire, without "<" and ">"; constant
};

/// @return the table of all tags, in id order: NumberOfKRDictionaryEntry() rows. Constant, never
///         freed.
KROFX_API const KRTagDictionaryEntry* GetKRTagDictionary();

/// @return the number of rows of GetKRTagDictionary().
KROFX_API u16 NumberOfKRDictionaryEntry();

/// A row of a dictionary's lookup by text.
struct KRMapTagStringToID {
  const KRTagDictionaryEntry* entry;  ///< the row of the table
  u16 length;                         ///< characters of its text
};

/// A row of a dictionary's lookup by id.
struct KRMapTagIDToIndex {
  u16 position;   ///< where the tag is in the lookup by text
  KRTagID tagID;  ///< its id; only the low 16 bits take part in the order
};

/// A text with its length, as a key for TagDictionary::sCompare.
struct KRCompareInfo {
  const char* text;  ///< need not be terminated
  u16 length;        ///< characters of it
};

/// Binary search over anything that can be compared with a key by index.
class KROFX_API KRBinarySearch {
 public:
  /// Compares the key with the item at `index`.
  /// @return a negative number when the key is before the item, 0 when they match, a positive one
  ///         when it is after.
  virtual int Compare(u16 index) = 0;
  /// @return the number of items. Above 32767 nothing is found, since an index must fit 15 bits.
  virtual u16 GetNumberOfItems() = 0;

  /// Searches for an item that matches.
  /// @return the index of an item that matches, or -1. With no items nothing is compared.
  s16 Search();

 protected:
  ~KRBinarySearch() = default;
};

/// Searches for a text in a lookup by text.
class KROFX_API SearchDictionaryEntry final : public KRBinarySearch {
 public:
  /// @param lookup `count` rows in the order that the top of this file describes; not owned.
  /// @param text the key; need not be terminated.
  /// @param length characters of the key.
  /// @param type how texts of one length are compared.
  SearchDictionaryEntry(const KRMapTagStringToID* lookup, u16 count, const char* text, u16 length,
                        KRCaseType type);
  int Compare(u16 index) override;
  u16 GetNumberOfItems() override;

 private:
  const KRMapTagStringToID* m_lookup;
  const char* m_text;
  u16 m_length;
  u16 m_count;
  KRCaseType m_type;
};

/// Searches for an id in a lookup by id.
class KROFX_API SearchDictionaryIndex final : public KRBinarySearch {
 public:
  /// @param lookup `count` rows that rise by the low 16 bits of their ids; not owned.
  /// @param id the key; its low 16 bits count.
  SearchDictionaryIndex(const KRMapTagIDToIndex* lookup, u16 count, KRTagID id);
  int Compare(u16 index) override;
  u16 GetNumberOfItems() override;

 private:
  const KRMapTagIDToIndex* m_lookup;
  KRTagID m_id;
  u16 m_count;
};

/// A dictionary over a constant table of tags. Read-only once made, so any number of threads may
/// use one.
class KROFX_API TagDictionary : public krofx::internal::HeapObject {
 public:
  /// Makes the lookups. When there is no memory for the lookup by text, the fire alarm is raised
  /// and nothing is ever found by text. When there is none for the lookup by id, ids are found by a
  /// scan and no alarm is raised.
  ///
  /// @param table `count` rows, which must outlive the dictionary; at most 32767 of them can be
  ///        found by text. Ids should rise by 1 from row to row.
  TagDictionary(const KRTagDictionaryEntry* table, u16 count);
  /// Frees the lookups, never the table.
  ~TagDictionary();
  TagDictionary(const TagDictionary&) = delete;
  TagDictionary& operator=(const TagDictionary&) = delete;

  /// Finds a tag by its text. Stores `type` in m_compareType.
  ///
  /// @param text the text, which need not be terminated; no byte after `length` is read.
  /// @param length characters of it.
  /// @param id receives the id of the tag, or 0 when there is none. May be null.
  /// @param type exact, or without regard to case. A table with texts in small letters is out of
  ///        order for a search without regard to case, which may then miss them.
  /// @return the row of the table, or null.
  const KRTagDictionaryEntry* GetTagID(const char* text, u16 length, KRTagID* id,
                                       KRCaseType type) const;

  /// Finds a tag by its id, by a scan of the table.
  /// @return the row of the table, or null.
  const KRTagDictionaryEntry* FindDictionaryEntry(KRTagID id) const;

  /// The text of a tag, without a search when the table's ids are contiguous. When they are not,
  /// the table must be in id order: the text is that of the row whose place in the table is the
  /// place of the id among all ids, and only the low 16 bits of the id count.
  /// @return the text, which belongs to the table, or null for an id that is no tag.
  const char* GetTagString(KRTagID id) const;

  /// Orders two KRMapTagStringToID as the top of this file describes, texts of one length by
  /// m_compareType.
  static int sCompareTag(const void* left, const void* right);
  /// Orders two KRMapTagIDToIndex by the low 16 bits of their ids.
  static int sCompareTagID(const void* left, const void* right);
  /// Orders two texts as sCompareTag.
  static int sCompare(const KRCompareInfo& left, const KRCompareInfo& right);

  /// The case type of the latest lookup by text, of all dictionaries and threads. The comparison
  /// functions above use it. A lookup uses its own argument, so threads do not disturb each other.
  static std::atomic<KRCaseType> m_compareType;

 protected:
  /// @return whether texts can be found, which needs memory for the lookup by text.
  bool IsUsable() const { return m_lookupByText != nullptr; }

 private:
  friend struct krofx::internal::TagDictionaryInspector;

  enum LookupMode : u32 {
    kDirectIndex = 0,   // ids are contiguous
    kBinarySearch = 1,  // ids have a hole
    kLinearScan = 2,    // there is no lookup by id
  };

  const KRTagDictionaryEntry* FindDictionaryEntry(const char* text, u16 length,
                                                  KRCaseType type) const;
  const KRTagDictionaryEntry* FindExact(const char* text, u16 length) const;
  u16 AreTagIDsContiguous() const;
  u16 MakeLookupByText();
  void MakeHash();
  void MakeLookupByID();

  const KRTagDictionaryEntry* m_table;
  KRMapTagStringToID* m_lookupByText = nullptr;
  u16 m_count;
  KRMapTagIDToIndex* m_lookupByID = nullptr;
  u16 m_lowestTagID = 0;
  LookupMode m_lookupMode = kLinearScan;
  // The hash of the exact texts is after the lookup by text, in the same block.
  krofx::internal::TagHashEntry* m_hash = nullptr;
  u32 m_hashMask = 0;
};

/// The dictionary of all tags that the library knows.
class KROFX_API KRTagDictionary : public TagDictionary {
 public:
  /// The one instance, made at the first call; any thread may call.
  /// @return the instance, which belongs to the library, or null when memory is exhausted; the fire
  ///         alarm is raised then, and a later call tries again.
  static KRTagDictionary* TheKRTagDictionary();

  /// Deletes the one instance, when there is one. The next TheKRTagDictionary() makes a new one. No
  /// thread may use the old one any more.
  /// @return 0.
  static u16 Destroy();

  /// The one instance; null while there is none. Only for reading: the operations above change it.
  static std::atomic<KRTagDictionary*> ms_theKRTagDictionary;

 private:
  KRTagDictionary();
  ~KRTagDictionary();
};

#endif  // KROFX_CORE_TAG_DICTIONARY_H_
