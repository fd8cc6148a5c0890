#include "engine/km/face/entry_arguments.h"

#include <utility>

#include "engine/cms/serial_numbers.h"
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

sys::Result<CertificateFile> certificateFileArgument(const char* fileName, unsigned char isBase64) {
  sys::Result<sys::FileName> name = sys::FileName::given(fileName);
  if (!name) return name.failure();
  return CertificateFile{std::move(name).value(),
                         isBase64 != 0 ? CertificateFormat::base64 : CertificateFormat::der};
}

sys::Result<std::optional<CertificateFile>> optionalCertificateFile(const char* fileName,
                                                                    unsigned char isBase64) {
  if (fileName == nullptr) return std::optional<CertificateFile>();
  sys::Result<CertificateFile> file = certificateFileArgument(fileName, isBase64);
  if (!file) return file.failure();
  return std::optional(std::move(file).value());
}

sys::Result<cms::SignatureSelector> signatureArgument(int selector) {
  if (selector == cms::kSha256) return cms::kSha256;
  if (selector == cms::kSha512) return cms::kSha512;
  return sys::fail(ZELKM_ERR_SIGNATURE_ALGORITHM, "no signature algorithm %d", selector);
}

sys::Result<sys::Bytes> serialNumberArgument(const char* text) {
  if (text == nullptr || *text == '\0') return sys::Bytes();
  return cms::parseSerialNumber(text);
}

}  // namespace zel::km
