#include "tests/engine/errors/world.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>

#include "engine/cms/certificates.h"
#include "engine/cms/epki.h"
#include "engine/cms/pem.h"
#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/errors/documents.h"
#include "tests/engine/errors/faults.h"

namespace zel::km::errors {

namespace {

namespace fs = std::filesystem;

uint32_t lengthOf(const sys::Bytes& bytes) { return static_cast<uint32_t>(bytes.size()); }

/** Makes the database of the materials. */
class Maker {
 public:
  explicit Maker(Materials& made) : made_(made) {
    ok(ZELKM_CreateNewKeyDb(made_.file.c_str(), kPassword, 0, &handle_));
  }
  ~Maker() { ZELKM_CloseKeyDb(handle_); }
  Maker(const Maker&) = delete;
  Maker& operator=(const Maker&) = delete;

  void fill() {
    ZELKMDNItem name = named("ca");
    ok(ZELKM_CreateSelfSignedCert(handle_, "ca", 1, 3, 256, &name, 30, out_.c_str(), 0));
    made_.authority = made_.folder.read("issued");
    const sys::Bytes serverRequest = newRequest("server");
    made_.server = issue(serverRequest);
    ok(ZELKM_ReceiveCert(handle_, made_.server.data(), lengthOf(made_.server), 0));
    made_.renewal = issue(serverRequest);
    made_.publicKey = cms::readCertificateKeys(made_.server).value().publicKeyInfo;
    made_.pending = newRequest("pending");
    made_.issued = issue(made_.pending);
    const sys::Bytes& other = made_.other.certificate();
    ok(ZELKM_StoreCACert(handle_, other.data(), lengthOf(other), "other"));
    ok(ZELKM_SetTrustStatus(handle_, "other", 0));
    fs::remove(out_);
  }

 private:
  static void ok(int code) { EXPECT_EQ(code, ZELKM_OK); }
  static ZELKMDNItem named(const char* commonName) {
    ZELKMDNItem name{};
    name.cn = const_cast<char*>(commonName);
    return name;
  }

  sys::Bytes newRequest(const char* label) {
    ZELKMDNItem name = named(label);
    ok(ZELKM_CreateNewCertReq(handle_, label, 256, &name, out_.c_str(), 0, 0));
    return cms::decodePem(made_.folder.read("issued")).value();
  }

  sys::Bytes issue(const sys::Bytes& request) {
    ok(ZELKM_IssueCert(handle_, request.data(), lengthOf(request), "ca", 3, "", 20, out_.c_str(), 0,
                       0, 0));
    return made_.folder.read("issued");
  }

  Materials& made_;
  const std::string out_ = made_.folder.path("issued");
  int handle_ = 0;
};

void setApproved(unsigned char flag) {
  auto* info = static_cast<ZELKMCryptoInfo*>(ZELKM_Malloc(sizeof(ZELKMCryptoInfo)));
  info->firstFlag = flag;
  info->secondFlag = 0;
  EXPECT_EQ(ZELKM_SetCryptoInfo(info), ZELKM_OK);
}

}  // namespace

Materials::Materials() {
  Maker(*this).fill();
  // Read when nothing is open any more: closing any descriptor drops SQLite's locks.
  database = folder.read("keys.kdb");
  request = requestOf(stranger.key(), "Stranger");
  key = privateKeyOf(stranger.key());
  encryptedKey = cms::encryptPrivateKey(key, sys::bytesOf(kPassword)).value();
  pfx = cms::writePkcs12({{.friendlyName = "stranger",
                           .privateKeyInfo = {key.begin(), key.end()},
                           .chain = {stranger.certificate()}}},
                         sys::bytesOf(kPfxPassword))
            .value();
}

const Materials& materials() {
  static const Materials made;
  return made;
}

World::World() {
  name_.cn = commonName_.data();
  for (const auto& entry : fs::directory_iterator(path(""))) {
    if (entry.path() != file) fs::remove_all(entry.path());
  }
  if (!fs::exists(file) || materials().folder.read("keys.kdb") != materials().database) {
    write(file, materials().database);
  }
  write(textFile, cms::encodePem(cms::kCertificateArmour, materials().server).value());
  write(pfxFile, materials().pfx);
  openAgain();
}

World::~World() {
  kept_.clear();
  if (approvedOnly_) setApproved(0);
  ZELKM_CloseKeyDb(handle);
  if (secondary != 0) ZELKM_CloseKeyDb(secondary);
  std::error_code ignored;
  fs::rename(movedFile, file, ignored);
  fs::permissions(path(""), fs::perms::owner_all, ignored);
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, ignored);
}

void World::write(const std::string& name, sys::ByteView bytes) const {
  materials().folder.write(fs::path(name).filename().string(), bytes);
}

void World::openAgain() {
  if (handle != 0) ZELKM_CloseKeyDb(handle);
  ASSERT_EQ(ZELKM_OpenKeyDb(file.c_str(), kPassword, &handle), ZELKM_OK);
}

void World::approveOnly() {
  approvedOnly_ = true;
  setApproved(1);
}

void World::tamper(const char* sql) const {
  sqlite3* connection = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
  sqlite3_exec(connection, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  EXPECT_EQ(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  sqlite3_close(connection);
}

void World::forbid(const std::string& name) const {
  fs::permissions(name, fs::perms::none);
  faults::bindByModes();
}

const char* World::forbiddenFile() {
  const std::string folder = path("closed");
  fs::create_directory(folder);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  faults::bindByModes();
  return keep(folder + "/new");
}

void World::forbidWriting() const {
  fs::permissions(file, fs::perms::owner_read);
  fs::permissions(path(""), fs::perms::owner_read | fs::perms::owner_exec);
  faults::bindByModes();
}

std::map<std::string, sys::Bytes> World::files() const {
  std::map<std::string, sys::Bytes> found;
  for (const auto& entry : fs::directory_iterator(path(""))) {
    const std::string name = entry.path().filename().string();
    const bool isFile = fs::is_regular_file(entry.symlink_status());
    found[name] = isFile ? materials().folder.read(name) : sys::Bytes();
  }
  return found;
}

std::string World::entries() const {
  const auto addRow = [](void* text, int columns, char** values, char**) {
    for (int i = 0; i < columns; ++i)
      static_cast<std::string*>(text)->append(values[i]).append(" ");
    return 0;
  };
  std::string all;
  sqlite3* connection = nullptr;
  sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
  for (const char* table : {"keys", "requests"}) {
    const std::string query =
        "SELECT label, trusted, hex(public_key_hash), hex(subject_hash) FROM " +
        std::string(table) + " ORDER BY label";
    sqlite3_exec(connection, query.c_str(), addRow, &all, nullptr);
  }
  sqlite3_close(connection);
  return all;
}

KeyDbLocator World::locator() const {
  KeyDbLocator locator{};
  locator.type = given.locatorType;
  locator.fileName = fileName(file);
  locator.moduleName = given.moduleName;
  locator.tokenLabel = given.tokenLabel;
  locator.password = password(kPassword);
  locator.newPassword = newPassword();
  return locator;
}

World::Block World::extensions() const {
  const sys::Bytes& bytes = given.extensions;
  return {bytes.empty() ? nullptr : bytes.data(), given.extensionsLength.value_or(lengthOf(bytes))};
}

World::Block World::block(const std::optional<sys::Bytes>& instead, const sys::Bytes& good) {
  const sys::Bytes& bytes = instead ? *instead : good;
  return {bytes.empty() ? nullptr : bytes.data(), lengthOf(bytes)};
}

}  // namespace zel::km::errors
