#include "tests/engine/cms/tools.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "engine/cms/names.h"
#include "engine/cms/openssl_ptr.h"

namespace zel::cms {

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "cms-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, sys::ByteView bytes) const {
  std::string where = path(name);
  std::ofstream(where, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  return where;
}

sys::Bytes TemporaryFolder::read(std::string_view name) const {
  const std::string where = path(name);
  std::error_code missing;
  const std::uintmax_t size = std::filesystem::file_size(where, missing);
  sys::Bytes bytes(missing ? 0 : static_cast<std::size_t>(size));
  std::ifstream(where, std::ios::binary)
      .read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

namespace {

void setHome(const char* value) {
  if (value == nullptr) {
    unsetenv("HOME");
  } else {
    setenv("HOME", value, 1);
  }
}

}  // namespace

HomeVariable::HomeVariable(const char* value) {
  if (const char* old = std::getenv("HOME"); old != nullptr) old_ = old;
  setHome(value);
}

HomeVariable::~HomeVariable() { setHome(old_ ? old_->c_str() : nullptr); }

CommandResult run(const std::string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
      popen(("{ " + command + "; } 2>&1 </dev/null").c_str(), "r"), [](std::FILE*) { return 0; });
  CommandResult result;
  std::array<char, 4096> chunk{};
  std::size_t length = 0;
  while ((length = std::fread(chunk.data(), 1, chunk.size(), pipe.get())) > 0) {
    result.output.append(chunk.data(), length);
  }
  const int status = pclose(pipe.get());
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

namespace {

sys::Bytes authorityRights() {
  const ExtensionsPtr extensions(sk_X509_EXTENSION_new_null());
  sk_X509_EXTENSION_push(
      extensions.get(),
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_basic_constraints, "critical,CA:TRUE"));
  return encodeDer(i2d_X509_EXTENSIONS, extensions.get());
}

}  // namespace

TestAuthority::TestAuthority(const std::string& commonName, int keySize)
    : key_(generateKey(keySize).value()),
      name_(encodeName({.cn = commonName}).value()),
      certificate_(issueFor(*this)) {}

sys::Bytes TestAuthority::issueFor(const TestAuthority& subject, int days) const {
  return sign({.days = days,
               .subject = subject.name_,
               .issuer = name_,
               .publicKeyInfo = publicKeyInfo(*subject.key_).value(),
               .extensions = authorityRights()});
}

sys::Bytes TestAuthority::issueFor(const sys::Bytes& publicKeyInfo, const std::string& commonName,
                                   int days) const {
  return sign({.days = days,
               .subject = encodeName({.cn = commonName}).value(),
               .issuer = name_,
               .publicKeyInfo = publicKeyInfo,
               .extensions = authorityRights()});
}

sys::Bytes TestAuthority::sign(const CertificatePlan& plan) const {
  const Signer signer = [&](SigningDigest digest, sys::ByteView message) {
    return signMessage(*key_, digest, message);
  };
  return issueCertificate(plan, describeKey(*key_), kByKeyStrength, signer).value();
}

}  // namespace zel::cms
