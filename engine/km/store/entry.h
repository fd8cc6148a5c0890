#ifndef ZEL_KM_STORE_ENTRY_H_
#define ZEL_KM_STORE_ENTRY_H_

#include "engine/km/store/label.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * What lies in a store. Certificates, requests and public keys are DER.
 */

namespace zel::km {

/** A PrivateKey is its PKCS #8 bytes, or the name under which a store keeps it to itself. */
struct PrivateKey {
  sys::SecretBytes pkcs8; /**< PrivateKeyInfo, empty when the key does not leave its store */
  sys::Bytes reference;   /**< the store's own name of a key that does not leave it */

  bool present() const { return !pkcs8.empty() || !reference.empty(); }
};

/** A KeyEntry is a certificate, with its private key when the store has it. */
struct KeyEntry {
  Label label;
  sys::Bytes certificate;
  PrivateKey privateKey;
  bool trusted = false;
  bool isDefault = false;
};

/** A RequestEntry is a key pair that waits for its certificate. */
struct RequestEntry {
  Label label;
  sys::Bytes request; /**< CertificationRequest (PKCS #10) */
  PrivateKey privateKey;
};

/** A GeneratedKey is a new key pair, in no entry yet. */
struct GeneratedKey {
  sys::Bytes publicKey; /**< SubjectPublicKeyInfo */
  PrivateKey privateKey;
};

/** A certificate with the label under which it is known. */
struct LabelledCertificate {
  Label label;
  sys::Bytes certificate;
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_ENTRY_H_
