#ifndef ZEL_KM_WORK_CERTIFICATE_FILES_H_
#define ZEL_KM_WORK_CERTIFICATE_FILES_H_

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/result.h"

/**
 * @file
 * Files that carry one certificate or request to other programs. They take the place of older ones;
 * the codes are those of writeOutput (keydb/output_files.h).
 */

namespace zel::km {

/** DER, or Base64 in PEM armour. */
enum class CertificateFormat { der, base64 };

/** Where a certificate is to be written, and how. */
struct CertificateFile {
  sys::FileName name;
  CertificateFormat format = CertificateFormat::der;
};

sys::Status writeCertificate(const CertificateFile& file, sys::ByteView certificate);

/** Writes a certification request in PEM armour. */
sys::Status writeRequest(const sys::FileName& fileName, sys::ByteView request);

/** Writes the certificate of an entry. */
sys::Status exportCertificate(KeyEntries& store, const Label& label, const CertificateFile& file);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_CERTIFICATE_FILES_H_
