#ifndef ZEL_CMS_PBE_H_
#define ZEL_CMS_PBE_H_

#include <cstddef>
#include <cstdint>
#include <map>

#include "engine/cms/api.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Keys from passwords (RFC 8018, and RFC 7292's appendix C), as key databases, private keys and
 * PKCS #12 files use them: one way to derive a key of ours, and all of OpenSSL's to decrypt what
 * others encrypted.
 */

namespace zel::cms {

/** PBKDF2 iterations of what is encrypted here without other instruction. */
inline constexpr std::uint32_t kPbeIterations = 600'000;
inline constexpr std::size_t kPbeSaltLength = 16;
inline constexpr std::size_t kPbeKeyLength = 32;

/** PbeKey is an AES-256 key derived from a password, with what it takes to derive it again. */
struct PbeKey {
  sys::Bytes salt;
  std::uint32_t iterations = kPbeIterations;
  sys::SecretBytes key;
};

/**
 * derivePbeKey derives the key of a password, whose bytes are real UTF-8: PBKDF2 with HMAC-SHA-256
 * (RFC 8018, 5.2).
 */
ZEL_CMS_API sys::Result<PbeKey> derivePbeKey(sys::ByteView password, sys::ByteView salt,
                                             std::uint32_t iterations);

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
