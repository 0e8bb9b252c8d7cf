// The dictionary of tags: its two lookups, the hash for exact lookups by text, and the one instance
// with the table of all tags.

#include "krofx/core/tag_dictionary.h"

#include <cstdlib>
#include <cstring>
#include <mutex>

#include "krofx/core/thread.h"

namespace krofx::internal {

// One place of the hash: a text's length and its row in the lookup by text.
struct TagHashEntry {
  static constexpr u16 kFree = 0xffff;
  u16 length;
  u16 position;
};

}  // namespace krofx::internal

using krofx::internal::Allocate;
using krofx::internal::Free;
using krofx::internal::TagHashEntry;

namespace {

// Indexes into a lookup by text must fit 15 bits.
constexpr u16 kMostSearchableRows = 32767;

// Not the platform's tolower: the meaning of a tag must not depend on the host's locale.
int Lower(char c) {
  const int value = static_cast<unsigned char>(c);
  return value >= 'A' && value <= 'Z' ? value + ('a' - 'A') : value;
}

int CompareIgnoringCase(const char* left, const char* right, u16 length) {
  for (u16 i = 0; i < length; ++i) {
    const int difference = Lower(left[i]) - Lower(right[i]);
    if (difference != 0 || left[i] == '\0') return difference;
  }
  return 0;
}

int CompareTexts(const KRCompareInfo& left, const KRCompareInfo& right, KRCaseType type) {
  if (left.length != right.length) return left.length - right.length;
  if (left.length == 0) return 0;
  return type == KRCaseType_Exact ? std::strncmp(left.text, right.text, left.length)
                                  : CompareIgnoringCase(left.text, right.text, left.length);
}

KRCompareInfo TextOf(const KRMapTagStringToID& row) { return {row.entry->text, row.length}; }

int CompareRowsExactly(const void* left, const void* right) {
  return CompareTexts(TextOf(*static_cast<const KRMapTagStringToID*>(left)),
                      TextOf(*static_cast<const KRMapTagStringToID*>(right)), KRCaseType_Exact);
}

int LowBits(KRTagID id) { return static_cast<u16>(id); }

template <typename Word>
std::uint64_t LoadWord(const char* text) {
  Word word;
  std::memcpy(&word, text, sizeof word);
  return word;
}

// The first and the last eight characters, or fewer in a short text, distinguish all but a few tags
// of the same length.
u32 Hash(const char* text, u16 length) {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  if (length >= 8) {
    first = LoadWord<std::uint64_t>(text);
    last = LoadWord<std::uint64_t>(text + length - 8);
  } else if (length >= 4) {
    first = LoadWord<u32>(text);
    last = LoadWord<u32>(text + length - 4);
  } else if (length > 0) {
    first = LoadWord<std::uint8_t>(text);
    last =
        LoadWord<std::uint8_t>(text + length / 2) << 8 | LoadWord<std::uint8_t>(text + length - 1);
  }
  // Two odd multipliers with well spread bits; the high half of the sum depends on all characters.
  const std::uint64_t sum = (first ^ length) * 0x9e3779b97f4a7c15U + last * 0xc2b2ae3d27d4eb4fU;
  return static_cast<u32>((sum ^ sum >> 29) >> 32);
}

// At least half of the places stay free, so that a search for an unknown text ends soon.
u32 HashPlaces(u16 rows) {
  u32 places = 1;
  while (places < 2U * rows) places *= 2;
  return places;
}

}  // namespace

