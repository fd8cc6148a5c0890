#ifndef ZEL_SYS_SECRETS_H_
#define ZEL_SYS_SECRETS_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "engine/sys/api.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * Secrets that live longer than a call: keys of open databases, keys that are cached. They stay in
 * memory that is neither swapped out nor dumped, as far as the process may lock memory:
 *
 *     SecretBlock key(32);
 *     deriveInto(key.bytes());
 *     if (!key.locked()) return;  // not to be kept
 *
 * Secrets of one call are SecretBytes (bytes.h).
 */

namespace zel::sys {

/** A SecretBlock is a fixed run of zero-filled bytes, wiped when it goes. */
class ZEL_SYS_API SecretBlock {
 public:
  /** Never fails to hold the bytes; locked() says how well. std::bad_alloc as everywhere. */
  explicit SecretBlock(std::size_t size);
  ~SecretBlock();
  SecretBlock(SecretBlock&& other) noexcept;
  SecretBlock& operator=(SecretBlock&& other) noexcept;
  SecretBlock(const SecretBlock&) = delete;
  SecretBlock& operator=(const SecretBlock&) = delete;

  std::span<std::uint8_t> bytes() { return {data_, size_}; }
  ByteView bytes() const { return {data_, size_}; }

  /** False when the process has no locked memory left and the bytes may be swapped out. */
  bool locked() const { return locked_; }

 private:
  void release();

  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  bool locked_ = false;
};

}  // namespace zel::sys

#endif  // ZEL_SYS_SECRETS_H_
