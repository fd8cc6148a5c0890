#include "engine/cms/pem.h"

#include <openssl/pem.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

constexpr std::string_view kBegin = "-----BEGIN ";
constexpr std::string_view kEnd = "-----END ";
constexpr std::string_view kDashes = "-----";

std::string_view textOf(sys::ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool isBase64(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' ||
         c == '/';
}

sys::Result<sys::Bytes> decodeBase64(std::string_view text) {
  std::string packed;
  std::remove_copy_if(text.begin(), text.end(), std::back_inserter(packed), isSpace);
  const std::size_t padding = packed.size() - packed.find_last_not_of('=') - 1;
  const std::size_t dataLength = packed.size() - std::min(padding, packed.size());
  if (dataLength == 0 ||
      !std::all_of(packed.begin(), packed.end() - static_cast<long>(padding), isBase64)) {
    return sys::fail(ZELKM_ERR_BASE64_INVALID_DATA, "a text that is not Base64");
  }
  if (packed.size() % 4 != 0 || padding > 2) {
    return sys::fail(ZELKM_ERR_BASE64_DECODING, "Base64 that is cut off or wrongly padded");
  }
  sys::Bytes decoded(packed.size() / 4 * 3);
  const auto* input = reinterpret_cast<const unsigned char*>(packed.data());
  if (EVP_DecodeBlock(decoded.data(), input, static_cast<int>(packed.size())) < 0) {
    return cryptoFailure(ZELKM_ERR_BASE64_DECODING, "decode Base64");
  }
  decoded.resize(decoded.size() - padding);
  return decoded;
}

/** What stands between the lines of an armour, RFC 1421's headers left out. */
std::string_view withoutHeaders(std::string_view body) {
  for (;;) {
    const std::size_t lineEnd = body.find('\n');
    if (lineEnd == std::string_view::npos) return body;
    const std::string_view line = body.substr(0, lineEnd);
    const bool isBlank = std::all_of(line.begin(), line.end(), isSpace);
    if (!isBlank && line.find(':') == std::string_view::npos) return body;
    body.remove_prefix(lineEnd + 1);
  }
}

/** Takes the next armour off the text and answers its body; nothing when there is no more. */
sys::Result<std::optional<std::string_view>> takeArmour(std::string_view& text) {
  const std::size_t begin = text.find(kBegin);
  if (begin == std::string_view::npos) return std::optional<std::string_view>();
  text.remove_prefix(begin + kBegin.size());

  const std::size_t labelEnd = text.find(kDashes);
  const std::size_t end = text.find(kEnd);
  if (labelEnd == std::string_view::npos || end == std::string_view::npos || end < labelEnd) {
    return sys::fail(ZELKM_ERR_BASE64_INVALID_MSGTYPE, "an armour that does not end");
  }
  const std::string_view label = text.substr(0, labelEnd);
  const std::string_view body =
      text.substr(labelEnd + kDashes.size(), end - labelEnd - kDashes.size());
  text.remove_prefix(end + kEnd.size());
  if (text.substr(0, label.size()) != label ||
      text.substr(label.size(), kDashes.size()) != kDashes) {
    return sys::fail(ZELKM_ERR_BASE64_INVALID_MSGTYPE, "an armour that ends as another");
  }
  return std::optional(withoutHeaders(body));
}

}  // namespace

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

bool isPem(sys::ByteView text) { return textOf(text).find(kBegin) != std::string_view::npos; }

sys::Result<sys::Bytes> decodePem(sys::ByteView text) {
  std::string_view rest = textOf(text);
  const sys::Result<std::optional<std::string_view>> body = takeArmour(rest);
  if (!body) return body.failure();
  return decodeBase64(body.value().value_or(textOf(text)));
}

sys::Result<std::vector<sys::Bytes>> decodePemBlocks(sys::ByteView text) {
  std::vector<sys::Bytes> blocks;
  for (std::string_view rest = textOf(text);;) {
    const sys::Result<std::optional<std::string_view>> body = takeArmour(rest);
    if (!body) return body.failure();
    if (!body.value()) return blocks;
    sys::Result<sys::Bytes> block = decodeBase64(*body.value());
    if (!block) return block.failure();
    blocks.push_back(std::move(block).value());
  }
}

}  // namespace zel::cms
