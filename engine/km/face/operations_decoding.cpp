// Taking files, messages and private keys apart that belong to no store.

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/epki.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_certificates.h"
#include "engine/km/face/item_keys.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/decoding.h"
#include "engine/sys/file_name.h"
#include "engine/sys/memory.h"
#include "engine/sys/password.h"

using namespace zel;
using namespace zel::km;

int ZELKM_Base64DecodeFileToBuf(const char* fileName, unsigned char** buffer, uint32_t* length) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(buffer); !given) return given;
    if (sys::Status given = requireOutput(length); !given) return given;
    const sys::Result<sys::FileName> name = sys::FileName::given(fileName);
    if (!name) return name.failure();
    const sys::Result<sys::Bytes> decoded = decodeFile(name.value());
    if (!decoded) return decoded.failure();
    *buffer = sys::handOutBytes(decoded.value());
    *length = static_cast<uint32_t>(decoded.value().size());
    return sys::success();
  });
}

int ZELKM_ExtractCertListFromPKCS7Data(const unsigned char* bytes, uint32_t length,
                                       ZELKMCertItemList** certList) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(certList); !given) return given;
    const sys::Result<sys::ByteView> message = bytesArgument(bytes, length);
    if (!message) return message.failure();
    const sys::Result<std::vector<LabelledCertificate>> certificates =
        labelledBundle(message.value());
    if (!certificates) return certificates.failure();
    sys::Result<CertItemListPtr> list = handOutCertificates(certificates.value());
    if (!list) return list.failure();
    *certList = list.value().release();
    return sys::success();
  });
}

int ZELKM_GetEPKIItemFromPrivateKey(const unsigned char* keyBytes, uint32_t keyLength,
                                    const char* password, ZELKMEPKIItem** epki) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(epki); !given) return given;
    const sys::Result<sys::ByteView> bytes = bytesArgument(keyBytes, keyLength);
    if (!bytes) return bytes.failure();
    const sys::Result<sys::Password> secret = sys::Password::given(password);
    if (!secret) return secret.failure();
    const sys::Result<sys::Bytes> encrypted = encryptKey(bytes.value(), secret.value());
    if (!encrypted) return encrypted.failure();
    *epki = handOutEpki(encrypted.value()).release();
    return sys::success();
  });
}

int ZELKM_GetPrivKeyInfoItemFromEPKIItem(const ZELKMEPKIItem* epki, const char* password,
                                         ZELKMPrivKeyInfoItem** privKeyInfo) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(epki); !given) return given;
    if (sys::Status given = requireOutput(privKeyInfo); !given) return given;
    const sys::Result<sys::ByteView> bytes = bytesArgument(epki->berData, epki->berDataLength);
    if (!bytes) return bytes.failure();
    const sys::Result<sys::Password> secret = sys::Password::given(password);
    if (!secret) return secret.failure();
    const sys::Result<sys::SecretBytes> pkcs8 =
        cms::decryptPrivateKey(bytes.value(), secret.value().bytes());
    if (!pkcs8) return pkcs8.failure();

    PrivKeyInfoItemPtr item(sys::handOutRecord<ZELKMPrivKeyInfoItem>());
    item->berData = sys::handOutBytes(pkcs8.value());
    item->berDataLength = static_cast<uint32_t>(pkcs8.value().size());
    *privKeyInfo = item.release();
    return sys::success();
  });
}
