// The base of all parsers: the stack of open aggregates.
//
// A parser hands each tag to the object on top of its stack. The objects drive the stack: an
// aggregate that takes a child's start tag pushes the child (KRDataObj::PushAndSetObject), and the
// child's end tag pops it (KRDataObj::HandleTagEnd). The parser adds the table of tags that the
// object on top accepts, and access to the warnings of the calling thread.

#ifndef KROFX_MODEL_PARSER_H_
#define KROFX_MODEL_PARSER_H_

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/status.h"
#include "krofx/core/types.h"
#include "krofx/model/data_object.h"

class KRBuffer;

namespace krofx::internal {
class PlainFeed;
}  // namespace krofx::internal

/// Base of all parsers. A parser and the tree that it fills belong to one thread, which must be
/// attached: on a thread that is not attached nothing is parsed and nothing is warned about.
///
/// The parser owns no object. An object must exist for as long as it is current or on the stack.
class KROFX_API KRParser : public krofx::internal::HeapObject {
 public:
  /// How many aggregates may be open below the root.
  static constexpr s16 kMaxDepth = 10;

  /// Makes a parser with nothing on its stack. Empties the calling thread's warnings and enables
  /// logging there.
  KRParser();
  /// Copies current object, stack and valid tags. The objects keep the parser that they have.
  KRParser(const KRParser& other) = default;
  /// As the copy constructor.
  KRParser& operator=(const KRParser& other) = default;

  /// Makes `root` the current object and calls its SetupForParsing. It reads nothing: derived
  /// parsers do.
  /// @return 0; 3 for a null root.
  virtual KRParseStatus Parse(KRBuffer* buffer, KRDataObj* root, u16 checkRequired);
  /// Puts the current object on the stack and makes `object` current, with its table of valid tags.
  /// @return 1; 0 and nothing changed when kMaxDepth aggregates are open or `object` is null.
  virtual u16 PushObject(KRDataObj* object);
  /// Makes the object on top of the stack current again, with the table of valid tags that was in
  /// force when it was pushed.
  /// @return 1; 0 and nothing changed when the stack is empty.
  virtual u16 PopObject();
  /// Puts a table of valid tags in force, until the next push or pop. The rows stay the caller's.
  /// @return 1.
  virtual u16 SetValidTags(KRArrayOfTags& tags);
  /// Says whether the table in force has `tag` for the current object's message-set version. With
  /// no table every tag is valid.
  /// @return 1 when it has; 0 when it does not.
  virtual u16 IsValidTag(KRTagID tag);

  /// Takes the parser out of every logger that points to it.
  virtual ~KRParser();

  /// @return the object that receives tags; null before the first parse.
  KRDataObj* GetCurrentObj() const { return m_current; }
  /// @return the number of open aggregates below the root, 0 to kMaxDepth. It is 0 after a
  ///         successful parse; a parse that failed leaves its stack as it was, and PopObject
  ///         empties it.
  s16 GetDepth() const { return m_depth; }

  /// Says whether the calling thread has had a warning since its log was last emptied, even with
  /// logging disabled.
  /// @return 1 when it has had one; 0 otherwise.
  u16 GetAnyParseExceptionsLogged() const;
  /// @return the number of warnings in the calling thread's log.
  u16 GetNumberParseExceptions() const;
  /// @return a warning of the calling thread's log, which owns it; null after the last.
  KRParseException* GetParseException(u16 index) const;
  /// Switches the storing of warnings on the calling thread on (not 0) or off (0).
  void EnableLogging(u16 enable);
  /// Appends copies of the calling thread's warnings to `target` and copies its flags.
  /// @return 1; 0 for a null target, an unattached thread, or exhausted memory, which also raises
  ///         the fire alarm.
  u16 CopyExceptionListTo(KRParseLogger* target) const;

 protected:
  /// Logs a warning on the calling thread. The log takes ownership of `exception` when logging is
  /// enabled and the result is 1; otherwise the caller keeps it.
  /// @return 1; 0 when it could not be stored.
  u16 AppendParseException(KRParseException* exception);
  /// Makes and logs a warning on the calling thread.
  /// @param object the object that the warning is about; null for the current one.
  /// @return 1; 0 when it could not be made or stored.
  u16 AppendParseException(KRParseWarning warning, KRString value, KRString tagText, KRTagID tag,
                           KRDataObj* object);

  /// Makes `root` the current object and calls its SetupForParsing. The stack stays as it is.
  void SetRoot(KRDataObj* root);

 private:
  friend class krofx::internal::PlainFeed;

  struct StackEntry {
    KRDataObj* object;
    KRArrayOfTags validTags;
  };

  KRDataObj* m_current = nullptr;
  StackEntry m_stack[kMaxDepth] = {};
  s16 m_depth = 0;
  KRArrayOfTags m_validTags = {};
};

#endif  // KROFX_MODEL_PARSER_H_
