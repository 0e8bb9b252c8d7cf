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

struct KRUnmetRule;

namespace krofx::internal {

/// The result of storing a text into a member.
enum class StoreResult : u8 {
  kStored,       ///< The value is held.
  kNoText,       ///< An empty text: nothing was stored, nothing is present.
  kBadFormat,    ///< The text is not a value of this kind; the member keeps what it held.
  kNoValue,      ///< The row is an aggregate, which has no text.
  kCannotStore,  ///< An array could not take one more value.
};

/// What the text of a value looks like, for code that repairs texts that are not values. kAggregate
/// is an aggregate that its parent holds by value.
enum class ValueForm : u8 {
  kText,
  kDecimal,
  kPayrollAmount,  ///< A decimal number that a '$' in front of it or a '%' after it gives a kind.
  kInteger,
  kBoolean,
  kDate,
  kTime,
  kKeyword,
  kLanguage,
  kAggregate,
};

/// @return whether values of a form are numbers.
constexpr bool IsNumber(ValueForm form) {
  return form == ValueForm::kDecimal || form == ValueForm::kPayrollAmount ||
         form == ValueForm::kInteger;
}
/// @return whether values of a form are dates or times.
constexpr bool IsMoment(ValueForm form) {
  return form == ValueForm::kDate || form == ValueForm::kTime;
}

/// How one kind of value is read, written and copied. `member` points to the value itself.
struct ValueKind {
  StoreResult (*fromText)(KRDataObj& owner, KRTagID tag, void* member, const KRString& text);
  KRBuildStatus (*build)(KRBuilder& builder, KRTagID tag, const void* member);
  u16 (*copy)(void* to, const void* from);
  ValueForm form = ValueForm::kText;
  /// Stores a text of the common form, which needs no terminator. Logs nothing.
  /// @return false, with nothing changed, for any other text; fromText must read it.
  bool (*fromCommonText)(void* member, const char* text, std::size_t length) = nullptr;
  /// Writes to `out`, which has room up to `end`, the text that the library's builder writes for
  /// `build`, without tag and line end.
  /// @return the end of the text; null, with some of it possibly written, when there is too little
  ///         room and for a value that is not of the common kind: `build` must write it.
  char* (*writeCommon)(const void* member, char* out, const char* end) = nullptr;
  /// The member is an array: an element that comes again adds a value.
  bool isRepeated = false;
};

/// How an array of children is reached, whatever its element type.
struct ChildArrayKind {
  u16 (*entries)(const void* array);
  KRDataObj* (*get)(const void* array, u16 index);
  u16 (*set)(void* array, u16 index, KRDataObj* child);
  /// Deletes the entries after the first `entries`; gives up all entries of a shared array.
  void (*truncate)(void* array, u16 entries);
  /// Takes the last entry out: the child is the caller's then. Null, with nothing changed, for an
  /// empty or a shared array.
  KRDataObj* (*takeLast)(void* array);
  KRBuildStatus (*build)(const void* array, KRBuilder& builder, KRTagID tag);
  /// An array for several tags: only the elements whose type is the tag are written for a row.
  bool isMixed;
};

/// Makes a child through the factory; null when that failed.
using CreateChild = KRDataObj* (*)(KRDataObjFactory& factory);

/// One row of an aggregate. A value has `value`, a child `create`, an array of children `create`
/// and `array`; a row with none of them is listed as valid, but is neither read nor written.
struct Row {
  void* (*member)(KRDataObj& object) = nullptr;
  const ValueKind* value = nullptr;
  CreateChild create = nullptr;
  const ChildArrayKind* array = nullptr;
  /// Writes the end tag after the value too.
  bool closed = false;
  /// A text that is not such a value is warned about and skipped.
  bool lenient = false;
  /// A text that is not such a value causes one warning, not a second one by its conversion.
  bool warnsOnce = false;
  /// Several tags fill the slot; the child is present under the tag that is its type.
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
  kExclusiveOr,  ///< An odd number of them: three of three are allowed, as one is.
};

/// When a rule applies.
enum class RuleCondition : u8 { kAlways, kWhenAny, kUnlessAny };

/// A rule of presence, in addition to the required table.
struct Rule {
  RuleKind kind;
  RuleCondition condition;
  const KRTagID* conditionTags;
  u8 conditionCount;
  /// With kUnlessAny the tags of the condition come after these in the same array.
  const KRTagID* tags;
  u8 count;
  /// When the rule fails, MissingTagOf names one of its tags.
  bool reported = false;
};

/// The whole of one aggregate. Constant data, one for each class.
struct AggregateTable {
  const char* className = nullptr;
  KRArrayOfTags valid = {};
  KRArrayOfTags required = {};
  /// One row for each row of `valid`, in the same order, which is the wire order; then those of the
  /// tags that are read into a member though the valid table does not list them.
  const Row* rows = nullptr;
  const KRTagID* unlistedTags = nullptr;
  u8 unlistedCount = 0;
  /// Positions of the rows that bring children, one for each member, in wire order.
  const u8* childRows = nullptr;
  u8 childRowCount = 0;
  /// How many of childRows, from the first, are slots. Their position is the child's index.
  u8 leadingSlots = 0;
  /// Gives the addresses of these slots.
  void (*slots)(KRDataObj& object, ChildSlot** out) = nullptr;
  const Rule* rules = nullptr;
  u8 ruleCount = 0;
  /// Only the rules say whether an object is complete; the required table is not used.
  bool rulesOnly = false;
  /// Makes an object of the class through the factory; null for a class that is only a base.
  CreateChild create = nullptr;
  /// For a file: gives 1 when its headers allow its body to be read, else 0. Null for a class
  /// without headers.
  u16 (*validateHeaders)(KRDataObj& object) = nullptr;
  /// For a class whose rules depend on an object's type: as KRUtility::GetUnmetRule. Null for a
  /// class whose rules are those of the table.
  u16 (*unmetRule)(const KRDataObj& object, u16 index, KRUnmetRule& rule) = nullptr;
  /// The typeid of an object of exactly this class.
  const std::type_info* type = nullptr;
  /// Which operations the class leaves to its table: see PlainOperations.
  u8 plain = 0;
};

/// Accepts the address of an operation of this signature that a class inherits from KRDataObj; it
/// does not compile for one that the class or a base of it overrides.
template <class Signature>
void IsInherited(Signature KRDataObj::*);

/// A class that overrides none of the operations that a parser calls.
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

/// A class that overrides none of the operations that a builder calls.
template <class Class>
concept IsWrittenByTable = requires {
  IsInherited<KRBuildStatus(KRBuilder*) const>(&Class::Build);
  IsInherited<KRBuildStatus(KRBuilder*, KRTagID) const>(&Class::BuildObject);
  IsInherited<u16(KRArrayOfTags&) const>(&Class::GetArrayOfValidTags);
  IsInherited<u16() const>(&Class::GetMsgSetVersion);
  IsInherited<KRTagID()>(&Class::GetType);
};

/// A class that overrides none of the operations that the search for missing tags calls.
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

/// @return a table's `plain`. An object of exactly this class can be filled, written or checked
///         without the virtual operations, since they only use the table. An object of a class that
///         a host derives cannot.
template <class Class>
constexpr u8 PlainOperations() {
  return static_cast<u8>((TakesTagsByTable<Class> ? kPlainParse : 0) |
                         (IsWrittenByTable<Class> ? kPlainBuild : 0) |
                         (IsCheckedByTable<Class> ? kPlainCheck : 0));
}

/// A row's `member`: gives the address of a member.
template <auto Member>
struct MemberOf;
template <class Class, class Type, Type Class::*Member>
struct MemberOf<Member> {
  static void* Address(KRDataObj& object) { return &(static_cast<Class&>(object).*Member); }
};

/// A table's `slots`: gives the addresses of the slots of the first `Count` child rows.
template <const auto& Rows, const auto& ChildRows, std::size_t Count>
void SlotsOf(KRDataObj& object, ChildSlot** out) {
  [&object, out ]<std::size_t... At>(std::index_sequence<At...>) {
    ((out[At] = static_cast<ChildSlot*>(Rows[ChildRows[At]].member(object))), ...);
  }
  (std::make_index_sequence<Count>());
}

/// @return a row's `create`, made from an operation of the factory.
template <auto Operation>
KRDataObj* CreateBy(KRDataObjFactory& factory) {
  return (factory.*Operation)(0);
}

/// Makes an element for a typed array through the factory in force; null when there is none or
/// memory is exhausted.
KROFX_API KRDataObj* CreateElement(CreateChild create);

/// Makes the child of a row through the factory in force and stores it. A child that a slot holds
/// already is warned about and deleted.
/// @param child takes the child.
/// @return 0; 3 when there is no factory or no memory.
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
/// As BuildRows, for the rows from tag `first` to tag `last`. The table must have both.
KROFX_API KRBuildStatus BuildRowsBetween(const KRDataObj& object, const AggregateTable& table,
                                         KRTagID first, KRTagID last, KRBuilder& builder);
class Presence;
/// Says whether every rule of the table holds.
/// @return 1 when it does; 0 when not.
KROFX_API u16 RulesHold(const Presence& presence, const AggregateTable& table);
/// @return whether one rule holds.
KROFX_API bool RuleHolds(const Presence& presence, const Rule& rule);
/// The tag that represents a failing rule among the missing tags: the first of its list that is
/// absent, or the first of its list when all are present, which is too many.
/// @return the tag; 0 when the rule holds or is not reported.
KROFX_API KRTagID MissingTagOf(const Presence& presence, const Rule& rule);
/// Describes the rule number `index`, from 0, of those that an object does not meet.
/// @return 1; 0 when it does not meet fewer of the `count` rules than that.
KROFX_API u16 FindUnmetRule(const KRDataObj& object, const Rule* rules, u16 count, u16 index,
                            KRUnmetRule& found);
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

/// Records `object` as the one in which the builder failed, unless an inner object is recorded.
KROFX_API void NoteFailure(KRBuilder& builder, const KRDataObj& object);

/// @return the row that reads `tag`, whatever the version; null when the table has none.
KROFX_API const Row* FindRow(const AggregateTable& table, KRTagID tag);

/// The body of a generated setter that takes a text: stores it into the member as a value of its
/// kind, warns about what is wrong with it and notes the tag. The member takes the text whether the
/// object's own table has the tag or not, since a setter may be inherited.
/// @return 1 stored; 0 the text is not such a value, or the tag is not valid in this object; 3 an
///         empty text.
KROFX_API u16 SetFromText(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* member,
                          const KRString& text);

/// As SetFromText, for a value that is added to an array.
/// @return 1 when the array took it; 0 the text is not such a value, or it could not be stored; 3
///         an empty text.
KROFX_API u16 AppendFromText(KRDataObj& object, KRTagID tag, const ValueKind& kind, void* array,
                             const KRString& text);

/// The body of a generated setter of a child: takes ownership of it, deletes the one held before
/// and notes its tag. A null child clears the tag and then notes it all the same.
/// @return what SetTag gives.
KROFX_API u16 SetChild(KRDataObj& object, ChildSlot& slot, KRTagID tag, KRDataObj* child);

/// As SetChild, for a slot that several tags fill: the child's type is the tag. Null empties the
/// slot. The tag that it clears and notes is then that of the child that was there; without a child
/// the tag of the slot that is present, or the only one that is valid in this version.
/// @return what SetTag gives; 0, with nothing noted, for null when it could be several tags.
KROFX_API u16 SetSharedChild(KRDataObj& object, ChildSlot& slot, KRDataObj* child);

/// Notes all tags that can fill a slot as absent. The child stays.
/// @return 1; 0, after a KRPW_UNKNOWNTAG warning, when none of them is valid in this version.
KROFX_API u16 ClearSharedChild(KRDataObj& object, ChildSlot& slot);

/// The class of the value that a member holds: the member's own, unless it is of stored_values.h.
template <class Member>
struct HeldIn {
  using Type = Member;
};
template <class Member>
requires requires { typename Member::Value; }
struct HeldIn<Member> {
  using Type = typename Member::Value;
};

/// The end of a generated setter of a repeated value: notes the tag when the array took the value,
/// and warns when it did not.
/// @return what SetTag gives; 0 when the array did not take the value.
KROFX_API u16 NoteValue(KRDataObj& object, u16 stored, KRTagID tag);

/// The end of a generated setter of an array element: notes the child's tag when the array took it.
/// @return what SetTag gives; 0 when the array did not take the child.
inline u16 NoteElement(KRDataObj& object, u16 stored, KRDataObj* child) {
  return stored == 0 ? static_cast<u16>(0) : object.SetTag(child->GetType());
}

/// Whether an array must not take a child, since the object would seem complete and the child would
/// not be written.
/// @return whether the child's type is the tag of a row of the object that does not use this array,
///         or it is the tag of no row and the class is not that of a row of the array.
KROFX_API bool BelongsElsewhere(const KRDataObj& object, const void* array, KRDataObj* child);

/// The body of a generated setter of an array element: takes ownership of the child as entry
/// `index`, and notes the tag that is its type.
/// @return what SetTag gives; 0 when the child could not be stored or belongs to another row, and
///         then the caller keeps it.
template <class Array, class Child>
u16 SetElement(KRDataObj& object, Array& array, u16 index, Child* child) {
  if (BelongsElsewhere(object, &array, child)) return 0;
  return NoteElement(object, array.Set(index, child), child);
}

/// As SetElement, for a new entry at the end.
/// @return 1 when the array owns the child, whether the type is valid here or not; 0 when the
///         caller keeps it.
template <class Array, class Child>
u16 AppendElement(KRDataObj& object, Array& array, Child* child) {
  if (BelongsElsewhere(object, &array, child) || array.Append(child) == 0) return 0;
  object.SetTag(child->GetType());
  return 1;
}

/// What is present in an object, for code that asks for many tags: the virtual operations that
/// ValidateTag calls each time are called once.
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

/// Access to the state of an object, for code that fills and walks objects of any class.
struct ObjectAccess {
  static const AggregateTable* TableOf(const KRDataObj& object) { return object.GetTable(); }
  static bool BitAt(const KRDataObj& object, int position) {
    return object.m_presence.Has(position);
  }
  static void SetBitAt(KRDataObj& object, int position) { object.m_presence.Set(position); }
  /// @return the table of an object whose class leaves `operations`, bits of `plain`, to the table;
  ///         null for any other object.
  static const AggregateTable* PlainTableOf(const KRDataObj& object, u8 operations) {
    const AggregateTable* table = object.GetTable();
    const bool isPlain =
        table != nullptr && (table->plain & operations) != 0 && table->type == &typeid(object);
    return isPlain ? table : nullptr;
  }
  /// What the virtual operations of the same names give and set, for an object of a plain class.
  static KRTagID TypeOf(const KRDataObj& object) { return object.m_type; }
  static const PresenceBits& PresenceOf(const KRDataObj& object) { return object.m_presence; }
  static u16 VersionOf(const KRDataObj& object) { return object.m_version; }
  static void SetType(KRDataObj& object, KRTagID tag) { object.m_type = tag; }
  static void SetVersion(KRDataObj& object, u16 version) { object.m_version = version; }
  static void SetParser(KRDataObj& object, KRParser* parser) { object.m_parser = parser; }
};

/// @return the type of a const object. GetType changes nothing, but is not const in the public
///         contract.
inline KRTagID TypeOf(const KRDataObj& object) { return const_cast<KRDataObj&>(object).GetType(); }

/// @return whether the headers of the root of a parse allow its body to be read; true when it has
///         none.
inline bool HeadersAllowBody(KRDataObj& root) {
  const AggregateTable* table = ObjectAccess::TableOf(root);
  return table == nullptr || table->validateHeaders == nullptr || table->validateHeaders(root) != 0;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_AGGREGATE_H_
