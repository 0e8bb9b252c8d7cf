// Files of any size: the elements of lists one by one, in place of a tree that holds them all.
//
//   krofx::Stream stream;
//   stream.Want<KRBankStatementTx>();
//   stream.OpenFile("archive.ofx");
//   for (const krofx::StreamElement& element : stream) {
//     Book(element.Account(), *element.As<KRBankStatementTx>());
//   }
//   if (stream.Status() != KRParseStatus_Accepted) ...
//
// A host names the classes that it wants. Each object of such a class that is an element of a list
// is handed out as soon as its end tag is read, whole, and its list then drops it. Everything else
// stays in the tree, which is there at the end: the statement with its account and its balances,
// without the elements that were handed out. docs/streaming.md describes it in full.

#ifndef KROFX_STREAM_STREAM_H_
#define KROFX_STREAM_STREAM_H_

#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>
#include <type_traits>

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/model/data_object.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/stream_listener.h"

class KRAccount;

namespace krofx {

namespace internal {
class StreamRun;
}  // namespace internal

/// One element, and where it is. It and its object are good until the stream is asked for the next.
class KROFX_API StreamElement {
 public:
  /// @return the object, which belongs to the stream. It has left its list; only a wrapper stays in
  ///         its message set. It may be changed, and copied with the DeepCopyFrom of its class.
  KRDataObj& Object() const;
  /// @return the object as one of class `Class`; null when it is none.
  template <class Class>
  Class* As() const {
    return dynamic_cast<Class*>(&Object());
  }
  /// @return the tag that it is under.
  KRTagID Tag() const;
  /// @return which of its tag it is in its list, from 1. Not limited by 16 bits.
  std::size_t Number() const;
  /// @return where its start tag is.
  const Place& Where() const;
  /// @return the aggregates around it and itself, such as
  ///         "OFX/BANKMSGSRSV1/STMTTRNRS[1]/STMTRS/BANKTRANLIST/STMTTRN[70000]". Elements of lists
  ///         have a number, from 1, among those of their tag in their list. Empty, with the fire
  ///         alarm raised, when memory is exhausted.
  KRString Path() const;
  /// @return the account of the nearest aggregate around it that has one, as far as the text has
  ///         given it up to here; null without.
  const KRAccount* Account() const;
  /// @return the open aggregate around it that is `levels` further out: 1 is the one that has its
  ///         list, in which the next element may have begun already. Null beyond the root, and for
  ///         an aggregate that a mending has replaced. Copy it with DeepCopyFrom. A copy by
  ///         assignment shares the elements of its lists; while it exists, a stream that mends
  ///         leaves the elements that it hands out in the list.
  KRDataObj* Around(u16 levels) const;
  /// @return the nearest aggregate around it that is of class `Class`; null when there is none.
  template <class Class>
  Class* Within() const {
    for (u16 levels = 1; KRDataObj* const object = Around(levels); ++levels) {
      if (auto* const found = dynamic_cast<Class*>(object)) return found;
    }
    return nullptr;
  }
  /// @return a text of the object as a person would read it, in UTF-8: see OfxText::ToUtf8. The
  ///         character set is found out from the part of the text that is in memory. Empty, with
  ///         the fire alarm raised, when memory is exhausted.
  KRString ToUtf8(const KRString& text) const;
  /// @return the text that it is in, with its root, and the character set that was found as for
  ///         ToUtf8; not found, with the fire alarm raised, when memory is exhausted.
  const OfxText& Text() const;

 private:
  friend class internal::StreamRun;

  StreamElement() = default;

  internal::StreamRun* m_run = nullptr;
};

/// How to stream.
struct StreamOptions {
  /// Whether required tags that are missing are warned about, as by KRSimpleParser::Parse: the
  /// first one of each element that is handed out, and the first one of the rest.
  bool checkRequired = true;
  /// Whether a text that is not clean is mended, as by krofx::Read. Otherwise it is taken to the
  /// letter.
  bool mends = false;
  /// What may be mended. At the first damage of any other kind the stream ends with status 4.
  MendingKinds mend = MendingKinds::All();
  /// How many warnings, and how many mendings, are kept. All are counted, and given to the
  /// listener.
  std::size_t maxRecords = 1000;
  /// Bytes of the text that are in memory at a time.
  u32 window = 256 * 1024;
  /// Up to so many bytes are held for what must be seen as a whole: one tag with its text, a
  /// comment, or an aggregate that does not belong where it is and is skipped.
  u32 largestItem = 16 * 1024 * 1024;
};

/// Why a stream gives no further element.
enum class StreamState : u8 {
  kIdle,     ///< Nothing was opened or fed yet.
  kReading,  ///< It has given an element.
  kHungry,   ///< It needs the next piece, or Finish.
  kEnded,    ///< The text has ended or cannot be read on, or the host stopped: see Status.
};

/// Reads one text. Bytes come from a buffer, a file, memory, or in pieces as they arrive. The text
/// is read as by KRSimpleParser, with the same result for any text; with StreamOptions::mends as by
/// krofx::Read, with the same elements and mendings.
///
/// A stream belongs to one thread, whose log of warnings it empties each time it reads. Between two
/// elements the host may use the library as it likes.
class KROFX_API Stream {
 public:
  explicit Stream(const StreamOptions& options = {});
  Stream(Stream&& other) noexcept;
  Stream& operator=(Stream&& other) noexcept;
  ~Stream();

