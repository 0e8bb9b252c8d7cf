// The synchronisation wrappers of both directions, without the rows that envelope.schema gives
// them. The object's type selects which tags are valid in it and which it needs
// (krofx/envelope/internal/routing.h).

#ifndef KROFX_ENVELOPE_INTERNAL_SYNCHRONISATION_H_
#define KROFX_ENVELOPE_INTERNAL_SYNCHRONISATION_H_

#include "krofx/core/export.h"
#include "krofx/core/tags.h"
#include "krofx/envelope/internal/direction.h"
#include "krofx/model/data_object.h"

namespace krofx::internal {

class MissingTags;
struct SyncRoute;

/// What the wrappers of both directions share.
template <Side kSide>
class KROFX_API Synchronisation : public KRDataObj {
 public:
  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  /// Says whether a token and what the wrapper's type needs are present.
  /// @return 1 when they are; 0 when they are not.
  u16 AllRequiredPresent() override;

 protected:
  /// Copies everything from `source`, which must be of the same class.
  /// @return 1; 0 for null, another class, no factory or no memory.
  u16 CopySyncFrom(Synchronisation* source);
  /// @return the token of the wrapper's version.
  KRTagID TokenTag() const;
  /// Adds what is missing in a wrapper of this type besides its token.
  void AddNeedsTo(MissingTags& missing) const;

  KRTagID m_messageSet = KRTag_None;

 private:
  const SyncRoute* Route() const;
};

extern template class Synchronisation<Side::kRequest>;
extern template class Synchronisation<Side::kResponse>;

/// What only the wrappers of requests have.
class KROFX_API RequestSynchronisation : public Synchronisation<Side::kRequest> {
 public:
  /// @return the synchronisation wrapper of a payload's tag; 0 when there is none.
  static KRTagID MsgIDToSyncWrapper(KRTagID tag);

  /// @return the tag of the message set that the wrapper travels in, for the caller's use.
  KRTagID GetMsgsRqTag() const { return m_messageSet; }
  /// Sets the tag of the message set that the wrapper travels in.
  void SetMsgsRqTag(KRTagID tag) { m_messageSet = tag; }

  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
};

/// What only the wrappers of responses have.
class KROFX_API ResponseSynchronisation : public Synchronisation<Side::kResponse> {
 public:
  /// @return the tag of the message set that the wrapper travels in, for the caller's use.
  KRTagID GetMsgsRsTag() const { return m_messageSet; }
  /// Sets the tag of the message set that the wrapper travels in.
  void SetMsgsRsTag(KRTagID tag) { m_messageSet = tag; }

  KRTagID GetFirstMissingRequiredTag(KRTagID after) override;
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_SYNCHRONISATION_H_
