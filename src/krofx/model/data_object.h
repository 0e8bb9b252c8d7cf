// The one contract of every OFX aggregate and of the file around it.
//
// A parser fills a KRDataObj, a builder writes it, and callers ask what it holds, all through the
// operations below. KRDataObj knows no OFX: a class brings a table of its tags (GetTable, normally
// generated from a .schema file), and the defaults of the virtual operations are the pattern that
// every aggregate follows, driven by that table. A class without a table holds nothing, and its
// author overrides what it needs. krofx/model/internal/aggregate.h describes the tables.

#ifndef KROFX_MODEL_DATA_OBJECT_H_
#define KROFX_MODEL_DATA_OBJECT_H_

#include <atomic>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"
#include "krofx/model/internal/presence_bits.h"
#include "krofx/values/keywords.h"

class KRBuilder;
class KRDataObjFactory;
class KRParser;

/// What a server passes to KRDataObj::ProcessRequest. The library only declares it: a host that
/// answers requests defines the class.
class ServerImpl;

namespace krofx::internal {
struct AggregateTable;
struct ObjectAccess;
struct TagIndex;
}  // namespace krofx::internal

#pragma pack(push, 2)
/// One row of a tag table, packed to 6 bytes: a tag and the message-set versions in which it is
/// valid.
struct KRTagTableEntry {
  KRTagID tag;   ///< The tag.
  u16 versions;  ///< Mask of versions: 0xffff all, 1 V1, 2 V2, 0xfffe V2 and later.
};
#pragma pack(pop)
static_assert(sizeof(KRTagTableEntry) == 6);

/// A reference to the constant tag table of a class. The same tag may be in it twice with
/// different masks.
struct KRArrayOfTags {
  const KRTagTableEntry* table = nullptr;  ///< First row; null when the class has no table.
  u16 count = 0;  ///< Number of rows; only the first PresenceBits::kCount have an effect.
  /// An index of the rows, or null. It is used only when it belongs to `table`, so a host that
  /// fills in a table of its own can leave it as it is.
  const krofx::internal::TagIndex* index = nullptr;
};

/// Base of every aggregate and file.
///
/// An object owns the children that it holds by pointer and the elements of its arrays; a setter
/// takes ownership of what it is given and deletes what was there. The copy constructor and
/// operator= are shallow: the copy borrows the children of its source and never deletes them.
/// DeepCopyFrom of the concrete class makes an independent object. An object belongs to one thread
/// at a time.
class KROFX_API KRDataObj : public krofx::internal::HeapObject {
 public:
  /// Makes an object with no parser, no type and nothing present.
  /// @param version the message-set version mask, 1 V1, 2 V2; 0 when it is set later: no tag is
  ///        valid until then.
  explicit KRDataObj(u16 version = 0);
  /// Copies parser, presence, type and version.
  KRDataObj(const KRDataObj& other);
  /// As the copy constructor.
  KRDataObj& operator=(const KRDataObj& other);
  virtual ~KRDataObj();

  /// Stores the parser that fills the object from now on.
  /// @return KRParseStatus_Accepted always.
  virtual KRParseStatus SetupForParsing(KRParser* const parser);

