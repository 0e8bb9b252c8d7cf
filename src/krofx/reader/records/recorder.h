// Collects what the reader says: mendings and warnings with their places, within the limits that
// the options set.

#ifndef KROFX_READER_RECORDS_RECORDER_H_
#define KROFX_READER_RECORDS_RECORDER_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/list.h"
#include "krofx/core/tags.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/reading.h"
#include "krofx/reader/records/path_log.h"

namespace krofx::internal {

/// Where something happened.
struct Spot {
  std::size_t offset = 0;       ///< In the file; kNowhere for what has no place.
  s32 path = PathLog::kNoPath;  ///< The aggregate, in the text's log of paths.
  bool amongPasswords = false;  ///< Whether it is in an aggregate that passwords are in.

  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
};

/// Writes into one Reading.
class Recorder {
 public:
  /// Completes records at once, for a reading that no longer has the text at its end.
  class Watcher {
   public:
    /// Fills in the place, of which only the offset is there, and the path as far as it is known.
    virtual void OnMending(Mending& mending) = 0;
    virtual void OnWarning(ReadWarning& warning) = 0;
    /// @return whether it hears of those that are not kept too.
    virtual bool HearsAll() const = 0;

   protected:
    ~Watcher() = default;
  };

  Recorder(Reading& reading, const ReadOptions& options) : m_reading(reading), m_options(options) {}
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Lets records be completed at once.
  void SetWatcher(Watcher* watcher) { m_watcher = watcher; }
  const ReadOptions& Options() const { return m_options; }
  /// Notes that something ends the reading when damage of a kind may not be mended.
  /// @return whether it may be mended.
  bool May(MendingKind kind, Spot spot);
  /// Notes a mending, when its kind may be mended. What may have a password in it becomes stars.
  /// @param tag the tag or header field.
  /// @return as May.
  bool Note(MendingKind kind, Spot spot, std::string_view tag, std::string_view was,
            std::string_view taken);
  /// @return whether a mending of a kind, which is noted next, is kept.
  bool Keeps(MendingKind kind, std::string_view tag) const;
  /// @return whether a warning that is noted next is kept.
  bool KeepsWarning() const { return m_reading.warnings.size() < m_options.maxRecords; }
  /// Notes a warning; with `path` where it happened. A value that may have a password in it becomes
  /// stars.
  /// @param object the one that it happened in, when its path has to be found later.
  void Warn(KRParseWarning warning, Spot spot, KRTagID tag, std::string_view tagText,
            std::string_view value, const KRDataObj* object = nullptr);
  /// Finds the objects in a tree that warnings were given with.
  void FindObjects(KRDataObj& root, PathLog& paths);

  /// Completes a warning by the tag at its place, which a warning of a conversion is about. When it
  /// goes on to the tag of a password, the value is that password, and becomes stars.
  /// @param bytes what has the place in it, or does not.
  /// @param offset of the place in these.
  void LookAtTag(ReadWarning& warning, std::string_view bytes, std::size_t offset);

  /// Begins the next text.
  void BeginText();
  /// Ends a tree of the text: resolves the paths of what was said in it.
  void EndTree(const PathLog& paths);
  /// Fills in all places: offsets in the original bytes, lines and columns.
  /// @param file the file as a whole, which the offsets are of.
  void FindPlaces(const WorkingText& file, std::string_view original);

  /// @return whether anything was mended or warned of in the current text.
  bool AnyInText() const { return m_anyInText; }
  /// @return whether memory was exhausted.
  bool HasFailed() const { return m_failed; }
  /// @return what must not be mended and was met; null when nothing was.
  const MendingKindInfo* Forbidden() const { return m_forbidden; }
  /// @return the place of that.
  Spot ForbiddenSpot() const { return m_forbiddenSpot; }

 private:
  static constexpr std::size_t kSaidPlaces = 1024;

  void BeginTree();
  static std::size_t HashOf(MendingKind kind, std::string_view tag);
  bool HasSaid(std::size_t hash) const;
  bool SaysAgain(MendingKind kind, std::string_view tag);
  bool Set(KRString& target, std::string_view text);
  bool SetTag(KRString& target, std::string_view tag);

  Reading& m_reading;
  Watcher* m_watcher = nullptr;
  const ReadOptions& m_options;
  List<s32> m_mendingPaths;
  List<s32> m_warningPaths;
  List<WantedObject> m_warningObjects;
  std::size_t m_firstMending = 0;
  std::size_t m_firstWarning = 0;
  std::size_t m_text = 0;
  bool m_begun = false;
  bool m_anyInText = false;
  bool m_failed = false;
  const MendingKindInfo* m_forbidden = nullptr;
  Spot m_forbiddenSpot;
  // What was said of kinds that are said once, as hashes in a table that is never full.
  std::size_t m_said[kSaidPlaces] = {};
  std::size_t m_saidCount = 0;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_RECORDS_RECORDER_H_
