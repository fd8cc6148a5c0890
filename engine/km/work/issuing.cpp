#include "engine/km/work/issuing.h"

#include <utility>

#include "engine/cms/certificates.h"
#include "engine/cms/issued_extensions.h"
#include "engine/cms/issuing.h"
#include "engine/cms/requests.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/km/store/key_material.h"

namespace zel::km {

namespace {

/** The issuer's entry, when it has a key and may issue. */
sys::Result<KeyEntry> findIssuer(Store& store, const Label& label) {
  sys::Result<KeyEntry> issuer = store.findKey(label);
  if (!issuer) return issuer;
  if (sys::Status hasKey = requirePrivateKey(issuer.value()); !hasKey) return hasKey.failure();
  if (sys::Status may = cms::checkIssuer(issuer.value().certificate); !may) return may.failure();
  return issuer;
}

/** The request, when it is signed by its own key and the store may issue for that. */
sys::Result<cms::RequestFields> readGenuine(const Store& store, sys::ByteView bytes) {
  sys::Result<cms::RequestFields> request = cms::readRequest(bytes);
  if (!request) return request;
  if (sys::Status isGenuine = cms::verifyRequest(bytes); !isGenuine) return isGenuine.failure();
  if (store.approvedOnly()) {
    const sys::Status approved = checkApproved(request.value().publicKeyInfo);
    if (!approved) return approved.failure();
  }
  return request;
}

/** What the request asks for, as far as it is granted. */
sys::Result<cms::CertificatePlan> planFor(const Issuing& wanted, const cms::RequestFields& request,
                                          const KeyEntry& issuer,
                                          const cms::CertificateFields& issuerFields) {
  cms::CertificatePlan plan{.version = wanted.version,
                            .days = wanted.days,
                            .subject = request.subjectDer,
                            .issuer = issuerFields.subjectDer,
                            .publicKeyInfo = request.publicKeyInfo,
                            .serialNumber = wanted.serialNumber};
  if (wanted.version == 3) {
    sys::Result<sys::Bytes> extensions =
        cms::issuedExtensions(request.extensions, request.publicKeyInfo, issuer.certificate);
    if (!extensions) return extensions.failure();
    plan.extensions = std::move(extensions).value();
  }
  return plan;
}

}  // namespace

sys::Status issue(Store& store, const Issuing& wanted) {
  const sys::Result<KeyEntry> issuer = findIssuer(store, wanted.issuer);
  if (!issuer) return issuer.failure();
  const sys::Result<cms::RequestFields> request = readGenuine(store, wanted.request);
  if (!request) return request.failure();
  const sys::Result<cms::CertificateFields> issuerFields =
      cms::readCertificate(issuer.value().certificate);
  if (!issuerFields) return issuerFields.failure();
  const sys::Result<cms::CertificatePlan> plan =
      planFor(wanted, request.value(), issuer.value(), issuerFields.value());
  if (!plan) return plan.failure();
  const sys::Result<sys::Bytes> certificate =
      cms::issueCertificate(plan.value(), issuerFields.value().key, wanted.signature,
                            signerOf(store, issuer.value().privateKey));
  if (!certificate) return certificate.failure();
  return writeCertificate(wanted.file, certificate.value());
}

}  // namespace zel::km
