#ifndef ZEL_KM_WORK_DECODING_H_
#define ZEL_KM_WORK_DECODING_H_

#include <vector>

#include "engine/km/store/store.h"
#include "engine/sys/bytes.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * Files, messages and private keys that belong to no store, taken apart and put together.
 */

namespace zel::km {

/** What a file of Base64 encodes. The codes of sys::readFile and cms::decodePem. */
sys::Result<sys::Bytes> decodeFile(const sys::FileName& file);

/** The certificates of a bundle, under labels made of their subjects. As cms::readBundle. */
sys::Result<std::vector<LabelledCertificate>> labelledBundle(sys::ByteView bundle);

/** EncryptedPrivateKeyInfo of a key in any form that cms::readPrivateKey reads. */
sys::Result<sys::Bytes> encryptKey(sys::ByteView privateKey, const sys::Password& password);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_DECODING_H_
