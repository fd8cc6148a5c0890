#ifndef ZEL_KM_CERTSTORE_ENTRY_FILE_H_
#define ZEL_KM_CERTSTORE_ENTRY_FILE_H_

#include <string>
#include <vector>

#include "engine/cms/pkcs12/pkcs12.h"
#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * The content of the files that certificate stores consist of: PKCS #12 without a password, one
 * certificate each, with its key when there is one.
 */

namespace zel::km::certstore {

/** A file that is larger holds no entry. */
inline constexpr std::size_t kMostFileBytes = 16UL << 20;

/**
 * readEntryFile answers what a file offers, each with a chain of its certificate alone. Other
 * programs put several into one: all keys count then, and the certificates only when there is no
 * key, for beside keys they are but the issuers. Certificates that are in no PKCS #12 file, DER or
 * PEM, count too. The codes of sys::readOwnFile, cms::readPkcs12 and cms::readBundle.
 */
sys::Result<std::vector<cms::Pkcs12Entry>> readEntryFile(const std::string& path);

/**
 * The content of the file of an entry. In the clear as it is, it is wiped as secrets are.
 * ZELKM_ERR_PARAMETER (65) for a label with U+0000.
 */
sys::Result<sys::SecretBytes> encodeEntry(const KeyEntry& entry);

}  // namespace zel::km::certstore

#endif  // ZEL_KM_CERTSTORE_ENTRY_FILE_H_
