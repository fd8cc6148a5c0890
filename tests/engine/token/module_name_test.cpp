#include "engine/km/token/module_name.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/engine/cms/tools.h"

// What a module may be called.

namespace zel::km::token {

namespace {

/** A test with a user's own configuration of p11-kit, which names the module "mine". */
class ModuleNames : public testing::Test {
 protected:
  ModuleNames() {
    std::filesystem::create_directories(folder_.path("pkcs11/modules"));
    const char* given = std::getenv("XDG_CONFIG_HOME");
    if (given != nullptr) before_ = given;
    setenv("XDG_CONFIG_HOME", folder_.path("").c_str(), 1);
  }
  ~ModuleNames() override {
    if (before_.empty()) {
      unsetenv("XDG_CONFIG_HOME");
    } else {
      setenv("XDG_CONFIG_HOME", before_.c_str(), 1);
    }
  }

  void configure(const std::string& name, const std::string& content) const {
    folder_.write("pkcs11/modules/" + name + ".module", cms::text(content));
  }

  static void expect(const std::string& name, const std::string& file,
                     const std::string& arguments = "") {
    SCOPED_TRACE(name);
    const ModuleName resolved = resolveModuleName(name);
    EXPECT_EQ(resolved.file, file);
    EXPECT_EQ(resolved.arguments, arguments);
  }

  cms::TemporaryFolder folder_;

 private:
  std::string before_;
};

TEST_F(ModuleNames, aFileIsTakenAsItIs) {
  configure("module.so", "module: /elsewhere.so\n");
  expect("/path/to/module.so", "/path/to/module.so");
  expect("./module.so", "./module.so");
}

TEST_F(ModuleNames, argumentsRunToTheEnd) {
  expect("/lib/m.so?args=configdir='sql:/a b' flags=x?args=y", "/lib/m.so",
         "configdir='sql:/a b' flags=x?args=y");
  expect("/lib/m.so?args=", "/lib/m.so");
}

TEST_F(ModuleNames, aUsersConfigurationNamesModules) {
  configure("mine", "# a comment: module: /not/this\n\n  module :\t/lib/mine.so \r\npriority: 1\n");
  expect("mine", "/lib/mine.so");
}

TEST_F(ModuleNames, aConfigurationGivesArgumentsUnlessTheNameHasThem) {
  configure("mine", "module: /lib/mine.so\nx-init-reserved: configdir='/a: b'\n");
  expect("mine", "/lib/mine.so", "configdir='/a: b'");
  expect("mine?args=other", "/lib/mine.so", "other");
}

TEST_F(ModuleNames, aConfigurationWithoutModuleNamesNone) {
  configure("mine", "trust-policy: yes\n");
  expect("mine", "mine");
}

TEST_F(ModuleNames, aUsersConfigurationComesBeforeTheSystems) {
  expect("softhsm2", "/usr/lib/x86_64-linux-gnu/softhsm/libsofthsm2.so");
  configure("softhsm2", "module: /lib/mine.so\n");
  expect("softhsm2", "/lib/mine.so");
}

TEST_F(ModuleNames, aBareFileNameIsLookedForInTheFolderOfModules) {
  const std::string file = resolveModuleName("opensc-pkcs11.so").file;
  EXPECT_TRUE(file.ends_with("/pkcs11/opensc-pkcs11.so")) << file;
  EXPECT_TRUE(std::filesystem::exists(file));
  expect("no-such-module.so", "no-such-module.so");
}

}  // namespace

}  // namespace zel::km::token
