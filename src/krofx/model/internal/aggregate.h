// The pattern that every aggregate follows, written once and driven by tables.
//
// An aggregate is its table: which tags it knows, in wire order, what kind of value each one holds,
// in which versions it is allowed and required, and which member keeps it. The schema compiler
// writes one AggregateTable for each class of a .schema file; KRDataObj hands its virtual
// operations to the functions below, which walk that table:
//
//   parse:  HandleElement finds the row of a tag once, converts the text by the row's ValueKind
//           into the row's member and sets the presence bit; HandleStart makes a child.
//   build:  BuildRows writes every present row, in table order.
//   copy:   CopyAggregate copies values by assignment and children through the factory.
//   check:  RulesHold evaluates what a table of required tags cannot say.
//
// A row reaches its member through a function that the compiler makes from a member pointer, so
// nothing here knows an offset. Adding a kind of value is one ValueKind
// (krofx/model/value_kinds.h); adding an aggregate is a few lines of a schema.

#ifndef KROFX_MODEL_INTERNAL_AGGREGATE_H_
#define KROFX_MODEL_INTERNAL_AGGREGATE_H_

#include <cstddef>
#include <typeinfo>
#include <utility>

#include "krofx/core/parse_logger.h"
#include "krofx/model/data_object.h"
#include "krofx/model/internal/child_slot.h"
#include "krofx/model/internal/tag_index.h"
#include "krofx/model/value_arrays.h"