s16 KRBinarySearch::Search() {
  const u16 items = GetNumberOfItems();
  if (items > kMostSearchableRows) return -1;
  int low = 0;
  int high = items - 1;
  while (low <= high) {
    const int middle = (low + high) / 2;
    const int order = Compare(static_cast<u16>(middle));
    if (order == 0) return static_cast<s16>(middle);
    if (order < 0) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  return -1;
}

SearchDictionaryEntry::SearchDictionaryEntry(const KRMapTagStringToID* lookup, u16 count,
                                             const char* text, u16 length, KRCaseType type)
    : m_lookup(lookup), m_text(text), m_length(length), m_count(count), m_type(type) {}

int SearchDictionaryEntry::Compare(u16 index) {
  return CompareTexts({m_text, m_length}, TextOf(m_lookup[index]), m_type);
}

u16 SearchDictionaryEntry::GetNumberOfItems() { return m_count; }

SearchDictionaryIndex::SearchDictionaryIndex(const KRMapTagIDToIndex* lookup, u16 count, KRTagID id)
    : m_lookup(lookup), m_id(id), m_count(count) {}

int SearchDictionaryIndex::Compare(u16 index) {
  return LowBits(m_id) - LowBits(m_lookup[index].tagID);
}

u16 SearchDictionaryIndex::GetNumberOfItems() { return m_count; }

std::atomic<KRCaseType> TagDictionary::m_compareType = KRCaseType_Exact;

TagDictionary::TagDictionary(const KRTagDictionaryEntry* table, u16 count)
    : m_table(table), m_count(table == nullptr ? u16{0} : count) {
  m_compareType.store(KRCaseType_Exact, std::memory_order_relaxed);
  if (MakeLookupByText() == 0) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return;
  }
  MakeLookupByID();
}

TagDictionary::~TagDictionary() {
  Free(m_lookupByText);
  Free(m_lookupByID);
}

u16 TagDictionary::MakeLookupByText() {
  const u32 places = m_count <= kMostSearchableRows ? HashPlaces(m_count) : 0;
  const std::size_t rowBytes = m_count * sizeof(KRMapTagStringToID);
  void* block = Allocate(rowBytes + places * sizeof(TagHashEntry));
  if (block == nullptr) return 0;

  m_lookupByText = static_cast<KRMapTagStringToID*>(block);
  for (u16 i = 0; i < m_count; ++i) {
    m_lookupByText[i] = {&m_table[i], static_cast<u16>(std::strlen(m_table[i].text))};
  }
  // Not by sCompareTag, which uses m_compareType: a lookup on another thread may change it during
  // the sort.
  std::qsort(m_lookupByText, m_count, sizeof *m_lookupByText, CompareRowsExactly);

  if (places != 0) {
    m_hash = reinterpret_cast<TagHashEntry*>(static_cast<char*>(block) + rowBytes);
    m_hashMask = places - 1;
    MakeHash();
  }
  return 1;
}

void TagDictionary::MakeHash() {
  for (u32 place = 0; place <= m_hashMask; ++place) m_hash[place] = {0, TagHashEntry::kFree};
  for (u16 i = 0; i < m_count; ++i) {
    const KRCompareInfo text = TextOf(m_lookupByText[i]);
    u32 place = Hash(text.text, text.length) & m_hashMask;
    while (m_hash[place].position != TagHashEntry::kFree) place = (place + 1) & m_hashMask;
    m_hash[place] = {text.length, i};
  }
}

void TagDictionary::MakeLookupByID() {
  m_lookupByID =
      static_cast<KRMapTagIDToIndex*>(Allocate((m_count + 1U) * sizeof(KRMapTagIDToIndex)));
  if (m_lookupByID == nullptr) return;

  for (u16 i = 0; i < m_count; ++i) m_lookupByID[i] = {i, m_lookupByText[i].entry->tagID};
  std::qsort(m_lookupByID, m_count, sizeof *m_lookupByID, sCompareTagID);
  if (AreTagIDsContiguous() == 0) {
    m_lookupMode = kBinarySearch;
    return;
  }
  m_lookupMode = kDirectIndex;
  if (m_count != 0) m_lowestTagID = static_cast<u16>(m_lookupByID[0].tagID);
}

u16 TagDictionary::AreTagIDsContiguous() const {
  for (u16 i = 1; i < m_count; ++i) {
    if (m_lookupByID[i].tagID != m_lookupByID[i - 1].tagID + 1) return 0;
  }
  return 1;
}

const KRTagDictionaryEntry* TagDictionary::GetTagID(const char* text, u16 length, KRTagID* id,
                                                    KRCaseType type) const {
  // Stored only when it changes, so that threads with the same type do not contend for a cache
  // line.
  if (m_compareType.load(std::memory_order_relaxed) != type) {
    m_compareType.store(type, std::memory_order_relaxed);
  }
  const KRTagDictionaryEntry* entry = FindDictionaryEntry(text, length, type);
  if (id != nullptr) *id = entry == nullptr ? KRTag_None : entry->tagID;
  return entry;
}

