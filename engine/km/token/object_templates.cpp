#include "engine/km/token/object_templates.h"

#include <openssl/core_names.h>

#include <algorithm>

#include "engine/cms/keys.h"
#include "engine/km/token/public_keys.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

/** What every private key here has in common, whatever its algorithm. */
Template privateKeyTemplate(sys::ByteView id) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_PRIVATE_KEY)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, true)
      .addFlag(CKA_SENSITIVE, true)
      .addFlag(CKA_EXTRACTABLE, false)
      .addFlag(CKA_SIGN, true)
      .addBytes(CKA_ID, id);
  return attributes;
}

Template publicKeyTemplate(sys::ByteView id) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_PUBLIC_KEY)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, false)
      .addFlag(CKA_VERIFY, true)
      .addBytes(CKA_ID, id);
  return attributes;
}

/** RSA keys decrypt as well: TLS and mail still ask them to. EC keys derive. None wraps others. */
KeyPairTemplates pairTemplates(sys::ByteView id, bool isRsa) {
  KeyPairTemplates pair{.publicKey = publicKeyTemplate(id), .privateKey = privateKeyTemplate(id)};
  pair.publicKey.addFlag(CKA_ENCRYPT, isRsa).addFlag(CKA_WRAP, false);
  pair.privateKey.addFlag(CKA_DECRYPT, isRsa)
      .addFlag(CKA_DERIVE, !isRsa)
      .addFlag(CKA_UNWRAP, false);
  return pair;
}

/** The curve's object identifier, DER. */
sys::Bytes curveOfSize(int bits) {
  const int nid = bits == 256 ? NID_X9_62_prime256v1 : bits == 384 ? NID_secp384r1 : NID_secp521r1;
  return cms::encodeDer(i2d_ASN1_OBJECT, static_cast<const ASN1_OBJECT*>(OBJ_nid2obj(nid)));
}

sys::SecretBytes secretNumber(const EVP_PKEY& key, const char* name, std::size_t length = 0) {
  BIGNUM* number = nullptr;
  EVP_PKEY_get_bn_param(&key, name, &number);
  const cms::BigNumberPtr owned(number);
  if (!owned) return {};
  sys::SecretBytes bytes(std::max(static_cast<std::size_t>(BN_num_bytes(number)), length));
  BN_bn2binpad(number, bytes.data(), static_cast<int>(bytes.size()));
  return bytes;
}

void addRsaKey(Template& attributes, const EVP_PKEY& key) {
  static constexpr struct {
    CK_ATTRIBUTE_TYPE type;
    const char* parameter;
  } kNumbers[] = {
      {CKA_MODULUS, OSSL_PKEY_PARAM_RSA_N},
      {CKA_PUBLIC_EXPONENT, OSSL_PKEY_PARAM_RSA_E},
      {CKA_PRIVATE_EXPONENT, OSSL_PKEY_PARAM_RSA_D},
      {CKA_PRIME_1, OSSL_PKEY_PARAM_RSA_FACTOR1},
      {CKA_PRIME_2, OSSL_PKEY_PARAM_RSA_FACTOR2},
      {CKA_EXPONENT_1, OSSL_PKEY_PARAM_RSA_EXPONENT1},
      {CKA_EXPONENT_2, OSSL_PKEY_PARAM_RSA_EXPONENT2},
      {CKA_COEFFICIENT, OSSL_PKEY_PARAM_RSA_COEFFICIENT1},
  };
  attributes.addNumber(CKA_KEY_TYPE, CKK_RSA);
  for (const auto& number : kNumbers) {
    attributes.addBytes(number.type, secretNumber(key, number.parameter));
  }
}

sys::Status addEcKey(Template& attributes, const EVP_PKEY& key) {
  sys::Result<sys::Bytes> curve = curveParameters(key);
  if (!curve) return curve.failure();
  const auto length = static_cast<std::size_t>(EVP_PKEY_get_bits(&key) + 7) / 8;
  attributes.addNumber(CKA_KEY_TYPE, CKK_EC)
      .addBytes(CKA_EC_PARAMS, curve.value())
      .addBytes(CKA_VALUE, secretNumber(key, OSSL_PKEY_PARAM_PRIV_KEY, length));
  return sys::success();
}

}  // namespace

sys::Result<CertificateParts> readCertificateParts(sys::ByteView der) {
  const cms::X509Ptr certificate = cms::decodeDer<cms::X509Ptr>(d2i_X509, der);
  if (!certificate) return cms::cryptoFailure(ZELKM_ERR_ASN, "read a certificate");
  const X509* x509 = certificate.get();
  return CertificateParts{
      .der = {der.begin(), der.end()},
      .subject = cms::encodeDer(i2d_X509_NAME, X509_get_subject_name(x509)),
      .issuer = cms::encodeDer(i2d_X509_NAME, X509_get_issuer_name(x509)),
      .serialNumber = cms::encodeDer(i2d_ASN1_INTEGER, X509_get0_serialNumber(x509)),
      .publicKey = cms::encodeDer(i2d_X509_PUBKEY, X509_get_X509_PUBKEY(x509)),
  };
}

Template certificateTemplate(const CertificateParts& parts, std::string_view label,
                             sys::ByteView id) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_CERTIFICATE)
      .addNumber(CKA_CERTIFICATE_TYPE, CKC_X_509)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, false)
      .addText(CKA_LABEL, label)
      .addBytes(CKA_ID, id)
      .addBytes(CKA_SUBJECT, parts.subject)
      .addBytes(CKA_ISSUER, parts.issuer)
      .addBytes(CKA_SERIAL_NUMBER, parts.serialNumber)
      .addBytes(CKA_VALUE, parts.der);
  return attributes;
}

Template requestTemplate(sys::ByteView request, std::string_view label) {
  Template attributes;
  attributes.addNumber(CKA_CLASS, CKO_DATA)
      .addFlag(CKA_TOKEN, true)
      .addFlag(CKA_PRIVATE, true)
      .addText(CKA_LABEL, label)
      .addText(CKA_APPLICATION, "PKCS #10 certification request")
      .addBytes(CKA_VALUE, request);
  return attributes;
}

KeyPairTemplates newRsaPair(int bits, sys::ByteView id) {
  static constexpr std::uint8_t kF4[] = {1, 0, 1};
  KeyPairTemplates pair = pairTemplates(id, true);
  pair.publicKey.addNumber(CKA_MODULUS_BITS, static_cast<CK_ULONG>(bits))
      .addBytes(CKA_PUBLIC_EXPONENT, kF4);
  return pair;
}

KeyPairTemplates newEcPair(int bits, sys::ByteView id) {
  KeyPairTemplates pair = pairTemplates(id, false);
  pair.publicKey.addBytes(CKA_EC_PARAMS, curveOfSize(bits));
  return pair;
}

sys::Result<KeyPairTemplates> importedPair(const EVP_PKEY& key, std::string_view label,
                                           sys::ByteView id) {
  const bool isRsa = cms::describeKey(key).algorithm == cms::KeyAlgorithm::rsa;
  KeyPairTemplates pair = pairTemplates(id, isRsa);
  pair.publicKey.addText(CKA_LABEL, label);
  pair.privateKey.addText(CKA_LABEL, label);
  sys::Status status = addPublicKey(pair.publicKey, key);
  if (!status) return status.failure();
  if (isRsa) {
    addRsaKey(pair.privateKey, key);
  } else {
    status = addEcKey(pair.privateKey, key);
  }
  if (!status) return status.failure();
  return pair;
}

}  // namespace zel::km::token
