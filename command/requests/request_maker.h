// Makes a request: the payload's texts, amounts and dates are checked, and the file, the sign-on
// and the password are put around it.

#ifndef KROFX_COMMAND_REQUESTS_REQUEST_MAKER_H_
#define KROFX_COMMAND_REQUESTS_REQUEST_MAKER_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "banks/profile.h"
#include "krofx/krofx.h"
#include "requests/sign_on_options.h"
#include "system/exit_status.h"

namespace krofx::command {

/// A request under construction. The first thing that goes wrong is kept, and Finish reports it.
class RequestMaker {
 public:
  explicit RequestMaker(const SignOnOptions& options)
      : m_options(options), m_version(VersionOfProfile(options)) {}

  /// Makes parts of the request for trial, to find out what is wrong with the values that they are
  /// made of before the institution is asked for its profile or for the user's accounts. What is
  /// wrong in every version that the request can have, and what is wrong with the use, is noted as
  /// a problem.
  /// @param make makes the parts with the maker that it gets.
  /// @return whether nothing is wrong.
  bool Try(const std::function<void(RequestMaker&)>& make);

  /// Says what the request is about, before anything of it is made: by the bank's profile, if it
  /// has one, this decides on the version of the message sets, the address, and what passwords can
  /// be right. What the bank does not offer is noted as a problem.
  void Concern(const std::vector<Service>& services);

  /// @return what its profile says of the passwords that it concerns; null when that is nothing.
  const PasswordRules* GetRules() const { return m_rules; }
  /// Reads the password, which Finish otherwise does, so that what is asked for next comes after
  /// it.
  void TakePassword();
  /// @return whether a problem was noted.
  bool HasFailed() const { return !m_problem.empty(); }

  /// @return the message-set version: 1 or 2.
  u16 GetVersion() const { return m_version; }

  /// Makes an object of this version.
  template <class Object>
  std::unique_ptr<Object> Make(KRTagID tag) const {
    auto object = std::make_unique<Object>();
    object->SetType(tag);
    object->SetMsgSetVersion(GetVersion());
    return object;
  }

  /// Notes that the command line is wrong.
  void Fail(const std::string& problem) { Fail(kExitWrongUse, problem); }

  /// Notes that the request cannot be made, for a reason that was reported.
  void GiveUp(ExitStatus exitStatus);

  /// Sets a text that was given, in the character set of the request's header, and checks its
  /// length. One of nothing but blanks is refused. The setters of texts are alike in all classes.
  template <class Object, class Setter, class Getter>
  void SetText(const std::string& option, const std::string& given, Object& object, Setter set,
               Getter get) {
    if (given.empty()) return;
    const std::string text = Encode(option, given);
    if (!RequireLength(option, text, MostCharacters((object.*get)()))) return;
    (object.*set)(KRString(text.c_str()));
    Require(option, (object.*get)(), text);
  }
  /// The same for what identifies an account, a user, an institution or an application. Blanks
  /// around it are refused, since they are lost on the way.
  template <class Object, class Setter, class Getter>
  void SetIdentifier(const std::string& option, const std::string& given, Object& object,
                     Setter set, Getter get) {
    RequireNoBlanks(option, given);
    SetText(option, given, object, set, get);
  }
  /// Sets an amount of money from the text of an option.
  template <class Object, class Base>
  void SetAmount(const std::string& option, const std::string& given, Object& object,
                 u16 (Base::*set)(const KRString&)) {
    const std::string problem = CheckAmount(option, given);
    if (!problem.empty()) return Fail(problem);
    if ((object.*set)(KRString(given.c_str())) == 0) Fail(option + " " + given + " is too large");
  }
  /// Sets a date from the text of an option, if one was given.
  template <class Object, class Base>
  void SetDate(const std::string& option, const std::string& given, Object& object,
               u16 (Base::*set)(const KRString&)) {
    if (given.empty()) return;
    const KRString date = TakeDate(option, given);
    if (date.GetStrLength() > 0 && (object.*set)(date) == 0) FailForDate(option, given);
  }
  /// Notes a span of days whose end is before its start.
  void RequireOrder(const std::string& from, const std::string& to);

  /// Notes a language or country that is not three capital letters.
  void RequireCode(const char* option, const std::string& given, const char* example);

  /// Says what the request orders, which is shown before it is written or sent.
  void SetOrder(std::string order) { m_order = std::move(order); }

  /// Puts a payload into its wrapper and message set. Payloads of the same set share it.
  /// @param wrapper the wrapper's tag, for payloads that do not determine it.
  void Add(std::unique_ptr<KRTransBase> payload, Service service, KRTagID wrapper = KRTag_None);
  /// Puts a synchronisation into its message set.
  void Add(std::unique_ptr<KRSyncRq> sync, Service service);
  /// Checks what was made, and the sign-on apart from its password, of which no request is to come.
  /// @return kExitClean, or another exit status after a complaint.
  ExitStatus Check();
  /// Adds the sign-on with the password, and hands the text to its use.
  /// @return the use's exit status, or another one after a complaint.
  ExitStatus Finish();
  /// Both, for a request with one payload.
  ExitStatus Finish(std::unique_ptr<KRTransBase> payload, Service service,
                    KRTagID wrapper = KRTag_None);

 private:
  void Fail(ExitStatus exitStatus, const std::string& problem);
  void FailForDate(const std::string& option, const std::string& given);
  std::string Encode(const std::string& option, const std::string& given);
  KRString TakeDate(const std::string& option, const std::string& given);
  static std::size_t MostCharacters(const KRString& text);
  static std::size_t MostCharacters(const KREMailMsgBody& text);
  bool RequireLength(const std::string& option, const std::string& text, std::size_t most);
  void Require(const std::string& option, const KRString& held, const std::string& given);
  static std::string CheckAmount(const std::string& option, const std::string& given);

  void RequireNoBlanks(const std::string& option, const std::string& given);
  std::unique_ptr<KRSignOnRq> MakeSignOn();
  ExitStatus Report() const;
  std::string ReadPassword(Password& password) const;
  ExitStatus HandOver(std::unique_ptr<KRBuffer> text);
  bool IsAnonymous() const { return m_options.mayBeAnonymous && m_options.user.empty(); }
  void AddPassword(KRSignOnRq& signOn);

  KRMessageSetRq& SetFor(Service service);
  std::vector<u16> OpenVersions() const;
  void ChooseVersion(const std::vector<Service>& services);
  void ChooseAddress(const std::vector<Service>& services);
  const PasswordRules* FindRules(const std::vector<Service>& services) const;

  const SignOnOptions& m_options;
  u16 m_version;
  std::shared_ptr<const Profile> m_profile;
  const PasswordRules* m_rules = nullptr;  // In the profile.
  std::string m_problem;                   // A blank after a problem that was reported.
  std::string m_order;
  std::vector<std::unique_ptr<KRMessageSetRq>> m_sets;
  ExitStatus m_exitStatus = kExitClean;
};

/// Finds out whether a password arrives as it is.
/// @param password in the character set of requests.
/// @return what is wrong with it, for the user; empty when it arrives.
std::string FindLoss(std::string_view password);

/// Now, in universal time, in the form of OFX.
KRString Now();

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_REQUEST_MAKER_H_
