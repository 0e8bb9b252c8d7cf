// Gathering the places of tags.

#include "krofx/reader/tags/tag_places.h"

#include <functional>

#include "krofx/parse/internal/end_tag_index.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

std::size_t HashOf(std::string_view name) {
  char capitals[256];
  const std::size_t length = name.size() < sizeof capitals ? name.size() : sizeof capitals;
  for (std::size_t at = 0; at < length; ++at) capitals[at] = CapitalLetter(name[at]);
  return std::hash<std::string_view>{}({capitals, length});
}

}  // namespace

void TagPlaces::SetText(std::string_view bytes, bool isPart) {
  m_scanner.SetText(bytes);
  m_isPart = isPart;
  if (!m_gathered) return;
  m_gathered = false;
  m_links.Clear();
  m_names.Clear();
  m_table.Clear();
}

u32 TagPlaces::PlaceOf(std::string_view name) const {
  std::size_t place = HashOf(name) % kPlaces;
  while (m_table[place] != kNone && !EqualsWithoutCase(m_names[m_table[place]].text, name)) {
    place = (place + 1) % kPlaces;
  }
  return static_cast<u32>(place);
}

bool TagPlaces::Add(const ScannedTag& tag) {
  const u32 place = PlaceOf(tag.name);
  if (m_table[place] == kNone) {
    if (m_names.size() == kMostNames) return true;
    Name name;
    name.text = tag.name;
    if (!m_names.Append(name)) return false;
    m_table[place] = static_cast<u32>(m_names.size() - 1);
  }
  Name& name = m_names[m_table[place]];
  const int type = tag.type == ScannedTag::Type::kEnd ? 1 : 0;
  const u32 link = static_cast<u32>(m_links.size());
  if (!m_links.Append({tag.at, tag.after, kNone})) return false;
  if (name.first[type] == kNone) {
    name.first[type] = link;
  } else {
    m_links[name.last[type]].next = link;
  }
  name.last[type] = link;
  return true;
}

void TagPlaces::Gather() {
  m_gathered = true;
  for (u32 place = 0; place < kPlaces && !m_failed; ++place) m_failed = !m_table.Append(kNone);
  ScannedTag tag;
  m_scanner.ForgetEnd();
  for (m_scanner.Next(tag); tag.type != ScannedTag::Type::kEndOfText && !m_failed;
       m_scanner.Next(tag)) {
    if (m_isPart && m_scanner.HasMetEnd()) break;
    m_failed = !Add(tag);
  }
}

TagPlaces::Found TagPlaces::Next(std::string_view name, u32 from, bool end) {
  if (!m_gathered) Gather();
  if (m_failed) return {};
  const u32 place = PlaceOf(name);
  const Found none = m_isPart ? Found{kBeyond, kBeyond} : Found{};
  if (m_table[place] == kNone) return none;
  u32& link = m_names[m_table[place]].first[end ? 1 : 0];
  while (link != kNone && m_links[link].at < from) link = m_links[link].next;
  return link == kNone ? none : Found{m_links[link].at, m_links[link].after};
}

}  // namespace krofx::internal