  /// Takes the start tag of a child aggregate: makes the child and descends into it.
  /// @return 0 accepted; 3 no memory or no parser; 4 no such child here; 6 too many open
  ///         aggregates.
  virtual KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry);

  /// Takes an element from a C text; calls the KRString form.
  virtual KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                         const char* const value);
  /// Takes an element. This is the form that a parser calls and that a class overrides.
  /// @return 0 accepted; 4 when the tag is not known here or the value cannot be converted, after a
  ///         KRPW_BADFORMAT warning in the thread's log.
  virtual KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                         const KRString& value);

  /// Takes an end tag.
  /// @return 0 when it closes this object, which leaves the parser's stack; 3 with no parser; 5,
  ///         after a KRPW_INVALIDENDAGG warning, when it is the end tag of another aggregate.
  virtual KRParseStatus HandleTagEnd(const KRTagDictionaryEntry* const entry);

  /// Takes a header line. Only files do something with it.
  /// @return 0.
  virtual KRParseStatus HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name);

  /// Gives the tags that are allowed in this object. A row's position is the index of its presence
  /// bit.
  /// @return 1.
  virtual u16 GetArrayOfValidTags(KRArrayOfTags& tags) const;
  /// Gives the tags that are required in this object.
  /// @return 1.
  virtual u16 GetArrayOfRequiredTags(KRArrayOfTags& tags) const;

  /// Writes the present members in wire order, without the object's own tags.
  /// @return 0, or the first status that is not; this object is then the builder's failing object
  ///         unless one is recorded already.
  virtual KRBuildStatus Build(KRBuilder* builder) const;
  /// Writes the start tag, the members and the end tag.
  /// @param tag the tag to write, 0 for the object's own type.
  virtual KRBuildStatus BuildObject(KRBuilder* builder, KRTagID tag) const;

  /// Makes `child` the parser's current object. Called by HandleTagStart.
  /// @param tag the child's tag, which becomes its type and whose presence is noted here; 0 does
  ///        neither.
  /// @return 0; 3 with a null child or no parser; 4 when the tag is not valid here; 6 when the
  ///         parser's stack is full.
  virtual KRParseStatus PushAndSetObject(KRDataObj* child, KRTagID tag);

  /// Walks the children's ProcessResponse. A host overrides it in a class of its own, makes its
  /// factory give that class, and is reached here after a parse.
  /// @return 1.
  virtual u16 ProcessResponse();
  /// For servers: a host's class overrides it.
  /// @return 1.
  virtual u16 ProcessRequest(const ServerImpl* server);

  /// Says whether everything that must be present is, in this object alone.
  /// @return 1 when it is; 0 when it is not.
  virtual u16 AllRequiredPresent();
  /// Names the first required tag that is missing after the missing tag `after`.
  /// @param after 0 for the first one.
  /// @return 0 when nothing more is missing, or when `after` is not itself missing.
  virtual KRTagID GetFirstMissingRequiredTag(KRTagID after);
  /// Says whether `tag` is allowed in an object of this version.
  /// @return 1 when it is; 0 when it is not.
  virtual u16 IsValidTag(KRTagID tag) const;
  /// Says whether any valid tag is present.
  /// @return 1 when one is; 0 when none is.
  virtual u16 AnyValidPresent();
  /// Says whether at least one required tag is present. The argument has no effect.
  /// @return 1 when one is; 0 when none is.
  virtual u16 IsTagRequired(KRTagID tag);
  /// Says whether exactly one valid tag is present.
  /// @return 1 when it is so; 0 when none or several are.
  virtual u16 OneValidPresent();

  /// Stores the version mask and passes it to the children.
  /// @return 1.
  virtual u16 SetMsgSetVersion(u16 version);
  /// @return the version mask, 0 when not yet set.
  virtual u16 GetMsgSetVersion() const;
  /// @return the version that the last character of the object's tag gives: 1, 2, or 0 for any
  ///         other.
  virtual u16 GetMsgSetVersionFromTag() const;

  /// @return the tag that this object is written under, 0 when none.
  virtual KRTagID GetType();
  /// Sets the tag that this object is written under.
  virtual void SetType(KRTagID tag);

  /// @return a child by position, in a stable order; null after the last and for an empty place.
  virtual KRDataObj* GetChild(u16 index) const;
  /// @return the number of places that GetChild counts.
  virtual u16 GetNumberOfChildren() const;

  /// Notes a tag as present.
  /// @return 0, silently, when the tag is not valid here.
  u16 SetTag(KRTagID tag);
  /// Notes a tag as absent.
  /// @return 0, after a KRPW_UNKNOWNTAG warning, when the tag is not valid here.
  u16 ClearTag(KRTagID tag);
  /// Says whether the tag is valid here and present.
  /// @return 1 when it is; 0 when it is not.
  u16 ValidateTag(KRTagID tag) const;

  /// Copies parser, presence, type and version; the last step of every DeepCopyFrom.
  /// @return 1; 0 for a null source.
  u16 CopyBaseMembersFrom(KRDataObj* source);

  /// @return the parser that fills this object. Null before the first parse; stale after it.
  KRParser* GetParser();

  /// Makes `factory` the source of every new object of the process; null puts the default factory
  /// in force. The caller keeps owning `factory`. When it is destroyed while it is in force, the
  /// default one takes its place. No other thread may use a factory during the call.
  /// @return 1.
  static u16 SetFactory(KRDataObjFactory* factory);
  /// @return the factory in force, making the default one (message-set version 1) when there is
  ///         none; null with the fire alarm raised when that fails.
  static KRDataObjFactory* GetFactory();
  /// @return the version of the data model, "92".
  static const char* GetKRSDKVersion();

  /// @name State of the process
  /// To be read only: SetFactory, GetFactory, and the construction and destruction of objects
  /// change it.
  /// @{

  /// The factory in force; null until the first use of the default one.
  static std::atomic<KRDataObjFactory*> m_factoryObj;
  /// 1 from the first use of the default factory until an object is constructed with a version.
  /// While it is 1, the destruction of any object puts the default factory out of force, and the
  /// next use puts it back.
  static std::atomic<u16> m_factoryAllocated;
  /// What GetKRSDKVersion gives.
  static const char* const m_verKRSDK;
  /// @}

 protected:
  /// Stores the parser.
  void SetParser(KRParser* const parser);

  /// @return the table that drives the defaults above; null for a class without one.
  virtual const krofx::internal::AggregateTable* GetTable() const;

 private:
  friend struct krofx::internal::ObjectAccess;

  // Finds the presence bit of a tag, which is its position in the valid table; -1 when the tag is
  // not valid here.
  int FindPosition(KRTagID tag) const;

  void CopyStateFrom(const KRDataObj& other);

  KRParser* m_parser = nullptr;
  krofx::internal::PresenceBits m_presence;
  KRTagID m_type = KRTag_None;
  u16 m_version = 0;
  // Guards the two forms of HandleTagElement against calling each other without end.
  mutable u16 m_inElement = 0;
};

/// Base of the payloads of transactions: adds a deep copy that is called through the base class.
class KROFX_API KRTransBase : public KRDataObj {
 public:
  KRTransBase();
  /// Copies everything from `source`, which must be of the same class, children included.
  /// @return 1; 0 when nothing could be copied: null, another class, no factory, no memory.
  virtual u16 DeepCopyFrom(KRTransBase* source);
};

#endif  // KROFX_MODEL_DATA_OBJECT_H_
