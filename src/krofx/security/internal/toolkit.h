// Everything that this layer uses from a cryptographic library. Only the sources of this file know
// which library it is, so it can be replaced by changing them alone.
//
// The operations return 0 for success; any other value is a failure, which the caller turns into a
// status of its own. A null handle is a failure too, so that an object whose set-up failed fails at
// its first use. Only one thread at a time uses a handle, except that a certificate object, which
// copies of a KRCert share, may be shared and destroyed on any thread.

#ifndef KROFX_SECURITY_INTERNAL_TOOLKIT_H_
#define KROFX_SECURITY_INTERNAL_TOOLKIT_H_

#include "krofx/core/types.h"
#include "krofx/security/algorithm.h"
#include "krofx/security/certificate.h"

namespace krofx::internal {

// Algorithm objects: a digest, an encoder or a decoder, bound to an algorithm once.

/// Makes a handle without an algorithm.
/// @return the handle; null when memory is exhausted.
AlgorithmObject* CreateAlgorithmObject();
/// Releases a handle; null is allowed.
void DestroyAlgorithmObject(AlgorithmObject* algorithm);
/// Sets the algorithm that the chooser names. Fails for an unknown algorithm.
int BindAlgorithm(AlgorithmObject* algorithm, KRAlgorithmChooser chooser);

/// Makes the object ready for the data of a new digest.
int DigestInit(AlgorithmObject* algorithm);
/// Adds data to the digest.
int DigestUpdate(AlgorithmObject* algorithm, const char* data, u32 length);
/// Writes the digest and stores its length in `written`. Fails when `room` is too small.
int DigestFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written);

/// A call of a base64 coder that takes data: writes the output of all complete groups and stores
/// the number of bytes in `written`. Fails on bad input and when `room` is too small.
using CodeUpdate = int (*)(AlgorithmObject* algorithm, char* out, u32 room, u32* written,
                           const char* data, u32 length);
/// The last call: writes what is left. Fails when a group is incomplete or `room` is too small.
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

/// Makes a handle without a certificate.
/// @return the handle; null when memory is exhausted.
CertificateObject* CreateCertificateObject();
/// Adds a holder to the handle; null is allowed.
/// @return the handle.
CertificateObject* ShareCertificateObject(CertificateObject* certificate);
/// Removes a holder from the handle and releases it with the last one; null is allowed.
void DestroyCertificateObject(CertificateObject* certificate);
/// Reads a certificate and keeps a copy of its bytes. Fails for anything that is not exactly one
/// X.509 certificate, and for a handle that already has one.
int SetCertificateBER(CertificateObject* certificate, const char* data, u32 length);
/// Gets the bytes, which are valid as long as the handle.
int GetCertificateBER(const CertificateObject* certificate, const char** data, u32* length);
/// Gets the fields. Fails when a date of validity is not a date.
int GetCertificateFields(const CertificateObject* certificate, CertificateFields* fields);

// Names: the attributes of the subject, in order.

/// One attribute of a name. The pointers are valid as long as the name.
struct NameAttribute {
  /// The type of the value, for IsOrganizationName.
  const void* type;
  /// The value's bytes, without a terminator.
  const char* value;
  u32 length;
};

/// @return number of attributes; 0 for null.
u32 CountNameAttributes(const NameObject* name);
/// Gets an attribute, counted from 0. Fails past the end.
int GetNameAttribute(const NameObject* name, u32 index, NameAttribute* attribute);
/// @return whether the type of an attribute is organizationName, 2.5.4.10.
bool IsOrganizationName(const void* type);

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_TOOLKIT_H_
