// MIME entities: headers, body and subfiles.

#include "krofx/envelope/file.h"

#include <cstdio>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/core/internal/alarm_scope.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::AggregateTable;
using krofx::internal::AlarmScope;

namespace {

bool IsOFXHeader(KRHeaderTag tag) {
  return tag >= KRHeaderTag_OFXHEADER && tag <= KRHeaderTag_NEWFILEUID;
}

// The table of every file: the parser, for which a file is a data object, asks it for the headers.
constexpr AggregateTable kTable = {
    .className = "KRFile",
    .validateHeaders = [](KRDataObj& object) -> u16 {
      return static_cast<KRFile&>(object).ValidateHeaders();
    },
};

// Assigns. 1 when the text was stored; 0 when memory is exhausted.
u16 Assign(KRString& target, const KRString& text) {
  target = text;
  return target.GetStrLength() == text.GetStrLength() ? 1 : 0;
}

}  // namespace

KRMIMEHeader* KRDataObjFactory::NewMIMEHeader() {
  auto* header = new KRMIMEHeader;
  if (header == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return header;
}

KRMIMEHeader* KRDynamicArrayMIMEHeader::NewElement() const {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : factory->NewMIMEHeader();
}

KRFile* KRDynamicArrayFile::NewElement() const {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  return factory == nullptr ? nullptr : factory->NewFile(0);
}

KRBuildStatus KRMIMEHeader::Build(KRBuilder* builder) const {
  const KRString line = name + KRString(": ") + value + KRString("\r");
  return builder->AddString(&line, KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
}

KRFile::KRFile() { SetType(KRTag_MIME); }

const AggregateTable* KRFile::GetTable() const { return &kTable; }
KRFile::KRFile(const KRFile& other) = default;
KRFile& KRFile::operator=(const KRFile& other) = default;
KRFile::~KRFile() = default;

const KRString* KRFile::GetHeader(KRHeaderTag tag) const {
  return IsOFXHeader(tag) ? m_headers.Get(static_cast<u16>(tag)) : nullptr;
}

u16 KRFile::SetHeader(KRHeaderTag tag, const KRString& value) {
  if (!IsOFXHeader(tag) || value.IsWhiteSpace() != 0) return 0;
  return m_headers.SetVal(static_cast<u16>(tag), value);
}

KRMIMEHeader* KRFile::FindMIMEHeader(const KRString& name) const {
  return m_headerIndex.Find(m_mimeHeaders, name);
}

const KRMIMEHeader* KRFile::GetMIMEHeader(KRString* name) const {
  return name == nullptr ? nullptr : FindMIMEHeader(*name);
}

const KRMIMEHeader* KRFile::GetMIMEHeader(u16 index) const { return m_mimeHeaders.Get(index); }

u16 KRFile::GetNumberMIMEHeaders() const { return m_mimeHeaders.Entries(); }

u16 KRFile::SetBoundary(KRString boundary) { return Assign(m_boundary, boundary); }

u16 KRFile::SetMIMEBody(KRString body) { return Assign(m_body, body); }

KRFile* KRFile::GetSubfile(u16 index) { return m_subfiles.Get(index); }

u16 KRFile::SetSubfile(u16 index, KRFile* subfile) { return m_subfiles.Set(index, subfile); }

u16 KRFile::AppendSubfile(KRFile* subfile) { return m_subfiles.Append(subfile); }

u16 KRFile::GetNumberOfSubfiles() const { return m_subfiles.Entries(); }

KRDataObj* KRFile::GetChild(u16 index) const { return m_subfiles.Get(index); }

u16 KRFile::GetNumberOfChildren() const { return m_subfiles.Entries(); }

KRParseStatus KRFile::HandleTagStart(const KRTagDictionaryEntry* const /*entry*/) {
  return KRParseStatus_PlainFile;
}

KRParseStatus KRFile::HandleTagElement(const KRTagDictionaryEntry* const /*entry*/,
                                       const KRString& /*value*/) {
  return KRParseStatus_PlainFile;
}

KRParseStatus KRFile::HandleHeader(KRHeaderTag tag, const KRString& value, KRString* name) {
  if (value.IsWhiteSpace() != 0) return KRParseStatus_Accepted;
  if (IsOFXHeader(tag)) {
    if (SetHeader(tag, value) != 0) return KRParseStatus_Accepted;
    // Only memory can be missing. Stored as a MIME header it would look absent.
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return KRParseStatus_Fatal;
  }
  if (name == nullptr || name->IsEmpty() != 0) return KRParseStatus_Fatal;
  KRMIMEHeader* known = FindMIMEHeader(*name);
  KRMIMEHeader* header = known;
  if (header == nullptr) {
    KRDataObjFactory* factory = GetFactory();
    header = factory == nullptr ? nullptr : factory->NewMIMEHeader();
  }
  u16 stored = header == nullptr ? u16{0} : Assign(header->name, *name);
  if (stored != 0) stored = Assign(header->value, value);
  if (stored != 0 && known == nullptr) stored = m_mimeHeaders.Append(header);
  if (stored != 0) return KRParseStatus_Accepted;
  if (known == nullptr) delete header;
  // Readers of parts test the alarm, not this status.
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return KRParseStatus_Fatal;
}

u16 KRFile::ValidateHeader(KRHeaderTag tag) const { return GetHeader(tag) != nullptr ? 1 : 0; }

u16 KRFile::ValidateHeaders() const { return 1; }

u16 KRFile::SetFactory(KRDataObjFactory* factory) {
  if (factory != nullptr) KRDataObj::SetFactory(factory);
  return 0;
}

KRBuildStatus KRFile::BuildHeaders(KRBuilder* builder) const {
  for (u16 index = 0; index < m_mimeHeaders.Entries(); ++index) {
    const KRMIMEHeader* header = m_mimeHeaders.Get(index);
    if (header == nullptr) return KRBuildStatus_NullArgument;
    const KRBuildStatus status = header->Build(builder);
    if (status != KRBuildStatus_Done) return status;
  }
  return KRBuildStatus_Done;
}

KRBuildStatus KRFile::BuildSubfile(KRBuilder* builder, KRFile& subfile) const {
  KRBuffer buffer(0, 0);
  KRBuilder inner;
  // The inner build clears the alarm, which the outer build tests at its end.
  const AlarmScope alarm;
  KRBuildStatus status = inner.Build(&buffer, &subfile, KRBuildStringOpt_Strict, 1);
  if (status != KRBuildStatus_Done) return status;

  char length[12];
  std::snprintf(length, sizeof length, "%ld", static_cast<long>(buffer.GetBufferSize()));
  KRString name("content-length");
  if (subfile.HandleHeader(KRHeaderTag_None, KRString(length), &name) != KRParseStatus_Accepted) {
    return KRBuildStatus_Fatal;
  }
  if (const KRTagID type = subfile.GetType(); type == KRTag_OFXFILERQ || type == KRTag_OFXFILERS) {
    name = KRString("content-type");
    const KRString value("application/x-ofx");
    if (subfile.HandleHeader(KRHeaderTag_None, value, &name) != KRParseStatus_Accepted) {
      return KRBuildStatus_Fatal;
    }
  }
  subfile.BuildHeaders(builder);
  return builder->AddBuffer(&buffer);
}

KRBuildStatus KRFile::Build(KRBuilder* builder) const {
  if (m_parent == nullptr) {
    const KRBuildStatus status = BuildHeaders(builder);
    if (status != KRBuildStatus_Done) return status;
  }
  KRString delimiter;
  if (m_boundary.IsEmpty() == 0) delimiter = KRString("--") + m_boundary;
  for (u16 index = 0; index < m_subfiles.Entries(); ++index) {
    KRFile* subfile = m_subfiles.Get(index);
    if (subfile == nullptr) return KRBuildStatus_NullArgument;
    if (delimiter.IsEmpty() == 0) {
      builder->AddString(&delimiter, KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
    }
    const KRBuildStatus status = BuildSubfile(builder, *subfile);
    if (status != KRBuildStatus_Done) return status;
  }
  if (m_body.IsEmpty() == 0) {
    builder->AddString(&m_body, KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
  }
  if (delimiter.IsEmpty() != 0) return KRBuildStatus_Done;
  // Only the closing delimiter goes through the escaping of macros.
  delimiter += "--";
  return builder->AddString(&delimiter, KRBuildStringMacroOpt_Escape, KRBuildStringCrLfOpt_NewLine);
}

u16 KRFile::CopySubfilesFrom(KRFile& source) {
  KRDataObjFactory* factory = GetFactory();
  if (factory == nullptr) return 0;
  m_subfiles.DeleteAll();
  for (u16 index = 0; index < source.m_subfiles.Entries(); ++index) {
    KRFile* subfile = source.m_subfiles.Get(index);
    if (subfile == nullptr) continue;
    KRFile* copy = nullptr;
    u16 copied = 0;
    switch (subfile->GetType()) {
      case KRTag_OFXFILERS: {
        auto* response = factory->NewFileRs(0);
        copy = response;
        copied =
            response == nullptr ? u16{0} : response->DeepCopyFrom(dynamic_cast<KRFileRs*>(subfile));
        break;
      }
      case KRTag_OFXFILERQ: {
        auto* request = factory->NewFileRq(0);
        copy = request;
        copied =
            request == nullptr ? u16{0} : request->DeepCopyFrom(dynamic_cast<KRFileRq*>(subfile));
        break;
      }
      default:
        copy = factory->NewFile(0);
        copied = copy == nullptr ? u16{0} : copy->DeepCopyFrom(subfile);
    }
    if (copied == 0 || m_subfiles.Set(index, copy) == 0) {
      delete copy;
      return 0;
    }
    copy->SetParent(this);
  }
  return 1;
}

u16 KRFile::DeepCopyFrom(KRFile* source) {
  if (source == nullptr) return 0;
  if (source == this) return 1;
  // A header that could not be copied for lack of memory is reported by the alarm only.
  const AlarmScope alarm;
  if (Assign(m_boundary, source->m_boundary) == 0 || Assign(m_body, source->m_body) == 0) return 0;
  m_mimeHeaders.DeleteAll();
  m_headerIndex.Clear();
  for (u16 index = 0; index < source->m_mimeHeaders.Entries(); ++index) {
    const KRMIMEHeader* header = source->m_mimeHeaders.Get(index);
    if (header != nullptr && m_mimeHeaders.SetVal(index, *header) == 0) return 0;
  }
  m_headers.DeleteAll();
  for (u16 index = 0; index < source->m_headers.Entries(); ++index) {
    const KRString* header = source->m_headers.Get(index);
    if (header != nullptr && m_headers.SetVal(index, *header) == 0) return 0;
  }
  if (CopySubfilesFrom(*source) == 0 || alarm.WasRaised()) return 0;
  return CopyBaseMembersFrom(source);
}
