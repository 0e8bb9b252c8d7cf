// The sign-on of a request and the answer to it, from plain data.

#include <chrono>
#include <memory>
#include <utility>

#include "krofx/core/tag_dictionary.h"
#include "krofx/core/thread.h"
#include "krofx/host/draft.h"
#include "krofx/host/own.h"
#include "krofx/host/words.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/signon/signon.h"
#include "krofx/messages/signon/status.h"
#include "krofx/values/utility.h"

namespace krofx {

namespace {

Instant Now() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

// Sets an element unless there is nothing to set.
template <class Object>
void SetIf(Object& object, u16 (Object::*setter)(const KRString&), std::string_view text) {
  if (!text.empty()) Set(object, setter, text);
}

// Names the institution; no FI without a name.
template <class SignOn>
void SetInstitution(SignOn& signOn, u16 version, std::string_view organisation,
                    std::string_view id) {
  if (organisation.empty() && id.empty()) return;
  std::unique_ptr<KRFI> institution = New<KRFI>(version);
  if (institution == nullptr) return;  // The alarm is raised.
  SetIf(*institution, &KRFI::SetOrg, organisation);
  SetIf(*institution, &KRFI::SetFId, id);
  Give(signOn, &SignOn::SetFI, std::move(institution));
}

std::unique_ptr<KRStatus> NewStatus(u16 version, s32 code, std::string_view message) {
  std::unique_ptr<KRStatus> status = New<KRStatus>(version);
  if (status == nullptr) return nullptr;
  status->SetCode(code);
  status->SetSeverity(code == 0 ? KRStatusSeverity_INFO : KRStatusSeverity_ERROR);
  if (message.empty()) return status;
  if (status->IsValidTag(KRTag_MESSAGE2) != 0) {
    Set(*status, &KRStatus::SetMessage2Text, message);
  } else {
    Set(*status, &KRStatus::SetMessageText, message);
  }
  return status;
}

// The tag of a response has RS where that of the request has RQ.
KRTagID ResponseTag(KRTagID request) {
  KRString name = KRUtility::TagToString(request);
  const u16 length = name.GetStrLength();
  const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  if (length < 2 || dictionary == nullptr) return KRTag_None;
  name.Truncate(static_cast<u16>(length - 1));
  name += 'S';
  KRTagID answer = KRTag_None;
  dictionary->GetTagID(name, name.GetStrLength(), &answer, KRCaseType_IgnoreCase);
  return answer;
}

bool AlarmIsSet() { return KRGetFireAlarm() != KRFireAlarm_None; }

}  // namespace

bool Draft::SignOn(const SignOnData& data) {
  std::unique_ptr<KRSignOnRq> signOn = New<KRSignOnRq>();
  if (signOn == nullptr) return OutOfMemory();
  Set(*signOn, &KRSignOnRq::SetDtClient, data.time.value_or(Now()));
  SetIf(*signOn, &KRSignOnRq::SetUserId, data.user);
  SetIf(*signOn, &KRSignOnRq::SetUserPass, data.password);
  SetIf(*signOn, &KRSignOnRq::SetLanguage, data.language);
  SetIf(*signOn, &KRSignOnRq::SetCountry, data.country);
  SetInstitution(*signOn, Version(), data.organisation, data.institution);
  SetIf(*signOn, &KRSignOnRq::SetAppId, data.appId);
  signOn->SetAppVer(data.appVersion);
  if (AlarmIsSet()) return OutOfMemory();
  return AddSignOn(std::move(signOn));
}

KRTransRq* Draft::Add(std::unique_ptr<KRTransBase> payload, KRTagID wrapper) {
  return Add(Wrap(std::move(payload), wrapper));
}

std::unique_ptr<KRTransRq> Draft::Wrap(std::unique_ptr<KRTransBase> payload, KRTagID wrapper) {
  char id[37] = "";
  KRUtility::GenerateTransactionID(id);
  return WrapAs(std::move(payload), wrapper, id);
}

bool ResponseDraft::SignOn(const SignOnAnswer& answer) {
  std::unique_ptr<KRSignOnRs> signOn = New<KRSignOnRs>();
  if (signOn == nullptr) return OutOfMemory();
  Give(*signOn, &KRSignOnRs::SetStatus, NewStatus(Version(), answer.code, answer.message));
  Set(*signOn, &KRSignOnRs::SetDtServer, answer.time.value_or(Now()));
  SetIf(*signOn, &KRSignOnRs::SetLanguage, answer.language);
  SetInstitution(*signOn, Version(), answer.organisation, answer.institution);
  if (AlarmIsSet()) return OutOfMemory();
  return AddSignOn(std::move(signOn));
}

// The questions that an object is asked change nothing, though they are not const.
KRTagID ResponseDraft::AnswerTo(const KRTransRq& request) {
  return ResponseTag(const_cast<KRTransRq&>(request).GetType());
}

std::unique_ptr<KRTransRs> ResponseDraft::Answer(std::unique_ptr<KRTransRs> wrapper,
                                                 const KRTransRq& request, s32 code,
                                                 std::string_view message) {
  if (wrapper == nullptr) return nullptr;
  Give(*wrapper, &KRTransRs::SetStatus, NewStatus(Version(), code, message));
  if (request.HasClientCookie() != 0 && wrapper->IsValidTag(KRTag_CLTCOOKIE) != 0) {
    wrapper->SetClientCookie(request.GetClientCookie());
  }
  if (!AlarmIsSet()) return wrapper;
  OutOfMemory();
  return nullptr;
}

KRTransRs* ResponseDraft::Add(std::unique_ptr<KRTransBase> payload, const KRTransRq& request) {
  return Add(Wrap(std::move(payload), request));
}

std::unique_ptr<KRTransRs> ResponseDraft::Wrap(std::unique_ptr<KRTransBase> payload,
                                               const KRTransRq& request) {
  auto wrapper = WrapAs(std::move(payload), AnswerTo(request), ToText(request.GetTransUserID()));
  return Answer(std::move(wrapper), request, 0, {});
}

KRTransRs* ResponseDraft::Refuse(const KRTransRq& request, s32 code, std::string_view message) {
  auto wrapper = NewWrapper(AnswerTo(request), ToText(request.GetTransUserID()));
  return Add(Answer(std::move(wrapper), request, code, message));
}

bool ResponseDraft::Add(std::unique_ptr<KRSecList> securities) {
  if (securities == nullptr) return OutOfMemory();
  KRMessageSetRs* const set = SetFor(KRTag_SECLIST);
  return set != nullptr && Give(*set, &KRMessageSetRs::SetSecList, std::move(securities));
}

}  // namespace krofx
