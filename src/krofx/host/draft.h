// Files of requests and of responses, put together from their payloads.
//
//   krofx::Draft draft(2);
//   draft.SignOn({.user = "ada.w", .password = secret, .appId = "QX"});
//   auto rq = draft.New<KRIntraRq>();
//   ...
//   draft.Add(std::move(rq));
//   krofx::DraftResult result = draft.Write(buffer);
//
// What travels in what is the library's affair: a payload finds its wrapper, the wrapper its
// message set, and everything has the version of the draft. Nothing that fails on the way is lost:
// Write says it.

#ifndef KROFX_HOST_DRAFT_H_
#define KROFX_HOST_DRAFT_H_

#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "krofx/core/export.h"
#include "krofx/core/list.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/host/dates.h"
#include "krofx/host/making.h"
#include "krofx/reader/missing.h"

class KRBuffer;

namespace krofx {

/// What a user signs on with. A text that is empty is left out. OFX requires the user, the password
/// and the appId.
struct SignOnData {
  std::string_view user = {};
  /// Copied once, into memory that is overwritten before it is freed.
  std::string_view password = {};
  std::string_view organisation = {};  ///< ORG of the institution.
  std::string_view institution = {};   ///< FID of the institution.
  std::string_view language = "ENG";
  std::string_view country = {};     ///< Of version 2 only.
  std::string_view appId = {};       ///< What the institution knows the program by.
  u16 appVersion = 100;              ///< 100 is version 1.00.
  std::optional<Instant> time = {};  ///< Of the request; now without it.
};

/// How a server answers a sign-on.
struct SignOnAnswer {
  s32 code = 0;  ///< Of the status; 0 is success.
  std::string_view message = {};
  std::string_view organisation = {};
  std::string_view institution = {};
  std::string_view language = "ENG";
  std::optional<Instant> time = {};  ///< Of the answer; now without it.
};

/// The result of a draft.
struct DraftResult {
  /// 0 written. 9 something required is missing, which `missing` lists whole. Else why it could not
  /// be written; `problem` says it in words.
  KRBuildStatus status = KRBuildStatus_Done;
  /// All that is missing, with paths; the sign-on too.
  List<MissingTag> missing;
  /// What is wrong, in English, without a capital letter and a full stop; empty when it was
  /// written.
  KRString problem;

  explicit operator bool() const { return status == KRBuildStatus_Done; }
};

namespace internal {

/// What drafts of both directions share. They own all that they are given.
template <Side kSide>
class KROFX_API DraftOf {
  using Trans = typename Direction<kSide>::Trans;
  using Sync = typename Direction<kSide>::Sync;
  using MessageSet = typename Direction<kSide>::MessageSet;
  using Body = typename Direction<kSide>::Body;

 public:
  /// An empty draft.
  /// @param version of the message sets, 1 or 2; any other gives a draft that cannot be written.
  explicit DraftOf(u16 version);
  DraftOf(const DraftOf&) = delete;
  DraftOf& operator=(const DraftOf&) = delete;

  /// @return the version of the message sets.
  u16 Version() const { return m_version; }
  /// Makes an object of the draft's version, through the factory in force.
  /// @return null, with the fire alarm raised, when memory is exhausted.
  template <MadeByFactory Class>
  std::unique_ptr<Class> New() const {
    return krofx::New<Class>(m_version);
  }
  /// Makes a synchronisation of the draft's version.
  /// @param wrapper its tag, such as KRTag_INTRASYNCRQ.
  /// @param token of a request, the last one that the server gave, "0" for the first time.
  /// @return null, with the fire alarm raised, when memory is exhausted.
  std::unique_ptr<Sync> NewSync(KRTagID wrapper, std::string_view token) const;

  /// Adds a synchronisation to the message set that carries it.
  /// @return false when none does, as when its tag is none of a synchronisation, and when that
  ///         message set has 65535 of them; Write says so too.
  bool Add(std::unique_ptr<Sync> sync);
  /// Adds a wrapper to the message set that carries it.
  /// @return it, which the draft owns; null when none does, and when that message set has 65535 of
  ///         them; Write says so then.
  Trans* Add(std::unique_ptr<Trans> wrapper);
  /// @return the whole file, which the draft owns.
  const KRFile& File() const { return m_file; }

  /// Writes the file at the buffer's cursor, strictly: what is missing, too long or not valid is
  /// refused. The draft stays as it is and can be written again. A fire alarm that was raised since
  /// the draft was made counts as exhausted memory: an element may have been lost.
  /// @param buffer has what it had before unless the status is 0.
  DraftResult Write(KRBuffer& buffer);

