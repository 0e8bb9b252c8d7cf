// The language value, which is only a text.

#include "krofx/values/language.h"

KRLanguage::KRLanguage(const KRString& text) : m_text(text) {}

KRLanguage& KRLanguage::operator=(const KRString& text) {
  m_text = text;
  return *this;
}

u16 KRLanguage::IsValid() const { return m_text.IsValid(); }

u16 KRLanguage::operator==(const KRLanguage& other) const { return m_text == other.m_text; }

u16 KRLanguage::operator!=(const KRLanguage& other) const { return m_text != other.m_text; }
