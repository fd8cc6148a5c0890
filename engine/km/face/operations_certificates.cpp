// Making certificates, and reading and writing them outside of a store.

#include <optional>
#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/certificates.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_names.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/certificate_files.h"
#include "engine/km/work/self_signing.h"
#include "engine/sys/memory.h"

using namespace zel;
using namespace zel::km;

namespace {

/** What every self-signed certificate takes, as the C interface has it. */
struct SelfSigningArguments {
  const char* label;
  unsigned char makeDefault;
  int version;
  int keySize;
  const ZELKMDNItem* subject;
  int days;
  const char* certFileName;
  unsigned char isBase64;
};

sys::Result<SelfSigning> decoded(const SelfSigningArguments& given) {
  sys::Result<std::optional<CertificateFile>> file =
      optionalCertificateFile(given.certFileName, given.isBase64);
  if (!file) return file.failure();
  sys::Result<Label> label = labelArgument(given.label);
  if (!label) return label.failure();
  sys::Result<sys::Bytes> subject = nameArgument(given.subject);
  if (!subject) return subject.failure();
  return SelfSigning{.label = std::move(label).value(),
                     .subject = std::move(subject).value(),
                     .keySize = given.keySize,
                     .version = given.version,
                     .days = given.days,
                     .makeDefault = given.makeDefault != 0,
                     .file = std::move(file).value()};
}

}  // namespace

int ZELKM_CreateSelfSignedCert(int handle, const char* label, unsigned char firstFlag,
                               int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                               int thirdNumber, const char* certFileName,
                               unsigned char secondFlag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<SelfSigning> wanted = decoded(
        {label, firstFlag, firstNumber, secondNumber, dn, thirdNumber, certFileName, secondFlag});
    return wanted ? selfSign(store, wanted.value()) : wanted.failure();
  });
}

int ZELKM_CreateSelfSignedCertSigExt(int handle, const char* label, unsigned char firstFlag,
                                     int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                                     int thirdNumber, int signatureAlgorithm,
                                     const unsigned char* extensions, uint32_t extensionsLength,
                                     const char* certFileName, unsigned char secondFlag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<cms::SignatureSelector> signature = signatureArgument(signatureAlgorithm);
    if (!signature) return signature.failure();
    const sys::Result<sys::ByteView> given = optionalBytesArgument(extensions, extensionsLength);
    if (!given) return given.failure();
    sys::Result<SelfSigning> wanted = decoded(
        {label, firstFlag, firstNumber, secondNumber, dn, thirdNumber, certFileName, secondFlag});
    if (!wanted) return wanted.failure();
    wanted.value().signature = signature.value();
    wanted.value().extensions = given.value();
    return selfSign(store, wanted.value());
  });
}

int ZELKM_ExportCert(int handle, const char* label, const char* certFileName,
                     unsigned char format) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<CertificateFile> file = certificateFileArgument(certFileName, format);
    if (!file) return file.failure();
    return exportCertificate(store, wanted.value(), file.value());
  });
}

int ZELKM_GetUnsignedCertFromCert(const unsigned char* certBytes, uint32_t certLength,
                                  unsigned char** buffer, uint32_t* length) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(buffer); !given) return given;
    if (sys::Status given = requireOutput(length); !given) return given;
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    const sys::Result<sys::Bytes> part = cms::unsignedPart(certificate.value());
    if (!part) return part.failure();
    *buffer = sys::handOutBytes(part.value());
    *length = static_cast<uint32_t>(part.value().size());
    return sys::success();
  });
}
