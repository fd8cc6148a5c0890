#include "engine/cms/issuing.h"

#include <ctime>

#include "engine/cms/der.h"
#include "engine/cms/extensions.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

constexpr int kSerialNumberBits = 127;
constexpr std::int64_t kSecondsPerDay = std::int64_t{24} * 60 * 60;
constexpr std::int64_t kEndOfYear9999 = 253'402'300'799;

sys::Status setSerialNumber(X509& certificate, const sys::Bytes& number) {
  const BigNumberPtr value(BN_new());
  if (!value) return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "make a serial number");
  if (!number.empty()) {
    BN_bin2bn(number.data(), static_cast<int>(number.size()), value.get());
  } else {
    do {
      if (BN_rand(value.get(), kSerialNumberBits, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) != 1) {
        return cryptoFailure(ZELKM_ERR_CRYPTO, "draw a serial number");
      }
    } while (BN_is_zero(value.get()));
  }
  if (BN_to_ASN1_INTEGER(value.get(), X509_get_serialNumber(&certificate)) == nullptr) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "set a serial number");
  }
  return sys::success();
}

sys::Status setValidity(X509& certificate, int days) {
  const std::time_t now = std::time(nullptr);
  if (ASN1_TIME_adj(X509_getm_notBefore(&certificate), now, 0, 0) == nullptr ||
      ASN1_TIME_adj(X509_getm_notAfter(&certificate), now, days, 0) == nullptr) {
    return cryptoFailure(ZELKM_ERR_GET_TIME, "set the validity");
  }
  return sys::success();
}

sys::Status setNamesAndKey(X509& certificate, const CertificatePlan& plan) {
  const NamePtr subject = decodeDer<NamePtr>(d2i_X509_NAME, plan.subject);
  const NamePtr issuer = decodeDer<NamePtr>(d2i_X509_NAME, plan.issuer);
  if (!subject || !issuer) return cryptoFailure(ZELKM_ERR_ASN, "read a name");
  const PublicKeyPtr info = decodeDer<PublicKeyPtr>(d2i_X509_PUBKEY, plan.publicKeyInfo);
  EVP_PKEY* key = info ? X509_PUBKEY_get0(info.get()) : nullptr;
  if (key == nullptr) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "read a public key");
  }
  if (X509_set_subject_name(&certificate, subject.get()) != 1 ||
      X509_set_issuer_name(&certificate, issuer.get()) != 1 ||
      X509_set_pubkey(&certificate, key) != 1) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "name the subject and the key");
  }
  return sys::success();
}

sys::Status setExtensions(X509& certificate, const CertificatePlan& plan) {
  const sys::Result<ExtensionsPtr> extensions = readExtensions(plan.extensions);
  if (!extensions) return extensions.failure();
  for (int i = 0; i < sk_X509_EXTENSION_num(extensions.value().get()); ++i) {
    if (X509_add_ext(&certificate, sk_X509_EXTENSION_value(extensions.value().get(), i), -1) != 1) {
      return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "add an extension");
    }
  }
  return sys::success();
}

/**
 * Writes the signature algorithm into the part to be signed. OpenSSL does so only when it signs
 * itself, with a key that it holds, hence the way around its const.
 */
sys::Status setSignatureAlgorithm(X509& certificate, const sys::Bytes& algorithm) {
  auto* place = const_cast<X509_ALGOR*>(X509_get0_tbs_sigalg(&certificate));
  const unsigned char* at = algorithm.data();
  if (d2i_X509_ALGOR(&place, &at, static_cast<long>(algorithm.size())) == nullptr) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "set the signature algorithm");
  }
  return sys::success();
}

bool addExtension(X509& certificate, X509V3_CTX& context, int nid, const char* value) {
  const ExtensionPtr extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value));
  return extension && X509_add_ext(&certificate, extension.get(), -1) == 1;
}

}  // namespace

sys::Status checkPlan(const CertificatePlan& plan) {
  if (plan.version < 1 || plan.version > 3) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION, "no X.509 version %d", plan.version);
  }
  if (plan.days < 1) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD, "a validity of %d days", plan.days);
  }
  if (std::time(nullptr) + plan.days * kSecondsPerDay > kEndOfYear9999) {
    return sys::fail(ZELKM_ERR_EXPIRE_DAYS_TOO_LARGE, "%d days end after the year 9999", plan.days);
  }
  if (!plan.extensions.empty() && plan.version != 3) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION,
                     "a certificate of version %d has no extensions", plan.version);
  }
  return checkExtensions(plan.extensions);
}

sys::Result<sys::Bytes> issueCertificate(const CertificatePlan& plan, const KeyTraits& signingKey,
                                         SignatureSelector selector, const Signer& signer) {
  sys::Status status = checkPlan(plan);
  if (!status) return status.failure();
  const sys::Result<SigningDigest> digest = chooseDigest(signingKey, selector);
  if (!digest) return digest.failure();
  const sys::Result<sys::Bytes> algorithm =
      signatureAlgorithm(signingKey.algorithm, digest.value());
  if (!algorithm) return algorithm.failure();

  const X509Ptr certificate(X509_new());
  if (!certificate || X509_set_version(certificate.get(), plan.version - 1) != 1) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "make a certificate");
  }
  status = setSerialNumber(*certificate, plan.serialNumber);
  if (status) status = setValidity(*certificate, plan.days);
  if (status) status = setNamesAndKey(*certificate, plan);
  if (status) status = setExtensions(*certificate, plan);
  if (status) status = setSignatureAlgorithm(*certificate, algorithm.value());
  if (!status) return status.failure();

  const sys::Bytes toBeSigned = encodeDer(
      [](const X509* x, unsigned char** out) { return i2d_re_X509_tbs(const_cast<X509*>(x), out); },
      certificate.get());
  if (toBeSigned.empty()) return cryptoFailure(ZELKM_ERR_ASN, "encode a certificate");
  const sys::Result<sys::Bytes> signature = signer(digest.value(), toBeSigned);
  if (!signature) return signature.failure();
  return assembleSigned(toBeSigned, algorithm.value(), signature.value());
}

sys::Result<sys::Bytes> authorityExtensions(sys::ByteView publicKeyInfo) {
  const PublicKeyPtr info = decodeDer<PublicKeyPtr>(d2i_X509_PUBKEY, publicKeyInfo);
  EVP_PKEY* key = info ? X509_PUBKEY_get0(info.get()) : nullptr;
  const X509Ptr certificate(X509_new());
  if (key == nullptr || !certificate || X509_set_pubkey(certificate.get(), key) != 1) {
    return cryptoFailure(ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "read a public key");
  }
  X509V3_CTX context;
  X509V3_set_ctx(&context, certificate.get(), certificate.get(), nullptr, nullptr, 0);
  if (!addExtension(*certificate, context, NID_basic_constraints, "critical,CA:TRUE") ||
      !addExtension(*certificate, context, NID_key_usage,
                    "critical,digitalSignature,keyCertSign,cRLSign") ||
      !addExtension(*certificate, context, NID_subject_key_identifier, "hash") ||
      !addExtension(*certificate, context, NID_authority_key_identifier, "keyid:always")) {
    return cryptoFailure(ZELKM_ERR_CRYPTO, "make the extensions of an authority");
  }
  return encodeDer(i2d_X509_EXTENSIONS, X509_get0_extensions(certificate.get()));
}

}  // namespace zel::cms
