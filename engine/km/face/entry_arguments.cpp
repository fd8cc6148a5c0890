#include "engine/km/face/entry_arguments.h"

#include "engine/cms/signing.h"
#include "engine/sys/trace.h"

namespace zel::km {

sys::Result<Label> labelArgument(const char* label) {
  if (label == nullptr) return sys::fail(ZELKM_ERR_NULL_PARAMETER, "no label");
  return Label::given(label);
}

sys::Result<sys::ByteView> bytesArgument(const unsigned char* bytes, std::uint32_t length) {
  if (bytes == nullptr || length == 0) return sys::fail(ZELKM_ERR_NULL_PARAMETER, "no bytes");
  return sys::ByteView(bytes, length);
}

sys::Result<sys::ByteView> optionalBytesArgument(const unsigned char* bytes, std::uint32_t length) {
  if (length == 0) return sys::ByteView();
  return bytesArgument(bytes, length);
}

sys::Result<std::optional<sys::FileName>> optionalFileName(const char* fileName) {
  if (fileName == nullptr) return std::optional<sys::FileName>();
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  return std::optional(std::move(name).value());
}

sys::Status requireSignatureSelector(int selector) {
  if (selector == cms::kSha256 || selector == cms::kSha512) return sys::success();
  return sys::fail(ZELKM_ERR_SIGNATURE_ALGORITHM, "no signature algorithm %d", selector);
}

}  // namespace zel::km
