// The root of every tree: the text around an OFX body.
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
  KRString name;   ///< As it was written; compared without regard to case.
  KRString value;  ///< Without the white space around it.

  /// Writes the header as one line: name, colon, blank, value, carriage return, line feed.
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

  /// An OFX header, still the file's; null when it is absent or `tag` is none of 2 to 10.
  const KRString* GetHeader(KRHeaderTag tag) const;
  /// Stores an OFX header.
  /// @return 1; 0 for a tag that is none of 2 to 10, a value of white space, or no memory.
  u16 SetHeader(KRHeaderTag tag, const KRString& value);
  /// A MIME header by name, without regard to case; null when there is none.
  const KRMIMEHeader* GetMIMEHeader(KRString* name) const;
  /// A MIME header by position; null after the last.
  const KRMIMEHeader* GetMIMEHeader(u16 index) const;
  /// The same for any other integer: a plain 0 would also be a null name.
  template <std::integral Integer>
  const KRMIMEHeader* GetMIMEHeader(Integer index) const {
    return std::in_range<u16>(index) ? GetMIMEHeader(static_cast<u16>(index)) : nullptr;
  }
  /// Number of MIME headers.
  u16 GetNumberMIMEHeaders() const;
  /// The boundary of a multipart file, without its hyphens; empty when it has none.
  const KRString& GetBoundary() { return m_boundary; }
  /// Sets the boundary.
  /// @return 1; 0 when memory is exhausted.
  u16 SetBoundary(KRString boundary);
  /// The body of a part that is not OFX.
  const KRString& GetMIMEBody() { return m_body; }
  /// Sets the body.
  /// @return 1; 0 when memory is exhausted.
  u16 SetMIMEBody(KRString body);

  /// A subfile, still this file's; null after the last.
  KRFile* GetSubfile(u16 index);
  /// Takes ownership of `subfile` in place of the one there. Its parent stays as it is.
  /// @return 1; 0 for null or no memory, and then it is still the caller's.
  u16 SetSubfile(u16 index, KRFile* subfile);
  /// As SetSubfile, after the last.
  u16 AppendSubfile(KRFile* subfile);
  /// Number of subfiles.
  u16 GetNumberOfSubfiles() const;
  /// The file that this one is a subfile of, null at the top. Not owned.
  KRFile* GetParent() const { return m_parent; }
  /// Sets the parent. A file with a parent writes no headers of its own.
  void SetParent(KRFile* parent) { m_parent = parent; }

  /// Does nothing.
  /// @return 0.
  KRParseStatus HandleBoundary() { return KRParseStatus_Accepted; }

  /// Copies everything from `source`, subfiles included, which come from the factory.
  /// @return 1; 0 for null, no factory or no memory.
  u16 DeepCopyFrom(KRFile* source);

  /// A plain file has no tags.
  /// @return 1.
  KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;
  using KRDataObj::HandleTagElement;
  /// A plain file has no tags.
  /// @return 1.
  KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,
                                 const KRString& value) override;
  /// Stores a header line: an OFX header by its tag, any other as a MIME header by its name, whose
  /// last value wins.
  /// @return 0; 3 for a MIME header without a name, or no memory.
  KRParseStatus HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name) override;
  /// Writes headers (at the top only), subfiles, body and closing boundary. Stores the length and
  /// the type of each subfile in its headers.
  KRBuildStatus Build(KRBuilder* builder) const override;
  KRDataObj* GetChild(u16 index) const override;
  u16 GetNumberOfChildren() const override;

  /// Writes the MIME headers.
  /// @return 3 for an empty slot, otherwise as the builder.
  virtual KRBuildStatus BuildHeaders(KRBuilder* builder) const;
  /// 1 when the OFX header is present.
  virtual u16 ValidateHeader(KRHeaderTag tag) const;
  /// Whether the body may be read. 1 for a file without OFX headers.
  virtual u16 ValidateHeaders() const;
  /// Makes `factory`, unless it is null, the one of the process.
  /// @return 0.
  virtual u16 SetFactory(KRDataObjFactory* factory);

 protected:
  const krofx::internal::AggregateTable* GetTable() const override;

 private:
  // Parts of Build.
  KRBuildStatus BuildSubfile(KRBuilder* builder, KRFile& subfile) const;
  // The header of this name in the list before an empty slot; null when there is none.
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
/// COMPRESSION, OLDFILEUID, NEWFILEUID, in this order. Made directly it takes tags of all versions;
/// made by a factory it has the factory's version.
class KROFX_API KRFileOFX : public KRFile {
 public:
  /// A file without headers, of all versions.
  KRFileOFX();

  /// Stores the default of each header that is absent; VERSION is 151 for version 2 and 102
  /// otherwise.
  /// @param version the message-set version; 0 takes the file's, or 1 when that is 0 too.
  /// @return 1.
  virtual u16 AddDefaultOFXHeaders(u16 version);

  u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;
  u16 GetArrayOfRequiredTags(KRArrayOfTags& tags) const override;
  /// 0 without an OFXHEADER, else the rule of all objects.
  u16 AllRequiredPresent() override;
  /// Writes the OFX headers with their defaults and a blank line. MIME headers are not written, but
  /// bring a blank line in front.
  KRBuildStatus BuildHeaders(KRBuilder* builder) const override;
  /// Tests each header in order and warns about what is wrong. An absent one ends the walk.
  /// @return 0 when a header is absent, or DATA, ENCODING or COMPRESSION is not known.
  u16 ValidateHeaders() const override;
};

#endif  // KROFX_ENVELOPE_FILE_H_
