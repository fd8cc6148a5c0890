#include "engine/km/work/certificate_files.h"

#include "engine/cms/pem.h"
#include "engine/km/face/arguments.h"
#include "engine/km/keydb/output_files.h"

namespace zel::km {

namespace {

sys::Status writePublicFile(const char* fileName, sys::ByteView content) {
  const sys::Result<std::string> name = fileNameArgument(fileName);
  if (!name) return name.failure();
  return writeOutput(name.value(), content, sys::FileAccess::everybody);
}

sys::Status writePemFile(const char* fileName, const char* armour, sys::ByteView der) {
  const sys::Result<sys::Bytes> pem = cms::encodePem(armour, der);
  if (!pem) return pem.failure();
  return writePublicFile(fileName, pem.value());
}

}  // namespace

sys::Status writeCertificateFile(const char* fileName, sys::ByteView certificate,
                                 CertificateFormat format) {
  if (format == CertificateFormat::der) return writePublicFile(fileName, certificate);
  return writePemFile(fileName, cms::kCertificateArmour, certificate);
}

sys::Status writeRequestFile(const char* fileName, sys::ByteView request) {
  return writePemFile(fileName, cms::kRequestArmour, request);
}

}  // namespace zel::km
