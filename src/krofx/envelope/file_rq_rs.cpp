// Request and response files.

#include "krofx/envelope/file_rq_rs.h"

#include "krofx/build/builder.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/model/factory.h"

using krofx::internal::Direction;
using krofx::internal::Side;

namespace {

// Makes a body through the factory in force; null when it cannot.
template <Side kSide>
typename Direction<kSide>::Body* MakeBody() {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : Direction<kSide>::NewBody(*factory);
}

}  // namespace

KRRequest* KRDynamicArrayRequest::NewElement() const { return MakeBody<Side::kRequest>(); }
KRResponse* KRDynamicArrayResponse::NewElement() const { return MakeBody<Side::kResponse>(); }

namespace krofx::internal {

template <Side kSide>
KRParseStatus BodyFile<kSide>::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (GetParser() == nullptr || GetFactory() == nullptr) return KRParseStatus_Fatal;
  if (entry->tagID != KRTag_OFX) return KRParseStatus_Accepted;
  Body* body = MakeBody<kSide>();
  if (body == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return KRParseStatus_Fatal;
  }
  if (m_bodies.Append(body) == 0) {
    delete body;
    return KRParseStatus_Fatal;
  }
  return PushAndSetObject(body, KRTag_OFX);
}

template <Side kSide>
KRParseStatus BodyFile<kSide>::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                                const KRString& value) {
  // The warning has the file's tag, by which the log cannot recognise a password.
  KRString shown(value);
  if (IsSecret(entry->tagID)) shown.Clear('*');
  LogWarning(KRPW_INVALIDELEM, shown, KRString(entry->text), GetType(), this);
  return KRParseStatus_Invalid;
}

template <Side kSide>
u16 BodyFile<kSide>::SetBody(u16 index, Body* body) {
  SetTag(KRTag_OFX);
  return m_bodies.Set(index, body);
}

template <Side kSide>
KRBuildStatus BodyFile<kSide>::BuildBodies(KRBuilder* builder) const {
  for (u16 index = 0; index < m_bodies.Entries(); ++index) {
    const Body* body = m_bodies.Get(index);
    if (body == nullptr) continue;
    const KRBuildStatus status = body->BuildObject(builder, KRTag_None);
    if (status != KRBuildStatus_Done) return status;
  }
  return KRBuildStatus_Done;
}

template <Side kSide>
u16 BodyFile<kSide>::CopyFileFrom(BodyFile* source) {
  if (source == nullptr) return 0;
  if (source == this) return 1;
  m_bodies.DeleteAll();
  for (u16 index = 0; index < source->m_bodies.Entries(); ++index) {
    Body* body = source->m_bodies.Get(index);
    if (body == nullptr) continue;
    Body* copy = MakeBody<kSide>();
    if (copy == nullptr || copy->DeepCopyFrom(body) == 0 || m_bodies.Set(index, copy) == 0) {
      delete copy;
      return 0;
    }
  }
  return KRFile::DeepCopyFrom(source);
}

template class BodyFile<Side::kRequest>;
template class BodyFile<Side::kResponse>;

}  // namespace krofx::internal

KRFileRq::KRFileRq() { SetType(KRTag_OFXFILERQ); }

KRBuildStatus KRFileRq::Build(KRBuilder* builder) const {
  // Unlike a response file, a request file continues when the text around the body failed.
  KRFile::Build(builder);
  return BuildBodies(builder);
}

KRFileRs::KRFileRs() { SetType(KRTag_OFXFILERS); }

KRBuildStatus KRFileRs::Build(KRBuilder* builder) const {
  const KRBuildStatus status = KRFile::Build(builder);
  return status != KRBuildStatus_Done ? status : BuildBodies(builder);
}
