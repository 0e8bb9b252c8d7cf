// What is under the tag OFX: one request or one response, a list of message sets.
//
// The two are the same but for the class of their message sets; what they do is written once, in
// MessageSetHolder.

#ifndef KROFX_ENVELOPE_REQUEST_RESPONSE_H_
#define KROFX_ENVELOPE_REQUEST_RESPONSE_H_

#include "krofx/envelope/internal/direction.h"
#include "krofx/envelope/message_set.h"

namespace krofx::internal {

/// A list of message sets of one direction. It owns them, and writes them in the fixed order of
/// families, whatever order they were put in.
template <Side kSide>
class KROFX_API MessageSetHolder : public KRDataObj {
  using Set = typename Direction<kSide>::MessageSet;

 public:
  /// An empty list of type OFX.
  MessageSetHolder();

  /// Takes ownership of `set` after the others; its type becomes present if it is a message set's.
  /// @return 1; 0 when it could not be stored, and then it is still the caller's.
  u16 AppendMessageSet(Set* set);
  /// As AppendMessageSet, in place of the one there.
  /// @return 0 also when its type is no message set's; it is this object's then.
  u16 SetMessageSet(u16 index, Set* set);
  /// A message set, still this object's; null when there is none.
  Set* GetMessageSet(u16 index) const { return static_cast<Set*>(m_sets.Get(index)); }
  /// Number of message sets.
  u16 GetNumMessageSet() const { return m_sets.Entries(); }
  /// Deletes all message sets.
  void DeleteAllMessageSet() { m_sets.DeleteAll(); }

  /// Makes `factory`, unless it is null, the one of the process.
  /// @return 0.
  u16 SetFactory(KRDataObjFactory* factory);

  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  /// Writes the message sets; two of one tag give 7.
  KRBuildStatus Build(KRBuilder* builder) const override;
  /// 1 when a sign-on set is present and any message set is held.
  u16 AllRequiredPresent() override;
  /// The sign-on set, of the version of the sets that are held.
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
  KRDataObj* GetChild(u16 index) const override { return m_sets.Get(index); }
  u16 GetNumberOfChildren() const override { return m_sets.Entries(); }

 protected:
  u16 CopySetsFrom(MessageSetHolder* source);

 private:
  // Makes a message set for a tag met in parsing; a second one of a tag is refused.
  KRParseStatus PushMsgObject(KRTagID tag);

  KRDynamicArrayDataObj m_sets{5, 5};
};

extern template class MessageSetHolder<Side::kRequest>;
extern template class MessageSetHolder<Side::kResponse>;

}  // namespace krofx::internal

/// A request: what is under OFX in a request file.
class KROFX_API KRRequest
    : public krofx::internal::MessageSetHolder<krofx::internal::Side::kRequest> {
 public:
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRRequest* source) { return CopySetsFrom(source); }
};

/// A response: what is under OFX in a response file.
class KROFX_API KRResponse
    : public krofx::internal::MessageSetHolder<krofx::internal::Side::kResponse> {
 public:
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRResponse* source) { return CopySetsFrom(source); }
};

#endif  // KROFX_ENVELOPE_REQUEST_RESPONSE_H_
