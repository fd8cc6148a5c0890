#ifndef ZEL_CMS_PKCS12_BAGS_H_
#define ZEL_CMS_PKCS12_BAGS_H_

#include <string>
#include <vector>

#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pbe.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * What the bags of a PKCS #12 file hold (RFC 7292, 4.2), before keys and certificates are joined.
 */

namespace zel::cms {

/** What may be said of any bag. */
struct Pkcs12Attributes {
  std::string friendlyName; /**< real UTF-8; empty when there is none */
  sys::Bytes localKeyId;
  bool trusted = false;
};

struct Pkcs12Key {
  Pkcs12Attributes attributes;
  sys::SecretBytes privateKeyInfo;
};

struct Pkcs12Certificate {
  Pkcs12Attributes attributes;
  sys::Bytes der;
};

/** The keys and certificates of a file, each in the order in which they stand. */
struct Pkcs12Contents {
  std::vector<Pkcs12Key> keys;
  std::vector<Pkcs12Certificate> certificates;
  bool hasDecrypted = false; /**< the password has opened something */
};

/**
 * addBags takes the bags apart, those inside of bags too. Secrets and revocation lists are passed
 * over. The codes of decryptPrivateKey.
 */
sys::Status addBags(const STACK_OF(PKCS12_SAFEBAG) & bags, PbePassword password,
                    Pkcs12Contents& contents);

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_BAGS_H_
