// Where the sign-on request departs from the pattern: its password.

#include "krofx/core/parse_logger.h"
#include "krofx/messages/signon/signon.h"

u16 KRSignOnRq::SetUserPass(const KRString& text) {
  m_userPass = text;
  // Memory ran out: the text did not arrive.
  if (m_userPass.IsEmpty() != 0 && text.IsEmpty() == 0) return 3;
  if (m_userPass.ExceedsSpecLength() != 0) {
    krofx::internal::LogFixedText(KRPW_TOOLONG, "Password too long", KRString(), KRTag_USERPASS,
                                  this);
  }
  return SetTag(KRTag_USERPASS);
}
