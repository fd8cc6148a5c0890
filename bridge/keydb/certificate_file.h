#ifndef BRIDGE_KEYDB_CERTIFICATE_FILE_H_
#define BRIDGE_KEYDB_CERTIFICATE_FILE_H_

#include <jni.h>

#include <cstdint>

#include "bridge/kmlib/zelkm.h"

namespace zel::bridge {

/**
 * readCertFileToBuf reads a certificate file: Base64 through the library, binary by itself. The
 * answer is a result code, 87 when a binary file cannot be opened and 79 when memory is out. The
 * buffer is released with ZELKM_Free; an empty binary file gives a null one, and success.
 */
int readCertFileToBuf(const char* fileName, jboolean isBase64, unsigned char** buffer,
                      uint32_t* length);

/**
 * withCertFile reads the file as readCertFileToBuf does, runs the operation on what is in it and
 * frees the buffer. The result is the reading's code when that failed, else the operation's. After
 * a failed reading nothing is freed, whatever the outputs hold.
 *
 *     int rc = withCertFile(certFile, isBase64, [&](const unsigned char* bytes, uint32_t length) {
 *       return withToken(token, [&](int handle) { ... });
 *     });
 */
template <typename Operation>
int withCertFile(const char* fileName, jboolean isBase64, Operation&& operation) {
  unsigned char* buffer = nullptr;
  uint32_t length = 0;
  const int read = readCertFileToBuf(fileName, isBase64, &buffer, &length);
  if (read != ZELKM_OK) return read;
  const int rc = operation(buffer, length);
  if (length != 0 && buffer != nullptr) ZELKM_Free(buffer);
  return rc;
}

/**
 * readCertFileKeepingLength is the same, but when memory is out the length tells how far the
 * reading came, with a null buffer. c_ExtractCertFromPKCS7Data hands that length on.
 */
int readCertFileKeepingLength(const char* fileName, jboolean isBase64, unsigned char** buffer,
                              uint32_t* length);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_CERTIFICATE_FILE_H_
