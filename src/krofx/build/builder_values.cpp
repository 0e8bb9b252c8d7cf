// How the builder writes numbers, booleans, amounts, dates and times, alone and with their tags.

#include <charconv>
#include <cstring>
#include <limits>
#include <typeinfo>

#include "krofx/build/builder.h"
#include "krofx/build/internal/writing.h"
#include "krofx/core/string.h"
#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

using krofx::internal::Put;
using krofx::internal::WithTag;

namespace {

// Appends a character `count` times.
void PutPadding(KRBuffer& buffer, char c, std::size_t count) {
  char block[64];
  std::memset(block, c, sizeof block);
  for (; count > sizeof block; count -= sizeof block) Put(buffer, block, sizeof block);
  Put(buffer, block, count);
}

// Whether the text of a value's class is that of KRPrecisionInteger. Such a text can be written
// without storing a copy in the number; any other class may have a text of its own.
bool HasTextOfBase(const KRPrecisionInteger& value) {
  const std::type_info& type = typeid(value);
  return type == typeid(KRPrecisionInteger) || type == typeid(KRPosPrecisionInteger) ||
         type == typeid(KRPercent);
}

}  // namespace

template <class Integer>
KRBuildStatus KRBuilder::AddInteger(Integer value) {
  char digits[std::numeric_limits<Integer>::digits10 + 2];
  const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return AddLine(digits, static_cast<std::size_t>(end - digits));
}

KRBuildStatus KRBuilder::AddKRSShort(s16 value) { return AddInteger(value); }
KRBuildStatus KRBuilder::AddKRUShort(u16 value) { return AddInteger(value); }
KRBuildStatus KRBuilder::AddKRSLong(s32 value) { return AddInteger(value); }
KRBuildStatus KRBuilder::AddKRULong(u32 value) { return AddInteger(value); }

KRBuildStatus KRBuilder::AddKRUShort(u16 value, char fill, u16 width) {
  if (m_buffer == nullptr) return KRBuildStatus_NullArgument;
  char digits[std::numeric_limits<u16>::digits10 + 1];
  const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  const std::size_t length = static_cast<std::size_t>(end - digits);
  const std::size_t missing = width > length ? width - length : 0;

  if (fill != '-') PutPadding(*m_buffer, fill == '0' ? '0' : ' ', missing);
  Put(*m_buffer, digits, length);
  if (fill == '-') PutPadding(*m_buffer, ' ', missing);
  Put(*m_buffer, KR_NEW_LINE, 1);
  return KRBuildStatus_Done;
}

KRBuildStatus KRBuilder::AddKRChar(char value) { return AddLine(&value, 1); }

KRBuildStatus KRBuilder::AddKRBoolean(u16 value) {
  return AddLine(value ? &KR_BOOLEAN_TRUE : &KR_BOOLEAN_FALSE, 1);
}

KRBuildStatus KRBuilder::AddAmount(const KRPrecisionInteger& value) {
  return AddPrecisionInteger(value);
}
KRBuildStatus KRBuilder::AddQuantity(const KRPrecisionInteger& value) {
  return AddPrecisionInteger(value);
}
KRBuildStatus KRBuilder::AddUnitPrice(const KRPrecisionInteger& value) {
  return AddPrecisionInteger(value);
}
KRBuildStatus KRBuilder::AddRate(const KRPercent& value) { return AddPrecisionInteger(value); }

KRBuildStatus KRBuilder::AddPrecisionInteger(const KRPrecisionInteger& value) {
  if (!value.IsValid()) return KRBuildStatus_NoTextForm;
  if (HasTextOfBase(value)) {
    char text[KRPrecisionInteger::kTextSize];
    return AddLine(text, value.WriteText(text));
  }
  const char* const text = value;
  if (text == nullptr) {
    return KRGetFireAlarm() == KRFireAlarm_MemoryExhausted ? KRBuildStatus_Fatal
                                                           : KRBuildStatus_NoTextForm;
  }
  return AddLine(text, std::strlen(text));
}

KRBuildStatus KRBuilder::AddDateTime(const KRDateTime& value) {
  KRDateTime copy(value);
  KRString text;
  if (!copy.GetDateString(text)) return KRBuildStatus_NoTextForm;
  return AddLine(text, text.GetStrLength());
}

KRBuildStatus KRBuilder::AddTime(const KRTime& value) {
  KRTime copy(value);
  KRString text;
  if (!copy.GetTimeString(text)) return KRBuildStatus_NoTextForm;
  return AddLine(text, text.GetStrLength());
}

KRBuildStatus KRBuilder::AddTagKRBoolean(KRTagID tag, u16 value) {
  return WithTag(*this, tag, [&] { return AddKRBoolean(value); });
}

KRBuildStatus KRBuilder::AddTagKRUShort(KRTagID tag, u16 value, char fill, u16 width) {
  return WithTag(*this, tag, [&] { return AddKRUShort(value, fill, width); });
}

KRBuildStatus KRBuilder::AddTagKRUShort(KRTagID tag, u16 value) {
  return WithTag(*this, tag, [&] { return AddKRUShort(value); });
}

KRBuildStatus KRBuilder::AddTagKRSShort(KRTagID tag, s16 value) {
  return WithTag(*this, tag, [&] { return AddKRSShort(value); });
}

KRBuildStatus KRBuilder::AddTagKRULong(KRTagID tag, u32 value) {
  return WithTag(*this, tag, [&] { return AddKRULong(value); });
}

KRBuildStatus KRBuilder::AddTagKRSLong(KRTagID tag, s32 value) {
  return WithTag(*this, tag, [&] { return AddKRSLong(value); });
}

KRBuildStatus KRBuilder::AddTagKRAmount(KRTagID tag, const KRPrecisionInteger& value) {
  return WithTag(*this, tag, [&] { return AddAmount(value); });
}

KRBuildStatus KRBuilder::AddTagKRDateTime(KRTagID tag, const KRDateTime& value) {
  return WithTag(*this, tag, [&] { return AddDateTime(value); });
}

KRBuildStatus KRBuilder::AddTagKRTime(KRTagID tag, const KRTime& value) {
  return WithTag(*this, tag, [&] { return AddTime(value); });
}

KRBuildStatus KRBuilder::AddTagKRQuantity(KRTagID tag, const KRPrecisionInteger& value) {
  return WithTag(*this, tag, [&] { return AddQuantity(value); });
}

KRBuildStatus KRBuilder::AddTagKRUnitPrice(KRTagID tag, const KRPrecisionInteger& value) {
  return WithTag(*this, tag, [&] { return AddUnitPrice(value); });
}

KRBuildStatus KRBuilder::AddTagKRRate(KRTagID tag, const KRPrecisionInteger& value) {
  return WithTag(*this, tag, [&] { return AddRate(KRPercent(value)); });
}
