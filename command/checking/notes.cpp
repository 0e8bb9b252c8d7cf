// Masks what warnings and mendings quote, and words mendings.

#include "checking/notes.h"

#include <string_view>

#include "output/masking.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

// A longer value does not fit a line.
constexpr std::size_t kShownValue = 60;

// What an account that may have been a card before it was mended is masked as.
constexpr std::string_view kCardAggregate = "CCACCTFROM";

std::string Quoted(const std::string& value) {
  return "\"" + Shortened(SafeLine(value), kShownValue) + "\"";
}

std::string_view AggregateAtEnd(std::string_view path) {
  const std::string_view last = path.substr(path.rfind('/') + 1);
  return last.substr(0, last.find('['));
}

}  // namespace

std::string ShownTag(const std::string& tag, const std::string& path) {
  return TagWithoutNumber(tag, AggregateAtEnd(path));
}

std::string ShownValue(const std::string& value, const std::string& tag, const std::string& path,
                       const ParsedFile& file) {
  const bool inPayroll = path.find("/N.PAYROLL") != std::string::npos;
  std::string_view aggregate = AggregateAtEnd(path);
  if (file.MayHaveMovedCards() && IsAccount(aggregate)) aggregate = kCardAggregate;
  return WithoutPassword(Masked(value, DisclosureOfNote(tag, aggregate, inPayroll)));
}

std::vector<ShownMending> ShownMendings(const ParsedFile& file) {
  std::vector<ShownMending> all;
  for (const krofx::Mending& mending : file.GetMendings()) {
    const std::string tag = ToText(mending.tag);
    const std::string path = ToText(mending.path);
    // What this kind changes is the tag.
    const bool isTag = mending.kind == krofx::MendingKind::kAccountKind;
    const auto shown = [&](const std::string& value) {
      return SafeText(isTag ? value : ShownValue(value, tag, path, file));
    };
    all.push_back({krofx::NameOf(mending.kind), static_cast<unsigned>(mending.kind),
                   SafeText(ShownTag(tag, path)), path, shown(ToText(mending.was)),
                   shown(ToText(mending.taken)), mending.place});
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
