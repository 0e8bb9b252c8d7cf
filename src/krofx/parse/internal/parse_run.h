// The state of a parser during a parse.

#ifndef KROFX_PARSE_INTERNAL_PARSE_RUN_H_
#define KROFX_PARSE_INTERNAL_PARSE_RUN_H_

#include "krofx/core/parse_logger.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/simple_parser.h"

/// While it exists the parser reads from an engine, and its observer is called for the thread's
/// warnings. Runs can be nested: the outer one is in force again afterwards.
class KRSimpleParser::Run final : private krofx::internal::WarningListener {
 public:
  Run(KRSimpleParser& parser, KRParseLogger& log, const KRParseEngine& engine)
      : m_parser(parser), m_log(log), m_outerEngine(parser.m_runningEngine) {
    parser.m_runningEngine = &engine;
    m_outerListener = log.SetListener(parser.m_observer == nullptr ? nullptr : this);
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run() {
    m_log.SetListener(m_outerListener);
    m_parser.m_runningEngine = m_outerEngine;
  }

  /// Warnings from now on have no place in the text.
  void LeaveText() { m_parser.m_runningEngine = nullptr; }

 private:
  void OnStored(const KRParseException& warning) override {
    m_parser.m_observer->OnWarning(warning, m_parser.GetCurrentOffset());
  }

  KRSimpleParser& m_parser;
  KRParseLogger& m_log;
  const KRParseEngine* m_outerEngine;
  krofx::internal::WarningListener* m_outerListener;
};

#endif  // KROFX_PARSE_INTERNAL_PARSE_RUN_H_
