#include "engine/cms/issued_extensions.h"

#include <algorithm>
#include <ctime>
#include <optional>

#include "engine/cms/extensions.h"
#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

using ConstraintsPtr = std::unique_ptr<BASIC_CONSTRAINTS, Releaser<BASIC_CONSTRAINTS_free>>;
using UsagePtr = std::unique_ptr<ASN1_BIT_STRING, Releaser<ASN1_BIT_STRING_free>>;

constexpr int kKeyCertSignBit = 5;
constexpr int kCrlSignBit = 6;
constexpr int kCritical = 1;

/** The rights of an authority, with the number of authorities that may follow below it. */
struct AuthorityRights {
  std::optional<long> pathLength;
};

/** The path length asked for; one that is no number of authorities grants none of them below. */
std::optional<long> requestedPathLength(const BASIC_CONSTRAINTS& asked) {
  if (asked.pathlen == nullptr) return std::nullopt;
  std::int64_t length = 0;
  const bool isNumber = ASN1_INTEGER_get_int64(&length, asked.pathlen) == 1 && length >= 0;
  ERR_clear_error();
  return isNumber ? length : 0;
}

/** The path length of the issuer's basic constraints; nothing when it has no limit. */
std::optional<long> pathLengthOf(X509& issuer) {
  const long length = X509_get_pathlen(&issuer);
  if (length < 0) return std::nullopt;
  return length;
}

std::optional<AuthorityRights> grantedRights(const STACK_OF(X509_EXTENSION) * wanted,
                                             X509& issuer) {
  const ConstraintsPtr asked(static_cast<BASIC_CONSTRAINTS*>(
      X509V3_get_d2i(wanted, NID_basic_constraints, nullptr, nullptr)));
  const std::optional<long> issuerLength = pathLengthOf(issuer);
  if (!asked || asked->ca == 0) return std::nullopt;
  if (issuerLength == 0) {
    sys::traceLine("the issuer's path length allows no authority below it");
    return std::nullopt;
  }
  AuthorityRights rights{requestedPathLength(*asked)};
  if (issuerLength) {
    rights.pathLength = std::min(rights.pathLength.value_or(*issuerLength - 1), *issuerLength - 1);
  }
  return rights;
}

bool addConstraints(X509& certificate, const std::optional<AuthorityRights>& rights) {
  const ConstraintsPtr constraints(BASIC_CONSTRAINTS_new());
  if (!constraints) return false;
  constraints->ca = rights ? 0xFF : 0;
  if (rights && rights->pathLength) {
    constraints->pathlen = ASN1_INTEGER_new();
    if (constraints->pathlen == nullptr ||
        ASN1_INTEGER_set_int64(constraints->pathlen, *rights->pathLength) != 1) {
      return false;
    }
  }
  return X509_add1_ext_i2d(&certificate, NID_basic_constraints, constraints.get(), kCritical,
                           X509V3_ADD_DEFAULT) == 1;
}

bool addKeyUsage(X509& certificate, const STACK_OF(X509_EXTENSION) * wanted, bool isAuthority) {
  UsagePtr usage(
      static_cast<ASN1_BIT_STRING*>(X509V3_get_d2i(wanted, NID_key_usage, nullptr, nullptr)));
  if (!usage && !isAuthority) return true;
  if (!usage) {
    usage.reset(ASN1_BIT_STRING_new());
    if (!usage) return false;
    ASN1_BIT_STRING_set_bit(usage.get(), kCrlSignBit, 1);
  }
  ASN1_BIT_STRING_set_bit(usage.get(), kKeyCertSignBit, isAuthority ? 1 : 0);
  if (!isAuthority) ASN1_BIT_STRING_set_bit(usage.get(), kCrlSignBit, 0);
  if (ASN1_STRING_length(usage.get()) == 0) return true;
  return X509_add1_ext_i2d(&certificate, NID_key_usage, usage.get(), kCritical,
                           X509V3_ADD_DEFAULT) == 1;
}

bool copyExtension(X509& certificate, const STACK_OF(X509_EXTENSION) * wanted, int nid) {
  const int at = X509v3_get_ext_by_NID(wanted, nid, -1);
  if (at < 0) return true;
  return X509_add_ext(&certificate, X509v3_get_ext(wanted, at), -1) == 1;
}

bool addIdentifiers(X509& certificate, X509& issuer) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
  const ExtensionPtr subjectKey(
      X509V3_EXT_conf_nid(nullptr, &context, NID_subject_key_identifier, "hash"));
  // By name and serial number only where the issuer has no identifier of its own.
  const ExtensionPtr authorityKey(
      X509V3_EXT_conf_nid(nullptr, &context, NID_authority_key_identifier, "keyid,issuer"));
  return subjectKey && authorityKey && X509_add_ext(&certificate, subjectKey.get(), -1) == 1 &&
         X509_add_ext(&certificate, authorityKey.get(), -1) == 1;
}

}  // namespace

sys::Status checkIssuer(sys::ByteView issuerCertificate) {
  const X509Ptr issuer = decodeDer<X509Ptr>(d2i_X509, issuerCertificate);
  if (!issuer) return cryptoFailure(ZELKM_ERR_ASN, "read the issuer's certificate");
  if ((X509_get_key_usage(issuer.get()) & KU_KEY_CERT_SIGN) == 0) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_USAGE, "the issuer's key may not sign certificates");
  }
  if (X509_check_ca(issuer.get()) == 0) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS, "the issuer is no authority");
  }
  std::time_t now = std::time(nullptr);
  if (X509_cmp_time(X509_get0_notBefore(issuer.get()), &now) >= 0 ||
      X509_cmp_time(X509_get0_notAfter(issuer.get()), &now) <= 0) {
    return sys::fail(ZELKM_ERR_VALIDATION_KEY_VALIDITY, "the issuer is not valid now");
  }
  return sys::success();
}

sys::Result<sys::Bytes> issuedExtensions(sys::ByteView requestedExtensions,
                                         sys::ByteView publicKeyInfo,
                                         sys::ByteView issuerCertificate) {
  const sys::Result<ExtensionsPtr> read = readExtensions(requestedExtensions);
  if (!read) return read.failure();
  const STACK_OF(X509_EXTENSION)* wanted = read.value().get();
  const X509Ptr issuer = decodeDer<X509Ptr>(d2i_X509, issuerCertificate);
  const PublicKeyPtr info = decodeDer<PublicKeyPtr>(d2i_X509_PUBKEY, publicKeyInfo);
  EVP_PKEY* key = info ? X509_PUBKEY_get0(info.get()) : nullptr;
  // A certificate of nothing but a key and extensions: OpenSSL makes identifiers from one.
  const X509Ptr bearer(X509_new());
  if (!issuer || key == nullptr || !bearer || X509_set_pubkey(bearer.get(), key) != 1) {
    return cryptoFailure(ZELKM_ERR_ASN, "read the issuer or the key of a request");
  }

  const std::optional<AuthorityRights> rights = grantedRights(wanted, *issuer);
  if (!addConstraints(*bearer, rights) || !addKeyUsage(*bearer, wanted, rights.has_value()) ||
      !copyExtension(*bearer, wanted, NID_ext_key_usage) ||
      !copyExtension(*bearer, wanted, NID_subject_alt_name) || !addIdentifiers(*bearer, *issuer)) {
    return cryptoFailure(ZELKM_ERR_ISSUING_CERTIFICATE, "grant extensions");
  }
  return encodeExtensions(X509_get0_extensions(bearer.get()));
}

}  // namespace zel::cms
