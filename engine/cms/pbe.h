#ifndef ZEL_CMS_PBE_H_
#define ZEL_CMS_PBE_H_

#include <cstdint>
#include <map>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Password based decryption (RFC 8018, and RFC 7292's appendix C), as private keys and PKCS #12
 * files use it.
 */

namespace zel::cms {

/** More iterations than this are not tried: a hostile file would keep the process busy for hours.
 */
inline constexpr std::int64_t kMaxIterations = 10'000'000;

/** The same of scrypt: the most of its N * r * p (RFC 7914), each unit of which takes 128 bytes. */
inline constexpr std::uint64_t kMaxScryptCost = 1U << 22U;

/**
 * A password as the derivations want it: real UTF-8. In PKCS #12 the empty password and none are
 * two, the latter being a null text.
 */
struct PbePassword {
  const char* text;
  int length;
};

/** The bytes as a password; empty bytes are the empty password. */
PbePassword pbePassword(sys::ByteView password);

/**
 * Decrypts under one password. The derivation is the costly step, and what is encrypted with the
 * same one (the keys of a PKCS #12 file often are) costs it once.
 */
class PbeDecryption {
 public:
  /** The password is borrowed. */
  explicit PbeDecryption(PbePassword password) : password_(password) {}

  /**
   * Decrypts and leaves the padding where it is: looking at it tells a wrong password too badly, so
   * the caller looks at the content.
   *
   *  - ZELKM_ERR_PBE_ALG_UNSUPPORT: an encryption that is not known, or that costs too much.
   *  - ZELKM_ERR_DATABASE_KEY_INTEGRITY: the ciphertext is not a number of whole blocks.
   */
  sys::Result<sys::SecretBytes> decrypt(const X509_ALGOR& algorithm, sys::ByteView cipherText);

 private:
  sys::Result<CipherContextPtr> contextFor(const X509_ALGOR& algorithm);

  PbePassword password_;
  std::map<sys::Bytes, CipherContextPtr>
      derived_; /**< with the key set, by derivation and cipher */
};

/** Whether the bytes are the padding of RFC 8018, 6.1.1, or nothing. */
bool isPadding(sys::ByteView rest);

}  // namespace zel::cms

#endif  // ZEL_CMS_PBE_H_
