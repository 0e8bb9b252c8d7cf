// Large texts whose lists are read element by element where they are needed, so that they may be of
// any length, and no memory is taken for them.

#ifndef KROFX_COMMAND_INPUT_LIST_STREAM_H_
#define KROFX_COMMAND_INPUT_LIST_STREAM_H_

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "krofx/krofx.h"

namespace krofx::command {

/// A list of the library takes this many entries.
inline constexpr u16 kListLimit = 65535;

/// A text some of whose lists are not held: the transactions of bank and card statements, and the
/// lists that are longer than a tree takes. It has been read once, to find out whether it is in
/// order and what else is in it.
class ListStream {
 public:
  /// Elements of one tag.
  struct Kind {
    KRTagID tag;
    std::size_t count = 0;
  };
  /// An aggregate with elements that are not in the tree.
  struct List {
    /// In the tree of the text, which must be there while this is used.
    const KRDataObj* owner;
    /// That of the owner, such as "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST", as FindMissing
    /// writes paths.
    std::string path;
    /// The kinds of elements that are not in the tree.
    std::vector<Kind> kinds;
  };
  /// What a survey gives.
  struct Surveyed {
    /// Null for a text that has to be read as a whole.
    std::shared_ptr<const ListStream> stream;
    /// The text, with a tree of all but the elements that are streamed.
    OfxText text;
    /// As of a reading.
    KRParseStatus status = KRParseStatus_Accepted;
    /// What is out of order and was not mended.
    krofx::List<ReadWarning> warnings;
    /// What was mended.
    krofx::List<Mending> mendings;
    /// How many warnings and mendings there were beyond those.
    std::size_t unrecorded = 0;
  };
  /// What a text is read for.
  enum class Use : u8 {
    kMended,            ///< What is out of order is mended.
    kAllThatIsMissing,  ///< The same, and all tags that are missing are asked for.
    kStrict,            ///< It is read strictly.
  };
  /// Says whether elements of a tag in an aggregate may be missing from the tree.
  using MayStream = bool (*)(KRTagID list, KRTagID element);
  /// How to survey a text.
  struct Way {
    Use use = Use::kMended;
    /// For the lists that are longer than a tree takes; null allows all.
    MayStream mayStream = nullptr;
    /// A tree does not take all that is in the text.
    bool isLong = false;
  };

  /// The rows of a text below this size are made faster of a tree, which hardly any such text is
  /// too long for: the shortest transaction has 67 bytes.
  static constexpr std::size_t kLeastSize = 4 * 1024 * 1024;

  /// Reads a text to its end. The text has to be read as a whole when it has nothing to stream,
  /// when it is not the only one of its file, and when it is small and anything is out of order in
  /// it, unless it is too long. A text that is out of order and is read strictly must have more
  /// elements than a list takes.
  /// @param path the file, when `bytes` is null.
  /// @param bytes the text when it is in memory already.
  static Surveyed Survey(const std::string& path, std::shared_ptr<KRBuffer> bytes, const Way& way);

  /// @return those of the text, in the order of their first elements.
  const std::vector<List>& Lists() const { return m_lists; }
  /// @return how many elements they have together.
  std::size_t CountElements() const;
  /// @return whether something is missing in the text: in its tree, or in an element that is not in
  ///         the tree.
  bool HasMissing() const { return m_hasMissing; }
  /// @return the character set of the text; it has no tree.
  const OfxText& Text() const { return m_text; }

  /// Reads the elements again, in the order of the text.
  class Cursor {
   public:
    /// @param stream must live as long as the cursor.
    /// @param options what is warned of.
    Cursor(const ListStream& stream, const StreamOptions& options);

    /// Goes on to the next element.
    /// @return null at the end. It is good until the next call.
    const StreamElement* Next();
    /// @return which list the current element is of: an index of Lists().
    std::size_t List() const { return m_list; }
    /// @return the stream that is read.
    krofx::Stream& Stream() { return m_stream; }

   private:
    krofx::Stream m_stream;
    std::unordered_map<const KRDataObj*, std::size_t> m_lists;
    const KRDataObj* m_owner = nullptr;
    std::size_t m_list = 0;
  };

 private:
  ListStream() = default;

  bool Read(Surveyed& surveyed, Use use);
  bool AddList(const StreamElement& element);
  void Count(std::size_t list, KRTagID tag);
  bool FindOwners(KRFile& root);
  bool IsUsable(Stream& stream, Use use) const;
  std::size_t Size() const;
  bool HasLongList() const;

  std::string m_path;
  std::shared_ptr<KRBuffer> m_bytes;
  bool m_mends = false;
  bool m_hasMissing = false;
  std::vector<KRTagID> m_wanted;
  OfxText m_text;
  std::vector<List> m_lists;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_LIST_STREAM_H_
