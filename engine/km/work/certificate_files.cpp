#include "engine/km/work/certificate_files.h"

#include "engine/cms/pem.h"
#include "engine/km/keydb/output_files.h"

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

sys::Status writeCertificate(const CertificateFile& file, sys::ByteView certificate) {
  if (file.format == CertificateFormat::der) return writePublicFile(file.name, certificate);
  return writePemFile(file.name, cms::kCertificateArmour, certificate);
}

sys::Status writeRequest(const sys::FileName& fileName, sys::ByteView request) {
  return writePemFile(fileName, cms::kRequestArmour, request);
}

sys::Status exportCertificate(KeyEntries& store, const Label& label, const CertificateFile& file) {
  const sys::Result<KeyEntry> entry = store.findKey(label);
  if (!entry) return entry.failure();
  return writeCertificate(file, entry.value().certificate);
}

}  // namespace zel::km
