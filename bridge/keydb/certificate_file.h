#ifndef BRIDGE_KEYDB_CERTIFICATE_FILE_H_
#define BRIDGE_KEYDB_CERTIFICATE_FILE_H_

#include <jni.h>

#include <cstdint>

namespace zel::bridge {

/**
 * readCertFileToBuf reads a certificate file: Base64 through the library, binary by itself. The
 * answer is a result code, 87 when a binary file cannot be opened and 79 when memory is out. The
 * buffer is released with ZELKM_Free; an empty binary file gives a null one, and success.
 */
int readCertFileToBuf(const char* fileName, jboolean isBase64, unsigned char** buffer,
                      uint32_t* length);

/**
 * readCertFileKeepingLength is the same, but when memory is out the length tells how far the
 * reading came, with a null buffer. c_ExtractCertFromPKCS7Data hands that length on.
 */
int readCertFileKeepingLength(const char* fileName, jboolean isBase64, unsigned char** buffer,
                              uint32_t* length);

}  // namespace zel::bridge

#endif  // BRIDGE_KEYDB_CERTIFICATE_FILE_H_
