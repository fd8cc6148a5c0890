#ifndef ZEL_KM_WORK_CERTIFICATE_FILES_H_
#define ZEL_KM_WORK_CERTIFICATE_FILES_H_

#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/result.h"

/**
 * @file
 * Files that carry one certificate or request to other programs.
 */

namespace zel::km {

enum class CertificateFormat { der, base64 };

/** Over the C interface a flag says whether a file is Base64 (else DER). */
inline CertificateFormat formatOfFlag(unsigned char isBase64) {
  return isBase64 != 0 ? CertificateFormat::base64 : CertificateFormat::der;
}

/**
 * writeCertificateFile writes a certificate, DER or in PEM armour, in the place of the file that
 * has the name. The codes of writeOutput.
 */
sys::Status writeCertificateFile(const sys::FileName& fileName, sys::ByteView certificate,
                                 CertificateFormat format);

/** writeRequestFile writes a certification request in PEM armour. The codes as above. */
sys::Status writeRequestFile(const sys::FileName& fileName, sys::ByteView request);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_CERTIFICATE_FILES_H_
