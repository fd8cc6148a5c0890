#ifndef ZEL_KM_KEYDB_SEALING_H_
#define ZEL_KM_KEYDB_SEALING_H_

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * How a key database keeps its records: AES-256-GCM under a random nonce, bound to a context that
 * stands in the clear. A record that is moved into another context no longer opens:
 *
 *     Bytes context = FieldWriter<Bytes>().text("keys").number(id).text(label).take();
 *     Result<Sealed> sealed = seal(key, context, plain);
 *     Result<SecretBytes> again = unseal(key, context, sealed.value());
 */

namespace zel::km {

inline constexpr std::size_t kKeyLength = 32;
inline constexpr std::size_t kNonceLength = 12;
inline constexpr std::size_t kTagLength = 16;

using Digest = std::array<std::uint8_t, 32>;

/** The part of sealed bytes that is different each time: nonce and tag. */
inline constexpr std::size_t kSealLength = kNonceLength + kTagLength;

/** Sealed bytes as they stand in a file: nonce, tag, ciphertext. */
using Sealed = sys::Bytes;

/** ZELKM_ERR_CRYPTO (32) when OpenSSL refuses. */
sys::Result<Sealed> seal(sys::ByteView key, sys::ByteView context, sys::ByteView plain);

/** sealInto is seal into memory of the caller's, of kSealLength bytes more than are sealed. */
sys::Status sealInto(std::span<std::uint8_t> sealed, sys::ByteView key, sys::ByteView context,
                     sys::ByteView plain);

/** ZELKM_ERR_DATABASE_KEY_INTEGRITY (20) for anything that was not sealed so. */
sys::Result<sys::SecretBytes> unseal(sys::ByteView key, sys::ByteView context,
                                     sys::ByteView sealed);

/** HMAC-SHA-256. */
sys::Result<Digest> authenticate(sys::ByteView key, sys::ByteView message);

/** SHA-256. */
sys::Result<Digest> digest(sys::ByteView message);

/** Derives a key for one purpose from a master key (HKDF with SHA-256, RFC 5869). */
sys::Status deriveKey(sys::ByteView master, std::string_view purpose,
                      std::span<std::uint8_t> derived);

/** Fills with bytes fit for keys. */
sys::Status fillRandom(std::span<std::uint8_t> bytes);

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_SEALING_H_
