#include "bridge/keydb/certificate_file.h"

#include <cstdio>
#include <cstring>

#include "bridge/kmlib/zelkm.h"

namespace zel::bridge {

namespace {

constexpr std::size_t kChunkSize = 1024;

/** grow makes room for a chunk; null when memory or the 32 bits of the length are out. */
unsigned char* grow(unsigned char* buffer, uint32_t oldLength, uint32_t newLength) {
  if (newLength < oldLength) return nullptr;  // GCOVR_EXCL_BR_LINE: takes a file of 4 GiB
  void* grown = oldLength == 0 ? ZELKM_Malloc(newLength) : ZELKM_Realloc(buffer, newLength);
  return static_cast<unsigned char*>(grown);
}

/** readBinaryFile reads to the end; a read error ends it like the end of the file. */
int readBinaryFile(const char* fileName, unsigned char** buffer, uint32_t* length) {
  std::FILE* file = std::fopen(fileName, "rb");
  if (file == nullptr) return ZELKM_ERR_FILE_OPEN_TO_READ;

  int rc = ZELKM_OK;
  for (;;) {
    unsigned char chunk[kChunkSize] = {};
    const auto n = static_cast<uint32_t>(std::fread(chunk, 1, kChunkSize, file));
    if (n == 0) break;
    unsigned char* grown = grow(*buffer, *length, *length + n);
    *length += n;
    if (grown == nullptr) {
      if (*buffer != nullptr) ZELKM_Free(*buffer);
      *buffer = nullptr;
      rc = ZELKM_ERR_MEMORY_ALLOCATE;
      break;
    }
    *buffer = grown;
    std::memcpy(*buffer + *length - n, chunk, n);
  }
  std::fclose(file);
  return rc;
}

}  // namespace

int readCertFileToBuf(const char* fileName, jboolean isBase64, unsigned char** buffer,
                      uint32_t* length) {
  *buffer = nullptr;
  *length = 0;
  if (isBase64 != JNI_FALSE) return ZELKM_Base64DecodeFileToBuf(fileName, buffer, length);
  const int rc = readBinaryFile(fileName, buffer, length);
  if (rc == ZELKM_ERR_MEMORY_ALLOCATE) *length = 0;
  return rc;
}

int readCertFileKeepingLength(const char* fileName, jboolean isBase64, unsigned char** buffer,
                              uint32_t* length) {
  *buffer = nullptr;
  *length = 0;
  if (isBase64 != JNI_FALSE) return ZELKM_Base64DecodeFileToBuf(fileName, buffer, length);
  return readBinaryFile(fileName, buffer, length);
}

}  // namespace zel::bridge
