#include "engine/cms/pem.h"

#include <openssl/pem.h>

#include "engine/cms/openssl_ptr.h"

namespace zel::cms {

sys::Result<sys::Bytes> encodePem(const char* armour, sys::ByteView der) {
  const BioPtr text(BIO_new(BIO_s_mem()));
  if (!text ||
      PEM_write_bio(text.get(), armour, "", der.data(), static_cast<long>(der.size())) <= 0) {
    return cryptoFailure(ZELKM_ERR_BASE64_ENCODING, "encode as Base64");
  }
  char* data = nullptr;
  const long length = BIO_get_mem_data(text.get(), &data);
  return sys::Bytes(data, data + length);
}

}  // namespace zel::cms
