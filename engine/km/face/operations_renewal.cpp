#include <algorithm>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/certificates.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/sys/trace.h"

// Renewal: another certificate for the subject and the key of an entry.

using namespace zel;
using namespace zel::km;

namespace {

/** The entries of the certificate's subject and key. */
sys::Result<std::vector<KeyEntry>> namesakes(Store& store, sys::ByteView certificate) {
  const sys::Result<cms::CertificateKeys> wanted = cms::readCertificateKeys(certificate);
  if (!wanted) return wanted.failure();
  sys::Result<std::vector<KeyEntry>> found =
      store.findKeysByPublicKey(wanted.value().publicKeyInfo);
  if (!found) return found;
  std::vector<KeyEntry> same;
  for (KeyEntry& entry : found.value()) {
    const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(entry.certificate);
    if (!keys) return keys.failure();
    if (keys.value().subject == wanted.value().subject) same.push_back(std::move(entry));
  }
  return same;
}

/**
 * The entries that the certificate renews: it is another than theirs and begins no earlier.
 * ZELKM_ERR_KEY_GET_BY_LABEL when none has its subject and key, ZELKM_ERR_DATABASE_DUPLICATE_KEY
 * when they have it already, ZELKM_ERR_VALIDATION_KEY_VALIDITY when theirs are younger.
 */
sys::Result<std::vector<KeyEntry>> findRenewed(Store& store, sys::ByteView certificate) {
  const sys::Result<cms::CertificateFields> fields = cms::readCertificate(certificate);
  if (!fields) return fields.failure();
  sys::Result<std::vector<KeyEntry>> same = namesakes(store, certificate);
  if (!same) return same;

  int reason = ZELKM_ERR_KEY_GET_BY_LABEL;
  std::vector<KeyEntry> renewed;
  for (KeyEntry& entry : same.value()) {
    const sys::Result<cms::CertificateFields> held = cms::readCertificate(entry.certificate);
    if (!held) return held.failure();
    if (std::ranges::equal(entry.certificate, certificate)) {
      reason = ZELKM_ERR_DATABASE_DUPLICATE_KEY;
    } else if (fields.value().notBefore < held.value().notBefore) {
      reason = ZELKM_ERR_VALIDATION_KEY_VALIDITY;
    } else {
      renewed.push_back(std::move(entry));
    }
  }
  if (renewed.empty()) return sys::fail(reason, "the certificate renews none");
  return renewed;
}

}  // namespace

int ZELKM_CheckCertAsRenewal(int handle, const unsigned char* certBytes, uint32_t certLength,
                             unsigned char* isRenewal) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(isRenewal); !given) return given;
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    const sys::Result<std::vector<KeyEntry>> renewed = findRenewed(store, certificate.value());
    switch (renewed.code()) {
      case ZELKM_OK:
        *isRenewal = 1;
        return sys::success();
      case ZELKM_ERR_KEY_GET_BY_LABEL:
      case ZELKM_ERR_DATABASE_DUPLICATE_KEY:
      case ZELKM_ERR_VALIDATION_KEY_VALIDITY:
        *isRenewal = 0;
        return sys::success();
      default:
        return renewed.failure();
    }
  });
}

int ZELKM_RenewCert(int handle, const unsigned char* certBytes, uint32_t certLength) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<sys::ByteView> certificate = bytesArgument(certBytes, certLength);
    if (!certificate) return certificate.failure();
    return store.inTransaction([&]() -> sys::Status {
      sys::Result<std::vector<KeyEntry>> renewed = findRenewed(store, certificate.value());
      if (!renewed) return renewed.failure();
      for (KeyEntry& entry : renewed.value()) {
        entry.certificate.assign(certificate.value().begin(), certificate.value().end());
        if (sys::Status done = store.replaceKey(entry); !done) return done;
      }
      return sys::success();
    });
  });
}
