// Operations of the sign-on request that differ from other aggregates': setting and reading its
// password.

#include "krofx/core/parse_logger.h"
#include "krofx/messages/signon/signon.h"

using krofx::internal::LogFixedText;

u16 KRSignOnRq::SetUserPass(const KRString& text) {
  m_userPass = text;
  // Memory was exhausted: the text is missing.
  if (m_userPass.IsEmpty() != 0 && text.IsEmpty() == 0) return 3;
  if (m_userPass.ExceedsSpecLength() != 0) {
    LogFixedText(KRPW_TOOLONG, "Password too long", KRString(), KRTag_USERPASS, this);
  }
  return SetTag(KRTag_USERPASS);
}

KRParseStatus KRSignOnRq::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                           const KRString& value) {
  if (entry->tagID != KRTag_USERPASS) return KRDataObj::HandleTagElement(entry, value);
  return SetUserPass(value) == 3 ? KRParseStatus_Fatal : KRParseStatus_Accepted;
}
