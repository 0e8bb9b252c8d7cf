// The OFX header block: its defaults, its tests and its text.

#include "krofx/build/builder.h"
#include "krofx/core/parse_logger.h"
#include "krofx/envelope/file.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/values/data_conversion.h"

using krofx::internal::LogWarning;
using krofx::internal::TypeOf;

namespace {

constexpr KRTagTableEntry kBody[] = {{KRTag_OFX, 0xffff}};

// The first VERSION of the header block, and the one of the second message-set version.
constexpr const char* kVersion1 = "102";
constexpr const char* kVersion2 = "151";

struct HeaderDefault {
  KRHeaderTag tag;
  const char* value;
};

// In the order of writing.
constexpr HeaderDefault kDefaults[] = {
    {KRHeaderTag_OFXHEADER, "100"},    {KRHeaderTag_DATA, "OFXSGML"},
    {KRHeaderTag_VERSION, kVersion1},  {KRHeaderTag_SECURITY, "NONE"},
    {KRHeaderTag_ENCODING, "USASCII"}, {KRHeaderTag_CHARSET, "1252"},
    {KRHeaderTag_COMPRESSION, "NONE"}, {KRHeaderTag_OLDFILEUID, "NONE"},
    {KRHeaderTag_NEWFILEUID, "NONE"},
};

enum class Verdict { kFine, kDoubtful, kUnreadable };

// Fine when `read` takes the text for a value.
template <class Value>
Verdict JudgeBy(u16 (*read)(const KRString&, Value&), const KRString& text, Verdict otherwise) {
  Value value;
  return read(text, value) != 0 ? Verdict::kFine : otherwise;
}

Verdict Judge(KRHeaderTag tag, const KRString& value) {
  switch (tag) {
    case KRHeaderTag_OFXHEADER:
      return value == "100" ? Verdict::kFine : Verdict::kDoubtful;
    case KRHeaderTag_DATA:
      return JudgeBy(&KRDataConversion::StringToOFXData, value, Verdict::kUnreadable);
    case KRHeaderTag_VERSION:
      return value == kVersion1 || value == kVersion2 ? Verdict::kFine : Verdict::kDoubtful;
    case KRHeaderTag_ENCODING:
      return JudgeBy(&KRDataConversion::StringToOFXEncoding, value, Verdict::kUnreadable);
    case KRHeaderTag_CHARSET:
      return JudgeBy(&KRDataConversion::StringToOFXCharSet, value, Verdict::kDoubtful);
    case KRHeaderTag_COMPRESSION:
      return JudgeBy(&KRDataConversion::StringToOFXCompression, value, Verdict::kUnreadable);
    default:
      return Verdict::kFine;
  }
}

KRString NameOf(KRHeaderTag tag) {
  KRString name;
  KRDataConversion::HeaderTagToString(tag, name);
  return name;
}

}  // namespace

KRFileOFX::KRFileOFX() { SetMsgSetVersion(0xffff); }

u16 KRFileOFX::GetArrayOfValidTags(KRArrayOfTags& tags) const {
  tags = {kBody, 1};
  return 1;
}

u16 KRFileOFX::GetArrayOfRequiredTags(KRArrayOfTags& tags) const {
  return GetArrayOfValidTags(tags);
}

u16 KRFileOFX::AllRequiredPresent() {
  return ValidateHeader(KRHeaderTag_OFXHEADER) == 0 ? u16{0} : KRDataObj::AllRequiredPresent();
}

u16 KRFileOFX::AddDefaultOFXHeaders(u16 version) {
  if (version == 0) version = GetMsgSetVersion();
  if (version == 0) version = 1;
  for (const HeaderDefault& header : kDefaults) {
    if (ValidateHeader(header.tag) != 0) continue;
    const bool second = header.tag == KRHeaderTag_VERSION && version == 2;
    if (SetHeader(header.tag, KRString(second ? kVersion2 : header.value)) == 0) break;
  }
  return 1;
}

KRBuildStatus KRFileOFX::BuildHeaders(KRBuilder* builder) const {
  if (GetNumberMIMEHeaders() != 0) {
    const KRBuildStatus status = builder->AddBlankLine();
    if (status != KRBuildStatus_Done) return status;
  }
  for (const HeaderDefault& header : kDefaults) {
    const KRString* value = GetHeader(header.tag);
    const KRBuildStatus status =
        builder->AddHeader(header.tag, value != nullptr ? *value : KRString(header.value));
    if (status != KRBuildStatus_Done) return status;
  }
  return builder->AddBlankLine();
}

u16 KRFileOFX::ValidateHeaders() const {
  auto* self = const_cast<KRFileOFX*>(this);
  u16 result = 1;
  for (const HeaderDefault& header : kDefaults) {
    const KRString* stored = GetHeader(header.tag);
    if (stored == nullptr) {
      LogWarning(KRPW_MISSINGTAG, KRString(), NameOf(header.tag), TypeOf(*this), self);
      return 0;
    }
    KRString value(*stored);
    value.MakeUpper();
    const Verdict verdict = Judge(header.tag, value);
    if (verdict == Verdict::kFine) continue;
    LogWarning(KRPW_BADFORMAT, value, NameOf(header.tag), TypeOf(*this), self);
    if (verdict == Verdict::kUnreadable) result = 0;
  }
  return result;
}
