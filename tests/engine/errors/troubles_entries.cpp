#include "engine/cms/epki.h"
#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/errors/documents.h"
#include "tests/engine/errors/provocation.h"

// Entries that are not there or there already, and keys that do not fit.

namespace zel::km::errors {

namespace {

uint32_t lengthOf(const sys::Bytes& bytes) { return static_cast<uint32_t>(bytes.size()); }

const cms::TestAuthority& ed25519() {
  static const cms::TestAuthority authority("Ed25519", 25519);
  return authority;
}

/** A certificate of an RSA key of that many bits, which nobody would make any more. */
sys::Bytes certificateOfRsa(const EVP_PKEY& key) {
  return materials().stranger.issueFor(cms::publicKeyInfo(key).value(), "Old RSA");
}

const EVP_PKEY& rsa1024() {
  static const cms::KeyPtr key(EVP_RSA_gen(1024));
  return *key;
}

/** Too small for a signature with SHA-512. */
const EVP_PKEY& rsa512() {
  static const cms::KeyPtr key(EVP_RSA_gen(512));
  return *key;
}

void insert(World& world, const char* label, const sys::Bytes& certificate, const sys::Bytes& key) {
  ZELKM_InsertKey(world.handle, label, lengthOf(certificate), certificate.data(), lengthOf(key),
                  key.empty() ? nullptr : key.data(), 0, 0);
}

void writePfx(World& world, const sys::Bytes& certificate, const EVP_PKEY& key) {
  const sys::Bytes pkcs8 = privateKeyOf(key);
  world.write(
      world.pfxFile,
      cms::writePkcs12({{.privateKeyInfo = {pkcs8.begin(), pkcs8.end()}, .chain = {certificate}}},
                       sys::bytesOf(kPfxPassword))
          .value());
}

/** The encrypted key with the end of its ciphertext garbled. */
sys::Bytes damagedKey() {
  sys::Bytes damaged = materials().encryptedKey;
  damaged.back() ^= 1;
  return damaged;
}

sys::Bytes keyUnderAnotherPassword() {
  const sys::Bytes& key = materials().key;
  return cms::encryptPrivateKey(key, sys::bytesOf(kOtherPassword)).value();
}

std::vector<Troubles> ofLabels() {
  return {
      {nullptr,
       {"ZELKM_GetKeyItemByLabel", "ZELKM_GetKeyItemListByLabel", "ZELKM_GetReqKeyItemByLabel",
        "ZELKM_IsPrivateKeyPresent", "ZELKM_DeleteKey", "ZELKM_DeleteRequestKeyPair",
        "ZELKM_SetDefaultKeyByLabel", "ZELKM_SetTrustStatus", "ZELKM_ReCreateCertReq",
        "ZELKM_ReCreateCertReqSig", "ZELKM_IssueCert", "ZELKM_IssueCertSig", "ZELKM_ExportCert",
        "ZELKM_ExportKeys"},
       {{ZELKM_ERR_KEY_GET_BY_LABEL, "nothing has the label",
         [](World& w) { w.given.label = "nothing"; }}}},

      {nullptr,
       {"ZELKM_GetKeyItemsByPublicKey"},
       {{ZELKM_ERR_KEY_GET_BY_LABEL, "no entry has the public key",
         [](World& w) {
           w.given.document = cms::publicKeyInfo(materials().stranger.key()).value();
         }}}},

      {nullptr,
       {"ZELKM_GetDefaultKeyItem"},
       {{ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL, "no key is the default",
         [](World& w) { ZELKM_DeleteKey(w.handle, "ca"); }}}},

      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt",
        "ZELKM_StoreCACert"},
       {{ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "a key has the label already",
         [](World& w) { w.given.label = "server"; }}}},

      {nullptr,
       {"ZELKM_InsertReqKey", "ZELKM_CreateNewCertReq", "ZELKM_CreateNewCertReqSigExt"},
       {{ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "a request has the label already",
         [](World& w) { w.given.label = "pending"; }}}},

