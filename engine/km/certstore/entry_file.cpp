#include "engine/km/certstore/entry_file.h"

#include <algorithm>
#include <functional>

#include "engine/cms/bundles.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/sys/files.h"
#include "engine/sys/trace.h"

namespace zel::km::certstore {

namespace {

constexpr sys::ByteView kNoPassword;

bool hasKey(const cms::Pkcs12Entry& entry) { return !entry.privateKeyInfo.empty(); }

sys::Result<std::vector<cms::Pkcs12Entry>> plainCertificates(sys::ByteView file) {
  sys::Result<std::vector<sys::Bytes>> bundle = cms::readBundle(file);
  if (!bundle) return bundle.failure();
  std::vector<cms::Pkcs12Entry> entries;
  for (sys::Bytes& certificate : bundle.value()) {
    cms::Pkcs12Entry entry;
    entry.chain.push_back(std::move(certificate));
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace

sys::Result<std::vector<cms::Pkcs12Entry>> readEntryFile(const std::string& path) {
  const sys::Result<sys::SecretBytes> file = sys::readOwnFile(path, kMostFileBytes);
  if (!file) return file.failure();
  sys::Result<std::vector<cms::Pkcs12Entry>> entries = cms::readPkcs12(file.value(), kNoPassword);
  if (entries.code() == ZELKM_ERR_INVALID_PKCS12_DATA) return plainCertificates(file.value());
  if (!entries) return entries;
  if (std::ranges::any_of(entries.value(), hasKey))
    std::erase_if(entries.value(), std::not_fn(hasKey));
  return entries;
}

sys::Result<sys::SecretBytes> encodeEntry(const KeyEntry& entry) {
  std::string friendlyName = entry.label.name();
  // It would be read back as another, for programs take it for the end.
  if (friendlyName.find('\0') != std::string::npos) {
    return sys::fail(ZELKM_ERR_PARAMETER, "a label of a certificate store holds U+0000");
  }
  cms::Pkcs12Entry written;
  written.friendlyName = std::move(friendlyName);
  written.privateKeyInfo = entry.privateKey.pkcs8;
  written.chain.push_back(entry.certificate);
  const auto encryption =
      approvedMode() ? cms::Pkcs12Encryption::strong : cms::Pkcs12Encryption::readable;
  sys::Result<sys::Bytes> file = cms::writePkcs12({written}, kNoPassword, encryption);
  if (!file) return file.failure();
  sys::Bytes& encoded = file.value();
  sys::SecretBytes secret(encoded.begin(), encoded.end());
  OPENSSL_cleanse(encoded.data(), encoded.size());
  return secret;
}

}  // namespace zel::km::certstore
