#include "tests/engine/token/makers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace zel::km::token {

namespace {

void runOrFail(const std::string& command) {
  const cms::CommandResult result = cms::run(command);
  if (result.exitCode != 0) ADD_FAILURE() << command << "\n" << result.output;
}

}  // namespace

SoftHsm::SoftHsm(const cms::TemporaryFolder& folder) {
  std::filesystem::create_directory(folder.path("tokens"));
  const std::string settings = "directories.tokendir = " + folder.path("tokens") +
                               "\nobjectstore.backend = file\nlog.level = ERROR\n";
  setenv("SOFTHSM2_CONF", folder.write("softhsm2.conf", cms::text(settings)).c_str(), 1);
}

void SoftHsm::addToken(const std::string& label) const {
  runOrFail("softhsm2-util --init-token --free --so-pin 12345678 --pin " + std::string(kPin) +
            " --label '" + label + "'");
}

NssDatabase::NssDatabase(const cms::TemporaryFolder& folder, Pin pin, const std::string& name)
    : folder_(folder.path(name)),
      pinFile_(folder.write("pin.txt", cms::text(std::string(kPin) + "\n"))) {
  std::filesystem::create_directory(folder_);
  runOrFail("certutil -N -d " + this->folder() +
            (pin == Pin::none ? " --empty-password" : " -f " + pinFile_));
}

std::string NssDatabase::moduleName() const {
  return "libsoftokn3.so?args=configdir='" + folder() +
         "' certPrefix='' keyPrefix='' secmod='secmod.db' flags=";
}

}  // namespace zel::km::token
