#include "engine/km/certificate_files.h"

#include "engine/cms/pem.h"
#include "engine/km/arguments.h"
#include "engine/sys/files.h"

namespace zel::km {

sys::Status writeCertificateFile(const char* fileName, sys::ByteView certificate,
                                 CertificateFormat format) {
  const sys::Result<std::string> name = fileNameArgument(fileName);
  if (!name) return name.failure();
  if (format == CertificateFormat::der) {
    return sys::writeFile(name.value(), certificate, sys::FileAccess::everybody);
  }
  const sys::Result<sys::Bytes> pem = cms::encodePem(cms::kCertificateArmour, certificate);
  if (!pem) return pem.failure();
  return sys::writeFile(name.value(), pem.value(), sys::FileAccess::everybody);
}

}  // namespace zel::km
