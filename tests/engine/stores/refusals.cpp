#include "tests/engine/stores/refusals.h"

#include "bridge/kmlib/zelkm_codes.h"

namespace zel::km {

// A key database takes whatever there is, unless only approved algorithms are wanted.
const std::vector<Refusal> kRefusedByKeyDatabases = {
    {Operation::decryptKeyUnderAnotherPassword, ZELKM_ERR_DATABASE_INVALID_PASSWORD},  // 16
    {Operation::generateUnapprovedKey, ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM},        // 39
    {Operation::insertUnapprovedCertificate, ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM},
};

// A token makes and takes keys of RSA and EC alone, lets none of them go, and knows no default.
// Certificates it takes whatever their algorithm, in the approved mode too.
const std::vector<Refusal> kRefusedBySoftHsm = {
    {Operation::insertEd25519Key, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT},  // 141
    {Operation::insertDefault, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT},
    {Operation::replaceByDefault, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT},
    {Operation::setDefault, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT},
    {Operation::defaultKey, ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL},                   // 110
    {Operation::generateEd25519Key, ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE},  // 41
    {Operation::encryptOwnKey, ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL},               // 111
    {Operation::encryptKeyAtHand, ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL},
    {Operation::decryptKeyUnderAnotherPassword, ZELKM_ERR_PKCS12_PWD_CORRUPTION},  // 120
    {Operation::generateUnapprovedKey, ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE},
};

// NSS has each certificate once, and under a label the certificates of one subject only.
const std::vector<Refusal> kRefusedByNss = [] {
  std::vector<Refusal> refused = kRefusedBySoftHsm;
  refused.push_back(
      {Operation::insertCertificateAgain, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED});  // 142
  refused.push_back(
      {Operation::replaceByAnotherSubject, ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED});  // 149
  return refused;
}();

// A certificate store has no requests, no default key and no marks of trust: what lies in it is
// trusted, or not, for lying there. It has each certificate once.
const std::vector<Refusal> kRefusedByCertificateStores = {
    {Operation::insertCertificateAgain, ZELKM_ERR_DATABASE_DUPLICATE_KEY},  // 21
    {Operation::insertRequest, ZELKM_ERR_UNSUPPORTED_OPTION},               // 80
    {Operation::findRequest, ZELKM_ERR_KEY_GET_BY_LABEL},                   // 117
    {Operation::replaceRequest, ZELKM_ERR_KEY_GET_BY_LABEL},
    {Operation::removeRequest, ZELKM_ERR_KEY_GET_BY_LABEL},
    {Operation::insertDefault, ZELKM_ERR_UNSUPPORTED_OPTION},
    {Operation::replaceByDefault, ZELKM_ERR_UNSUPPORTED_OPTION},
    {Operation::setDefault, ZELKM_ERR_UNSUPPORTED_OPTION},
    {Operation::defaultKey, ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL},  // 110
    {Operation::trust, ZELKM_ERR_UNSUPPORTED_OPTION},
    {Operation::decryptKeyUnderAnotherPassword, ZELKM_ERR_PKCS12_PWD_CORRUPTION},  // 120
    {Operation::generateUnapprovedKey, ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM},    // 39
    {Operation::insertUnapprovedCertificate, ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM},
};

}  // namespace zel::km
