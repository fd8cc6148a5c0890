#include "engine/cms/bundles.h"

#include "engine/cms/openssl_ptr.h"
#include "engine/cms/pem.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** The certificates of a message, null when it can have none. */
const STACK_OF(X509) * certificatesOf(const PKCS7& message) {
  if (PKCS7_type_is_signed(&message)) return message.d.sign->cert;
  if (PKCS7_type_is_signedAndEnveloped(&message)) return message.d.signed_and_enveloped->cert;
  return nullptr;
}

/** Adds what one DER object holds. */
sys::Status addObject(sys::ByteView der, std::vector<sys::Bytes>& certificates) {
  if (decodeDer<X509Ptr>(d2i_X509, der)) {
    certificates.emplace_back(der.begin(), der.end());
    return sys::success();
  }
  const Pkcs7Ptr message = decodeDer<Pkcs7Ptr>(d2i_PKCS7, der);
  // The content is optional (RFC 2315, section 7), whatever the type.
  if (!message || message->d.ptr == nullptr) {
    return cryptoFailure(ZELKM_ERR_ASN, "read a certificate or a PKCS #7 message");
  }
  ERR_clear_error();
  const STACK_OF(X509)* held = certificatesOf(*message);
  for (int i = 0; i < sk_X509_num(held); ++i) {
    certificates.push_back(encodeDer(i2d_X509, sk_X509_value(held, i)));
  }
  return sys::success();
}

}  // namespace

sys::Result<std::vector<sys::Bytes>> readBundle(sys::ByteView bytes) {
  std::vector<sys::Bytes> certificates;
  sys::Status status;
  if (isPem(bytes)) {
    const sys::Result<std::vector<sys::Bytes>> blocks = decodePemBlocks(bytes);
    if (!blocks) return blocks.failure();
    for (const sys::Bytes& block : blocks.value()) {
      if (status) status = addObject(block, certificates);
    }
  } else {
    status = addObject(bytes, certificates);
  }
  if (!status) return status.failure();
  if (certificates.empty()) {
    return sys::fail(ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "a message without certificates");
  }
  return certificates;
}

}  // namespace zel::cms
