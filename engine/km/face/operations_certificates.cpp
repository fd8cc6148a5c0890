#include <optional>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/certificates.h"
#include "engine/cms/issuing.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_names.h"
#include "engine/km/face/operation.h"
#include "engine/km/store/key_material.h"
#include "engine/km/work/certificate_files.h"
#include "engine/sys/memory.h"
#include "engine/sys/trace.h"

// Making certificates, and reading and writing them outside of a store.

using namespace zel;
using namespace zel::km;

namespace {

/** What a caller wants of a self-signed certificate. */
struct SelfSigning {
  const char* label;
  bool makeDefault;
  int version;
  int keySize;
  const ZELKMDNItem* subject;
  int days;
  int signatureSelector;
  sys::ByteView extensions;
  std::optional<sys::FileName> certFile;
  CertificateFormat format;
};

sys::Status requireFreeLabel(Store& store, const Label& label) {
  const sys::Result<KeyEntry> entry = store.findKey(label);
  if (entry) {
    return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                     label.c_str());
  }
  return entry.code() == ZELKM_ERR_KEY_GET_BY_LABEL ? sys::success() : entry.failure();
}

/** The extensions given, or those of an authority where the version has room for them. */
sys::Result<sys::Bytes> extensionsOf(const SelfSigning& wanted, const sys::Bytes& publicKey) {
  if (!wanted.extensions.empty()) {
    return sys::Bytes(wanted.extensions.begin(), wanted.extensions.end());
  }
  if (wanted.version < 3) return sys::Bytes();
  return cms::authorityExtensions(publicKey);
}

sys::Result<sys::Bytes> signSelf(Store& store, const SelfSigning& wanted, const sys::Bytes& subject,
                                 const GeneratedKey& key) {
  const sys::Result<sys::Bytes> extensions = extensionsOf(wanted, key.publicKey);
  if (!extensions) return extensions.failure();
  const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(key.publicKey);
  if (!traits) return traits.failure();
  const cms::CertificatePlan plan{.version = wanted.version,
                                  .days = wanted.days,
                                  .subject = subject,
                                  .issuer = subject,
                                  .publicKeyInfo = key.publicKey,
                                  .extensions = extensions.value()};
  return cms::issueCertificate(plan, traits.value(), wanted.signatureSelector,
                               signerOf(store, key.privateKey));
}

/** Takes an entry out again; the default mark goes back to the one that had it. */
void takeBack(Store& store, const Label& label, const Label& previousDefault) {
  const sys::Status taken = store.inTransaction([&]() -> sys::Status {
    if (sys::Status removed = store.removeKey(label); !removed) return removed;
    return previousDefault.empty() ? sys::success() : store.setDefault(previousDefault);
  });
  if (!taken) sys::traceLine("\"%s\" stays without its file", label.c_str());
}

/**
 * The file comes last: it may replace another, which nothing brings back, whereas the entry can be
 * taken out again when the file cannot be written.
 */
sys::Status insertAndWrite(Store& store, const SelfSigning& wanted, const KeyEntry& entry) {
  Label previousDefault;
  if (wanted.makeDefault && wanted.certFile) {
    const sys::Result<KeyEntry> marked = store.defaultKey();
    if (marked) previousDefault = marked.value().label;
    if (!marked && marked.code() != ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL) return marked.failure();
  }
  if (sys::Status inserted = store.insertKey(entry); !inserted) return inserted;
  if (!wanted.certFile) return sys::success();
  sys::Status written = writeCertificateFile(*wanted.certFile, entry.certificate, wanted.format);
  if (!written) takeBack(store, entry.label, previousDefault);
  return written;
}

sys::Status createSelfSigned(Store& store, const SelfSigning& wanted) {
  const sys::Result<Label> label = labelArgument(wanted.label);
  if (!label) return label.failure();
  const sys::Result<sys::Bytes> subject = nameArgument(wanted.subject);
  if (!subject) return subject.failure();
  if (sys::Status isFree = requireFreeLabel(store, label.value()); !isFree) return isFree;
  const cms::CertificatePlan outline{
      .version = wanted.version,
      .days = wanted.days,
      .extensions = {wanted.extensions.begin(), wanted.extensions.end()}};
  if (sys::Status canBe = cms::checkPlan(outline); !canBe) return canBe;

  sys::Result<GeneratedKey> key = store.generateKey(wanted.keySize);
  if (!key) return key.failure();
  const sys::Result<sys::Bytes> certificate = signSelf(store, wanted, subject.value(), key.value());
  if (!certificate) return certificate.failure();

  KeyEntry entry;
  entry.label = label.value();
  entry.certificate = certificate.value();
  entry.privateKey = std::move(key.value().privateKey);
  entry.trusted = true;  // a root of one's own
  entry.isDefault = wanted.makeDefault;
  return insertAndWrite(store, wanted, entry);
}

}  // namespace

int ZELKM_CreateSelfSignedCert(int handle, const char* label, unsigned char firstFlag,
                               int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                               int thirdNumber, const char* certFileName,
                               unsigned char secondFlag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    sys::Result<std::optional<sys::FileName>> certFile = optionalFileName(certFileName);
    if (!certFile) return certFile.failure();
    return createSelfSigned(store, {.label = label,
                                    .makeDefault = firstFlag != 0,
                                    .version = firstNumber,
                                    .keySize = secondNumber,
                                    .subject = dn,
                                    .days = thirdNumber,
                                    .signatureSelector = cms::kByKeyStrength,
                                    .extensions = {},
                                    .certFile = std::move(certFile).value(),
                                    .format = formatOfFlag(secondFlag)});
  });
}

int ZELKM_CreateSelfSignedCertSigExt(int handle, const char* label, unsigned char firstFlag,
                                     int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                                     int thirdNumber, int signatureAlgorithm,
                                     const unsigned char* extensions, uint32_t extensionsLength,
                                     const char* certFileName, unsigned char secondFlag) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status chosen = requireSignatureSelector(signatureAlgorithm); !chosen) return chosen;
    sys::Result<sys::ByteView> given = optionalBytesArgument(extensions, extensionsLength);
    if (!given) return given.failure();
    sys::Result<std::optional<sys::FileName>> certFile = optionalFileName(certFileName);
    if (!certFile) return certFile.failure();
    return createSelfSigned(store, {.label = label,
                                    .makeDefault = firstFlag != 0,
                                    .version = firstNumber,
                                    .keySize = secondNumber,
                                    .subject = dn,
                                    .days = thirdNumber,
                                    .signatureSelector = signatureAlgorithm,
                                    .extensions = given.value(),
                                    .certFile = std::move(certFile).value(),
                                    .format = formatOfFlag(secondFlag)});
  });
}

int ZELKM_ExportCert(int handle, const char* label, const char* certFileName,
                     unsigned char format) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<KeyEntry> entry = store.findKey(wanted.value());
    if (!entry) return entry.failure();
    const sys::Result<sys::FileName> certFile = sys::FileName::given(certFileName);
    if (!certFile) return certFile.failure();
    return writeCertificateFile(certFile.value(), entry.value().certificate, formatOfFlag(format));
  });
}

int ZELKM_GetUnsignedCertFromCert(const unsigned char* certBytes, uint32_t certLength,
                                  unsigned char** buffer, uint32_t* length) {
  return answering(__func__, [&]() -> sys::Status {
    if (buffer == nullptr || length == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    const sys::Result<sys::Bytes> part = cms::unsignedPart(certificate.value());
    if (!part) return part.failure();
    *buffer = sys::handOutBytes(part.value());
    *length = static_cast<uint32_t>(part.value().size());
    return sys::success();
  });
}
