#ifndef ZEL_KM_FACE_ENTRY_ARGUMENTS_H_
#define ZEL_KM_FACE_ENTRY_ARGUMENTS_H_

#include <cstdint>
#include <optional>

#include "engine/cms/signing.h"
#include "engine/km/store/label.h"
#include "engine/km/work/certificate_files.h"
#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/result.h"

/**
 * @file
 * The arguments of operations on entries, checked once and alike:
 *
 *     Result<Label> wanted = labelArgument(label);
 *     if (!wanted) return wanted.failure();
 *
 * What is missing is ZELKM_ERR_NULL_PARAMETER (66), but a file's name: ZELKM_ERR_FILENAME_NULL
 * (85).
 */

namespace zel::km {

/** A label as stores take it. ZELKM_ERR_PARAMETER (65) when it is not a text of 1 to 511 bytes. */
sys::Result<Label> labelArgument(const char* label);

/** Bytes, borrowed; a length of zero counts as missing. */
sys::Result<sys::ByteView> bytesArgument(const unsigned char* bytes, std::uint32_t length);

/** Bytes that need not be given: a length of zero is an empty view. */
sys::Result<sys::ByteView> optionalBytesArgument(const unsigned char* bytes, std::uint32_t length);

/** The name of a file that need not be written: null is none. The codes of FileName::given. */
sys::Result<std::optional<sys::FileName>> optionalFileName(const char* fileName);

/** A certificate's file, with the flag that asks for Base64. The codes of FileName::given. */
sys::Result<CertificateFile> certificateFileArgument(const char* fileName, unsigned char isBase64);

/** As above, for one that need not be written: a null name is none. */
sys::Result<std::optional<CertificateFile>> optionalCertificateFile(const char* fileName,
                                                                    unsigned char isBase64);

/** ZELKM_ERR_SIGNATURE_ALGORITHM (133) when a selector is neither 1 nor 2. */
sys::Result<cms::SignatureSelector> signatureArgument(int selector);

/** The bytes of a serial number; none for null and for an empty text, which ask for a random one.
 */
sys::Result<sys::Bytes> serialNumberArgument(const char* text);

/** Whether an output variable was given. */
template <typename T>
sys::Status requireOutput(const T* output) {
  if (output == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
  return sys::success();
}

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ENTRY_ARGUMENTS_H_
