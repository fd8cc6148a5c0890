#include "engine/km/face/entry_arguments.h"

#include "engine/cms/signing.h"
#include "engine/km/store/store.h"
#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::km {

sys::Result<std::string> labelArgument(const char* label) {
  if (label == nullptr) return sys::fail(ZELKM_ERR_NULL_PARAMETER, "no label");
  std::string text = label;
  if (text.empty() || text.size() > kLongestLabel) {
    return sys::fail(ZELKM_ERR_PARAMETER, "a label of %zu bytes", text.size());
  }
  const sys::Result<std::string> readable = sys::toUtf8(text);
  if (!readable) return readable.failure();
  return text;
}

sys::Result<sys::ByteView> bytesArgument(const unsigned char* bytes, std::uint32_t length) {
  if (bytes == nullptr || length == 0) return sys::fail(ZELKM_ERR_NULL_PARAMETER, "no bytes");
  return sys::ByteView(bytes, length);
}

sys::Result<sys::ByteView> optionalBytesArgument(const unsigned char* bytes, std::uint32_t length) {
  if (length == 0) return sys::ByteView();
  return bytesArgument(bytes, length);
}

sys::Status requireSignatureSelector(int selector) {
  if (selector == cms::kSha256 || selector == cms::kSha512) return sys::success();
  return sys::fail(ZELKM_ERR_SIGNATURE_ALGORITHM, "no signature algorithm %d", selector);
}

}  // namespace zel::km