  /// @name What is wanted
  /// To be said before the first element is asked for. Classes that are derived from those named
  /// are wanted too.
  /// @{

  /// Wants the elements of class `Class`, whatever list they are in.
  template <class Class>
  Stream& Want() {
    static_assert(std::is_base_of_v<KRDataObj, Class>);
    Add(&IsOf<Class>, false);
    return *this;
  }
  /// Wants all aggregates that are elements of lists in a `ListClass`: for KRInvTranList, all
  /// investment transactions.
  template <class ListClass>
  Stream& WantAllOf() {
    static_assert(std::is_base_of_v<KRDataObj, ListClass>);
    Add(&IsOf<ListClass>, true);
    return *this;
  }
  /// Wants the elements of lists that are under a tag.
  Stream& WantTag(KRTagID tag);
  /// Makes `listener` hear of the warnings; null for none. It stays the caller's.
  void SetListener(StreamListener* listener);
  /// @}

  /// @name Where the bytes come from
  /// One of these, once.
  /// @{

  /// Reads a buffer, which must outlive the reading. One of a derived class is read through its
  /// GetCh.
  void Open(KRBuffer& buffer);
  /// Reads memory, such as a file that is mapped. It must outlive the reading.
  void Open(std::string_view bytes);
  /// Would be the text or the name of a file: say Open(std::string_view(text)) or OpenFile(name).
  void Open(const char*) = delete;
  /// Reads a file, or anything that can be opened like one.
  /// @return false when it cannot be opened: the stream has ended then, with status 4 and a
  /// problem.
  bool OpenFile(const char* path);
  /// Gives the next piece. It must stay as it is until Next has given null or the stream was
  /// stopped.
  /// @return false, with the piece not taken, when the one before it has not been read to its end,
  ///         or when the stream has ended.
  bool Feed(std::string_view piece);
  /// Says that there are no more pieces.
  void Finish();
  /// @}

  /// Goes on to the next element; the one before it is deleted.
  /// @return null when there is none: see State.
  const StreamElement* Next();
  /// Calls `use(element)` for each element that can be read. When it gives false the stream stops.
  /// @return Status().
  template <class Use>
  KRParseStatus ForEach(Use use) {
    while (const StreamElement* const element = Next()) {
      if constexpr (std::is_void_v<std::invoke_result_t<Use&, const StreamElement&>>) {
        use(*element);
      } else if (!use(*element)) {
        Stop();
      }
    }
    return Status();
  }
  /// Ends the reading. What was read stays.
  void Stop();

  /// @return whether there may be more, and what it takes.
  StreamState State() const;
  /// As of KRSimpleParser::Parse, with 7 for any warning or mending. 3 also when something in the
  /// text is longer than StreamOptions::largestItem. Before the end: what is known so far.
  KRParseStatus Status() const;
  /// @return why the text could not be read to its end: one English sentence without a capital
  ///         letter and a full stop. Empty when it could, and when it was stopped.
  const KRString& Problem() const;
  /// @return the tree, without the elements that were handed out. It fills while the text is read.
  ///         Null before the headers are read. An element that the end of the text cut stays in it.
  KRFile* Root() const;
  /// Gives the tree to the caller. The stream must have ended.
  std::unique_ptr<KRFile> TakeRoot();
  /// @return the first warnings, in the order of the text.
  const List<ReadWarning>& Warnings() const;
  /// @return the first mendings, in the order of krofx::Read. Their paths are those of krofx::Read
  /// once the stream has ended; before that elements of lists have a number in them.
  const List<Mending>& Mendings() const;
  /// @return how many warnings and mendings there were beyond StreamOptions::maxRecords.
  std::size_t Unrecorded() const;
  /// @return whether an amount with a comma may have been read. The parser passes over commas, so
  ///         it reads "-11,76" as -1176; krofx::Read mends that.
  bool MayHaveCommaAmount() const;
  /// @return whether an amount or a date came twice in one aggregate. The last one counts, as for
  ///         the parser; krofx::Read says both.
  bool HasRepeatedFigure() const;
  /// @return whether there are more tags after the end of the text, which are not read. Takes what
  ///         is left of the bytes. The stream must have ended.
  bool HasMoreTags();
  /// @return how many bytes of the text have been taken.
  std::size_t Position() const;

  /// Walks over the elements: see begin.
  class Iterator {
   public:
    using value_type = StreamElement;
    using difference_type = std::ptrdiff_t;

    explicit Iterator(Stream& stream) : m_stream(&stream), m_element(stream.Next()) {}
    const StreamElement& operator*() const { return *m_element; }
    Iterator& operator++() {
      m_element = m_stream->Next();
      return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return m_element == nullptr; }

   private:
    Stream* m_stream;
    const StreamElement* m_element;
  };
  /// @return a range of the elements to come, to be walked over once.
  Iterator begin() { return Iterator(*this); }
  std::default_sentinel_t end() const { return {}; }

 private:
  template <class Class>
  static bool IsOf([[maybe_unused]] const KRDataObj& object) {
    if constexpr (std::is_same_v<Class, KRDataObj>) {
      // The cast cannot fail, and comparing its result would warn in the host's source.
      return true;
    } else {
      return dynamic_cast<const Class*>(&object) != nullptr;
    }
  }

  void Add(bool (*isOfClass)(const KRDataObj&), bool list);

  // Null when there was no memory for it.
  internal::StreamRun* m_run;
};

}  // namespace krofx

#endif  // KROFX_STREAM_STREAM_H_
