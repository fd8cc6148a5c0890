#include "engine/cms/extensions.h"

#include "engine/sys/trace.h"

namespace zel::cms {

sys::Result<ExtensionsPtr> readExtensions(sys::ByteView der) {
  ExtensionsPtr extensions;
  if (der.empty()) return extensions;
  extensions = decodeDer<ExtensionsPtr>(d2i_X509_EXTENSIONS, der);
  if (!extensions) return cryptoFailure(ZELKM_ERR_ASN, "read extensions");

  for (int i = 0; i < sk_X509_EXTENSION_num(extensions.get()); ++i) {
    const ASN1_OBJECT* kind =
        X509_EXTENSION_get_object(sk_X509_EXTENSION_value(extensions.get(), i));
    if (X509v3_get_ext_by_OBJ(extensions.get(), kind, i) >= 0) {
      return sys::fail(ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS, "an extension stands twice");
    }
  }
  return extensions;
}

sys::Status checkExtensions(sys::ByteView der) {
  const sys::Result<ExtensionsPtr> extensions = readExtensions(der);
  return extensions ? sys::success() : extensions.failure();
}

sys::Bytes encodeExtensions(const STACK_OF(X509_EXTENSION) * extensions) {
  if (sk_X509_EXTENSION_num(extensions) <= 0) return {};
  return encodeDer(i2d_X509_EXTENSIONS, extensions);
}

}  // namespace zel::cms
