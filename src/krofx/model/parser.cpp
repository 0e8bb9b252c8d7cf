// The stack of open aggregates, and access to the calling thread's warnings.

#include "krofx/model/parser.h"

#include "krofx/model/internal/tag_index.h"

using krofx::internal::FindTagRow;
using krofx::internal::ForgetInLoggers;
using krofx::internal::LogWarning;

namespace {

KRParseLogger* Log() { return KRParseLogger::TheKRParseLogger(); }

}  // namespace

KRParser::KRParser() {
  KRParseLogger* log = Log();
  if (log == nullptr) return;
  log->EnableLogging(1);
  log->DeleteAll();
}

KRParser::~KRParser() { ForgetInLoggers(this); }

KRParseStatus KRParser::Parse(KRBuffer* /*buffer*/, KRDataObj* root, u16 /*checkRequired*/) {
  if (root == nullptr) return KRParseStatus_Fatal;
  SetRoot(root);
  return KRParseStatus_Accepted;
}

void KRParser::SetRoot(KRDataObj* root) {
  m_current = root;
  root->SetupForParsing(this);
}

u16 KRParser::PushObject(KRDataObj* object) {
  if (m_depth >= kMaxDepth || object == nullptr) return 0;
  m_stack[m_depth++] = {m_current, m_validTags};
  m_current = object;
  object->GetArrayOfValidTags(m_validTags);
  object->SetupForParsing(this);
  return 1;
}

u16 KRParser::PopObject() {
  if (m_depth < 1) return 0;
  const StackEntry& top = m_stack[--m_depth];
  m_current = top.object;
  m_validTags = top.validTags;
  // Null when an object was pushed before the first parse.
  if (m_current != nullptr) m_current->SetupForParsing(this);
  return 1;
}

u16 KRParser::SetValidTags(KRArrayOfTags& tags) {
  m_validTags = tags;
  return 1;
}

u16 KRParser::IsValidTag(KRTagID tag) {
  if (m_validTags.table == nullptr) return 1;
  if (m_current == nullptr) return 0;
  const u16 version = m_current->GetMsgSetVersion();
  return FindTagRow(m_validTags, tag, version) >= 0 ? 1 : 0;
}

u16 KRParser::GetAnyParseExceptionsLogged() const {
  const KRParseLogger* log = Log();
  return log == nullptr ? u16{0} : log->GetAnyParseExceptionsLogged();
}

u16 KRParser::GetNumberParseExceptions() const {
  const KRParseLogger* log = Log();
  return log == nullptr ? u16{0} : log->Entries();
}

KRParseException* KRParser::GetParseException(u16 index) const {
  const KRParseLogger* log = Log();
  return log == nullptr ? nullptr : log->Get(index);
}

void KRParser::EnableLogging(u16 enable) {
  if (KRParseLogger* log = Log()) log->EnableLogging(enable);
}

u16 KRParser::CopyExceptionListTo(KRParseLogger* target) const {
  KRParseLogger* log = Log();
  return target == nullptr || log == nullptr ? u16{0} : target->DeepCopyFrom(log);
}

u16 KRParser::AppendParseException(KRParseException* exception) {
  KRParseLogger* log = Log();
  return log == nullptr ? u16{0} : log->AppendParseException(exception);
}

u16 KRParser::AppendParseException(KRParseWarning warning, KRString value, KRString tagText,
                                   KRTagID tag, KRDataObj* object) {
  return LogWarning(warning, value, tagText, tag, object);
}
