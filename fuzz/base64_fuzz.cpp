// Any bytes as what is encoded and as what is decoded: encoded bytes decode to themselves, and what
// can be decoded at all is the same after it is encoded and decoded again.

#include "krofx/core/buffer.h"
#include "krofx/security/base64.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;

// Encodes and decodes.
void CheckThereAndBack(KRBuffer& bytes) {
  KREncode encode;
  Expect(encode.SetInputData(&bytes) == KRSecStatus_Success, "any bytes are encoded");
  KRDecode decode;
  Expect(decode.SetInputData(encode.GetOutputData()) == KRSecStatus_Success,
         "what is encoded is decoded");
  Expect(decode.GetOutputData()->CompareBuffer(&bytes) == 1, "bytes come back");
}

void Run(Bytes input) {
  KRBuffer bytes(0, 0);
  bytes.WriteLarge(input.data(), static_cast<u32>(input.size()));
  CheckThereAndBack(bytes);
  KRDecode decode;
  if (decode.SetInputData(&bytes) == KRSecStatus_Success)
    CheckThereAndBack(*decode.GetOutputData());
}

const Target kTarget("base64", &Run);

}  // namespace
