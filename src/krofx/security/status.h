// The results of certificates, digests and base64. Hosts compare the numbers, so they never change;
// unused numbers are reserved.

#ifndef KROFX_SECURITY_STATUS_H_
#define KROFX_SECURITY_STATUS_H_

#include "krofx/core/types.h"

/// How an operation of KRCert, KRCertID, KRDigest, KREncode or KRDecode ended.
enum KRSecStatus : u32 {
  /// Done.
  KRSecStatus_Success = 0,
  /// KRCertID was given no certificate.
  KRSecStatus_MissingInput = 1,
  /// KRDigest could not be set up. Used only inside it: callers get 3 from the first use.
  KRSecStatus_DigestSetupFailed = 2,
  /// KRDigest failed, or it has no input.
  KRSecStatus_DigestFailed = 3,
  /// KREncode could not be set up. Used only inside it: callers get 5 from the first use.
  KRSecStatus_EncoderSetupFailed = 4,
  /// KREncode failed, or it has no input.
  KRSecStatus_EncodingFailed = 5,
  /// KRDecode could not be set up. Used only inside it: callers get 7 from the first use.
  KRSecStatus_DecoderSetupFailed = 6,
  /// KRDecode failed, its text is not base64, or it has no input.
  KRSecStatus_DecodingFailed = 7,
  /// The certificate ID could not be stored.
  KRSecStatus_IDNotStored = 8,
  /// KRCert was given no base64 text, or the text holds no certificate.
  KRSecStatus_EncodedCertRejected = 9,
  /// KRCert was given no bytes, or they are not a certificate.
  KRSecStatus_BERCertRejected = 10,
  /// A root ID must not be 0.
  KRSecStatus_NoRootID = 11,
  /// The public key could not be given.
  KRSecStatus_NoPublicKey = 12,
  /// Writing failed.
  KRSecStatus_NotWritten = 15,
};

#endif  // KROFX_SECURITY_STATUS_H_
