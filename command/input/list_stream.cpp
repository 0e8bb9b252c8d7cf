// The survey of a large text, and the cursor that reads its lists again.

#include "input/list_stream.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "input/parsed_file.h"
#include "krofx/host/look.h"

namespace krofx::command {

namespace {

bool IsRead(KRParseStatus status) {
  return status == KRParseStatus_Accepted || status == KRParseStatus_Warnings;
}

void CopyForm(const OfxText& from, OfxText& to) {
  to.kind = from.kind;
  to.form = from.form;
  to.version = from.version;
  to.charset = from.charset;
}

StreamOptions WithReader(StreamOptions options, bool mends) {
  options.mends = mends;
  return options;
}

// A reading names the first tag that is missing in a text, a stream the first one of each element.
bool IsSaid(const ReadWarning& warning, bool& hasMissing) {
  if (warning.warning != KRPW_MISSINGTAG) return true;
  return !std::exchange(hasMissing, true);
}

// The tag that most of the children of an object have, as far as they are counted.
KRTagID FindMostFrequent(const KRDataObj& object) {
  std::unordered_map<KRTagID, std::size_t> counts;
  for (u16 index = 0; index < object.GetNumberOfChildren(); ++index) {
    if (KRDataObj* const child = object.GetChild(index)) ++counts[child->GetType()];
  }
  const auto most = std::max_element(
      counts.begin(), counts.end(),
      [](const auto& left, const auto& right) { return left.second < right.second; });
  return most == counts.end() ? KRTag_None : most->first;
}

// A message set is not complete without any transaction, so the last one stays in the tree as well.
bool IsMessageSet(const KRDataObj& object) {
  return dynamic_cast<const KRMessageSetRs*>(&object) != nullptr ||
         dynamic_cast<const KRMessageSetRq*>(&object) != nullptr;
}

// Adds the tags of full lists in a tree to those that are wanted. Which of several kinds in one
// list is too many is not known: the most frequent one is added, and others the next time.
bool AddFullLists(KRFile& root, ListStream::MayStream mayStream, std::vector<KRTagID>& wanted) {
  const std::size_t before = wanted.size();
  krofx::ForEach<KRDataObj>(root, [&](KRDataObj& object) {
    if (object.GetNumberOfChildren() < kListLimit || IsMessageSet(object)) return;
    const KRTagID tag = FindMostFrequent(object);
    const bool isNew = std::find(wanted.begin(), wanted.end(), tag) == wanted.end();
    if (isNew && (mayStream == nullptr || mayStream(object.GetType(), tag))) wanted.push_back(tag);
  });
  return wanted.size() > before;
}

}  // namespace

ListStream::Cursor::Cursor(const ListStream& stream, const StreamOptions& options)
    : m_stream(WithReader(options, stream.m_mends)) {
  for (const KRTagID tag : stream.m_wanted) m_stream.WantTag(tag);
  if (stream.m_bytes != nullptr) {
    m_stream.Open(*stream.m_bytes);
  } else {
    m_stream.OpenFile(stream.m_path.c_str());
  }
}

const StreamElement* ListStream::Cursor::Next() {
  const StreamElement* const element = m_stream.Next();
  if (element == nullptr) return nullptr;
  const KRDataObj* const owner = element->Around(1);
  if (owner != m_owner) {
    m_owner = owner;
    m_list = m_lists.try_emplace(owner, m_lists.size()).first->second;
  }
  return element;
}

ListStream::Surveyed ListStream::Survey(const std::string& path, std::shared_ptr<KRBuffer> bytes,
                                        const Way& way) {
  Surveyed surveyed;
  bool isLong = way.isLong;
  std::vector<KRTagID> wanted = {KRTag_STMTTRN};
  for (const bool mends : {false, true}) {
    if (mends && way.use == Use::kStrict) break;
    do {
      std::shared_ptr<ListStream> stream(new ListStream);
      stream->m_path = path;
      stream->m_bytes = bytes;
      stream->m_mends = mends;
      stream->m_wanted = wanted;
      if (mends && !isLong && stream->Size() < kLeastSize) return surveyed;
      surveyed = {};
      if (stream->Read(surveyed, way.use)) {
        surveyed.stream = std::move(stream);
        return surveyed;
      }
      isLong = surveyed.status == KRParseStatus_Fatal && surveyed.text.root != nullptr &&
               AddFullLists(*surveyed.text.root, way.mayStream, wanted);
    } while (isLong);
    isLong = way.isLong || wanted.size() > 1;
  }
  return surveyed;
}

bool ListStream::Read(Surveyed& surveyed, Use use) {
  const bool isStrict = use == Use::kStrict;
  StreamOptions options;
  options.maxRecords = ReadOptions().maxRecords;
  Cursor cursor(*this, options);
  Stream& stream = cursor.Stream();
  std::unordered_set<std::string> paths;
  while (const StreamElement* const element = cursor.Next()) {
    if (!isStrict && !m_mends && stream.Status() != KRParseStatus_Accepted) return false;
    // The character set is found from the part of the text that is in memory. When all parts agree
    // the whole would as well.
    const OfxText& judged = element->Text();
    if (m_lists.empty()) CopyForm(judged, m_text);
    if (!(judged.charset == m_text.charset)) return false;
    if (cursor.List() == m_lists.size()) {
      const std::string path = ToText(element->Path());
      // The path is empty when memory is missing.
      if (path.empty()) return false;
      if (!paths.insert(path.substr(0, path.rfind('/'))).second || !AddList(*element)) return false;
    }
    Count(cursor.List(), element->Tag());
  }
  surveyed.status = stream.Status();
  if (stream.Status() == KRParseStatus_Fatal) {
    surveyed.text.root = stream.TakeRoot();
    return false;
  }
  if (!IsUsable(stream, use)) return false;
  bool hasMissing = false;
  for (const ReadWarning& warning : stream.Warnings()) {
    if (IsSaid(warning, hasMissing) && !surveyed.warnings.Append(warning)) return false;
  }
  // What elements lack is found in a tree that has them, if there can be one.
  if (m_mends && hasMissing && use == Use::kAllThatIsMissing && !HasLongList()) return false;
  m_hasMissing = hasMissing;
  for (const Mending& mending : stream.Mendings()) {
    if (!surveyed.mendings.Append(mending)) return false;
  }
  surveyed.unrecorded = stream.Unrecorded();
  CopyForm(m_text, surveyed.text);
  surveyed.text.status = surveyed.status;
  surveyed.text.root = stream.TakeRoot();
  return surveyed.text.root != nullptr && !m_lists.empty() && FindOwners(*surveyed.text.root);
}

bool ListStream::AddList(const StreamElement& element) {
  KRDataObj* const owner = element.Around(1);
  if (owner == nullptr) return false;
  m_lists.push_back({owner, "", {}});
  return true;
}

void ListStream::Count(std::size_t list, KRTagID tag) {
  std::vector<Kind>& kinds = m_lists[list].kinds;
  auto kind =
      std::find_if(kinds.begin(), kinds.end(), [tag](const Kind& each) { return each.tag == tag; });
  if (kind == kinds.end()) kind = kinds.insert(kind, Kind{tag});
  ++kind->count;
}

// Whether all lists are in the tree, and where. Of two answers in one wrapper the parser keeps the
// last one, and says nothing.
bool ListStream::FindOwners(KRFile& root) {
  std::unordered_map<const KRDataObj*, ListStream::List*> left;
  for (ListStream::List& list : m_lists) left.emplace(list.owner, &list);
  for (const krofx::Found<KRDataObj>& found : krofx::Each<KRDataObj>(root)) {
    const auto owner = left.find(&*found);
    if (owner == left.end()) continue;
    owner->second->path = ToText(found.Path());
    left.erase(owner);
  }
  return left.empty();
}

bool ListStream::IsUsable(Stream& stream, Use use) const {
  if (!IsRead(stream.Status())) return false;
  if (m_mends) return !stream.HasMoreTags();
  const bool isClean = stream.Status() == KRParseStatus_Accepted && !stream.MayHaveCommaAmount() &&
                       !stream.HasRepeatedFigure() && !stream.HasMoreTags();
  return isClean || (use == Use::kStrict && HasLongList());
}

std::size_t ListStream::Size() const {
  if (m_bytes != nullptr) return m_bytes->GetBufferSize();
  // A file that is gone counts as the largest; reading it tells.
  std::error_code ignored;
  return static_cast<std::size_t>(std::filesystem::file_size(m_path, ignored));
}

bool ListStream::HasLongList() const {
  return std::any_of(m_lists.begin(), m_lists.end(), [](const List& list) {
    return std::any_of(list.kinds.begin(), list.kinds.end(),
                       [](const Kind& kind) { return kind.count > kListLimit; });
  });
}

std::size_t ListStream::CountElements() const {
  std::size_t count = 0;
  for (const List& list : m_lists) {
    for (const Kind& kind : list.kinds) count += kind.count;
  }
  return count;
}

}  // namespace krofx::command
