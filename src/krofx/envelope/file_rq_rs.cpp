// Request and response files.

#include "krofx/envelope/file_rq_rs.h"

#include "krofx/build/builder.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread.h"
#include "krofx/model/factory.h"

namespace {

KRRequest* Make(KRDataObjFactory& factory, KRRequest*) { return factory.NewRequest(0); }
KRResponse* Make(KRDataObjFactory& factory, KRResponse*) { return factory.NewResponse(0); }

// Makes a body through the factory in force.
template <class Body>
Body* MakeBody() {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : Make(*factory, static_cast<Body*>(nullptr));
}

}  // namespace

KRRequest* KRDynamicArrayRequest::NewElement() const { return MakeBody<KRRequest>(); }
KRResponse* KRDynamicArrayResponse::NewElement() const { return MakeBody<KRResponse>(); }

namespace krofx::internal {

template <class Array, class Body>
KRParseStatus BodyFile<Array, Body>::HandleTagStart(const KRTagDictionaryEntry* const entry) {
  if (GetParser() == nullptr || GetFactory() == nullptr) return KRParseStatus_Fatal;
  if (entry->tagID != KRTag_OFX) return KRParseStatus_Accepted;
  Body* body = MakeBody<Body>();
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

template <class Array, class Body>
KRParseStatus BodyFile<Array, Body>::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                                      const KRString& value) {
  // The warning carries the file's tag, by which a password would not be known.
  KRString shown(value);
  if (IsSecret(entry->tagID)) shown.Clear('*');
  LogWarning(KRPW_INVALIDELEM, shown, KRString(entry->text), GetType(), this);
  return KRParseStatus_Invalid;
}

template <class Array, class Body>
u16 BodyFile<Array, Body>::SetBody(u16 index, Body* body) {
  SetTag(KRTag_OFX);
  return m_bodies.Set(index, body);
}

template <class Array, class Body>
KRBuildStatus BodyFile<Array, Body>::BuildBodies(KRBuilder* builder) const {
  for (u16 index = 0; index < m_bodies.Entries(); ++index) {
    const Body* body = m_bodies.Get(index);
    if (body == nullptr) continue;
    const KRBuildStatus status = body->BuildObject(builder, KRTag_None);
    if (status != KRBuildStatus_Done) return status;
  }
  return KRBuildStatus_Done;
}

template <class Array, class Body>
u16 BodyFile<Array, Body>::CopyFileFrom(BodyFile* source) {
  if (source == nullptr) return 0;
  if (source == this) return 1;
  m_bodies.DeleteAll();
  for (u16 index = 0; index < source->m_bodies.Entries(); ++index) {
    Body* body = source->m_bodies.Get(index);
    if (body == nullptr) continue;
    Body* copy = MakeBody<Body>();
    if (copy == nullptr || copy->DeepCopyFrom(body) == 0 || m_bodies.Set(index, copy) == 0) {
      delete copy;
      return 0;
    }
  }
  return KRFile::DeepCopyFrom(source);
}

template class BodyFile<KRDynamicArrayRequest, KRRequest>;
template class BodyFile<KRDynamicArrayResponse, KRResponse>;

}  // namespace krofx::internal

KRFileRq::KRFileRq() { SetType(KRTag_OFXFILERQ); }

KRBuildStatus KRFileRq::Build(KRBuilder* builder) const {
  // Unlike a response file, a request file goes on when the text around the body failed.
  KRFile::Build(builder);
  return BuildBodies(builder);
}

KRFileRs::KRFileRs() { SetType(KRTag_OFXFILERS); }

KRBuildStatus KRFileRs::Build(KRBuilder* builder) const {
  const KRBuildStatus status = KRFile::Build(builder);
  return status != KRBuildStatus_Done ? status : BuildBodies(builder);
}
