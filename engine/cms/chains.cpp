#include "engine/cms/chains.h"

#include <algorithm>
#include <ctime>

#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"

namespace zel::cms {

namespace {

/** A certificate with what is asked of it again and again. */
struct Link {
  sys::Bytes der;
  X509Ptr x509;
};

bool didSign(const X509& issuer, const X509& subject) {
  if (X509_NAME_cmp(X509_get_subject_name(&issuer), X509_get_issuer_name(&subject)) != 0) {
    return false;
  }
  EVP_PKEY* key = X509_get0_pubkey(&issuer);
  // OpenSSL takes the certificate without const, but does not change it.
  const bool verified = key != nullptr && X509_verify(const_cast<X509*>(&subject), key) == 1;
  ERR_clear_error();
  return verified;
}

bool isValidNow(const X509& certificate) {
  std::time_t now = std::time(nullptr);
  return X509_cmp_time(X509_get0_notBefore(&certificate), &now) < 0 &&
         X509_cmp_time(X509_get0_notAfter(&certificate), &now) > 0;
}

bool isBetterIssuer(const Link& a, const Link& b) {
  const bool aIsValid = isValidNow(*a.x509);
  const bool bIsValid = isValidNow(*b.x509);
  if (aIsValid != bIsValid) return aIsValid;
  return ASN1_TIME_compare(X509_get0_notBefore(a.x509.get()), X509_get0_notBefore(b.x509.get())) >
         0;
}

bool contains(const std::vector<sys::Bytes>& chain, const sys::Bytes& certificate) {
  return std::find(chain.begin(), chain.end(), certificate) != chain.end();
}

/** The issuer that belongs next into the chain; one without certificate when there is none. */
sys::Result<Link> findIssuer(const Link& subject, const std::vector<sys::Bytes>& chain,
                             const CertificatesBySubject& lookUp) {
  const sys::Result<sys::Bytes> name =
      canonicalName(encodeDer(i2d_X509_NAME, X509_get_issuer_name(subject.x509.get())));
  if (!name) return name.failure();
  sys::Result<std::vector<sys::Bytes>> candidates = lookUp(name.value());
  if (!candidates) return candidates.failure();

  Link best;
  for (sys::Bytes& der : candidates.value()) {
    if (contains(chain, der)) continue;
    Link candidate{std::move(der), nullptr};
    candidate.x509 = decodeDer<X509Ptr>(d2i_X509, candidate.der);
    if (!candidate.x509 || !didSign(*candidate.x509, *subject.x509)) continue;
    if (!best.x509 || isBetterIssuer(candidate, best)) best = std::move(candidate);
  }
  return best;
}

}  // namespace

sys::Result<std::vector<sys::Bytes>> buildChain(sys::ByteView certificate,
                                                const CertificatesBySubject& lookUp) {
  Link current{{certificate.begin(), certificate.end()}, decodeDer<X509Ptr>(d2i_X509, certificate)};
  if (!current.x509) return cryptoFailure(ZELKM_ERR_ASN, "read a certificate");

  std::vector<sys::Bytes> chain = {current.der};
  while (!didSign(*current.x509, *current.x509)) {
    sys::Result<Link> issuer = findIssuer(current, chain, lookUp);
    if (!issuer) return issuer.failure();
    if (!issuer.value().x509) break;
    current = std::move(issuer).value();
    chain.push_back(current.der);
  }
  return chain;
}

}  // namespace zel::cms
