// The walk over the parts of a multipart text.

#include "krofx/envelope/mime_parser.h"

#include <optional>

#include "krofx/core/internal/alarm_scope.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/parse_run.h"

using krofx::internal::AlarmScope;

namespace {

bool IsContentType(const KRString& name) { return name.strcmpi("content-type") != 0; }

// Makes the file for a part of this type; null, with the fire alarm raised, when memory is
// exhausted.
KRFile* NewSubfile(KRMIMEType type) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  KRFile* subfile = nullptr;
  if (factory != nullptr) {
    subfile = type == KRMIMEType_OFXResponse  ? factory->NewFileRs(0)
              : type == KRMIMEType_OFXRequest ? factory->NewFileRq(0)
                                              : factory->NewFile(0);
  }
  if (subfile == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return subfile;
}

bool AlarmIsSet() { return KRGetFireAlarm() != KRFireAlarm_None; }

// Reads the headers and the text of a part that is not OFX.
void ReadPlain(KRParseEngine& engine, KRFile& subfile, const KRString& boundary) {
  KRHeaderTag tag = KRHeaderTag_None;
  KRString value;
  KRString name;
  while (engine.GetHeader(tag, value, &name) != 0) subfile.HandleHeader(tag, value, &name);
  KRString body;
  if (engine.GetMIMEBody(boundary, body) != 0) subfile.SetMIMEBody(body);
}

}  // namespace

KRParseStatus KRMIMEParser::Parse(KRBuffer* buffer, KRFile* file, u16 /*checkRequired*/) {
  KRParseLogger* log = Open(buffer, file);
  if (log == nullptr) return KRParseStatus_Fatal;

  std::optional<KRParseEngine> ownEngine;
  KRParseEngine& engine =
      GetParseEngine() != nullptr ? *GetParseEngine() : ownEngine.emplace(*buffer);
  Run run(*this, *log, engine);

  KRHeaderTag tag = KRHeaderTag_None;
  KRString value;
  KRString name;
  KRString boundary;
  bool multipart = false;
  if (engine.GetHeader(tag, value, &name) != 0) {
    file->HandleHeader(tag, value, &name);
    if (IsContentType(name) && engine.GetMIMEBoundary(value, boundary) != 0) {
      if (file->SetBoundary(boundary) == 0) return KRParseStatus_Invalid;
      multipart = true;
    }
  }
  if (AlarmIsSet()) return KRParseStatus_Fatal;

  for (;;) {
    const KRBoundStatus bound = engine.FindMIMEBoundary(boundary);
    if (bound == KRBoundStatus_None) return KRParseStatus_Invalid;
    if (bound == KRBoundStatus_Closing) return KRParseStatus_Accepted;
    const KRParseStatus status = ReadPart(engine, buffer, *file, boundary, multipart);
    if (status != KRParseStatus_Accepted) return status;
  }
}

KRParseStatus KRMIMEParser::ReadPart(KRParseEngine& engine, KRBuffer* buffer, KRFile& file,
                                     const KRString& boundary, bool multipart) {
  KRHeaderTag tag = KRHeaderTag_None;
  KRString value;
  KRString name;
  // A lack of memory must not lose a part silently. An OFX part that failed before this one may
  // have left the alarm set.
  const auto unlessMemoryRanOut = [alarmBefore = AlarmIsSet()] {
    return !alarmBefore && AlarmIsSet() ? KRParseStatus_Fatal : KRParseStatus_Accepted;
  };
  const bool hasHeader = engine.GetHeader(tag, value, &name) != 0;
  if (hasHeader && !IsContentType(name)) {
    file.HandleHeader(tag, value, &name);
    return unlessMemoryRanOut();
  }
  KRFile* subfile = NewSubfile(hasHeader ? engine.GetFileType(&value) : KRMIMEType_Other);
  if (subfile == nullptr) return KRParseStatus_Fatal;
  if (hasHeader) {
    subfile->HandleHeader(tag, value, &name);
  } else {
    // A header without a name is not stored: the part is a plain file.
    subfile->HandleHeader(KRHeaderTag_None, "text/plain", nullptr);
  }
  subfile->SetParent(&file);
  if (file.AppendSubfile(subfile) == 0) {
    delete subfile;
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return KRParseStatus_Fatal;
  }

  const KRTagID type = subfile->GetType();
  if (type != KRTag_OFXFILERQ && type != KRTag_OFXFILERS) {
    ReadPlain(engine, *subfile, boundary);
    return unlessMemoryRanOut();
  }
  if (const KRParseStatus status = unlessMemoryRanOut(); status != KRParseStatus_Accepted) {
    return status;
  }
  KRParseEngine* ownEngine = GetParseEngine();
  const s16 depth = GetDepth();
  SetParseEngine(&engine);
  // The parse of this part clears the alarm, which an earlier part may have raised.
  const AlarmScope alarm;
  const KRParseStatus status = KRSimpleParser::Parse(buffer, subfile, 1);
  SetParseEngine(ownEngine);
  if (!multipart || status != KRParseStatus_Fatal) return status;
  // Neither a part that failed nor the aggregates that it left open affect the others.
  while (GetDepth() > depth) PopObject();
  return KRParseStatus_Accepted;
}
