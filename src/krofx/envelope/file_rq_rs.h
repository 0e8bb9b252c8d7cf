// The files with an OFX body: requests to a server and responses from one.
//
// Both are the same file but for the class of their bodies, so what they do is written once, in
// BodyFile, and the two classes name it.

#ifndef KROFX_ENVELOPE_FILE_RQ_RS_H_
#define KROFX_ENVELOPE_FILE_RQ_RS_H_

#include "krofx/envelope/file.h"
#include "krofx/envelope/internal/direction.h"
#include "krofx/envelope/request_response.h"

/// Requests, owned.
class KROFX_API KRDynamicArrayRequest : public krofx::internal::ElementArray<KRRequest> {
 public:
  using ElementArray::ElementArray;

 protected:
  KRRequest* NewElement() const override;
};

/// Responses, owned.
class KROFX_API KRDynamicArrayResponse : public krofx::internal::ElementArray<KRResponse> {
 public:
  using ElementArray::ElementArray;

 protected:
  KRResponse* NewElement() const override;
};

namespace krofx::internal {

/// A file with a list of bodies: requests or responses.
template <Side kSide>
class KROFX_API BodyFile : public KRFileOFX {
  using Body = typename Direction<kSide>::Body;

 public:
  /// Makes a body for the tag OFX and descends into it; passes over any other tag.
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  using KRDataObj::HandleTagElement;
  /// A file has no elements: warns and answers 4.
  KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                 const KRString& value) override;
  KRDataObj* GetChild(u16 index) const override { return m_bodies.Get(index); }
  u16 GetNumberOfChildren() const override { return m_bodies.Entries(); }

 protected:
  u16 SetBody(u16 index, Body* body);
  // Writes the bodies in order, each under its own type.
  KRBuildStatus BuildBodies(KRBuilder* builder) const;
  u16 CopyFileFrom(BodyFile* source);

  typename Direction<kSide>::Bodies m_bodies{1, 1};
};

extern template class BodyFile<Side::kRequest>;
extern template class BodyFile<Side::kResponse>;

}  // namespace krofx::internal

/// A request file. Its type is OFXFILERQ.
class KROFX_API KRFileRq : public krofx::internal::BodyFile<krofx::internal::Side::kRequest> {
 public:
  /// A file without headers and requests, of all versions.
  KRFileRq();

  /// A request, still the file's; null after the last.
  KRRequest* GetRequest(u16 index) const { return m_bodies.Get(index); }
  /// Takes ownership of `request` in place of the one there, and notes OFX as present.
  /// @return 1; 0 for null or no memory, and then it is still the caller's.
  u16 SetRequest(u16 index, KRRequest* request) { return SetBody(index, request); }
  /// As SetRequest, after the last.
  u16 AppendRequest(KRRequest* request) { return SetBody(m_bodies.Entries(), request); }
  /// Number of requests.
  u16 GetNumberOfRequest() const { return m_bodies.Entries(); }
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRFileRq* source) { return CopyFileFrom(source); }

  /// Writes the file around the body, whatever that comes to, and then the requests.
  KRBuildStatus Build(KRBuilder* builder) const override;
};

/// A response file. Its type is OFXFILERS.
class KROFX_API KRFileRs : public krofx::internal::BodyFile<krofx::internal::Side::kResponse> {
 public:
  /// A file without headers and responses, of all versions.
  KRFileRs();

  /// A response, still the file's; null after the last.
  KRResponse* GetResponse(u16 index) const { return m_bodies.Get(index); }
  /// Takes ownership of `response` in place of the one there, and notes OFX as present.
  /// @return 1; 0 for null or no memory, and then it is still the caller's.
  u16 SetResponse(u16 index, KRResponse* response) { return SetBody(index, response); }
  /// As SetResponse, after the last.
  u16 AppendResponse(KRResponse* response) { return SetBody(m_bodies.Entries(), response); }
  /// Number of responses.
  u16 GetNumberOfResponse() const { return m_bodies.Entries(); }
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRFileRs* source) { return CopyFileFrom(source); }

  /// Writes the file around the body, and, unlike a request file, the responses only when that
  /// went well.
  KRBuildStatus Build(KRBuilder* builder) const override;
};

#endif  // KROFX_ENVELOPE_FILE_RQ_RS_H_
