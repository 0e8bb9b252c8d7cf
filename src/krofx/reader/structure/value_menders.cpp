// The table of the value menders.

#include "krofx/reader/dates/dates.h"
#include "krofx/reader/numbers/numbers.h"
#include "krofx/reader/values/value_mender.h"
#include "krofx/reader/values/words.h"

namespace krofx::internal {

namespace {

constexpr ValueMender kMenders[] = {
    {ValueForm::kDecimal, true, &MendSeparators},
    {ValueForm::kDecimal, false, &MendNoNumber},
    {ValueForm::kDecimal, false, &MendDecoration},
    {ValueForm::kDecimal, false, &MendExponent},
    {ValueForm::kDecimal, false, &MendZeros},
    {ValueForm::kInteger, true, &MendSeparatorsOfInteger},
    {ValueForm::kInteger, false, &MendNoNumber},
    {ValueForm::kInteger, false, &MendDecoration},
    {ValueForm::kInteger, false, &MendZeros},
    {ValueForm::kDate, true, &MendDate},
    {ValueForm::kDate, false, &MendNoDate},
    {ValueForm::kTime, true, &MendTime},
    {ValueForm::kText, true, &MendCurrency},
    {ValueForm::kLanguage, true, &MendLanguage},
    {ValueForm::kBoolean, false, &MendBoolean},
    {ValueForm::kBoolean, false, &MendNoWord},
    {ValueForm::kKeyword, false, &MendTransactionType},
    {ValueForm::kKeyword, false, &MendNoWord},
    {ValueForm::kKeyword, false, &MendKeyword},
};

}  // namespace

std::span<const ValueMender> ValueMenders() { return kMenders; }

}  // namespace krofx::internal
