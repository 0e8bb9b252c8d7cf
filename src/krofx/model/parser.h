// The base of all parsers: the stack of open aggregates.
//
// A parser hands each tag to the object on top of its stack. The objects drive the stack: an
// aggregate that meets a child's start tag pushes the child (KRDataObj::PushAndSetObject), and the
// child's end tag pops it (KRDataObj::HandleTagEnd). What the parser adds is the table of tags that
// the object on top accepts, and the way to the warnings of the calling thread.

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
/// attached; on a thread that is not, there are no warnings and nothing is parsed.
///
/// The parser owns no object. An object that is current or on the stack must outlive its time
/// there.
class KROFX_API KRParser : public krofx::internal::HeapObject {
 public:
  /// How many aggregates may be open below the root.
  static constexpr s16 kMaxDepth = 10;

  /// Makes a parser with nothing on its stack. Empties the calling thread's warnings and enables
  /// logging there.
  KRParser();
  /// Copies current object, stack and valid tags. The objects keep the parser that they know.
  KRParser(const KRParser& other) = default;
  /// As the copy constructor.
  KRParser& operator=(const KRParser& other) = default;

  /// Makes `root` the current object and informs it. Reads nothing: derived parsers do.
  /// @return 0; 3 for a null root.
  virtual KRParseStatus Parse(KRBuffer* buffer, KRDataObj* root, u16 checkRequired);
  /// Puts the current object on the stack and makes `object` current, with its table of valid tags.
  /// @return 1; 0 and nothing changed when kMaxDepth aggregates are open or `object` is null.
  virtual u16 PushObject(KRDataObj* object);
  /// Takes the object on top of the stack back as the current one, with the table of valid tags
  /// that was in force then.
  /// @return 1; 0 and nothing changed when the stack is empty.
  virtual u16 PopObject();
  /// Puts a table of valid tags in force, until the next push or pop. The rows stay the caller's.
  /// @return 1.
  virtual u16 SetValidTags(KRArrayOfTags& tags);
  /// Tells if the table in force has `tag` for the current object's message-set version. With no
  /// table every tag is valid.
  virtual u16 IsValidTag(KRTagID tag);

  /// Takes the parser out of every logger that points to it.
  virtual ~KRParser();

  /// The object that receives tags; null before the first parse.
  KRDataObj* GetCurrentObj() const { return m_current; }
  /// The number of open aggregates below the root, 0 to kMaxDepth. 0 after a parse that went well;
  /// one that failed leaves its stack as it was, to be taken back by PopObject.
  s16 GetDepth() const { return m_depth; }

  /// 1 when the calling thread has logged a warning since its log was last emptied, even with
  /// logging disabled.
  u16 GetAnyParseExceptionsLogged() const;
  /// The number of warnings in the calling thread's log.
  u16 GetNumberParseExceptions() const;
  /// A warning of the calling thread's log, which owns it; null beyond the last.
  KRParseException* GetParseException(u16 index) const;
  /// Switches the storing of warnings on the calling thread on (not 0) or off (0).
  void EnableLogging(u16 enable);
  /// Appends copies of the calling thread's warnings to `target` and copies its flags.
  /// @return 1; 0 for a null target, an unattached thread, or exhausted memory, which also raises
  ///         the fire alarm.
  u16 CopyExceptionListTo(KRParseLogger* target) const;

 protected:
  /// Logs a warning on the calling thread. The log owns `exception` from here when logging is
  /// enabled and the result is 1; otherwise it stays the caller's.
  /// @return 1; 0 when it could not be stored.
  u16 AppendParseException(KRParseException* exception);
  /// Makes and logs a warning on the calling thread.
  /// @param object the object in which it arose; null for the current one.
  /// @return 1; 0 when it could not be made or stored.
  u16 AppendParseException(KRParseWarning warning, KRString value, KRString tagText, KRTagID tag,
                           KRDataObj* object);

  /// Makes `root` the current object and informs it, without a look at the stack.
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
