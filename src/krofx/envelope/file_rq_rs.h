// The files with an OFX body: requests to a server and responses from one.
//
// They differ only in the class of their bodies, so what they do is written once, in BodyFile.

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
  /// Makes a body for the tag OFX and descends into it; skips any other tag.
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  using KRDataObj::HandleTagElement;
  /// Refuses the element, with a warning: a file has none.
  /// @return 4.
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
  /// A file without headers or requests, of all versions.
  KRFileRq();

  /// @return a request, which the file keeps owning; null after the last.
  KRRequest* GetRequest(u16 index) const { return m_bodies.Get(index); }
  /// Takes ownership of `request`, deletes the one at `index`, and notes OFX as present.
  /// @return 1; 0 for null or no memory, and then the caller keeps it.
  u16 SetRequest(u16 index, KRRequest* request) { return SetBody(index, request); }
  /// As SetRequest, for a new entry at the end: 1, and the file owns it; 0, the caller does.
  u16 AppendRequest(KRRequest* request) { return SetBody(m_bodies.Entries(), request); }
  /// @return the number of requests.
  u16 GetNumberOfRequest() const { return m_bodies.Entries(); }
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRFileRq* source) { return CopyFileFrom(source); }

  /// Writes what KRFile::Build writes, and then the requests, even when the first part failed.
  /// @return the status of the requests.
  KRBuildStatus Build(KRBuilder* builder) const override;
};

/// A response file. Its type is OFXFILERS.
class KROFX_API KRFileRs : public krofx::internal::BodyFile<krofx::internal::Side::kResponse> {
 public:
  /// A file without headers or responses, of all versions.
  KRFileRs();

  /// @return a response, which the file keeps owning; null after the last.
  KRResponse* GetResponse(u16 index) const { return m_bodies.Get(index); }
  /// Takes ownership of `response`, deletes the one at `index`, and notes OFX as present.
  /// @return 1; 0 for null or no memory, and then the caller keeps it.
  u16 SetResponse(u16 index, KRResponse* response) { return SetBody(index, response); }
  /// As SetResponse, for a new entry at the end: 1, and the file owns it; 0, the caller does.
  u16 AppendResponse(KRResponse* response) { return SetBody(m_bodies.Entries(), response); }
  /// @return the number of responses.
  u16 GetNumberOfResponse() const { return m_bodies.Entries(); }
  /// Copies everything from `source`.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRFileRs* source) { return CopyFileFrom(source); }

  /// Writes what KRFile::Build writes, and then the responses. Unlike a request file it stops when
  /// the first part fails.
  /// @return 0, or the first status that is not.
  KRBuildStatus Build(KRBuilder* builder) const override;
};

#endif  // KROFX_ENVELOPE_FILE_RQ_RS_H_
