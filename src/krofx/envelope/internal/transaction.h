// The transaction wrappers of both directions, without the rows that envelope.schema gives them:
// each holds one payload. The object's type selects which tags are valid in it and which payload it
// carries (krofx/envelope/internal/routing.h).

#ifndef KROFX_ENVELOPE_INTERNAL_TRANSACTION_H_
#define KROFX_ENVELOPE_INTERNAL_TRANSACTION_H_

#include "krofx/core/export.h"
#include "krofx/core/tags.h"
#include "krofx/envelope/internal/direction.h"
#include "krofx/envelope/internal/payload.h"
#include "krofx/model/data_object.h"

class KRStatus;

namespace krofx::internal {

class MissingTags;
struct TransactionRoute;

/// What the wrappers of both directions share.
template <Side kSide>
class KROFX_API Transaction : public KRTransBase {
 public:
  /// @return the payload, which the wrapper keeps owning; null when there is none.
  KRTransBase* GetActualTrans() const { return m_payload.Get(); }
  /// Takes ownership of `payload` and deletes the one held before. Its type becomes present.
  /// @return 1; 0 when its type is not valid in a wrapper of this type. In both cases the payload
  ///         belongs to the wrapper.
  u16 SetActualTrans(KRTransBase* payload);

  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  /// Makes the payload of a tag and descends into it.
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  /// Writes the rows of the class, and then the payload under the tag of its type.
  KRBuildStatus Build(KRBuilder* builder) const override;
  u16 SetMsgSetVersion(u16 version) override;
  /// Copies everything from `source`, which must be a wrapper of this direction.
  u16 DeepCopyFrom(KRTransBase* source) override;

 protected:
  /// @return the routing row of this wrapper's type; null when it has none.
  const TransactionRoute* Route() const;
  /// Says whether the payloads that are present satisfy the rule of this wrapper's type.
  /// @return 1 when they do; 0 when they do not.
  u16 PayloadRuleHolds() const;
  /// Adds the tag of the payload: the first one that is valid in the wrapper and absent.
  void AddPayloadTo(MissingTags& missing) const;

  Payload m_payload;
  KRTagID m_messageSet = KRTag_None;
};

extern template class Transaction<Side::kRequest>;
extern template class Transaction<Side::kResponse>;

/// What only the wrappers of requests have.
class KROFX_API RequestTransaction : public Transaction<Side::kRequest> {
 public:
  /// @return the wrapper of a payload's tag; 0 for a tag that is not that of a payload, and for
  ///         those whose callers choose the wrapper themselves: ACCTRQ, CHGUSERINFORQ, ENROLLRQ,
  ///         GETMIMERQ and MAILRQ.
  static KRTagID MsgIDToTranWrapper(KRTagID tag);

  /// @return the tag of the message set that the wrapper travels in, for the caller's use.
  KRTagID GetMsgsRqTag() const { return m_messageSet; }
  /// Sets the tag of the message set that the wrapper travels in.
  void SetMsgsRqTag(KRTagID tag) { m_messageSet = tag; }

  /// Says whether TRNUID and a payload are held and the rule of the wrapper's type is satisfied.
  /// @return 1 when it is so; 0 when not.
  u16 AllRequiredPresent() override;
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
  /// The payload is the only child.
  KRDataObj* GetChild(u16 index) const override;
  u16 GetNumberOfChildren() const override;

 protected:
  /// Makes the payload of a tag. One held before exists until the wrapper is destroyed.
  /// @return 0; 3 no factory or no memory; 4 the tag is not that of a payload.
  KRParseStatus NewRq(KRTagID tag) { return m_payload.Make(Side::kRequest, tag); }
};

/// What only the wrappers of responses have.
class KROFX_API ResponseTransaction : public Transaction<Side::kResponse> {
 public:
  /// Gives up the payload without deleting it.
  void DisconnectActualTrans() { m_payload.Disconnect(); }

  /// @return the tag of the message set that the wrapper travels in, for the caller's use.
  KRTagID GetMsgsRsTag() const { return m_messageSet; }
  /// Sets the tag of the message set that the wrapper travels in.
  void SetMsgsRsTag(KRTagID tag) { m_messageSet = tag; }

  /// Says whether the status is present with a severity of ERROR.
  /// @return 1 when it is; 0 when it is not.
  u16 IsErrorStatus() const;
  /// Says whether the status is present with the code 1: the client is up to date.
  /// @return 1 when it is; 0 when it is not.
  u16 IsUpToDate() const;

  /// The status is a row; any other tag is that of a payload.
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  /// Says whether TRNUID and a status are held, and the payload that the wrapper's type requires is
  /// present or excused by the status.
  /// @return 1 when it is so; 0 when not.
  u16 AllRequiredPresent() override;
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
  /// @return the status, then the payload.
  KRDataObj* GetChild(u16 index) const override;
  u16 GetNumberOfChildren() const override;

 protected:
  /// Makes the payload of a tag. One held before exists until the wrapper is destroyed.
  /// @return 0; 3 no factory or no memory; 4 the tag is not that of a payload.
  KRParseStatus NewRs(KRTagID tag) { return m_payload.Make(Side::kResponse, tag); }

 private:
  KRStatus* Status() const;
  // Whether the payload is there, or the status excuses its absence.
  u16 PayloadSettled() const;
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_TRANSACTION_H_