const KRTagDictionaryEntry* TagDictionary::FindDictionaryEntry(const char* text, u16 length,
                                                               KRCaseType type) const {
  if (m_lookupByText == nullptr || text == nullptr) return nullptr;
  if (type == KRCaseType_Exact && m_hash != nullptr) return FindExact(text, length);
  const s16 found = SearchDictionaryEntry(m_lookupByText, m_count, text, length, type).Search();
  return found < 0 ? nullptr : m_lookupByText[found].entry;
}

const KRTagDictionaryEntry* TagDictionary::FindExact(const char* text, u16 length) const {
  for (u32 place = Hash(text, length) & m_hashMask;; place = (place + 1) & m_hashMask) {
    const TagHashEntry candidate = m_hash[place];
    if (candidate.position == TagHashEntry::kFree) return nullptr;
    if (candidate.length != length) continue;
    const KRTagDictionaryEntry* entry = m_lookupByText[candidate.position].entry;
    if (std::memcmp(entry->text, text, length) == 0) return entry;
  }
}

const KRTagDictionaryEntry* TagDictionary::FindDictionaryEntry(KRTagID id) const {
  for (u16 i = 0; i < m_count; ++i) {
    if (m_table[i].tagID == id) return &m_table[i];
  }
  return nullptr;
}

const char* TagDictionary::GetTagString(KRTagID id) const {
  switch (m_lookupMode) {
    case kDirectIndex: {
      const u32 index = id - m_lowestTagID;
      return index < m_count ? m_lookupByText[m_lookupByID[index].position].entry->text : nullptr;
    }
    case kBinarySearch: {
      const s16 found = SearchDictionaryIndex(m_lookupByID, m_count, id).Search();
      return found < 0 ? nullptr : m_table[found].text;
    }
    case kLinearScan:
      break;
  }
  const KRTagDictionaryEntry* entry = FindDictionaryEntry(id);
  return entry == nullptr ? nullptr : entry->text;
}

int TagDictionary::sCompareTag(const void* left, const void* right) {
  return sCompare(TextOf(*static_cast<const KRMapTagStringToID*>(left)),
                  TextOf(*static_cast<const KRMapTagStringToID*>(right)));
}

int TagDictionary::sCompareTagID(const void* left, const void* right) {
  return LowBits(static_cast<const KRMapTagIDToIndex*>(left)->tagID) -
         LowBits(static_cast<const KRMapTagIDToIndex*>(right)->tagID);
}

int TagDictionary::sCompare(const KRCompareInfo& left, const KRCompareInfo& right) {
  return CompareTexts(left, right, m_compareType.load(std::memory_order_relaxed));
}

std::atomic<KRTagDictionary*> KRTagDictionary::ms_theKRTagDictionary = nullptr;

namespace {

// Held while the one instance is made or deleted.
constinit std::mutex singletonMutex;

}  // namespace

KRTagDictionary::KRTagDictionary()
    : TagDictionary(GetKRTagDictionary(), NumberOfKRDictionaryEntry()) {}

KRTagDictionary::~KRTagDictionary() {
  ms_theKRTagDictionary.store(nullptr, std::memory_order_release);
}

KRTagDictionary* KRTagDictionary::TheKRTagDictionary() {
  KRTagDictionary* dictionary = ms_theKRTagDictionary.load(std::memory_order_acquire);
  if (dictionary != nullptr) return dictionary;

  const std::lock_guard lock(singletonMutex);
  dictionary = ms_theKRTagDictionary.load(std::memory_order_relaxed);
  if (dictionary != nullptr) return dictionary;
  dictionary = new (std::nothrow) KRTagDictionary;
  if (dictionary == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return nullptr;
  }
  // A dictionary that finds nothing is not kept: otherwise the process could never parse again.
  if (!dictionary->IsUsable()) {
    delete dictionary;
    return nullptr;
  }
  ms_theKRTagDictionary.store(dictionary, std::memory_order_release);
  return dictionary;
}

u16 KRTagDictionary::Destroy() {
  const std::lock_guard lock(singletonMutex);
  delete ms_theKRTagDictionary.load(std::memory_order_relaxed);
  return 0;
}
