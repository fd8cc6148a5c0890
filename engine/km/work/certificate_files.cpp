#include "engine/km/work/certificate_files.h"

#include "engine/cms/pem.h"
#include "engine/km/keydb/output_files.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

namespace zel::km {

namespace {

sys::Status writePublicFile(const sys::FileName& fileName, sys::ByteView content) {
  return writeOutput(fileName, content, sys::FileAccess::everybody);
}

sys::Status writePemFile(const sys::FileName& fileName, const char* armour, sys::ByteView der) {
  const sys::Result<sys::Bytes> pem = cms::encodePem(armour, der);
  if (!pem) return pem.failure();
  return writePublicFile(fileName, pem.value());
}

}  // namespace

sys::Status writeCertificateFile(const sys::FileName& fileName, sys::ByteView certificate,
                                 CertificateFormat format) {
  if (format == CertificateFormat::der) return writePublicFile(fileName, certificate);
  return writePemFile(fileName, cms::kCertificateArmour, certificate);
}

sys::Status writeRequestFile(const sys::FileName& fileName, sys::ByteView request) {
  return writePemFile(fileName, cms::kRequestArmour, request);
}

}  // namespace zel::km
