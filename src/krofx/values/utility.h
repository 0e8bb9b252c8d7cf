// Static helper functions for several layers: transaction identifiers, walks over object trees,
// repair of response text, fixed byte order, and the character macros of SGML text.
//
// The walks need the object model and are in krofx/model/tree_walk.cpp; everything else is in
// utility.cpp and transaction_id.cpp.

#ifndef KROFX_VALUES_UTILITY_H_
#define KROFX_VALUES_UTILITY_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"

class KRBuffer;
class KRDataObj;
class KRDynamicArrayDataObj;

/// How many tags of a group must be present in an object.
enum KRPresenceDemand : u32 {
  KRPresenceDemand_None = 0,        ///< none may be present
  KRPresenceDemand_AtMostOne = 1,   ///< none or one
  KRPresenceDemand_ExactlyOne = 2,  ///< one
  KRPresenceDemand_AtLeastOne = 3,  ///< one or more
  KRPresenceDemand_All = 4,         ///< every one
};

/// A rule about a group of tags that an object does not meet.
struct KRUnmetRule {
  KRPresenceDemand demand = KRPresenceDemand_None;  ///< How many of the tags must be present.
  const KRTagID* tags = nullptr;                    ///< The group; constant data of the class.
  u16 count = 0;                                    ///< Tags in the group.
  u16 present = 0;                                  ///< How many of them the object holds.
};

/// The helper functions, all static.
class KROFX_API KRUtility {
 public:
  /// Makes the identifier of a transaction: 36 characters in the layout of a time-based UUID,
  /// capital hexadecimal digits in groups of 8, 4, 4, 4 and 12. Any thread may call it.
  /// @param out at least 37 bytes.
  /// @return 1; 0 when `out` is null.
  static u16 GenerateTransactionID(char* out);

  /// @return the clock sequence, 0 until the first identifier. A host can save it and the node and
  ///         set them again in its next run, so that all its identifiers have the same node.
  static u16 GetGUIDClockSequence();
  /// Sets the clock sequence, of which identifiers use the low 14 bits. After 0 the next identifier
  /// starts from a new random value.
  static void SetGUIDClockSequence(u16 value);
  /// Gets the node: its bytes 0 and 1, and its bytes 2 to 5. Both are 0 until the first identifier.
  /// A null pointer is ignored.
  static void GetGUIDNode(u16* node01, u32* node25);
  /// Sets the node. Identifiers use it from then on and never replace it.
  static void SetGUIDNode(u16 node01, u32 node25);

  /// Checks that a tree has everything that must be present.
  /// @param object in: the root; out: the deepest incomplete object on the first path to one;
  ///        unchanged when the root itself is incomplete or nothing is missing.
  /// @param missing out, may be null: that object's first missing tag; 0 when the root itself is
  ///        incomplete or nothing is missing.
  /// @return 1 when nothing is missing; 0 also for a null object.
  static u16 AllRequiredPresent(KRDataObj** object, KRTagID* missing);
  /// Lists what is missing in a tree, one tag for each call.
  /// @param holder out: the object that lacks the tag, null when nothing was found.
  /// @param after 0 for the first missing tag, else the tag that the last call returned.
  /// @return the tag; 0 when nothing was found.
  static KRTagID GetNextMissingRequiredTag(KRDataObj* object, KRDataObj** holder, KRTagID after);
  /// Repairs the invoices of one processor, CheckFree, which leaves out required elements: an
  /// incomplete INVOICE gets a description and a number; an incomplete DISCOUNT gets a description,
  /// and a rate of 0 if its rate is not a valid percentage. Anything else that is missing stays
  /// missing.
  /// @param object the root.
  /// @param missing out, may be null: 0.
  /// @return 1; 0 for a null object.
  static u16 PatchCheckFreeOFX(KRDataObj** object, KRTagID* missing);

