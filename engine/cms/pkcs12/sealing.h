#ifndef ZEL_CMS_PKCS12_SEALING_H_
#define ZEL_CMS_PKCS12_SEALING_H_

#include <optional>

#include "engine/cms/epki.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pkcs12/attributes.h"
#include "engine/cms/pkcs12/pkcs12.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * A PKCS #12 file in the making. Certificates are encrypted together, each key by itself.
 *
 *     Result<Pkcs12Draft> draft = Pkcs12Draft::begin(password, Pkcs12Encryption::strong);
 *     Status added = draft.value().addCertificate(der, {.friendlyName = "server"});
 *     Result<Bytes> file = draft.value().seal();
 */

namespace zel::cms {

class Pkcs12Draft {
 public:
  /** The password is real UTF-8 and is borrowed. ZELKM_ERR_MEMORY_ALLOCATE. */
  static sys::Result<Pkcs12Draft> begin(sys::ByteView password, Pkcs12Encryption encryption);

  /** ZELKM_ERR_ASN when the certificate is none, ZELKM_ERR_CRYPTO when the encryption fails. */
  sys::Status addCertificate(const sys::Bytes& der, const Pkcs12Attributes& attributes);
  sys::Status addKey(sys::ByteView privateKeyInfo, const Pkcs12Attributes& attributes);
  /**
   * Adds a key that has no certificate yet. It is a secret in the form of the JDK's secret keys: as
   * a key bag it would keep NSS and keytool from importing any of the others.
   */
  sys::Status addRequestKey(sys::ByteView privateKeyInfo, const Pkcs12Attributes& attributes);

  /** The file. */
  sys::Result<sys::Bytes> seal();

 private:
  Pkcs12Draft(sys::ByteView password, Pkcs12Encryption encryption)
      : password_(password), encryption_(encryption) {}

  sys::Result<X509SigPtr> shroud(sys::ByteView privateKeyInfo);
  sys::Result<X509SigPtr> shroudStrongly(sys::ByteView privateKeyInfo);

  sys::ByteView password_;
  Pkcs12Encryption encryption_;
  std::optional<PbeKey>
      strongKey_; /**< once there is something to encrypt: one derivation for all */
  Pkcs12BagsPtr certificates_;
  Pkcs12BagsPtr keys_;
};

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_SEALING_H_
