// A message set: the transactions and synchronisations of one domain, such as banking. The first
// set of a file has the sign-on.
//
// One class for each direction serves every message set of every version: the type of the object
// selects which children it accepts and in which order it writes them
// (krofx/envelope/internal/routing.h). Its version is the last character of its tag. What both
// directions share is written once, in MessageSet.

#ifndef KROFX_ENVELOPE_MESSAGE_SET_H_
#define KROFX_ENVELOPE_MESSAGE_SET_H_

#include "krofx/envelope/envelope.h"
#include "krofx/envelope/internal/direction.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/model/internal/child_slot.h"
#include "krofx/model/value_arrays.h"

class KRSecList;

namespace krofx::internal {

/// What the message sets of both directions share.
template <Side kSide>
class KROFX_API MessageSet : public KRDataObj {
  using Trans = typename Direction<kSide>::Trans;
  using Sync = typename Direction<kSide>::Sync;
  using SignOn = typename Direction<kSide>::SignOn;

 public:
  /// Takes ownership of `transaction` as the last one. Its type becomes present if it is valid in
  /// this set.
  /// @return 1; 0 when it could not be stored, and then the caller keeps it.
  u16 AppendTrans(Trans* transaction);
  /// As AppendTrans, but replaces the transaction at `index`, which is deleted.
  /// @return 1; 0 when it could not be stored, and then the caller keeps it; 0 also when its type
  ///         is not valid in this set, and then this object owns it.
  u16 SetTrans(u16 index, Trans* transaction);
  /// @return a transaction, which this object keeps owning; null when there is none.
  Trans* GetTrans(u16 index) const { return static_cast<Trans*>(m_transactions.Get(index)); }
  /// @return the number of transactions.
  u16 GetNumTrans() const { return m_transactions.Entries(); }
  /// Gives up a transaction without deleting it; the later ones move down.
  /// @return 1, and it belongs to the caller; 0 when there is none.
  u16 DisconnectTrans(u16 index) { return m_transactions.UnSet(index); }
  /// Deletes all transactions.
  void DeleteAllTrans() { m_transactions.DeleteAll(); }

  /// As AppendTrans, for a synchronisation: 1, and this object owns it; 0, the caller does.
  u16 AppendSync(Sync* sync);
  /// As SetTrans, for a synchronisation; who owns it after each result is the same.
  u16 SetSync(u16 index, Sync* sync);
  /// @return a synchronisation, which this object keeps owning; null when there is none.
  Sync* GetSync(u16 index) const { return static_cast<Sync*>(m_syncs.Get(index)); }
  /// @return the number of synchronisations.
  u16 GetNumSync() const { return m_syncs.Entries(); }
  /// Deletes all synchronisations.
  void DeleteAllSync() { m_syncs.DeleteAll(); }

  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  /// Writes the sign-on first, and then the children in the order of the set's tags.
  KRBuildStatus Build(KRBuilder* builder) const override;
  u16 AllRequiredPresent() override;
  /// @return the sign-on, the profile or the security list that the set needs and does not have;
  ///         for any other set, if it is empty, the first of its tags.
  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
  /// @return the last character of the set's tag.
  u16 GetMsgSetVersion() const override { return GetMsgSetVersionFromTag(); }
  /// Index 0 is the sign-on, which may be null; then the transactions, then the synchronisations.
  KRDataObj* GetChild(u16 index) const override;
  u16 GetNumberOfChildren() const override;

 protected:
  u16 SetSignOn(SignOn* signOn);
  u16 CopySetFrom(MessageSet* source);

  ChildSlot m_signOn;
  KRDynamicArrayDataObj m_transactions{5, 5};
  KRDynamicArrayDataObj m_syncs{5, 5};

 private:
  KRParseStatus PushTranObject(KRTagID tag);
  KRParseStatus PushSyncObject(KRTagID tag);
  KRParseStatus PushSignOn(KRTagID tag);
};

extern template class MessageSet<Side::kRequest>;
extern template class MessageSet<Side::kResponse>;

}  // namespace krofx::internal

/// A message set of a request.
class KROFX_API KRMessageSetRq
    : public krofx::internal::MessageSet<krofx::internal::Side::kRequest> {
 public:
  /// @return the message set that a profile lists for a request's tag, without a version; 0 for the
  ///         tags that have none, among them PMTMODRQ, PMTCANCRQ, RECPMTMODRQ, RECPMTCANCRQ,
  ///         PAYEEMODRQ, PAYEEDELRQ, STPCHKSYNCRQ, MAILRQ, GETMIMERQ, SECLISTRQ, PINCHRQ and
  ///         ENROLLRQ.
  static KRTagID MsgIDToMsgSetID(KRTagID tag);

  /// @return the sign-on, which this object keeps owning; null when there is none.
  KRSignOnRq* GetSignOnRq() const;
  /// Takes ownership of `signOn` and deletes the one held before.
  /// @return 1; 0 when this is not a sign-on set. In both cases the sign-on belongs to this object.
  u16 SetSignOnRq(KRSignOnRq* signOn) { return SetSignOn(signOn); }
  /// Gives up the sign-on without deleting it: the caller, who must have its pointer, owns it.
  void DisconnectSignOnRq() { m_signOn.Release(); }
  /// Gives up a synchronisation without deleting it; the later ones move down.
  /// @return 1, and it belongs to the caller; 0 when there is none.
  u16 DisconnectSync(u16 index) { return m_syncs.UnSet(index); }
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRMessageSetRq* source) { return CopySetFrom(source); }
};

/// A message set of a response. The security list set also holds the list itself.
class KROFX_API KRMessageSetRs
    : public krofx::internal::MessageSet<krofx::internal::Side::kResponse> {
 public:
  /// @return the sign-on, which this object keeps owning; null when there is none.
  KRSignOnRs* GetSignOnRs() const;
  /// Takes ownership of `signOn` and deletes the one held before.
  /// @return 1; 0 when this is not a sign-on set. In both cases the sign-on belongs to this object.
  u16 SetSignOnRs(KRSignOnRs* signOn) { return SetSignOn(signOn); }
  /// @return the security list, which this object keeps owning; null when there is none.
  KRSecList* GetSecList() const;
  /// Takes ownership of `secList` and deletes the one held before.
  /// @return 1; 0 when this is not a security list set. In both cases the list belongs to this
  ///         object.
  u16 SetSecList(KRSecList* secList);

  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  /// Writes the security list after the transactions.
  KRBuildStatus Build(KRBuilder* builder) const override;
  /// The security list is the last child.
  KRDataObj* GetChild(u16 index) const override;
  u16 GetNumberOfChildren() const override;
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRMessageSetRs* source);

 private:
  krofx::internal::ChildSlot m_secList;
};

#endif  // KROFX_ENVELOPE_MESSAGE_SET_H_
