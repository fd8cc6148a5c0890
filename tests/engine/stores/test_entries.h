#ifndef ZEL_TESTS_ENGINE_STORES_TEST_ENTRIES_H_
#define ZEL_TESTS_ENGINE_STORES_TEST_ENTRIES_H_

#include <string>

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "tests/engine/cms/tools.h"

/**
 * @file
 * What tests put into stores, and what they prove of what comes out.
 */

namespace zel::km {

/** An entry for the authority's certificate, with its key. */
KeyEntry entryOf(const std::string& label, const cms::TestAuthority& authority);
/** An entry for the authority's certificate alone. */
KeyEntry signerEntryOf(const std::string& label, const cms::TestAuthority& authority);
/** A pending request of the authority, with its key. */
RequestEntry requestOf(const std::string& label, const cms::TestAuthority& authority);

/** A request for a key of the store, which signs it. */
sys::Bytes requestBy(Store& store, const GeneratedKey& key, const std::string& commonName);

/** The SubjectPublicKeyInfo of a certificate. */
sys::Bytes publicKeyOf(const sys::Bytes& certificate);

/** True when OpenSSL finds the signature over the message to be that of the key. */
bool isSignature(sys::ByteView signature, sys::ByteView message, SigningDigest digest,
                 const sys::Bytes& publicKey);

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_STORES_TEST_ENTRIES_H_
