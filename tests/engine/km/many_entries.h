#ifndef ZEL_TESTS_ENGINE_KM_MANY_ENTRIES_H_
#define ZEL_TESTS_ENGINE_KM_MANY_ENTRIES_H_

#include <string>

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * Stores with very many certificates, each with a label, a subject and a public key of its own.
 */

namespace zel::km {

/** The label of an entry. */
std::string labelOfEntry(int number);
/** The SubjectPublicKeyInfo of an entry: Ed25519, of a key that nobody has. */
sys::Bytes publicKeyOfEntry(int number);

/** Adds the entries from number 0 on, in one transaction. */
sys::Status insertEntries(Store& store, int count);

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_KM_MANY_ENTRIES_H_
