#ifndef ZEL_KM_STORE_PKCS8_STORE_H_
#define ZEL_KM_STORE_PKCS8_STORE_H_

#include "engine/km/store/key_material.h"
#include "engine/km/store/store.h"

namespace zel::km {

/** A Pkcs8Store keeps its private keys as PKCS #8, and OpenSSL works with them. */
class Pkcs8Store : public Store {
 public:
  sys::Result<GeneratedKey> generateKey(int keySize) final {
    return generateKeyPair(keySize, approvedOnly());
  }
  sys::Result<sys::Bytes> sign(const PrivateKey& key, SigningDigest digest,
                               sys::ByteView message) final {
    return signWith(key, digest, message);
  }
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_PKCS8_STORE_H_
