// The loop of the first pass.

#include "krofx/reader/file/clean_parser.h"

#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/envelope/internal/replaced_payloads.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/repeated_figures.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/parse_run.h"
#include "krofx/parse/internal/swallowed_tags.h"
#include "krofx/parse/internal/tag_pass.h"
#include "krofx/values/internal/passed_commas.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

SilentLosses::SilentLosses()
    : m_payloads(ReplacedPayloads()),
      m_figures(RepeatedFigures()),
      m_commas(PassedCommas()),
      m_withoutDigits(NumbersWithoutDigits()),
      m_swallowed(SwallowedTags()) {}

bool SilentLosses::Any() const {
  return m_payloads != ReplacedPayloads() || m_figures != RepeatedFigures() ||
         m_commas != PassedCommas() || m_withoutDigits != NumbersWithoutDigits() ||
         m_swallowed != SwallowedTags();
}

CleanParser::CleanParser() {
  SetPlainClass(typeid(CleanParser));
  SetWarningObserver(this);
}

void CleanParser::OnWarning(const KRParseException& /*warning*/, s32 /*position*/) {
  m_warned = true;
}

u16 CleanParser::PopObject() {
  if (GetDepth() > 0 && !m_incomplete) {
    KRDataObj& object = *GetCurrentObj();
    const AggregateTable* const table = ObjectAccess::PlainTableOf(object, kPlainCheck);
    // What is inside it has ended before it.
    m_incomplete = table != nullptr ? !m_required.AllPresentIn(object, *table)
                                    : object.AllRequiredPresent() == 0;
  }
  return KRSimpleParser::PopObject();
}

KRParseStatus CleanParser::Read(KRParseEngine& engine, KRBuffer& buffer, KRFile& root) {
  KRParseLogger* const log = Open(&buffer, &root);
  if (log == nullptr) return KRParseStatus_Fatal;
  const Run run(*this, *log, engine);
  KRParseStatus status = ReadHeaders(engine, root);
  if (status == KRParseStatus_Accepted) status = ReadTags(engine);
  if (KRGetFireAlarm() != KRFireAlarm_None) return KRParseStatus_Fatal;
  if (status != KRParseStatus_Accepted) return status;
  KRDataObj* object = &root;
  // An aggregate that ends twice may have got later what it lacked.
  const bool complete = m_incomplete ? KRUtility::AllRequiredPresent(&object, nullptr) != 0
                                     : root.AllRequiredPresent() != 0;
  return m_warned || !complete ? KRParseStatus_Warnings : KRParseStatus_Accepted;
}

KRParseStatus CleanParser::ReadTags(KRParseEngine& engine) {
  const SilentLosses losses;
  TagPass pass(*this, engine);
  KRParseStatus status = kGoOn;
  do {
    status = pass.Feed<FeedUse::kWatchedTree>();
  } while (status == kGoOn && !m_warned && pass.TakeTag(status) && !m_warned && !losses.Any());
  if (!m_warned && !losses.Any()) m_mayHaveHighBytes = pass.MayHaveHighBytes();
  return status;
}

}  // namespace krofx::internal
