// Files, the roots of all trees: the text around an OFX body.
//
// A KRFile is a MIME entity: named headers, a boundary, a body that is not OFX, and subfiles. A
// KRFileOFX adds the fixed block of OFX headers. The files with a body are in file_rq_rs.h.

#ifndef KROFX_ENVELOPE_FILE_H_
#define KROFX_ENVELOPE_FILE_H_

#include <concepts>
#include <utility>

#include "krofx/core/array.h"
#include "krofx/core/string.h"
#include "krofx/envelope/internal/header_index.h"
#include "krofx/model/data_object.h"
#include "krofx/model/value_arrays.h"

/// One MIME header.
struct KROFX_API KRMIMEHeader : public krofx::internal::HeapObject {
  KRString name;   ///< As written; names are compared without regard to case.
  KRString value;  ///< Without the white space around it.

  /// Writes the header as one line: name, colon, blank, value, carriage return, line feed.
  /// @return 0, or the first status of the builder that is not.
  KRBuildStatus Build(KRBuilder* builder) const;
};

class KRFile;

/// MIME headers, owned.
class KROFX_API KRDynamicArrayMIMEHeader : public krofx::internal::ElementArray<KRMIMEHeader> {
 public:
  using ElementArray::ElementArray;

 protected:
  KRMIMEHeader* NewElement() const override;
};

/// Files, owned.
class KROFX_API KRDynamicArrayFile : public krofx::internal::ElementArray<KRFile> {
 public:
  using ElementArray::ElementArray;

 protected:
  KRFile* NewElement() const override;
};

/// A MIME entity. Its type is MIME.
class KROFX_API KRFile : public KRDataObj {
 public:
  /// An empty file of version 0.
  KRFile();
  /// Shallow: the copy shares headers and subfiles.
  KRFile(const KRFile& other);
  /// As the copy constructor.
  KRFile& operator=(const KRFile& other);
  ~KRFile() override;

  /// @return an OFX header, which the file keeps owning; null when it is absent or `tag` is not one
  ///         of 2 to 10.
  const KRString* GetHeader(KRHeaderTag tag) const;
  /// Stores an OFX header.
  /// @return 1; 0 for a tag that is not one of 2 to 10, a value of white space, or no memory.
  u16 SetHeader(KRHeaderTag tag, const KRString& value);
  /// @return a MIME header by name, without regard to case; null when there is none.
  const KRMIMEHeader* GetMIMEHeader(KRString* name) const;
  /// @return a MIME header by position; null after the last.
  const KRMIMEHeader* GetMIMEHeader(u16 index) const;
  /// As above for any other integer type, since a plain 0 could also be a null name.
  template <std::integral Integer>
  const KRMIMEHeader* GetMIMEHeader(Integer index) const {
    return std::in_range<u16>(index) ? GetMIMEHeader(static_cast<u16>(index)) : nullptr;
  }
  /// @return the number of MIME headers.
  u16 GetNumberMIMEHeaders() const;
  /// @return the boundary of a multipart file, without its hyphens; empty when it has none.
  const KRString& GetBoundary() { return m_boundary; }
  /// Sets the boundary.
  /// @return 1; 0 when memory is exhausted.
  u16 SetBoundary(KRString boundary);
  /// @return the body of a part that is not OFX.
  const KRString& GetMIMEBody() { return m_body; }
  /// Sets the body.
  /// @return 1; 0 when memory is exhausted.
  u16 SetMIMEBody(KRString body);

  /// @return a subfile, which this file keeps owning; null after the last.
  KRFile* GetSubfile(u16 index);
  /// Takes ownership of `subfile` and deletes the one at `index`. The parent of `subfile` stays as
  /// it is.
  /// @return 1; 0 for null or no memory, and then the caller keeps it.
  u16 SetSubfile(u16 index, KRFile* subfile);
  /// As SetSubfile, for a new entry at the end: 1, and this file owns it; 0, the caller does.
  u16 AppendSubfile(KRFile* subfile);
  /// @return the number of subfiles.
  u16 GetNumberOfSubfiles() const;
  /// @return the file that this one is a subfile of, which is not owned; null at the top.
  KRFile* GetParent() const { return m_parent; }
  /// Sets the parent. A file with a parent writes no headers of its own.
  void SetParent(KRFile* parent) { m_parent = parent; }

