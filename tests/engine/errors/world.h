#ifndef ZEL_TESTS_ENGINE_ERRORS_WORLD_H_
#define ZEL_TESTS_ENGINE_ERRORS_WORLD_H_

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/sys/bytes.h"
#include "tests/engine/cms/tools.h"

/**
 * @file
 * The world in which an operation is called: a key database that is open, files to read, places to
 * write to, and the arguments with which every operation succeeds. A trouble changes some of it:
 *
 *     World world;
 *     world.given.label = "nothing";
 *     ZELKM_DeleteKey(world.handle, world.label("server"));
 */

namespace zel::km::errors {

inline constexpr const char* kPassword = "correct horse";
inline constexpr const char* kOtherPassword = "battery staple";
inline constexpr const char* kPfxPassword = "pfx secret";

/**
 * What lies in the world. The database holds "ca", a trusted authority with its key and the
 * default; "server", whose certificate it issued; "other", a certificate alone that is not trusted;
 * and "pending", a request.
 */
struct Materials {
  Materials();

  cms::TemporaryFolder folder;
  std::string file = folder.path("keys.kdb");
  sys::Bytes database;
  sys::Bytes authority; /**< the certificate of "ca" */
  sys::Bytes server;    /**< the certificate of "server" */
  sys::Bytes renewal;   /**< another for it */
  sys::Bytes pending;   /**< the request */
  sys::Bytes issued;    /**< a certificate for it */
  sys::Bytes publicKey; /**< of "server" */
  cms::TestAuthority other{"Other"};
  cms::TestAuthority stranger{"Stranger"}; /**< is not in the database */
  sys::Bytes request;                      /**< the stranger's */
  sys::Bytes key;                          /**< the stranger's, PKCS #8 */
  sys::Bytes encryptedKey;                 /**< the same under kPassword */
  sys::Bytes pfx;                          /**< the stranger's, under kPfxPassword */
};

/** One for all worlds: it takes a second to make. */
const Materials& materials();

/** What is given in the place of the arguments that are right. */
struct Given {
  std::optional<const char*> label;
  std::optional<const char*> fileName;
  std::optional<const char*> target; /**< the name of a file that is converted into */
  std::optional<const char*> password;
  std::optional<const char*> newPassword;
  std::optional<const char*> serialNumber;
  std::optional<sys::Bytes> document; /**< certificate, request, message or key; empty for none */
  std::optional<sys::Bytes> key;      /**< the key that goes with it */
  std::optional<const ZELKMDNItem*> name;
  sys::Bytes extensions;
  std::optional<uint32_t> extensionsLength;
  int version = 3;
  int keySize = 256;
  int days = 30;
  int signatureAlgorithm = 1;
  int exportType = 1;
  int64_t lifetime = 0;
  unsigned char makeDefault = 0;
  uint32_t locatorType = KEYDB_LOCATOR_KEY_DATABASE;
  const char* moduleName = nullptr;
  const char* tokenLabel = nullptr;
  unsigned char cryptoFlags[2] = {0, 0};
  bool locator = true; /**< one is given at all */
  bool outputs = true; /**< variables for the outputs are given */
};

class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  Given given;
  int handle = 0;
  int secondary = 0; /**< the handle that is lent to a token */

  const std::string file = materials().file;
  const std::string movedFile = path("moved.kdb"); /**< what was moved there comes back */
  const std::string newFile = path("new.kdb");
  const std::string textFile = path("certificate.pem"); /**< to be read */
  const std::string pfxFile = path("keys.p12");         /**< to be read */
  const std::string outFile = path("out");              /**< to be written */

  static std::string path(const char* name) { return materials().folder.path(name); }
  /** A text that lives as long as the world. */
  const char* keep(std::string text) { return texts_.emplace_back(std::move(text)).c_str(); }
  /** Writes a file that an operation shall read. */
  void write(const std::string& file, sys::ByteView bytes) const;
  void openAgain();
  /** Goes on with approved algorithms only. */
  void approveOnly();
  /** Keeps something for as long as the world lives. */
  void keepAlive(std::shared_ptr<void> object) { kept_.push_back(std::move(object)); }
  /** Runs SQL on the database, as somebody who has no password. */
  void tamper(const char* sql) const;
  /** Nobody may open the file any more. */
  void forbid(const std::string& file) const;
  /** The name of a file that is not there, in a folder in which nobody may make it. */
  const char* forbiddenFile();
  /** The database and its folder may only be read. */
  void forbidWriting() const;
  /** All files of the world. */
  std::map<std::string, sys::Bytes> files() const;
  /** The entries of the database as far as they stand in the clear; nothing when it is none. */
  std::string entries() const;

  const char* label(const char* good) const { return given.label.value_or(good); }
  const char* fileName(const std::string& good) const {
    return given.fileName.value_or(good.c_str());
  }
  const char* target(const std::string& good) const { return given.target.value_or(good.c_str()); }
  const char* password(const char* good) const { return given.password.value_or(good); }
  const char* newPassword() const { return given.newPassword.value_or(kOtherPassword); }
  const ZELKMDNItem* name() const { return given.name.value_or(&name_); }
  KeyDbLocator locator() const;

  /** Bytes as a pointer and a length. */
  struct Block {
    const unsigned char* bytes;
    uint32_t length;
  };
  Block document(const sys::Bytes& good) const { return block(given.document, good); }
  Block key(const sys::Bytes& good) const { return block(given.key, good); }
  Block extensions() const;

  template <typename T>
  T* output(T& variable) const {
    return given.outputs ? &variable : nullptr;
  }

 private:
  static Block block(const std::optional<sys::Bytes>& instead, const sys::Bytes& good);

  std::deque<std::string> texts_;
  std::vector<std::shared_ptr<void>> kept_;
  bool approvedOnly_ = false;
  std::string commonName_ = "new";
  ZELKMDNItem name_{};
};

}  // namespace zel::km::errors

#endif  // ZEL_TESTS_ENGINE_ERRORS_WORLD_H_
