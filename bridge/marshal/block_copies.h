#ifndef BRIDGE_MARSHAL_BLOCK_COPIES_H_
#define BRIDGE_MARSHAL_BLOCK_COPIES_H_

#include <jni.h>

#include <cstdint>

namespace zel::bridge {

/** Block is a byte array of Java's with the length that Java says it has. */
struct Block {
  jint length;
  jbyteArray data;
};

/** BlockCopy is what the library is given of it: null when it was not copied, but its length. */
struct BlockCopy {
  uint32_t length;
  unsigned char* bytes;
};

/**
 * BlockCopies are a certificate or request, and the private key that may come with it.
 *
 *     const BlockCopies blocks =
 *         copyBlocks(env, {certLength, certificate}, {keyLength, privateKey});
 *     ... blocks.first.length, blocks.first.bytes ...
 *     wipeAndFree(blocks);
 */
struct BlockCopies {
  BlockCopy first;
  BlockCopy second;
};

/**
 * copyBlocks copies the first block whatever its length, the second only when there is one. A block
 * that cannot be copied reaches the library as null with its length.
 */
BlockCopies copyBlocks(JNIEnv* env, Block first, Block second);

/** wipeAndFree overwrites both copies and frees them. */
void wipeAndFree(const BlockCopies& blocks);

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_BLOCK_COPIES_H_
