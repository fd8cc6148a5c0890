#include "engine/sys/memory.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace zel::sys {

namespace {

void* allocate(std::size_t size) {
  void* block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

char* handOutText(std::string_view text) {
  char* copy = static_cast<char*>(allocate(text.size() + 1));
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

unsigned char* handOutBytes(ByteView bytes) {
  if (bytes.empty()) return nullptr;
  auto* copy = static_cast<unsigned char*>(allocate(bytes.size()));
  std::memcpy(copy, bytes.data(), bytes.size());
  return copy;
}

void* handOutZeroed(std::size_t size) {
  void* block = allocate(size);
  std::memset(block, 0, size);
  return block;
}

}  // namespace zel::sys
