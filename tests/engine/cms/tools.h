#ifndef ZEL_TESTS_ENGINE_CMS_TOOLS_H_
#define ZEL_TESTS_ENGINE_CMS_TOOLS_H_

#include <optional>
#include <string>
#include <string_view>

#include "engine/cms/issuing.h"
#include "engine/cms/keys.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * What the tests of certificates share: a folder that goes when the test ends, other people's
 * tools, and certificates of one line.
 */

namespace zel::cms {

/** A folder of its own, removed with all that is in it. */
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }
  /** Writes a file and answers its path. */
  std::string write(std::string_view name, sys::ByteView bytes) const;
  sys::Bytes read(std::string_view name) const;

 private:
  std::string path_;
};

/** HOME with another value for as long as this lives; null takes it away. */
class HomeVariable {
 public:
  explicit HomeVariable(const char* value);
  ~HomeVariable();
  HomeVariable(const HomeVariable&) = delete;
  HomeVariable& operator=(const HomeVariable&) = delete;

 private:
  std::optional<std::string> old_;
};

/** What a shell command printed, standard error included, and how it ended. */
struct CommandResult {
  int exitCode = -1;
  std::string output;
};
CommandResult run(const std::string& command);

/** A text as bytes, to be given where passwords and files are. */
inline sys::ByteView text(std::string_view content) { return sys::bytesOf(content); }

/** `Extensions` with one: basicConstraints, critical, CA true. */
inline const sys::Bytes kAuthorityRights = {0x30, 0x11, 0x30, 0x0F, 0x06, 0x03, 0x55,
                                            0x1D, 0x13, 0x01, 0x01, 0xFF, 0x04, 0x05,
                                            0x30, 0x03, 0x01, 0x01, 0xFF};

/** A key pair with the certificates that it can sign. */
class TestAuthority {
 public:
  explicit TestAuthority(const std::string& commonName, int keySize = 256);

  const sys::Bytes& certificate() const { return certificate_; }
  const EVP_PKEY& key() const { return *key_; }
  const sys::Bytes& name() const { return name_; }
  /** A certificate for the other's name and key, with CA rights. */
  sys::Bytes issueFor(const TestAuthority& subject, int days = 10) const;
  /** A certificate for a common name and a public key, with CA rights. */
  sys::Bytes issueFor(const sys::Bytes& publicKeyInfo, const std::string& commonName,
                      int days = 10) const;

 private:
  sys::Bytes sign(const CertificatePlan& plan) const;

  KeyPtr key_;
  sys::Bytes name_;
  sys::Bytes certificate_;
};

}  // namespace zel::cms

#endif  // ZEL_TESTS_ENGINE_CMS_TOOLS_H_
