#include "tests/engine/certstore/test_stores.h"

#include <algorithm>
#include <filesystem>

#include "engine/cms/epki.h"
#include "engine/cms/keys.h"
#include "engine/cms/pem.h"

namespace zel::km::certstore {

namespace fs = std::filesystem;

StoreTest::StoreTest() : homeVariable_(home_.path("").c_str()) {}

StoreTest::~StoreTest() {
  for (const int handle : handles_) ZELKM_CloseKeyDb(handle);
}

KeyDbLocator StoreTest::locator(const char* name, const char* password) {
  KeyDbLocator named{};
  named.type = KEYDB_LOCATOR_CERTIFICATE_STORE;
  named.tokenLabel = name;
  named.password = password;
  return named;
}

int StoreTest::open(const char* name, const char* password) {
  const KeyDbLocator named = locator(name, password);
  int handle = 0;
  const int code = ZELKM_OpenKeyDbX(&named, &handle);
  if (code != ZELKM_OK) return -code;
  handles_.push_back(handle);
  return handle;
}

int StoreTest::insert(int handle, const char* label, const cms::TestAuthority& owner,
                      bool withKey) {
  const sys::Bytes& certificate = owner.certificate();
  const sys::SecretBytes key = withKey ? privateKeyOf(owner) : sys::SecretBytes();
  return ZELKM_InsertKey(handle, label, static_cast<std::uint32_t>(certificate.size()),
                         certificate.data(), static_cast<std::uint32_t>(key.size()), key.data(), 0,
                         0);
}

std::vector<std::string> StoreTest::labels(int handle) {
  return labelsOf(handle, ZELKM_GetKeyDbLabelList);
}

KeyItem StoreTest::item(int handle, const char* label) {
  ZELKMKeyItem* item = nullptr;
  EXPECT_EQ(ZELKM_GetKeyItemByLabel(handle, label, &item), ZELKM_OK) << label;
  return KeyItem(item);
}

int StoreTest::codeOfItem(int handle, const char* label) {
  ZELKMKeyItem* item = nullptr;
  const int code = ZELKM_GetKeyItemByLabel(handle, label, &item);
  ZELKM_FreeKeyItem(item);
  return code;
}

std::string StoreTest::path(const std::string& name) const {
  return home_.path(".dotnet/corefx/cryptography/x509stores/" + name);
}

std::vector<std::string> StoreTest::files(const char* folder) const {
  std::vector<std::string> names;
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(path(folder), none)) {
    names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

void StoreTest::opensslWrites(const std::string& file, const cms::TestAuthority& owner,
                              const std::string& options) const {
  const std::string certificate =
      home_.write("theirs.pem", cms::text(pemOf("CERTIFICATE", owner.certificate())));
  const std::string key =
      home_.write("theirs.key", cms::text(pemOf("PRIVATE KEY", privateKeyOf(owner))));
  fs::create_directories(fs::path(path(file)).parent_path());
  const cms::CommandResult result =
      cms::run("openssl pkcs12 -export -passout pass: -in " + certificate + " -inkey " + key +
               " -out " + path(file) + " " + options);
  EXPECT_EQ(result.exitCode, 0) << result.output;
}

std::string StoreTest::opensslReads(const std::string& file, const std::string& options) const {
  const cms::CommandResult result =
      cms::run("openssl pkcs12 -nodes -passin pass: -in " + path(file) + " " + options);
  EXPECT_EQ(result.exitCode, 0) << result.output;
  return result.output;
}

sys::SecretBytes privateKeyOf(const ZELKMKeyItem& item) {
  if (item.epki == nullptr) return {};
  return cms::decryptPrivateKey(viewOf(item.epki->berData, item.epki->berDataLength),
                                sys::ByteView())
      .value();
}

sys::SecretBytes privateKeyOf(const cms::TestAuthority& owner) {
  return cms::privateKeyInfo(owner.key()).value();
}

sys::Bytes certificateOf(const ZELKMKeyItem& item) {
  const ZELKMCertItem& certificate = *item.certList->item;
  return bytesOf(certificate.certDer, certificate.certDerLength);
}

std::string pemOf(const char* armour, sys::ByteView der) {
  const sys::Bytes pem = cms::encodePem(armour, der).value();
  return {pem.begin(), pem.end()};
}

}  // namespace zel::km::certstore
