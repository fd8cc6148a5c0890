#include "engine/cms/validation.h"

#include <openssl/x509_vfy.h>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

using StorePtr = std::unique_ptr<X509_STORE, Releaser<X509_STORE_free>>;
using StoreContextPtr = std::unique_ptr<X509_STORE_CTX, Releaser<X509_STORE_CTX_free>>;

struct CertificatesReleaser {
  void operator()(STACK_OF(X509) * certificates) const {
    sk_X509_pop_free(certificates, X509_free);
  }
};
using CertificatesPtr = std::unique_ptr<STACK_OF(X509), CertificatesReleaser>;

int codeOf(int verifyError) {
  switch (verifyError) {
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
    case X509_V_ERR_SUBJECT_ISSUER_MISMATCH:
      return ZELKM_ERR_VALIDATION_KEY_ISSUER_NOT_FOUND;
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
    case X509_V_ERR_CERT_UNTRUSTED:
      return ZELKM_ERR_VALIDATION_KEY_ROOT_KEY_NOT_TRUSTED;
    case X509_V_ERR_CERT_SIGNATURE_FAILURE:
    case X509_V_ERR_UNABLE_TO_DECRYPT_CERT_SIGNATURE:
    case X509_V_ERR_UNABLE_TO_DECODE_ISSUER_PUBLIC_KEY:
    case X509_V_ERR_SIGNATURE_ALGORITHM_INCONSISTENCY:
    case X509_V_ERR_SIGNATURE_ALGORITHM_MISMATCH:
    case X509_V_ERR_UNSUPPORTED_SIGNATURE_ALGORITHM:
      return ZELKM_ERR_VALIDATION_KEY_SIGNATURE;
    case X509_V_ERR_CERT_NOT_YET_VALID:
    case X509_V_ERR_CERT_HAS_EXPIRED:
      return ZELKM_ERR_VALIDATION_KEY_VALIDITY;
    case X509_V_ERR_ERROR_IN_CERT_NOT_BEFORE_FIELD:
    case X509_V_ERR_ERROR_IN_CERT_NOT_AFTER_FIELD:
      return ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD;
    case X509_V_ERR_INVALID_CA:
    case X509_V_ERR_INVALID_NON_CA:
    case X509_V_ERR_PATH_LENGTH_EXCEEDED:
    case X509_V_ERR_PATHLEN_INVALID_FOR_NON_CA:
    case X509_V_ERR_PATHLEN_WITHOUT_KU_KEY_CERT_SIGN:
    case X509_V_ERR_CA_BCONS_NOT_CRITICAL:
      return ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS;
    case X509_V_ERR_KEYUSAGE_NO_CERTSIGN:
    case X509_V_ERR_CA_CERT_MISSING_KEY_USAGE:
    case X509_V_ERR_KU_KEY_CERT_SIGN_INVALID_FOR_NON_CA:
      return ZELKM_ERR_VALIDATION_KEY_USAGE;
    case X509_V_ERR_AKID_SKID_MISMATCH:
    case X509_V_ERR_AKID_ISSUER_SERIAL_MISMATCH:
    case X509_V_ERR_MISSING_AUTHORITY_KEY_IDENTIFIER:
    case X509_V_ERR_AUTHORITY_KEY_IDENTIFIER_CRITICAL:
    case X509_V_ERR_MISSING_SUBJECT_KEY_IDENTIFIER:
    case X509_V_ERR_SUBJECT_KEY_IDENTIFIER_CRITICAL:
      return ZELKM_ERR_VALIDATION_KEY_AUTHORITY_KEY_IDENTIFIER;
    case X509_V_ERR_UNHANDLED_CRITICAL_EXTENSION:
      return ZELKM_ERR_VALIDATION_KEY_UNKNOWN_CRITICAL_EXTENSION;
    case X509_V_ERR_EXTENSIONS_REQUIRE_VERSION_3:
      return ZELKM_ERR_VALIDATION_KEY_EXTENSIONS_REQUIRED;
    case X509_V_ERR_EMPTY_SUBJECT_ALT_NAME:
    case X509_V_ERR_EMPTY_SUBJECT_SAN_NOT_CRITICAL:
    case X509_V_ERR_SUBJECT_NAME_EMPTY:
      return ZELKM_ERR_VALIDATION_SUBJECT_ALTERNATIVE_NAME;
    case X509_V_ERR_CERT_CHAIN_TOO_LONG:
      return ZELKM_ERR_INVALID_CERT_CHAIN;
    case X509_V_ERR_OUT_OF_MEM:
      return ZELKM_ERR_MEMORY_ALLOCATE;
    default:
      return ZELKM_ERR_VALIDATION;
  }
}

/** Null when one of the certificates is none. */
CertificatesPtr decodeAll(const std::vector<sys::Bytes>& certificates) {
  CertificatesPtr decoded(sk_X509_new_null());
  for (const sys::Bytes& der : certificates) {
    X509Ptr certificate = decodeDer<X509Ptr>(d2i_X509, der);
    if (!certificate || sk_X509_push(decoded.get(), certificate.get()) <= 0) return nullptr;
    (void)certificate.release();
  }
  return decoded;
}

}  // namespace

sys::Status validateChain(sys::ByteView certificate, const std::vector<sys::Bytes>& issuers,
                          const std::vector<sys::Bytes>& anchors) {
  const X509Ptr leaf = decodeDer<X509Ptr>(d2i_X509, certificate);
  const CertificatesPtr untrusted = decodeAll(issuers);
  const CertificatesPtr trusted = decodeAll(anchors);
  if (!leaf || !untrusted || !trusted) return cryptoFailure(ZELKM_ERR_ASN, "read a certificate");

  const StorePtr store(X509_STORE_new());
  const StoreContextPtr context(X509_STORE_CTX_new());
  if (!store || !context ||
      X509_STORE_CTX_init(context.get(), store.get(), leaf.get(), untrusted.get()) != 1) {
    return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "begin a validation");
  }
  X509_STORE_CTX_set0_trusted_stack(context.get(), trusted.get());
  X509_STORE_CTX_set_flags(context.get(), X509_V_FLAG_X509_STRICT | X509_V_FLAG_PARTIAL_CHAIN);
  if (X509_verify_cert(context.get()) == 1) return sys::success();

  const int error = X509_STORE_CTX_get_error(context.get());
  ERR_clear_error();
  return sys::fail(codeOf(error), "certificate %d of the path: %s",
                   X509_STORE_CTX_get_error_depth(context.get()),
                   X509_verify_cert_error_string(error));
}

}  // namespace zel::cms
