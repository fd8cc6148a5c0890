#ifndef ZEL_KM_TOKEN_TOKEN_OBJECTS_H_
#define ZEL_KM_TOKEN_TOKEN_OBJECTS_H_

#include <set>
#include <string>
#include <vector>

#include "engine/km/token/session.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * The objects on a token that matter here, class by class, as they were read. What belongs together
 * is found in inventory.h.
 */

namespace zel::km::token {

struct CertificateObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  std::string label; /**< as the token has it, real UTF-8 hopefully */
  sys::Bytes id;
  sys::Bytes der;
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo; empty when the certificate cannot be read */
  sys::Bytes subject;   /**< as cms::canonicalName has it */
  bool trusted = false;
};

struct PrivateKeyObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  CK_ULONG type = 0;
  std::string label;
  sys::Bytes id;
  sys::Bytes subject;   /**< a Name, DER; often empty */
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo; empty when the token does not tell it */
};

struct PublicKeyObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  CK_ULONG type = 0;
  std::string label;
  sys::Bytes id;
  sys::Bytes publicKey;
};

/** A certification request (PKCS #10) in a data object, whoever put it there. */
struct RequestObject {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  std::string label;
  sys::Bytes der;
  sys::Bytes publicKey;
};

struct TokenObjects {
  std::vector<CertificateObject> certificates;
  std::vector<PrivateKeyObject> privateKeys;
  std::vector<PublicKeyObject> publicKeys;
  std::vector<RequestObject> requests;
};

using Handles = std::set<CK_OBJECT_HANDLE>;

/** Reads all but the doomed objects, which are to be taken for gone. */
sys::Result<TokenObjects> readTokenObjects(const Session& session, const Handles& doomed);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_TOKEN_OBJECTS_H_
