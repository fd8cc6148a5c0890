#include "bridge/marshal/block_copies.h"

#include "bridge/marshal/strings_and_bytes.h"

namespace zel::bridge {

namespace {

BlockCopy copyBlock(JNIEnv* env, Block block) {
  BlockCopy copy{static_cast<uint32_t>(block.length), nullptr};
  JavaByteArrayToUChar(env, block.data, block.length, &copy.bytes);
  return copy;
}

}  // namespace

BlockCopies copyBlocks(JNIEnv* env, Block first, Block second) {
  BlockCopies blocks{copyBlock(env, first), {static_cast<uint32_t>(second.length), nullptr}};
  if (second.length > 0) blocks.second = copyBlock(env, second);
  return blocks;
}

void wipeAndFree(const BlockCopies& blocks) {
  wipeAndFree(blocks.first.bytes, static_cast<jint>(blocks.first.length));
  wipeAndFree(blocks.second.bytes, static_cast<jint>(blocks.second.length));
}

}  // namespace zel::bridge
