#include "engine/km/work/renewing.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/cms/certificates.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** The entries of the certificate's subject and key. */
sys::Result<std::vector<KeyEntry>> namesakes(KeyEntries& store, sys::ByteView certificate) {
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

/** The entries that the certificate renews; the codes of renew when there is none. */
sys::Result<std::vector<KeyEntry>> findRenewed(KeyEntries& store, sys::ByteView certificate) {
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

sys::Result<bool> isRenewal(KeyEntries& store, sys::ByteView certificate) {
  const sys::Result<std::vector<KeyEntry>> renewed = findRenewed(store, certificate);
  switch (renewed.code()) {
    case ZELKM_OK:
      return true;
    case ZELKM_ERR_KEY_GET_BY_LABEL:
    case ZELKM_ERR_DATABASE_DUPLICATE_KEY:
    case ZELKM_ERR_VALIDATION_KEY_VALIDITY:
      return false;
    default:
      return renewed.failure();
  }
}

sys::Status renew(Store& store, sys::ByteView certificate) {
  return inTransaction(store, [&]() -> sys::Status {
    sys::Result<std::vector<KeyEntry>> renewed = findRenewed(store, certificate);
    if (!renewed) return renewed.failure();
    for (KeyEntry& entry : renewed.value()) {
      entry.certificate.assign(certificate.begin(), certificate.end());
      if (sys::Status done = store.replaceKey(entry); !done) return done;
    }
    return sys::success();
  });
}

}  // namespace zel::km
