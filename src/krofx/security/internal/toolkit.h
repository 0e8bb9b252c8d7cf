// The whole of what this layer asks of a cryptographic library, so that another library could take
// its place behind this one file. Nothing else in the layer knows which it is.
//
// The operations answer 0 for success; any other value is plain failure, and the caller turns it
// into a status of its own. A null handle is a failure too, so that an object whose set-up failed
// fails in its first use. Handles belong to one thread at a time, but the certificate object, which
// copies of a KRCert share, may be shared and destroyed from any.

#ifndef KROFX_SECURITY_INTERNAL_TOOLKIT_H_
#define KROFX_SECURITY_INTERNAL_TOOLKIT_H_

#include "krofx/core/types.h"
#include "krofx/security/algorithm.h"
#include "krofx/security/certificate.h"

namespace krofx::internal {

// Algorithm objects: a digest, an encoder or a decoder, bound to an algorithm once.

/// Gives a new handle, bound to nothing; null when memory is exhausted.
AlgorithmObject* CreateAlgorithmObject();
/// Releases a handle; null is harmless.
void DestroyAlgorithmObject(AlgorithmObject* algorithm);
/// Sets the algorithm that the chooser names. Fails for an algorithm that is not known here.
int BindAlgorithm(AlgorithmObject* algorithm, KRAlgorithmChooser chooser);

/// Makes the object ready for the data of a new digest.
int DigestInit(AlgorithmObject* algorithm);
/// Takes data into the digest.
int DigestUpdate(AlgorithmObject* algorithm, const char* data, u32 length);
/// Writes the digest and says its length. Fails when `room` is too small.
int DigestFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written);

/// One call of a base64 coder that takes data: writes as much as whole groups give and says how
/// many bytes. Fails on bad input and when `room` is too small.
using CodeUpdate = int (*)(AlgorithmObject* algorithm, char* out, u32 room, u32* written,
                           const char* data, u32 length);
/// The last call: writes what is left. Fails when a group is not whole or `room` is too small.
using CodeFinal = int (*)(AlgorithmObject* algorithm, char* out, u32 room, u32* written);

/// Makes the object ready to encode.
int EncodeInit(AlgorithmObject* algorithm);
/// See CodeUpdate.
int EncodeUpdate(AlgorithmObject* algorithm, char* out, u32 room, u32* written, const char* data,
                 u32 length);
/// See CodeFinal.
int EncodeFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written);

/// Makes the object ready to decode.
int DecodeInit(AlgorithmObject* algorithm);
/// See CodeUpdate.
int DecodeUpdate(AlgorithmObject* algorithm, char* out, u32 room, u32* written, const char* data,
                 u32 length);
/// See CodeFinal.
int DecodeFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written);

// Certificate objects.

/// Gives a new handle without a certificate; null when memory is exhausted.
CertificateObject* CreateCertificateObject();
/// Counts one more holder of the handle, and gives it back; null is harmless.
CertificateObject* ShareCertificateObject(CertificateObject* certificate);
/// Counts one holder less, and releases the handle with the last; null is harmless.
void DestroyCertificateObject(CertificateObject* certificate);
/// Reads a certificate and keeps a copy of its bytes. Fails on anything that is not exactly one
/// X.509 certificate, and on a handle that has one.
int SetCertificateBER(CertificateObject* certificate, const char* data, u32 length);
/// Gives the bytes, which live as long as the handle.
int GetCertificateBER(const CertificateObject* certificate, const char** data, u32* length);
/// Gives the fields. Fails when a date of validity is none.
int GetCertificateFields(const CertificateObject* certificate, CertificateFields* fields);

// Names: the attributes of the subject, in order.

/// One attribute of a name. The pointers live as long as the name.
struct NameAttribute {
  /// What the value is, for IsOrganizationName.
  const void* type;
  /// The value's bytes, without a terminator.
  const char* value;
  u32 length;
};

/// Number of attributes; 0 for null.
u32 CountNameAttributes(const NameObject* name);
/// Gives an attribute, counted from 0. Fails past the end.
int GetNameAttribute(const NameObject* name, u32 index, NameAttribute* attribute);
/// Whether the type of an attribute is organizationName, 2.5.4.10.
bool IsOrganizationName(const void* type);

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_TOOLKIT_H_
