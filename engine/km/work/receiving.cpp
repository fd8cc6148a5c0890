#include "engine/km/work/receiving.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/cms/bundles.h"
#include "engine/cms/certificates.h"
#include "engine/cms/chains.h"
#include "engine/km/work/arriving_entries.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** A certificate of a bundle, with the pending request that holds its key. */
struct Answered {
  sys::Bytes certificate;
  RequestEntry request;
};

sys::Result<Answered> findAnswered(RequestEntries& store, const std::vector<sys::Bytes>& bundle) {
  for (const sys::Bytes& certificate : bundle) {
    const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate);
    if (!keys) return keys.failure();
    sys::Result<std::vector<RequestEntry>> requests =
        store.findRequestsByPublicKey(keys.value().publicKeyInfo);
    if (!requests) return requests.failure();
    if (!requests.value().empty()) {
      return Answered{certificate, std::move(requests.value().front())};
    }
  }
  return sys::fail(ZELKM_ERR_REQKEY_FOR_CERT_NULL, "no pending request has the certificate's key");
}

/** The issuers that came along, nearest first. */
sys::Result<std::vector<sys::Bytes>> issuersAmong(const std::vector<sys::Bytes>& bundle,
                                                  const sys::Bytes& certificate) {
  const auto lookUp = [&](sys::ByteView subject) -> sys::Result<std::vector<sys::Bytes>> {
    std::vector<sys::Bytes> found;
    for (const sys::Bytes& candidate : bundle) {
      const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(candidate);
      if (!keys) return keys.failure();
      if (std::ranges::equal(keys.value().subject, subject)) found.push_back(candidate);
    }
    return found;
  };
  sys::Result<std::vector<sys::Bytes>> chain = cms::buildChain(certificate, lookUp);
  if (chain) chain.value().erase(chain.value().begin());
  return chain;
}

}  // namespace

sys::Status receive(Store& store, sys::ByteView bundle, bool makeDefault) {
  const sys::Result<std::vector<sys::Bytes>> certificates = cms::readBundle(bundle);
  if (!certificates) return certificates.failure();
  sys::Result<Answered> answered = findAnswered(store, certificates.value());
  if (!answered) return answered.failure();
  const sys::Result<std::vector<sys::Bytes>> issuers =
      issuersAmong(certificates.value(), answered.value().certificate);
  if (!issuers) return issuers.failure();

  KeyEntry entry;
  entry.label = answered.value().request.label;
  entry.certificate = std::move(answered.value().certificate);
  entry.privateKey = std::move(answered.value().request.privateKey);
  entry.isDefault = makeDefault;
  return inTransaction(store, [&]() -> sys::Status {
    if (sys::Status done = store.removeRequest(entry.label); !done) return done;
    if (sys::Status done = store.insertKey(entry); !done) return done;
    for (const sys::Bytes& issuer : issuers.value()) {
      if (sys::Status done = addIssuer(store, issuer); !done) return done;
    }
    return sys::success();
  });
}

sys::Status storeAuthority(KeyEntries& store, const Label& label, sys::ByteView certificate) {
  const sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(certificate);
  if (!keys) return keys.failure();
  KeyEntry entry;
  entry.label = label;
  entry.certificate.assign(certificate.begin(), certificate.end());
  entry.trusted = true;
  return store.insertKey(entry);
}

}  // namespace zel::km