 protected:
  /// Puts a payload into a wrapper of its own.
  /// @param wrapper its tag; KRTag_None for the first that carries such a payload.
  /// @param id the transaction's identifier.
  std::unique_ptr<Trans> WrapAs(std::unique_ptr<KRTransBase> payload, KRTagID wrapper,
                                std::string_view id);
  /// Makes an empty wrapper.
  std::unique_ptr<Trans> NewWrapper(KRTagID wrapper, std::string_view id);
  bool AddSignOn(std::unique_ptr<typename Direction<kSide>::SignOn> signOn);
  /// Notes the first thing that went wrong.
  void Fail(KRBuildStatus status, const char* problem, KRTagID tag = KRTag_None);
  MessageSet* SetFor(KRTagID child);
  bool OutOfMemory();

 private:
  using FileClass = std::conditional_t<kSide == Side::kRequest, KRFileRq, KRFileRs>;

  bool HasRoom(u16 entries);
  void WriteInto(KRBuffer& buffer, DraftResult& result);
  KRBuildStatus BuildInto(KRBuffer& buffer, KRDataObj*& failing);

  u16 m_version;
  FileClass m_file;
  Body* m_body = nullptr;  // The file's.
  KRBuildStatus m_status = KRBuildStatus_Done;
  KRString m_problem;
};

extern template class DraftOf<Side::kRequest>;
extern template class DraftOf<Side::kResponse>;

}  // namespace internal

/// A file of requests.
class KROFX_API Draft : public internal::DraftOf<internal::Side::kRequest> {
 public:
  using DraftOf::Add;
  using DraftOf::DraftOf;

  /// Sets the sign-on; a second one takes the place of the first.
  /// @return false when memory is exhausted; Write says so too.
  bool SignOn(const SignOnData& data);
  /// The same with a sign-on that the caller has made.
  bool SignOn(std::unique_ptr<KRSignOnRq> signOn) { return AddSignOn(std::move(signOn)); }

  /// Adds a payload in a wrapper of its own, with a new transaction identifier, to the message set
  /// that carries it.
  /// @param wrapper its tag, for a payload that several can carry; the first of them without it.
  ///                That of KRTag_MULTIINTERTRNRQ is a KRMultiTransRq, to which more transfers can
  ///                be appended.
  /// @return the wrapper, which the draft owns: GetTransUserID is what the answer will name. Null
  ///         when the payload is null, travels in no request of this version, its message set
  ///         is full, or memory is exhausted; it is deleted then, and Write says why.
  KRTransRq* Add(std::unique_ptr<KRTransBase> payload, KRTagID wrapper = KRTag_None);
  /// The same without adding it: for a synchronisation (KRSyncRq::AppendTrans).
  std::unique_ptr<KRTransRq> Wrap(std::unique_ptr<KRTransBase> payload,
                                  KRTagID wrapper = KRTag_None);
};

/// A file of responses, as a server makes it.
class KROFX_API ResponseDraft : public internal::DraftOf<internal::Side::kResponse> {
 public:
  using DraftOf::Add;
  using DraftOf::DraftOf;

  /// Sets the answer to the sign-on; a second one takes the place of the first.
  /// @return false when memory is exhausted; Write says so too.
  bool SignOn(const SignOnAnswer& answer);
  /// The same with an answer that the caller has made.
  bool SignOn(std::unique_ptr<KRSignOnRs> signOn) { return AddSignOn(std::move(signOn)); }

  /// Adds the answer to a request: a wrapper with the request's identifier and cookie, a status of
  /// success, and the payload.
  /// @return as Draft::Add.
  KRTransRs* Add(std::unique_ptr<KRTransBase> payload, const KRTransRq& request);
  /// The same without adding it: for a synchronisation (KRSyncRs::AppendTrans).
  std::unique_ptr<KRTransRs> Wrap(std::unique_ptr<KRTransBase> payload, const KRTransRq& request);
  /// Adds a refusal of a request: the same with a status of severity ERROR and no payload.
  KRTransRs* Refuse(const KRTransRq& request, s32 code, std::string_view message = {});
  /// Adds a list of securities.
  /// @return false when memory is exhausted; Write says so too.
  bool Add(std::unique_ptr<KRSecList> securities);

 private:
  std::unique_ptr<KRTransRs> Answer(std::unique_ptr<KRTransRs> wrapper, const KRTransRq& request,
                                    s32 code, std::string_view message);
  static KRTagID AnswerTo(const KRTransRq& request);
};

}  // namespace krofx

#endif  // KROFX_HOST_DRAFT_H_