  /// Describes a rule about a group of tags, such as exactly one of three, that an object does not
  /// meet. Tags that are required on their own are not among these rules.
  /// @param index the number of the unmet rule, from 0.
  /// @return 1; 0, with `rule` unchanged, for a null object and when `index` is not below the
  ///         number of unmet rules.
  static u16 GetUnmetRule(const KRDataObj* object, u16 index, KRUnmetRule& rule);

  /// Cleans response text for a parse: every byte that is neither a printable ASCII character nor a
  /// line end becomes a blank. The size stays; the cursor moves to the end.
  /// @return 1; 0 for a null buffer.
  static u16 RemoveBadCharFromBuffer(KRBuffer* buffer);

  /// Describes an object in log lines.
  /// @return the text of the object's tag; "OBJECT NULL" for a null object, "TAG UNKNOWN" for one
  ///         without a tag.
  static KRString ObjectToString(KRDataObj* object);
  /// Describes a tag in log lines.
  /// @return the text of the tag; "TAG UNKNOWN" when there is none.
  static KRString TagToString(KRTagID tag);

  /// Finds the first element whose type is `tag`.
  /// @param start position to begin at, from 1; 0 means 1.
  /// @return the position, counted from 1, so that the next search starts at the position plus 1; 0
  ///         when no element matches or an empty slot comes first.
  static u16 Find(const KRDynamicArrayDataObj* array, KRTagID tag, u16 start);

  /// Reads a number of up to 5 digits, modulo 65536; characters after the fifth are ignored.
  /// @param exactDigits when above 0, the number of digits that there must be.
  /// @param scaleDigits when above the number of digits, the value is multiplied by 10 for each
  ///        missing digit.
  /// @return 0; 4, with `value` unchanged, when a character is not a digit or the number of digits
  ///         is wrong.
  static KRParseStatus AscToUInt(const char* text, u16* value, s16 exactDigits, s16 scaleDigits);

  /// Writes 1 byte. Null does nothing, here and below.
  static void PackByte(char* block, char value);
  /// Reads 1 byte. Null gives 0, here and below.
  static char UnPackByte(const char* block);
  /// Writes 2 bytes, the least significant one first whatever the processor.
  static void PackShort(char* block, u16 value);
  /// Reads 2 bytes, the least significant one first.
  static u16 UnPackShort(const char* block);
  /// Writes 4 bytes, the least significant one first whatever the processor.
  static void PackLong(char* block, u32 value);
  /// Reads 4 bytes, the least significant one first.
  static u32 UnPackLong(const char* block);

  /// @return the character of a macro ("nbsp", "gt", "lt", "amp", in small letters); 0 when there
  ///         is none.
  static char GetMacroChar(const char* name);
  /// @return the name of the macro that must replace a character: "gt", "lt" or "amp"; null for any
  ///         other character, the blank included.
  static const char* GetMacroString(char c);
  /// @return the first '>', '<' or '&' of a text; null when there is none or the text is null.
  static char* ContainsMacro(char* text);
  /// The same for a constant text.
  static const char* ContainsMacro(const char* text);
  /// The same for a literal null, which would fit both forms above: null.
  static const char* ContainsMacro(std::nullptr_t) { return nullptr; }

 private:
  // Starts the clock sequence when it is 0, then increases it by 1, in 14 bits.
  static u16 GetSequence();

  static u16 m_clockSequence;  // 14 bits; 0 until first use.
  static u16 m_nodeSet;        // 1 once the node exists.
  static u32 m_node25;         // Bytes 2 to 5 of the node.
  static u16 m_node01;         // Bytes 0 and 1 of the node.
  static s32 m_lastTime;       // Timestamp of the last identifier, low part.
  static u32 m_lastSecond;     // Wall-clock second of the last identifier.
  static u32 m_nextFracSec;    // Identifiers made in that second before the last one.
};

namespace krofx::internal {

/// @return the character of a macro without regard to case; 0 when there is none. Parsers take
///         "&AMP;" for "&amp;".
KROFX_API char MacroCharWithoutCase(std::string_view name) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_VALUES_UTILITY_H_
