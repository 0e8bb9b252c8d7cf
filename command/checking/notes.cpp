// Masks what warnings and mendings quote, and words mendings.

#include "checking/notes.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "output/masking.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

// A longer value does not fit a line.
constexpr std::size_t kShownValue = 60;

std::string Quoted(const std::string& value) {
  return "\"" + Shortened(SafeLine(value), kShownValue) + "\"";
}

// The aggregates that passwords are in. A damaged tag in one of them can have a password as its
// value, so only the values of tags that are known are quoted there.
constexpr std::string_view kSecretive[] = {"SONRQ", "PINCHRQ"};

bool MayBePassword(std::string_view tag, std::string_view path) {
  const auto isIn = [path](std::string_view aggregate) {
    return path.find(aggregate) != std::string_view::npos;
  };
  if (std::none_of(std::begin(kSecretive), std::end(kSecretive), isIn)) return false;
  KRTagID id = KRTag_None;
  KRTagDictionary::TheKRTagDictionary()->GetTagID(tag.data(), static_cast<u16>(tag.size()), &id,
                                                  KRCaseType_IgnoreCase);
  return id == KRTag_None || IsPassword(id);
}

}  // namespace

std::string ShownValue(const std::string& value, const std::string& tag, const std::string& path) {
  if (MayBePassword(tag, path)) return "";
  const bool inPayroll = path.find("/N.PAYROLL") != std::string::npos;
  std::string aggregate = path.substr(path.rfind('/') + 1);
  aggregate.erase(std::min(aggregate.find('['), aggregate.size()));
  return WithoutPassword(Masked(value, DisclosureOf(tag, aggregate, inPayroll)));
}

std::vector<ShownMending> ShownMendings(const ParsedFile& file) {
  std::vector<ShownMending> all;
  for (const krofx::Mending& mending : file.GetMendings()) {
    const std::string tag = ToText(mending.tag);
    const std::string path = ToText(mending.path);
    all.push_back({krofx::NameOf(mending.kind), static_cast<unsigned>(mending.kind),
                   SafeText(WithoutPassword(tag)), path,
                   SafeText(ShownValue(ToText(mending.was), tag, path)),
                   SafeText(ShownValue(ToText(mending.taken), tag, path)), mending.place});
  }
  return all;
}

std::string TextOf(const ShownMending& mending) {
  std::string out;
  if (mending.place.line > 0) {
    out = std::to_string(mending.place.line) + ":" + std::to_string(mending.place.column) + ":";
  }
  out += std::string(" mended: ") + mending.kind;
  if (!mending.tag.empty()) out += " <" + SafeLine(mending.tag) + ">";
  if (!mending.was.empty()) out += " " + Quoted(mending.was);
  if (!mending.taken.empty()) out += " -> " + Quoted(mending.taken);
  if (!mending.path.empty()) out += " in " + mending.path;
  return out;
}

Json JsonOf(const std::vector<ShownMending>& mendings) {
  Json all = Json::Array();
  for (const ShownMending& mending : mendings) {
    Json each = Json::Object();
    each.Set("kind", mending.kind)
        .Set("number", mending.number)
        .Set("tag", mending.tag)
        .Set("path", mending.path)
        .Set("was", mending.was)
        .Set("taken", mending.taken);
    if (mending.place.line > 0) {
      each.Set("line", mending.place.line)
          .Set("column", mending.place.column)
          .Set("offset", mending.place.offset);
    }
    all.Append(std::move(each));
  }
  return all;
}

}  // namespace krofx::command
