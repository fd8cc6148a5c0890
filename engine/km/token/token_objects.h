#ifndef ZEL_KM_TOKEN_TOKEN_OBJECTS_H_
#define ZEL_KM_TOKEN_TOKEN_OBJECTS_H_

#include <p11-kit/pkcs11.h>

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "engine/sys/bytes.h"

/**
 * @file
 * The objects on a token that matter here, class by class, as they were read (token_reading.h):
 *
 *     for (const CertificateRef& certificate : objects.certificates) ...
 *
 * An object does not change, so that it can be shared: one that gets another attribute is another
 * one. What belongs together is found in token_view.h.
 */

namespace zel::km::token {

/** CKA_CERTIFICATE_CATEGORY (PKCS #11, 4.6.2). */
enum CertificateCategory : CK_ULONG {
  kUnspecified = 0,
  kTokenUser = 1,
  kAuthority = 2,
  kOtherEntity = 3
};

struct CertificateObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  std::string label; /**< as the token has it, real UTF-8 hopefully */
  sys::Bytes id;
  sys::Bytes der;
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo; empty when the certificate cannot be read */
  sys::Bytes subject;   /**< as cms::canonicalName has it */
  CK_ULONG category = kUnspecified;
  bool vouchedFor = false; /**< CKA_TRUSTED, which only the token's security officer sets */

  bool isTrusted() const { return vouchedFor || category == kAuthority; }
};

struct PrivateKeyObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  CK_ULONG type = CK_UNAVAILABLE_INFORMATION;
  std::string label;
  sys::Bytes id;
  sys::Bytes subject;   /**< a Name, DER; often empty */
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo; empty when the token does not tell it */
};

struct PublicKeyObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  CK_ULONG type = CK_UNAVAILABLE_INFORMATION;
  std::string label;
  sys::Bytes id;
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo; empty for a key that is not handled here */
};

/** A certification request (PKCS #10) in a data object, whoever put it there. */
struct RequestObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  std::string label;
  sys::Bytes der;
  sys::Bytes publicKey;
};

using TokenObject =
    std::variant<CertificateObject, PrivateKeyObject, PublicKeyObject, RequestObject>;

using CertificateRef = std::shared_ptr<const CertificateObject>;
using PrivateKeyRef = std::shared_ptr<const PrivateKeyObject>;
using PublicKeyRef = std::shared_ptr<const PublicKeyObject>;
using RequestRef = std::shared_ptr<const RequestObject>;

/** TokenObjects are a token's objects, or some of them; to copy them costs little. */
struct TokenObjects {
  std::vector<CertificateRef> certificates;
  std::vector<PrivateKeyRef> privateKeys;
  std::vector<PublicKeyRef> publicKeys;
  std::vector<RequestRef> requests;

  /** Adds an object, in the place of the one with its handle if there is one. */
  void put(TokenObject object);
  /** Moves an object to others, if it is here. */
  void moveTo(TokenObjects& others, CK_OBJECT_HANDLE object);

  // CKA_LABEL, CKA_ID, a private key's CKA_SUBJECT and CKA_CERTIFICATE_CATEGORY, as a token has
  // them; an object that is not here has none.
  sys::Bytes attribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const;
  void setAttribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type, sys::ByteView value);
};

/** KeyPairObjects are a key pair whose private key, too, tells the public key. */
struct KeyPairObjects {
  PublicKeyObject publicKey;
  PrivateKeyObject privateKey;
};

/** An object with what the certificate itself says; a broken one says nothing. */
CertificateObject certificateObject(sys::ByteView der);

/** A number as attributes have it. */
sys::Bytes numberValue(CK_ULONG number);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_OBJECTS_H_