  /// Does nothing.
  /// @return 0.
  KRParseStatus HandleBoundary() { return KRParseStatus_Accepted; }

  /// Copies everything from `source`, subfiles included, which come from the factory.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRFile* source);

  /// Refuses the tag: a plain file has none.
  /// @return 1.
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  using KRDataObj::HandleTagElement;
  /// Refuses the tag: a plain file has none.
  /// @return 1.
  KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                 const KRString& value) override;
  /// Stores a header line: an OFX header by its tag, any other as a MIME header by its name. A
  /// second header of the same name replaces the first.
  /// @return 0; 3 for a MIME header without a name, or no memory.
  KRParseStatus HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name) override;
  /// Writes headers (at the top only), subfiles, body and closing boundary. Stores the length and
  /// the type of each subfile in its headers.
  /// @return 0, or the first status that is not.
  KRBuildStatus Build(KRBuilder* builder) const override;
  KRDataObj* GetChild(u16 index) const override;
  u16 GetNumberOfChildren() const override;

  /// Writes the MIME headers.
  /// @return 0; 3 for an empty slot; or the first status of the builder that is not 0.
  virtual KRBuildStatus BuildHeaders(KRBuilder* builder) const;
  /// Says whether the OFX header is present.
  /// @return 1 when it is; 0 when it is not.
  virtual u16 ValidateHeader(KRHeaderTag tag) const;
  /// Says whether the headers allow the body to be read.
  /// @return 1 when they do, and for a file without OFX headers; 0 when they do not.
  virtual u16 ValidateHeaders() const;
  /// Calls KRDataObj::SetFactory with `factory`, which the caller keeps, unless it is null.
  /// @return 0.
  virtual u16 SetFactory(KRDataObjFactory* factory);

 protected:
  const krofx::internal::AggregateTable* GetTable() const override;

 private:
  // Parts of Build.
  KRBuildStatus BuildSubfile(KRBuilder* builder, KRFile& subfile) const;
  // The header of this name among those before the first empty slot; null when there is none.
  KRMIMEHeader* FindMIMEHeader(const KRString& name) const;
  u16 CopySubfilesFrom(KRFile& source);

  KRFile* m_parent = nullptr;
  KRDynamicArrayMIMEHeader m_mimeHeaders{1, 4};
  mutable krofx::internal::HeaderIndex m_headerIndex;
  KRString m_boundary;
  KRString m_body;
  KRDynamicArrayFile m_subfiles{1, 1};
  KRDynamicArrayString m_headers{1, 8};
};

/// A file with the OFX header block: OFXHEADER, DATA, VERSION, SECURITY, ENCODING, CHARSET,
/// COMPRESSION, OLDFILEUID, NEWFILEUID, in this order. One that is made directly takes tags of all
/// versions; one that a factory makes has the factory's version.
class KROFX_API KRFileOFX : public KRFile {
 public:
  /// A file without headers, of all versions.
  KRFileOFX();

  /// Stores the default of each absent header; VERSION is 151 for version 2 and 102 otherwise.
  /// @param version the message-set version; 0 means the file's, or 1 when that is 0 too.
  /// @return 1.
  virtual u16 AddDefaultOFXHeaders(u16 version);

  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  u16 GetArrayOfRequiredTags(KRArrayOfTags& tags) const override;
  /// As KRDataObj::AllRequiredPresent; 0 also without an OFXHEADER.
  u16 AllRequiredPresent() override;
  /// Writes the OFX headers with their defaults and a blank line. MIME headers are not written, but
  /// if there are any, a blank line is written first.
  KRBuildStatus BuildHeaders(KRBuilder* builder) const override;
  /// Tests each header in order and warns about what is wrong, up to the first absent one.
  /// @return 1; 0 when a header is absent, or DATA, ENCODING or COMPRESSION is not known.
  u16 ValidateHeaders() const override;
};

#endif  // KROFX_ENVELOPE_FILE_H_
