// The content of the tag OFX: one request or one response, a list of message sets.
//
// The two differ only in the class of their message sets, so what they do is written once, in
// MessageSetHolder.

#ifndef KROFX_ENVELOPE_REQUEST_RESPONSE_H_
#define KROFX_ENVELOPE_REQUEST_RESPONSE_H_

#include "krofx/envelope/internal/direction.h"
#include "krofx/envelope/message_set.h"

namespace krofx::internal {

/// A list of message sets of one direction. It owns them, and writes them in a fixed order, in
/// whatever order they were added.
template <Side kSide>
class KROFX_API MessageSetHolder : public KRDataObj {
  using Set = typename Direction<kSide>::MessageSet;

 public:
  /// An empty list of type OFX.
  MessageSetHolder();

  /// Takes ownership of `set` as the last one. Its type becomes present if it is the tag of a
  /// message set.
  /// @return 1; 0 when it could not be stored, and then the caller keeps it.
  u16 AppendMessageSet(Set* set);
  /// As AppendMessageSet, but replaces the message set at `index`, which is deleted.
  /// @return 1; 0 when it could not be stored, and then the caller keeps it; 0 also when its type
  ///         is not the tag of a message set, and then this object owns it.
  u16 SetMessageSet(u16 index, Set* set);
  /// @return a message set, which this object keeps owning; null when there is none.
  Set* GetMessageSet(u16 index) const { return static_cast<Set*>(m_sets.Get(index)); }
  /// @return the number of message sets.
  u16 GetNumMessageSet() const { return m_sets.Entries(); }
  /// Deletes all message sets.
  void DeleteAllMessageSet() { m_sets.DeleteAll(); }

  /// Calls KRDataObj::SetFactory with `factory`, which the caller keeps, unless it is null.
  /// @return 0.
  u16 SetFactory(KRDataObjFactory* factory);

  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  /// Writes the message sets.
  /// @return 0; 7 when two have the same tag; or the first status that is not 0.
  KRBuildStatus Build(KRBuilder* builder) const override;
  /// Says whether a sign-on set is present and any message set is held.
  /// @return 1 when it is so; 0 when not.
  u16 AllRequiredPresent() override;
  /// @return the sign-on set, of the version of the sets that are held.
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
  KRDataObj* GetChild(u16 index) const override { return m_sets.Get(index); }
  u16 GetNumberOfChildren() const override { return m_sets.Entries(); }

 protected:
  u16 CopySetsFrom(MessageSetHolder* source);

 private:
  // Makes a message set for a tag in a parse; a second one for the same tag is refused.
  KRParseStatus PushMsgObject(KRTagID tag);

  KRDynamicArrayDataObj m_sets{5, 5};
};

extern template class MessageSetHolder<Side::kRequest>;
extern template class MessageSetHolder<Side::kResponse>;

}  // namespace krofx::internal

/// A request: the content of OFX in a request file.
class KROFX_API KRRequest
    : public krofx::internal::MessageSetHolder<krofx::internal::Side::kRequest> {
 public:
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRRequest* source) { return CopySetsFrom(source); }
};

/// A response: the content of OFX in a response file.
class KROFX_API KRResponse
    : public krofx::internal::MessageSetHolder<krofx::internal::Side::kResponse> {
 public:
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRResponse* source) { return CopySetsFrom(source); }
};

#endif  // KROFX_ENVELOPE_REQUEST_RESPONSE_H_
