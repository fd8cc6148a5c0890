#include "engine/km/keydb/key_hierarchy.h"

#include <gtest/gtest.h>

#include "engine/km/keydb/fields.h"
#include "tests/engine/km/filled_database.h"

namespace zel::km {
namespace {

/** Rows that this library never writes, but with the right checksum. */
class ParametersTest : public FilledDatabaseTest {
 protected:
  Parameters present() { return readParameters(*connection_).value(); }
  /** The code of reading the row once these stand in it. */
  int codeOf(const Parameters& parameters) {
    EXPECT_TRUE(writeParameters(*connection_, parameters));
    return readParameters(*connection_).code();
  }

  std::unique_ptr<Connection> connection_ = Connection::open(file_).value();
};

TEST_F(ParametersTest, ReadWhatWasWritten) { EXPECT_EQ(codeOf(present()), ZELKM_OK); }

TEST_F(ParametersTest, RefuseSaltsOfAnotherLength) {
  Parameters parameters = present();
  parameters.salt.resize(8);
  EXPECT_EQ(codeOf(parameters), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION);
  parameters.salt.resize(cms::kPbeSaltLength);
  parameters.keySalt.clear();
  EXPECT_EQ(codeOf(parameters), ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION);
}

TEST_F(ParametersTest, RefuseIterationsOutOfBounds) {
  Parameters parameters = present();
  for (const std::uint32_t iterations : {1U, 99'999U, 10'000'001U, 4'000'000'000U}) {
    parameters.iterations = iterations;
    EXPECT_EQ(codeOf(parameters), ZELKM_ERR_DATABASE_INVALID_VERSION) << iterations;
  }
}

TEST(PrivateKeyKeyTest, IsRefusedAtAnotherLength) {
  const DatabaseKeys keys = DatabaseKeys::fromMaster(sys::Bytes(kKeyLength, 1)).value();
  Parameters parameters;
  parameters.salt = parameters.keySalt = sys::Bytes(cms::kPbeSaltLength, 2);
  const sys::Bytes context = FieldWriter<sys::Bytes>()
                                 .number(0)
                                 .number(parameters.expiresAt)
                                 .number(parameters.iterations)
                                 .bytes(parameters.salt)
                                 .bytes(parameters.keySalt)
                                 .text("private key key")
                                 .take();
  for (const std::size_t length : {std::size_t{0}, kKeyLength - 1, kKeyLength, kKeyLength + 1}) {
    parameters.privateKeyKey = seal(keys.records(), context, sys::Bytes(length, 3)).value();
    EXPECT_EQ(openPrivateKeyKey(parameters, keys).code(),
              length == kKeyLength ? ZELKM_OK : ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION)
        << length;
  }
}

}  // namespace
}  // namespace zel::km
