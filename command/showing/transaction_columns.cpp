// Finds the columns of transactions by their keys, and gathers their types from the library.

#include "showing/transaction_columns.h"

#include <algorithm>
#include <initializer_list>

#include "input/parsed_file.h"
#include "krofx/krofx.h"

namespace krofx::command {

namespace {

constexpr std::size_t kDayCharacters = 10;

std::size_t Find(const TableSpec& table, std::initializer_list<std::string_view> keys,
                 std::size_t none) {
  for (const std::string_view key : keys) {
    for (std::size_t index = 0; index < table.columns.size(); ++index) {
      if (table.columns[index].key == key) return index;
    }
  }
  return none;
}

}  // namespace

TransactionColumns::TransactionColumns(const TableSpec& table)
    : m_day(Find(table, {"posted", "traded"}, kNone)),
      m_amount(Find(table, {"amount", "total"}, kNone)),
      m_currency(Find(table, {"currency"}, kNone)),
      m_type(Find(table, {"type"}, kNone)),
      m_detail(Find(table, {"detail"}, kNone)),
      m_name(Find(table, {"name"}, kNone)),
      m_security(Find(table, {"security"}, kNone)),
      m_id(Find(table, {"id"}, kNone)) {
  for (const std::string_view key : {"name", "memo", "check", "security", "ticker"}) {
    const std::size_t index = Find(table, {key}, kNone);
    if (index != kNone) m_texts.push_back(index);
  }
}

std::string_view TransactionColumns::DayOf(Row row) const {
  const Cell day = Get(row, m_day);
  // A text that is not of the form of a date stays as it is in the cell, and is no day.
  const bool isDay = day.text.size() >= kDayCharacters && day.text[4] == '-' && day.text[7] == '-';
  return isDay ? day.text.substr(0, kDayCharacters) : std::string_view();
}

std::string_view TransactionColumns::CurrencyOf(Row row, const Section& section) const {
  const Cell own = Get(row, m_currency);
  return own ? own.text : section.Find("currency").text;
}

std::string_view TransactionColumns::NameOf(Row row) const {
  const Cell name = Get(row, m_name);
  return name ? name.text : Get(row, m_security).text;
}

std::vector<std::string> TransactionTypes() {
  std::vector<std::string> types;
  for (u32 value = 0; value <= KRBankTxType_OTHER; ++value) {
    KRString text;
    if (KRDataConversion::BankTxToString(static_cast<KRBankTxType>(value), text) != 0) {
      types.push_back(ToText(text));
    }
  }
  KRInvTranList list;
  KRArrayOfTags tags;
  list.GetArrayOfValidTags(tags);
  for (u16 index = 0; index < tags.count; ++index) {
    const std::string tag = ToText(KRUtility::TagToString(tags.table[index].tag));
    if (!tag.starts_with("DT")) types.push_back(tag);
  }
  std::sort(types.begin(), types.end());
  return types;
}

}  // namespace krofx::command
