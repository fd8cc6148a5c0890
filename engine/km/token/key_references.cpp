#include "engine/km/token/key_references.h"

#include <cstring>

namespace zel::km::token {

PrivateKey referenceTo(CK_OBJECT_HANDLE privateKey) {
  PrivateKey key;
  key.reference.resize(sizeof privateKey);
  std::memcpy(key.reference.data(), &privateKey, sizeof privateKey);
  return key;
}

CK_OBJECT_HANDLE referredTo(const PrivateKey& key) {
  CK_OBJECT_HANDLE handle = CK_INVALID_HANDLE;
  if (key.reference.size() == sizeof handle) {
    std::memcpy(&handle, key.reference.data(), sizeof handle);
  }
  return handle;
}

}  // namespace zel::km::token
