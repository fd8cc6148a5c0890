#ifndef ZEL_TESTS_ENGINE_STORES_REFUSALS_H_
#define ZEL_TESTS_ENGINE_STORES_REFUSALS_H_

#include <cstddef>
#include <vector>

/**
 * @file
 * What each kind of store refuses, and with which code. refusals_test.cpp tries every operation on
 * every kind: what stands here is refused, all else is done.
 */

namespace zel::km {

/** The operations of a store; where stores differ in what they take, each case on its own. */
enum class Operation {
  listKeys,
  findKey,
  findKeysByPublicKey,
  findKeysBySubject,
  insertCertificate, /**< an entry without a key */
  insertKey,
  insertEd25519Key,
  insertCertificateAgain, /**< one that is there under another label */
  insertTrusted,
  insertDefault,
  replaceKey, /**< by one of the same subject */
  replaceByAnotherSubject,
  replaceByDefault,
  removeKey,

  listRequests,
  findRequest,
  findRequestsByPublicKey,
  insertRequest,
  replaceRequest,
  removeRequest,

  defaultKey,
  setDefault,
  trust,
  distrust,

  runTransaction,
  runSnapshot,
  useSignerStore,

  generateRsaKey,
  generateEcKey,
  generateEd25519Key,
  sign,
  signWithKeyAtHand, /**< one that is in no store */
  encryptOwnKey,
  encryptKeyAtHand,
  decryptKey,
  decryptKeyUnderAnotherPassword,

  // While the process keeps to approved algorithms.
  generateApprovedKey,
  generateUnapprovedKey,
  insertApprovedCertificate,
  insertUnapprovedCertificate,
};

inline constexpr std::size_t kOperationCount =
    static_cast<std::size_t>(Operation::insertUnapprovedCertificate) + 1;

struct Refusal {
  Operation operation;
  int code;
};

extern const std::vector<Refusal> kRefusedByKeyDatabases;
extern const std::vector<Refusal> kRefusedBySoftHsm;
extern const std::vector<Refusal> kRefusedByNss;
extern const std::vector<Refusal> kRefusedByCertificateStores;

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_STORES_REFUSALS_H_
