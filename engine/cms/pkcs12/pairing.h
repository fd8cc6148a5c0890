#ifndef ZEL_CMS_PKCS12_PAIRING_H_
#define ZEL_CMS_PKCS12_PAIRING_H_

#include <cstddef>
#include <map>
#include <vector>

#include "engine/cms/pkcs12/bags.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Which certificate a key of a PKCS #12 file belongs to:
 *
 *     const Pkcs12Pairing pairing(contents.certificates);
 *     Result<std::size_t> certificate = pairing.certificateOf(contents.keys.front());
 */

namespace zel::cms {

class Pkcs12Pairing {
 public:
  /** The certificates are borrowed. */
  explicit Pkcs12Pairing(const std::vector<Pkcs12Certificate>& certificates);

  /**
   * The place of a key's certificate: the one that it is joined with by its identifier, else any
   * with its public key.
   *
   *  - ZELKM_ERR_KEYREC_CERTIFICATE_NULL: there is none.
   *  - ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM: a key that is not RSA, EC or Ed25519.
   */
  sys::Result<std::size_t> certificateOf(const Pkcs12Key& key) const;

 private:
  const std::vector<Pkcs12Certificate>& certificates_;
  std::multimap<sys::Bytes, std::size_t> byLocalKeyId_;
};

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_PAIRING_H_
