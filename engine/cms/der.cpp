#include "engine/cms/der.h"

#include <openssl/asn1.h>
#include <openssl/err.h>

#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** The content of the sequence that the bytes begin with; empty when they begin with none. */
sys::ByteView sequenceContent(sys::ByteView der) {
  const unsigned char* at = der.data();
  long length = 0;
  int tag = 0;
  int tagClass = 0;
  const int flags = ASN1_get_object(&at, &length, &tag, &tagClass, static_cast<long>(der.size()));
  static constexpr int kDefiniteConstructed = V_ASN1_CONSTRUCTED;
  if (flags != kDefiniteConstructed || tag != V_ASN1_SEQUENCE || tagClass != V_ASN1_UNIVERSAL) {
    ERR_clear_error();
    return {};
  }
  return {at, static_cast<std::size_t>(length)};
}

void append(sys::Bytes& to, sys::ByteView bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

sys::Bytes element(int tag, bool isConstructed, sys::ByteView content) {
  const auto length = static_cast<int>(content.size());
  const auto headerLength =
      static_cast<std::size_t>(ASN1_object_size(isConstructed, length, tag)) - content.size();
  sys::Bytes der(headerLength);
  unsigned char* at = der.data();
  ASN1_put_object(&at, isConstructed, length, tag, V_ASN1_UNIVERSAL);
  append(der, content);
  return der;
}

}  // namespace

sys::Result<sys::Bytes> toBeSigned(sys::ByteView der) {
  const sys::ByteView outer = sequenceContent(der);
  const sys::ByteView inner = sequenceContent(outer);
  if (inner.empty()) return sys::fail(ZELKM_ERR_ASN, "no signed structure");
  return sys::Bytes(outer.data(), inner.data() + inner.size());
}

sys::Bytes assembleSigned(sys::ByteView toBeSigned, sys::ByteView algorithm,
                          sys::ByteView signature) {
  sys::Bytes bits = {0};  // no unused bits
  append(bits, signature);

  sys::Bytes content(toBeSigned.begin(), toBeSigned.end());
  append(content, algorithm);
  append(content, element(V_ASN1_BIT_STRING, false, bits));
  return element(V_ASN1_SEQUENCE, true, content);
}

}  // namespace zel::cms