      {nullptr,
       {"ZELKM_ReceiveCert"},
       {{ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "a key has the label of the request",
         [](World& w) { insert(w, "pending", materials().stranger.certificate(), {}); }}}},
  };
}

std::vector<Troubles> ofKeys() {
  return {
      {nullptr,
       {"ZELKM_InsertKey"},
       {{ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "the certificate is missing",
         [](World& w) { w.given.document = sys::Bytes(); }},
        {ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "a default key without its private key",
         [](World& w) {
           w.given.key = sys::Bytes();
           w.given.makeDefault = 1;
         }}}},

      {nullptr,
       {"ZELKM_InsertReqKey"},
       {{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "the private key is missing",
         [](World& w) { w.given.key = sys::Bytes(); }}}},

      {nullptr,
       {"ZELKM_SetDefaultKeyByLabel", "ZELKM_IssueCert", "ZELKM_IssueCertSig"},
       {{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "the entry has no private key",
         [](World& w) { w.given.label = "other"; }}}},

      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_InsertReqKey"},
       {{ZELKM_ERR_ASN, "the private key is none",
         [](World& w) {
           w.given.key = sys::Bytes{0x30, 0x00};
         }},
        {ZELKM_ERR_VALIDATION_KEY_PAIR, "the private key does not belong to it",
         [](World& w) { w.given.key = privateKeyOf(materials().other.key()); }},
        {ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "the private key is not RSA, EC or Ed25519",
         [](World& w) { w.given.key = privateKeyOf(*foreignKey()); }},
        {ZELKM_ERR_DATABASE_INVALID_PASSWORD,
         "the private key is encrypted, but not under the database's password",
         [](World& w) { w.given.key = keyUnderAnotherPassword(); }},
        {ZELKM_ERR_DATABASE_KEY_INTEGRITY, "the private key is encrypted, and damaged",
         [](World& w) { w.given.key = damagedKey(); }},
        {ZELKM_ERR_PBE_ALG_UNSUPPORT, "the private key is encrypted in a way that is not known",
         [](World& w) { w.given.key = underUnknownCipher(materials().encryptedKey); }}}},

      {nullptr,
       {"ZELKM_GetEPKIItemFromPrivateKey"},
       {{ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "the private key is not RSA, EC or Ed25519",
         [](World& w) { w.given.document = privateKeyOf(*foreignKey()); }}}},

      {nullptr,
       {"ZELKM_GetPrivKeyInfoItemFromEPKIItem"},
       {{ZELKM_ERR_DATABASE_INVALID_PASSWORD, "the password is wrong",
         [](World& w) { w.given.password = kOtherPassword; }},
        {ZELKM_ERR_DATABASE_KEY_INTEGRITY, "the encrypted key is damaged",
         [](World& w) { w.given.document = damagedKey(); }},
        {ZELKM_ERR_DATABASE_KEY_INTEGRITY, "the bytes are no EncryptedPrivateKeyInfo",
         [](World& w) {
           w.given.document = sys::Bytes{0x30, 0x00};
         }},
        {ZELKM_ERR_PBE_ALG_UNSUPPORT,
         "an encryption that is not known, or more than ten million iterations",
         [](World& w) { w.given.document = underUnknownCipher(materials().encryptedKey); }}}},

      {nullptr,
       {"ZELKM_ImportKeysFromPFXFile", "ZELKM_Kyr2Kdb"},
       {{ZELKM_ERR_PBE_ALG_UNSUPPORT, "an encryption or integrity check that is not known",
         [](World& w) { w.write(w.pfxFile, underUnknownCipher(materials().pfx)); }},
        {ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "a key without its certificate",
         [](World& w) {
           writePfx(w, materials().other.certificate(), materials().stranger.key());
         }},
        {ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "a key that is not RSA, EC or Ed25519",
         [](World& w) { writePfx(w, materials().other.certificate(), *foreignKey()); }}}},
  };
}

