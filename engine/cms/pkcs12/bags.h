#ifndef ZEL_CMS_PKCS12_BAGS_H_
#define ZEL_CMS_PKCS12_BAGS_H_

#include <vector>

#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pbe.h"
#include "engine/cms/pkcs12/attributes.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What the bags of a PKCS #12 file hold (RFC 7292, 4.2), before keys and certificates are joined.
 */

namespace zel::cms {

struct Pkcs12Key {
  Pkcs12Attributes attributes;
  sys::SecretBytes privateKeyInfo;
};

struct Pkcs12Certificate {
  Pkcs12Attributes attributes;
  sys::Bytes der;
};

/** The content of a file, each kind in the order in which it stands. */
struct Pkcs12Contents {
  std::vector<Pkcs12Key> keys;
  std::vector<Pkcs12Certificate> certificates;
  std::vector<Pkcs12Key> requestKeys; /**< those that wait for their certificates, in a key ring */
  bool hasDecrypted = false;          /**< the password has opened something */
};

/**
 * addBags takes the bags apart, those inside of bags too. Revocation lists are passed over, and
 * secrets that are no keys of requests. The codes of decryptPrivateKey.
 */
sys::Status addBags(const STACK_OF(PKCS12_SAFEBAG) & bags, PbeDecryption& decryption,
                    Pkcs12Contents& contents);

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_BAGS_H_
