// Looking at the numbers of a text.

#include "krofx/reader/values/value_survey.h"

#include <algorithm>
#include <iterator>

#include "krofx/reader/values/digit_cursor.h"
#include "krofx/reader/values/separators.h"

namespace krofx::internal {

namespace {

constexpr KRTagID kDecimalTags[] = {KRTag_ACCRDINT,
                                    KRTag_ADJAMT,
                                    KRTag_AVAILCASH,
                                    KRTag_AVGCOSTBASIS,
                                    KRTag_BALAMT,
                                    KRTag_BALCLOSE,
                                    KRTag_BALMIN,
                                    KRTag_BALOPEN,
                                    KRTag_BUYPOWER,
                                    KRTag_CALLPRICE,
                                    KRTag_CHKANDDEB,
                                    KRTag_COMMISSION,
                                    KRTag_COUPONRT,
                                    KRTag_CREDITLIMIT,
                                    KRTag_CURRATE,
                                    KRTag_DEBADJ,
                                    KRTag_DENOMINATOR,
                                    KRTag_DEPANDCREDIT,
                                    KRTag_DOMXFERFEE,
                                    KRTag_DSCAMT,
                                    KRTag_DSCRATE,
                                    KRTag_FEE,
                                    KRTag_FEES,
                                    KRTag_FINALAMT,
                                    KRTag_FINCHG,
                                    KRTag_FRACCASH,
                                    KRTag_GAIN,
                                    KRTag_INITIALAMT,
                                    KRTag_INTLXFERFEE,
                                    KRTag_INVPAIDAMT,
                                    KRTag_INVTOTALAMT,
                                    KRTag_LIMITPRICE,
                                    KRTag_LITMAMT,
                                    KRTag_LOAD,
                                    KRTag_MARGINBALANCE,
                                    KRTag_MARKDOWN,
                                    KRTag_MARKUP,
                                    KRTag_MINPMTDUE,
                                    KRTag_MINUNITS,
                                    KRTag_MKTVAL,
                                    KRTag_N_AMT,
                                    KRTag_N_CURAMT,
                                    KRTag_N_CURWB,
                                    KRTag_N_DDAMT,
                                    KRTag_N_DEFLIMIT,
                                    KRTag_N_DEFRATE,
                                    KRTag_N_EXTRAWITHHOLD,
                                    KRTag_N_HRS,
                                    KRTag_N_HRSPERPD,
                                    KRTag_N_HRSWORKED,
                                    KRTag_N_LIMIT,
                                    KRTag_N_MAXHRS,
                                    KRTag_N_Q3TAXLIABAMT,
                                    KRTag_N_Q4TAXLIABAMT,
                                    KRTag_N_QTRAMT,
                                    KRTag_N_QTRWB,
                                    KRTag_N_QTY,
                                    KRTag_N_RATE,
                                    KRTag_N_SICKACCRUED,
                                    KRTag_N_TAXABLEWAGE,
                                    KRTag_N_TAXAMT,
                                    KRTag_N_TAXLIABAMT,
                                    KRTag_N_TIPSWB,
                                    KRTag_N_TOTALWAGE,
                                    KRTag_N_TOTALWAGEYTD,
                                    KRTag_N_VACACCRUED,
                                    KRTag_N_WAGEBASE,
                                    KRTag_N_WB,
                                    KRTag_N_WKSWORKED,
                                    KRTag_N_YTDAMT,
                                    KRTag_N_YTDWB,
                                    KRTag_NEWUNITS,
                                    KRTag_NUMERATOR,
                                    KRTag_OLDUNITS,
                                    KRTag_PARVALUE,
                                    KRTag_PAYANDCREDIT,
                                    KRTag_PERCENT,
                                    KRTag_PURANDADV,
                                    KRTag_REVERSALFEES,
                                    KRTag_SHORTBALANCE,
                                    KRTag_STOPPRICE,
                                    KRTag_STPCHKFEE,
                                    KRTag_STRIKEPRICE,
                                    KRTag_TAXES,
                                    KRTag_TOTAL,
                                    KRTag_TOTALFEES,
                                    KRTag_TOTALINT,
                                    KRTag_TRNAMT,
                                    KRTag_UNITPRICE,
                                    KRTag_UNITS,
                                    KRTag_UNITSSTREET,
                                    KRTag_UNITSUSER,
                                    KRTag_VALUE,
                                    KRTag_WITHHOLDING,
                                    KRTag_YIELD,
                                    KRTag_YIELDTOCALL,
                                    KRTag_YIELDTOMAT};

// The decimal sign that a number shows, as the bit `point` or `comma`; 0 when it shows none.
u8 ShownBy(std::string_view text, const Charset& charset, u8 point, u8 comma) {
  const NumberLayout layout = FindLayout(PlainCharacters(text, charset));
  if (layout.shape != NumberShape::kClear) return 0;
  if (layout.decimal == '.' || layout.group == ',') return point;
  return layout.decimal == ',' || layout.group == '.' ? comma : 0;
}

// The first two numbers of a text such as "31/01/2026"; false for any other text.
bool ReadFirstNumbers(std::string_view text, u32& first, u32& second) {
  DigitCursor cursor(text);
  for (u32* const number : {&first, &second}) {
    const std::size_t count = cursor.CountDigits();
    if (count < 1 || count > 2) return false;
    cursor.TakeDigits(count, *number);
    if (!cursor.Take('/') && !cursor.Take('-')) return false;
  }
  return cursor.CountDigits() == 4;
}

}  // namespace

std::span<const KRTagID> DecimalTags() { return kDecimalTags; }

void ValueSurvey::LookAtNumbers() const {
  static_assert(std::size(kDecimalTags) <= kMostDecimalTags);
  m_looked = true;
  ForEachElement([this](KRTagID tag, std::string_view text) {
    const KRTagID* const found = std::find(std::begin(kDecimalTags), std::end(kDecimalTags), tag);
    if (found == std::end(kDecimalTags)) return;
    const u8 shown = ShownBy(text, m_charset, kShowsPoint, kShowsComma);
    m_shown[found - std::begin(kDecimalTags)] |= shown;
    m_shownByAny |= shown;
  });
}

void ValueSurvey::LookAtDates() const {
  constexpr u32 kMonths = 12;
  m_lookedAtDates = true;
  ForEachElement([this](KRTagID, std::string_view text) {
    u32 first;
    u32 second;
    if (!ReadFirstNumbers(text, first, second)) return;
    m_dayFirst = m_dayFirst || (first > kMonths && second <= kMonths);
    m_monthFirst = m_monthFirst || (second > kMonths && first <= kMonths);
  });
}

DayOrder ValueSurvey::OrderOfDays() const {
  if (!m_lookedAtDates) LookAtDates();
  return OrderOf(m_dayFirst, m_monthFirst);
}

DayOrder ValueSurvey::OrderOf(bool dayFirst, bool monthFirst) {
  return dayFirst == monthFirst ? DayOrder::kUnknown
         : dayFirst             ? DayOrder::kDayFirst
                                : DayOrder::kMonthFirst;
}

DecimalSign ValueSurvey::SignOf(u8 shown) {
  return shown == kShowsPoint   ? DecimalSign::kPoint
         : shown == kShowsComma ? DecimalSign::kComma
                                : DecimalSign::kUnknown;
}

bool ValueSurvey::AgreesWith(const ValueSurvey& other) const {
  if (m_lookedAtDates) {
    other.OrderOfDays();
    const DayOrder order = OrderOf(m_dayFirst, m_monthFirst);
    const bool dayFirst = m_dayFirst || other.m_dayFirst;
    const bool monthFirst = m_monthFirst || other.m_monthFirst;
    if (order != DayOrder::kUnknown && order != OrderOf(dayFirst, monthFirst)) return false;
  }
  if (!m_looked) return true;
  other.LookAtNumbers();
  const u8 byAny = m_shownByAny | other.m_shownByAny;
  for (std::size_t index = 0; index < std::size(kDecimalTags); ++index) {
    const u8 own = m_shown[index];
    const u8 both = own | other.m_shown[index];
    const DecimalSign sign = SignOf(own == 0 ? m_shownByAny : own);
    if (sign != DecimalSign::kUnknown && sign != SignOf(both == 0 ? byAny : both)) return false;
  }
  return true;
}

DecimalSign ValueSurvey::DecimalSignOf(KRTagID tag) const {
  if (!m_looked) LookAtNumbers();
  const KRTagID* const found = std::find(std::begin(kDecimalTags), std::end(kDecimalTags), tag);
  const u8 shown =
      found == std::end(kDecimalTags) ? u8{0} : m_shown[found - std::begin(kDecimalTags)];
  return SignOf(shown == 0 ? m_shownByAny : shown);
}

}  // namespace krofx::internal