std::vector<Troubles> ofApprovedAlgorithms() {
  return {
      {nullptr,
       {"ZELKM_InsertKey", "ZELKM_StoreCACert"},
       {{ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM,
         "approved algorithms only: the key is not RSA, nor EC on P-256, P-384 or P-521",
         [](World& w) {
           w.approveOnly();
           w.given.document = ed25519().certificate();
           w.given.key = privateKeyOf(ed25519().key());
         }},
        {ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE,
         "approved algorithms only: an RSA key of less than 2048 bits",
         [](World& w) {
           w.approveOnly();
           w.given.document = certificateOfRsa(rsa1024());
           w.given.key = privateKeyOf(rsa1024());
         }}}},

      {nullptr,
       {"ZELKM_InsertReqKey", "ZELKM_IssueCert", "ZELKM_IssueCertSig"},
       {{ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM,
         "approved algorithms only: the key is not RSA, nor EC on P-256, P-384 or P-521",
         [](World& w) {
           w.approveOnly();
           w.given.document = requestOf(ed25519().key(), "Ed25519");
           w.given.key = privateKeyOf(ed25519().key());
         }},
        {ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE,
         "approved algorithms only: an RSA key of less than 2048 bits",
         [](World& w) {
           w.approveOnly();
           w.given.document = requestOf(rsa1024(), "Old RSA");
           w.given.key = privateKeyOf(rsa1024());
         }}}},

      {nullptr,
       {"ZELKM_ImportKeysFromPFXFile"},
       {{ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM,
         "approved algorithms only: the key is not RSA, nor EC on P-256, P-384 or P-521",
         [](World& w) {
           writePfx(w, ed25519().certificate(), ed25519().key());
           w.approveOnly();
         }},
        {ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE,
         "approved algorithms only: an RSA key of less than 2048 bits",
         [](World& w) {
           writePfx(w, certificateOfRsa(rsa1024()), rsa1024());
           w.approveOnly();
         }}}},

      {nullptr,
       {"ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReq",
        "ZELKM_CreateNewCertReqSigExt"},
       {{ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM, "approved algorithms only: an Ed25519 key",
         [](World& w) {
           w.approveOnly();
           w.given.keySize = 25519;
         }},
        {ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE,
         "the key size is not 256, 384, 521, 25519, or from 2048 to 16384",
         [](World& w) { w.given.keySize = 1024; }}}},
  };
}

std::vector<Troubles> ofSignatures() {
  return {
      {nullptr,
       {"ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReqSigExt",
        "ZELKM_ReCreateCertReqSig", "ZELKM_IssueCertSig"},
       {{ZELKM_ERR_SIGNATURE_ALGORITHM, "the signature algorithm is not 1 or 2",
         [](World& w) { w.given.signatureAlgorithm = 3; }}}},

      {nullptr,
       {"ZELKM_IssueCertSig"},
       {{ZELKM_ERR_CRYPTO_SIGN, "the issuer's key cannot make the signature: it is too small",
         [](World& w) {
           insert(w, "weak", certificateOfRsa(rsa512()), privateKeyOf(rsa512()));
           w.given.label = "weak";
           w.given.signatureAlgorithm = 2;
         }}}},

      {nullptr,
       {"ZELKM_ReCreateCertReqSig"},
       {{ZELKM_ERR_CRYPTO_SIGN, "the key cannot make the signature: it is too small",
         [](World& w) {
           const sys::Bytes request = requestOf(rsa512(), "Old RSA");
           const sys::Bytes key = privateKeyOf(rsa512());
           ZELKM_InsertReqKey(w.handle, "weak", lengthOf(request), request.data(), lengthOf(key),
                              key.data());
           w.given.label = "weak";
           w.given.signatureAlgorithm = 2;
         }}}},
  };
}

}  // namespace

std::vector<Troubles> troublesOfEntries() {
  std::vector<Troubles> all = ofLabels();
  for (const auto& more : {ofKeys(), ofApprovedAlgorithms(), ofSignatures()}) {
    all.insert(all.end(), more.begin(), more.end());
  }
  return all;
}

}  // namespace zel::km::errors
