#ifndef ZEL_SYS_BYTES_H_
#define ZEL_SYS_BYTES_H_

#include <openssl/crypto.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

/**
 * @file
 * Bytes, public and secret. Secret bytes are wiped before their memory is released, on every path,
 * growth included:
 *
 *     SecretBytes key(32);
 *     if (RAND_priv_bytes(key.data(), 32) != 1) return Failure{ZELKM_ERR_CRYPTO};
 *
 * There is no secret string type on purpose: std::basic_string keeps short texts inside the object,
 * where an allocator cannot wipe them. Passwords travel as SecretBytes or as a borrowed view.
 */

namespace zel::sys {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/** An allocator that wipes what it gives back. */
template <typename T>
struct WipingAllocator {
  using value_type = T;

  WipingAllocator() = default;
  template <typename U>
  WipingAllocator(const WipingAllocator<U>&) {}  // NOLINT(google-explicit-constructor)

  T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
  void deallocate(T* block, std::size_t count) {
    OPENSSL_cleanse(block, count * sizeof(T));
    std::allocator<T>().deallocate(block, count);
  }

  bool operator==(const WipingAllocator&) const { return true; }
};

using SecretBytes = std::vector<std::uint8_t, WipingAllocator<std::uint8_t>>;

/** The bytes of a text, borrowed. */
inline ByteView bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace zel::sys

#endif  // ZEL_SYS_BYTES_H_