namespace krofx::internal {

/// What storing a text into a member came to.
enum class StoreResult : u8 {
  kStored,       ///< The value is held.
  kNoText,       ///< An empty text: nothing was stored, nothing is present.
  kBadFormat,    ///< The text is no value of this kind; the member keeps what it held.
  kNoValue,      ///< What the member holds has no text: it is no element.
  kCannotStore,  ///< An array could not take one more value.
};

/// What the text of a value looks like, for code that repairs texts which are no values. kAggregate
/// is an aggregate that its parent holds by value.
enum class ValueForm : u8 {
  kText,
  kDecimal,
  kInteger,
  kBoolean,
  kDate,
  kTime,
  kKeyword,
  kLanguage,
  kAggregate,
};

/// How one kind of value is read, written and copied. `member` points to the value itself.
struct ValueKind {
  StoreResult (*fromText)(KRDataObj& owner, KRTagID tag, void* member, const KRString& text);
  KRBuildStatus (*build)(KRBuilder& builder, KRTagID tag, const void* member);
  u16 (*copy)(void* to, const void* from);
  ValueForm form = ValueForm::kText;
  /// Stores a text of the form that nearly all have, which needs no terminator. Logs nothing.
  /// @return false, with nothing changed, for any other text, which is left to fromText.
  bool (*fromCommonText)(void* member, const char* text, std::size_t length) = nullptr;
  /// Writes the text that `build` would have the builder of the library write, without tag and line
  /// end, to `out`, which has room up to `end`.
  /// @return the end of the text; null, whatever was written, when there is too little room and for
  ///         any value that is not of the ordinary kind, which is left to `build`.
  char* (*writeCommon)(const void* member, char* out, char* end) = nullptr;
};

/// How an array of children is reached, whatever its element type.
struct ChildArrayKind {
  u16 (*entries)(const void* array);
  KRDataObj* (*get)(const void* array, u16 index);
  u16 (*set)(void* array, u16 index, KRDataObj* child);
  /// Deletes the entries after the first `entries`; leaves a shared array with none of its own.
  void (*truncate)(void* array, u16 entries);
  KRBuildStatus (*build)(const void* array, KRBuilder& builder, KRTagID tag);
  /// An array for several tags: only the elements whose type is the tag are written under it.
  bool isMixed;
};

/// Makes a child through the factory; null when that failed.
using CreateChild = KRDataObj* (*)(KRDataObjFactory& factory);

/// One row of an aggregate: exactly one of `value`, `create` with no `array`, or `create` with
/// `array` says what it is; a row with none is listed as valid, but neither read nor written.
struct Row {
  void* (*member)(KRDataObj& object) = nullptr;
  const ValueKind* value = nullptr;
  CreateChild create = nullptr;
  const ChildArrayKind* array = nullptr;
  /// Writes the end tag after the value too.
  bool closed = false;
  /// A text that is no such value is warned about and passed over.
  bool lenient = false;
  /// A text that is no such value is warned about once: its conversion's own warning is left out.
  bool warnsOnce = false;
  /// The child shares its slot with other tags, and is under the one that is its type.
  bool shared = false;
  /// Characters of `element`; 0 for a tag that is too long for it.
  u8 elementLength = 0;
  /// The row's tag between '<' and '>'.
  char element[24] = {};
};

/// What a rule asks of the presence of its tags.
enum class RuleKind : u8 {
  kNone,         ///< None of them.
  kAtMostOne,    ///< None or one.
  kExactlyOne,   ///< One.
  kAtLeastOne,   ///< One or more.
  kAll,          ///< Every one.
  kExclusiveOr,  ///< An odd number: three of three pass as one does.
};

/// When a rule is asked at all.
enum class RuleCondition : u8 { kAlways, kWhenAny, kUnlessAny };

/// A rule of presence beside the required table.
struct Rule {
  RuleKind kind;
  RuleCondition condition;
  const KRTagID* conditionTags;
  u8 conditionCount;
  const KRTagID* tags;
  u8 count;
  /// A failing rule is named among the missing required tags.
  bool reported = false;
};

/// The whole of one aggregate. Constant data, one for each class.
struct AggregateTable {
  const char* className = nullptr;
  KRArrayOfTags valid = {};
  KRArrayOfTags required = {};
  /// As many rows as `valid` has, in the same order, which is the wire order; then those of tags
  /// that are read into a member though the valid table does not list them.
  const Row* rows = nullptr;
  const KRTagID* unlistedTags = nullptr;
  u8 unlistedCount = 0;
  /// Positions of the rows that bring children, one for each member, in wire order.
  const u8* childRows = nullptr;
  u8 childRowCount = 0;
  /// How many of childRows, from the first, are slots: their index is the child's. They are reached
  /// all at once.
  u8 leadingSlots = 0;
  void (*slots)(KRDataObj& object, ChildSlot** out) = nullptr;
  const Rule* rules = nullptr;
  u8 ruleCount = 0;
  /// Completeness is a matter of the rules alone: the required table is not consulted.
  bool rulesOnly = false;
  /// Makes an object of the class through the factory; null for a class that is only a base.
  CreateChild create = nullptr;
  /// For a file: whether its headers allow its body to be read, 1 or 0. Null for a class that has
  /// no headers.
  u16 (*validateHeaders)(KRDataObj& object) = nullptr;
  /// What typeid gives for an object of exactly this class, and which operations the class leaves
  /// to its table: see PlainOperations.
  const std::type_info* type = nullptr;
  u8 plain = 0;
};

/// Accepts an operation that is KRDataObj's own and has this signature: no class below overrides
/// it.
template <class Signature>
void IsInherited(Signature KRDataObj::*);

/// A class that leaves all that a parser asks of an object as KRDataObj has it.
template <class Class>
concept TakesTagsByTable = requires {
  IsInherited<KRParseStatus(KRParser*)>(&Class::SetupForParsing);
  IsInherited<KRParseStatus(const KRTagDictionaryEntry*)>(&Class::HandleTagStart);
  IsInherited<KRParseStatus(const KRTagDictionaryEntry*, const KRString&)>(
      &Class::HandleTagElement);
  IsInherited<KRParseStatus(const KRTagDictionaryEntry*)>(&Class::HandleTagEnd);
  IsInherited<KRParseStatus(KRDataObj*, KRTagID)>(&Class::PushAndSetObject);
  IsInherited<u16(KRArrayOfTags&) const>(&Class::GetArrayOfValidTags);
  IsInherited<u16(KRTagID) const>(&Class::IsValidTag);
  IsInherited<u16(u16)>(&Class::SetMsgSetVersion);
  IsInherited<u16() const>(&Class::GetMsgSetVersion);
  IsInherited<KRTagID()>(&Class::GetType);
  IsInherited<void(KRTagID)>(&Class::SetType);
};

/// A class that leaves all that a builder asks of an object as KRDataObj has it.
template <class Class>
concept IsWrittenByTable = requires {
  IsInherited<KRBuildStatus(KRBuilder*) const>(&Class::Build);
  IsInherited<KRBuildStatus(KRBuilder*, KRTagID) const>(&Class::BuildObject);
  IsInherited<u16(KRArrayOfTags&) const>(&Class::GetArrayOfValidTags);
  IsInherited<u16() const>(&Class::GetMsgSetVersion);
  IsInherited<KRTagID()>(&Class::GetType);
};

/// A class that leaves all that the search for missing tags asks of an object as KRDataObj has it.
template <class Class>
concept IsCheckedByTable = requires {
  IsInherited<u16()>(&Class::AllRequiredPresent);
  IsInherited<u16(KRArrayOfTags&) const>(&Class::GetArrayOfValidTags);
  IsInherited<u16(KRArrayOfTags&) const>(&Class::GetArrayOfRequiredTags);
  IsInherited<u16() const>(&Class::GetMsgSetVersion);
  IsInherited<KRDataObj*(u16) const>(&Class::GetChild);
  IsInherited<u16() const>(&Class::GetNumberOfChildren);
};

/// The bits of a table's `plain`.
inline constexpr u8 kPlainParse = 1;
inline constexpr u8 kPlainBuild = 2;
inline constexpr u8 kPlainCheck = 4;

/// A table's `plain`. An object of exactly this class can be filled, written or checked without the
/// virtual operations, since they would all end in the table; one of a class that a host derived
/// cannot.
template <class Class>
constexpr u8 PlainOperations() {
  return static_cast<u8>((TakesTagsByTable<Class> ? kPlainParse : 0) |
                         (IsWrittenByTable<Class> ? kPlainBuild : 0) |
                         (IsCheckedByTable<Class> ? kPlainCheck : 0));
}

/// The address of a member: what a row's `member` is made of.
template <auto Member>
struct MemberOf;
template <class Class, class Type, Type Class::*Member>
struct MemberOf<Member> {
  static void* Address(KRDataObj& object) { return &(static_cast<Class&>(object).*Member); }
};

/// A table's `slots`: the first `Count` child rows, each in place.
template <const auto& Rows, const auto& ChildRows, std::size_t Count>
void SlotsOf(KRDataObj& object, ChildSlot** out) {
  [&object, out ]<std::size_t... At>(std::index_sequence<At...>) {
    ((out[At] = static_cast<ChildSlot*>(Rows[ChildRows[At]].member(object))), ...);
  }
  (std::make_index_sequence<Count>());
}

/// A row's `create`, made from an operation of the factory.
template <auto Operation>
KRDataObj* CreateBy(KRDataObjFactory& factory) {
  return (factory.*Operation)(0);
}

/// Makes an element for a typed array through the factory in force; null when there is none or
/// memory is exhausted.
KROFX_API KRDataObj* CreateElement(CreateChild create);

/// Makes the child that a row brings, through the factory in force, and puts it in its place. One
/// that is there already is warned about and deleted, unless the row is an array.
/// @param child takes the child.
/// @return 0; 3 when there is no factory, or no memory.
KROFX_API KRParseStatus MakeChild(KRDataObj& object, const Row& row, KRTagID tag,
                                  KRDataObj*& child);
/// KRDataObj::HandleTagStart over a table.
KROFX_API KRParseStatus HandleStart(KRDataObj& object, const AggregateTable& table,
                                    const KRTagDictionaryEntry& entry);
/// KRDataObj::HandleTagElement over a table.
KROFX_API KRParseStatus HandleElement(KRDataObj& object, const AggregateTable& table,
                                      const KRTagDictionaryEntry& entry, const KRString& text);
/// KRDataObj::Build over a table.
KROFX_API KRBuildStatus BuildRows(const KRDataObj& object, const AggregateTable& table,
                                  KRBuilder& builder);
/// As BuildRows, for the rows from that of tag `first` to that of tag `last`, which the table has.
KROFX_API KRBuildStatus BuildRowsBetween(const KRDataObj& object, const AggregateTable& table,
                                         KRTagID first, KRTagID last, KRBuilder& builder);
class Presence;
/// 1 when every rule of the table holds.
KROFX_API u16 RulesHold(const Presence& presence, const AggregateTable& table);
/// Whether one rule holds.
KROFX_API bool RuleHolds(const Presence& presence, const Rule& rule);
/// The tag that represents a failing rule among the missing tags: the first of its list that is
/// absent; the first of its list when all are there, one too many.
/// @return 0 when the rule holds or is not reported.
KROFX_API KRTagID MissingTagOf(const Presence& presence, const Rule& rule);
/// Gives the version mask to every child that is held.
KROFX_API void PassVersionDown(KRDataObj& object, const AggregateTable& table, u16 version);
/// KRDataObj::GetChild over a table.
KROFX_API KRDataObj* ChildAt(const KRDataObj& object, const AggregateTable& table, u16 index);
/// KRDataObj::GetNumberOfChildren over a table.
KROFX_API u16 CountChildren(const KRDataObj& object, const AggregateTable& table);

/// Copies everything from `source`, children included, which are made through the factory.
/// @return 1; 0 for a null source, one of another class, no factory or no memory.
KROFX_API u16 CopyAggregate(KRDataObj& target, KRDataObj* source);
/// Makes `slot` hold a deep copy of `source`, reusing a child of the same class; null empties it.
KROFX_API u16 CopyChild(ChildSlot& slot, KRDataObj* source);

/// Notes that the builder failed in `object`, unless an inner object is noted already.
KROFX_API void NoteFailure(KRBuilder& builder, const KRDataObj& object);

/// The row that reads `tag`, whatever the version; null when the table has none.
KROFX_API const Row* FindRow(const AggregateTable& table, KRTagID tag);

/// What a generated setter does with a text: stores it into the member as a value of its kind,
/// warns about what is wrong with it and notes the tag. The member takes the text whether the
/// object's own table has the tag or not: a setter may be inherited.
/// @return 1 stored; 0 the text is no such value, or the tag is not valid in this object; 3 an
///         empty text.
KROFX_API u16 SetFromText(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* member,
                          const KRString& text);

/// As SetFromText, for a value that is added to an array.
/// @return 1 when the array took it; 0 the text is no such value, or it could not be stored; 3 an
///         empty text.
KROFX_API u16 AppendFromText(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* array,
                             const KRString& text);

/// What a generated setter does with a child: owns it in place of the one there and notes its tag.
/// @return what SetTag gives. A null child clears the tag and then notes it all the same.
KROFX_API u16 SetChild(KRDataObj& object, ChildSlot& slot, KRTagID tag, KRDataObj* child);

/// As SetChild for a slot that several tags fill: the child's type is the tag. Null clears the
/// slot, and its tag is that of the child that was there; without one the tag of the slot that is
/// present, or the only one that is valid in this version.
/// @return what SetTag gives; 0, with nothing noted, for null when no one tag is meant.
KROFX_API u16 SetSharedChild(KRDataObj& object, ChildSlot& slot, KRDataObj* child);

/// Notes all tags that fill a slot as absent. The child stays.
/// @return 1; 0, after a KRPW_UNKNOWNTAG warning, when none of them is valid in this version.
KROFX_API u16 ClearSharedChild(KRDataObj& object, ChildSlot& slot);

/// The class of the value that a member holds: its own, unless it is one of stored_values.h.
template <class Member>
struct HeldIn {
  using Type = Member;
};
template <class Member>
requires requires { typename Member::Value; }
struct HeldIn<Member> {
  using Type = Member::Value;
};

/// What a generated setter of a repeated value does when the array took it or not: notes the tag,
/// or warns that the value could not be stored.
KROFX_API u16 NoteValue(KRDataObj& object, u16 stored, KRTagID tag);

/// What a generated setter of an array element does when the array took the child or not.
inline u16 NoteElement(KRDataObj& object, u16 stored, KRDataObj* child) {
  return stored == 0 ? static_cast<u16>(0) : object.SetTag(child->GetType());
}

/// Whether a child's type is the tag of a row of the object that does not use this array. The array
/// does not take the child: that row would count as present, and the child would never be written.
KROFX_API bool BelongsElsewhere(const KRDataObj& object, const void* array, KRDataObj* child);

/// What a generated setter of an array element does: owns the child as entry `index`, and notes the
/// tag that is its type.
/// @return what SetTag gives; 0 when the child could not be stored, or belongs to another row: then
///         it is still the caller's.
template <class Array, class Child>
u16 SetElement(KRDataObj& object, Array& array, u16 index, Child* child) {
  if (BelongsElsewhere(object, &array, child)) return 0;
  return NoteElement(object, array.Set(index, child), child);
}

/// As SetElement, after the last entry.
/// @return what the array gives: 1 when it owns the child, whether the type is valid here or not;
///         0 when the child is still the caller's.
template <class Array, class Child>
u16 AppendElement(KRDataObj& object, Array& array, Child* child) {
  if (BelongsElsewhere(object, &array, child) || array.Append(child) == 0) return 0;
  object.SetTag(child->GetType());
  return 1;
}

/// What is present in an object, for code that asks of many tags at once: the virtual questions
/// of ValidateTag are asked once.
class Presence {
 public:
  explicit Presence(const KRDataObj& object);
  /// As KRDataObj::ValidateTag.
  bool Has(KRTagID tag) const;

