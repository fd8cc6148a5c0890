#ifndef ZEL_CMS_PKCS12_KEY_RINGS_H_
#define ZEL_CMS_PKCS12_KEY_RINGS_H_

#include <string>
#include <vector>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Key rings: PKCS #12 files that hold a whole key database. What they have beyond RFC 7292 stands
 * in attributes and secrets, so that every program that reads PKCS #12 reads the keys, the
 * certificates and the labels:
 *
 *     KeyRing ring{.entries = {{.label = "server", .certificate = der, .privateKeyInfo = key}}};
 *     Result<Bytes> file = writeKeyRing(ring, password);
 */

namespace zel::cms {

/** A KeyRingEntry is a certificate, and its private key when there is one. */
struct KeyRingEntry {
  std::string label = {}; /**< real UTF-8; empty for an entry that another program did not name */
  sys::Bytes certificate = {};
  sys::SecretBytes privateKeyInfo = {}; /**< PKCS #8 in clear; empty for a certificate alone */
  bool trusted = false;
  bool isDefault = false;
};

/** A KeyRingRequest is a key that waits for its certificate. */
struct KeyRingRequest {
  std::string label = {}; /**< real UTF-8 */
  sys::Bytes request = {};
  sys::SecretBytes privateKeyInfo = {};
};

/** A KeyRing is all entries of a database, each kind in the order in which they came into it. */
struct KeyRing {
  std::vector<KeyRingEntry> entries = {};
  std::vector<KeyRingRequest> requests = {};
};

/**
 * writeKeyRing answers a key ring under the password (real UTF-8), encrypted and protected as
 * writePkcs12 does it. Its codes.
 */
ZEL_CMS_API sys::Result<sys::Bytes> writeKeyRing(const KeyRing& ring, sys::ByteView password);

/**
 * readKeyRing reads a key ring, or the keys and certificates of any other PKCS #12 file. The codes
 * of readPkcs12; ZELKM_ERR_INVALID_PKCS12_DATA too when a request is not of the key beside it.
 */
ZEL_CMS_API sys::Result<KeyRing> readKeyRing(sys::ByteView file, sys::ByteView password);

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_KEY_RINGS_H_