 private:
  const KRDataObj& m_object;
  KRArrayOfTags m_valid;
  u16 m_version;
};

/// The inside of an object, for code that fills and walks objects without knowing their class.
struct ObjectAccess {
  static const AggregateTable* TableOf(const KRDataObj& object) { return object.GetTable(); }
  static bool BitAt(const KRDataObj& object, int position) {
    return object.m_presence.Has(position);
  }
  static void SetBitAt(KRDataObj& object, int position) { object.m_presence.Set(position); }
  /// The table of an object that leaves `operations`, which are bits of `plain`, to it alone; null
  /// for any other object.
  static const AggregateTable* PlainTableOf(const KRDataObj& object, u8 operations) {
    const AggregateTable* table = object.GetTable();
    const bool isPlain =
        table != nullptr && (table->plain & operations) != 0 && table->type == &typeid(object);
    return isPlain ? table : nullptr;
  }
  /// What the virtual operations give and take, for an object of a plain class.
  static KRTagID TypeOf(const KRDataObj& object) { return object.m_type; }
  static const PresenceBits& PresenceOf(const KRDataObj& object) { return object.m_presence; }
  static u16 VersionOf(const KRDataObj& object) { return object.m_version; }
  static void SetType(KRDataObj& object, KRTagID tag) { object.m_type = tag; }
  static void SetVersion(KRDataObj& object, u16 version) { object.m_version = version; }
  static void SetParser(KRDataObj& object, KRParser* parser) { object.m_parser = parser; }
};

/// The type of an object: GetType, which is not const in the contract, though it changes nothing.
inline KRTagID TypeOf(const KRDataObj& object) { return const_cast<KRDataObj&>(object).GetType(); }

/// Whether the headers of the root of a parse allow its body to be read; true when it has none.
inline bool HeadersAllowBody(KRDataObj& root) {
  const AggregateTable* table = ObjectAccess::TableOf(root);
  return table == nullptr || table->validateHeaders == nullptr || table->validateHeaders(root) != 0;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_AGGREGATE_H_
