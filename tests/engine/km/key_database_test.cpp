#include "engine/km/keydb/key_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "engine/cms/epki.h"
#include "engine/cms/names.h"
#include "engine/km/keydb/creation.h"
#include "tests/engine/km/filled_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class StoreTest : public FilledDatabaseTest {
 protected:
  std::vector<Label> labels() { return store_->keyLabels().value(); }
  std::vector<Label> requests() { return store_->requestLabels().value(); }
};

TEST_F(StoreTest, ListsLabelsInTheOrderOfArrival) {
  EXPECT_THAT(labels(), ElementsAre("one", "two"));
  EXPECT_THAT(requests(), ElementsAre("one"));
}

TEST_F(StoreTest, FindsAnEntryAsItWasInserted) {
  const KeyEntry entry = open()->findKey("two"_label).value();
  EXPECT_EQ(entry.label, "two");
  EXPECT_EQ(entry.certificate, two_.certificate());
  EXPECT_EQ(entry.privateKey.pkcs8, cms::privateKeyInfo(two_.key()).value());
  EXPECT_TRUE(entry.trusted);
  EXPECT_FALSE(entry.isDefault);
}

TEST_F(StoreTest, FindsARequestAsItWasInserted) {
  const RequestEntry entry = open()->findRequest("one"_label).value();
  EXPECT_FALSE(entry.request.empty());
  EXPECT_EQ(entry.privateKey.pkcs8, cms::privateKeyInfo(one_.key()).value());
}

TEST_F(StoreTest, KeepsAnEntryWithoutAKey) {
  KeyEntry entry = entryOf("three", cms::TestAuthority("Three"));
  entry.privateKey = {};
  ASSERT_TRUE(store_->insertKey(entry));
  EXPECT_FALSE(open()->findKey("three"_label).value().privateKey.present());
}

TEST_F(StoreTest, TellsALabelThatNothingHas) {
  EXPECT_EQ(store_->findKey("none"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store_->findRequest("two"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store_->removeKey("none"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store_->removeRequest("none"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store_->setDefault("none"_label).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_EQ(store_->setTrusted("none"_label, true).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(StoreTest, FindsByPublicKey) {
  const sys::Bytes key = cms::publicKeyInfo(one_.key()).value();
  ASSERT_TRUE(store_->insertKey(entryOf("again", one_)));
  EXPECT_THAT(store_->findKeysByPublicKey(key).value(), SizeIs(2));
  EXPECT_THAT(store_->findRequestsByPublicKey(key).value(), SizeIs(1));
  EXPECT_THAT(store_->findKeysByPublicKey(sys::Bytes{1}).value(), IsEmpty());
}

TEST_F(StoreTest, FindsBySubject) {
  const sys::Bytes subject = cms::canonicalName(two_.name()).value();
  const std::vector<KeyEntry> found = store_->findKeysBySubject(subject).value();
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].label, "two");
}

TEST_F(StoreTest, RefusesALabelTwiceInOneTable) {
  EXPECT_EQ(store_->insertKey(entryOf("one", two_)).code(), ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_EQ(store_->insertRequest(requestOf("one", two_)).code(),
            ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL);
  EXPECT_EQ(store_->findKey("one"_label).value().certificate, one_.certificate());
}

TEST_F(StoreTest, RefusesWhatIsNoCertificateAndNoRequest) {
  KeyEntry entry;
  entry.label = "three"_label;
  entry.certificate = {1, 2, 3};
  EXPECT_EQ(store_->insertKey(entry).code(), ZELKM_ERR_ASN);
  RequestEntry request;
  request.label = "three"_label;
  request.request = {1, 2, 3};
  EXPECT_EQ(store_->insertRequest(request).code(), ZELKM_ERR_ASN);
}

TEST_F(StoreTest, RemovesEntries) {
  ASSERT_TRUE(store_->removeKey("one"_label));
  EXPECT_THAT(labels(), ElementsAre("two"));
  EXPECT_THAT(requests(), ElementsAre("one"));
  ASSERT_TRUE(store_->removeRequest("one"_label));
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(StoreTest, KnowsTheDefaultKey) {
  EXPECT_EQ(store_->defaultKey().value().label, "one");
  EXPECT_TRUE(store_->findKey("one"_label).value().isDefault);
  ASSERT_TRUE(store_->setDefault("two"_label));
  EXPECT_EQ(store_->defaultKey().value().label, "two");
  EXPECT_FALSE(store_->findKey("one"_label).value().isDefault);
}

TEST_F(StoreTest, HasNoDefaultKeyOnceThatIsRemoved) {
  ASSERT_TRUE(store_->removeKey("one"_label));
  EXPECT_EQ(store_->defaultKey().code(), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
  ASSERT_TRUE(store_->insertKey(entryOf("one", one_)));
  EXPECT_EQ(store_->defaultKey().code(), ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL);
}

TEST_F(StoreTest, ChangesTrust) {
  ASSERT_TRUE(store_->setTrusted("two"_label, false));
  EXPECT_FALSE(store_->findKey("two"_label).value().trusted);
  ASSERT_TRUE(store_->setTrusted("two"_label, true));
  EXPECT_TRUE(store_->findKey("two"_label).value().trusted);
  EXPECT_THAT(labels(), ElementsAre("one", "two"));
}

TEST_F(StoreTest, ReplacesAnEntryInItsPlace) {
  ASSERT_TRUE(store_->replaceKey(entryOf("one", two_)));
  EXPECT_THAT(labels(), ElementsAre("one", "two"));
  EXPECT_EQ(store_->findKey("one"_label).value().certificate, two_.certificate());
  EXPECT_TRUE(store_->findKey("one"_label).value().isDefault);
  EXPECT_THAT(store_->findKeysByPublicKey(cms::publicKeyInfo(one_.key()).value()).value(),
              IsEmpty());
  ASSERT_TRUE(store_->replaceRequest(requestOf("one", two_)));
  EXPECT_THAT(requests(), ElementsAre("one"));
  EXPECT_EQ(store_->replaceKey(entryOf("none", two_)).code(), ZELKM_ERR_KEY_GET_BY_LABEL);
}

TEST_F(StoreTest, KeepsAllOfATransactionOrNothing) {
  EXPECT_EQ(inTransaction(*store_,
                          [&]() -> sys::Status {
                            EXPECT_TRUE(store_->removeKey("one"_label));
                            EXPECT_TRUE(store_->insertKey(entryOf("three", one_)));
                            EXPECT_THAT(labels(), ElementsAre("two", "three"));
                            return sys::Failure{ZELKM_ERR_ASN};
                          })
                .code(),
            ZELKM_ERR_ASN);
  EXPECT_THAT(labels(), ElementsAre("one", "two"));
  EXPECT_TRUE(inTransaction(*store_, [&] {
    return inTransaction(*store_, [&] { return store_->removeKey("one"_label); });
  }));
  EXPECT_THAT(labels(), ElementsAre("two"));
}

TEST_F(StoreTest, RollsBackWhenATransactionThrows) {
  EXPECT_THROW((void)inTransaction(*store_,
                                   [&]() -> sys::Status {
                                     EXPECT_TRUE(store_->removeKey("one"_label));
                                     throw std::bad_alloc();
                                   }),
               std::bad_alloc);
  EXPECT_THAT(labels(), ElementsAre("one", "two"));
}

TEST_F(StoreTest, HandsOutKeysUnderThePassword) {
  const PrivateKey key = store_->findKey("one"_label).value().privateKey;
  const sys::Bytes encrypted = store_->encryptedPrivateKey(key).value();
  EXPECT_EQ(cms::decryptPrivateKey(encrypted, sys::bytesOf(kPassword)).value(), key.pkcs8);
  EXPECT_EQ(store_->decryptedPrivateKey(encrypted).value(), key.pkcs8);
  EXPECT_NE(store_->encryptedPrivateKey(key).value(), encrypted);
  EXPECT_EQ(store_->encryptedPrivateKey({}).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
}

TEST_F(StoreTest, HandsOutKeysUnderANewPassword) {
  ASSERT_EQ(ZELKM_ChangeKeyDbPwd(file_.c_str(), kPassword, kOtherPassword, 0), ZELKM_OK);
  const PrivateKey key = store_->findKey("one"_label).value().privateKey;
  const sys::Bytes encrypted = store_->encryptedPrivateKey(key).value();
  EXPECT_EQ(cms::decryptPrivateKey(encrypted, sys::bytesOf(kOtherPassword)).value(), key.pkcs8);
}

TEST_F(StoreTest, MakesKeysAndSignsWithThem) {
  const GeneratedKey made = store_->generateKey(256).value();
  EXPECT_TRUE(store_->sign(made.privateKey, SigningDigest::sha256, sys::bytesOf("text")));
  EXPECT_EQ(store_->generateKey(512).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_MODULUS_SIZE);
  EXPECT_EQ(store_->sign({}, SigningDigest::sha256, {}).code(), ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL);
}

TEST_F(StoreTest, TakesApprovedAlgorithmsOnlyWhenMadeSo) {
  const std::unique_ptr<Store> approved =
      createKeyDatabase(fileName(path("approved.kdb")), password("fourteen-char1"),
                        {.lifetime = 0, .approvedOnly = true})
          .value();
  EXPECT_TRUE(approved->approvedOnly());
  EXPECT_TRUE(approved->insertKey(entryOf("p256", one_)));
  EXPECT_EQ(approved->insertKey(entryOf("ed", cms::TestAuthority("Ed", 25519))).code(),
            ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
  EXPECT_EQ(approved->generateKey(25519).code(), ZELKM_ERR_CRYPTO_UNSUPPORTED_ALGORITHM);
  EXPECT_FALSE(store_->approvedOnly());
  EXPECT_TRUE(store_->insertKey(entryOf("ed", cms::TestAuthority("Ed", 25519))));
}

TEST_F(StoreTest, WritesIntoTheFileThatTookThePlaceWhileAnOperationRan) {
  std::filesystem::copy_file(file_, path("copy"));
  ASSERT_TRUE(inTransaction(*store_, [&] {
    std::filesystem::rename(path("copy"), file_);
    return sys::success();
  }));
  EXPECT_TRUE(store_->removeKey("one"_label));
  EXPECT_THAT(labels(), ElementsAre("two"));
  EXPECT_THAT(open()->keyLabels().value(), ElementsAre("two"));
}

TEST_F(StoreTest, WaitsForAnotherWriter) {
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::thread writer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
  });
  EXPECT_TRUE(store_->removeKey("one"_label));
  writer.join();
  sqlite3_close(other);
}

TEST_F(StoreTest, GivesUpOnAnotherWriterAfterFiveSecondsAndReadsMeanwhile) {
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_THAT(labels(), SizeIs(2));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(store_->removeKey("one"_label).code(), ZELKM_ERR_DATABASE_WRITE);
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, std::chrono::milliseconds(4500));
  sqlite3_close(other);
  EXPECT_THAT(labels(), SizeIs(2));
}

TEST_F(StoreTest, GivesUpOpeningWhileAnotherProcessHasTheFileToItself) {
  store_.reset();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(openingCode(), ZELKM_ERR_DATABASE_READ);
  sqlite3_close(other);
  EXPECT_EQ(openingCode(), ZELKM_OK);
}

TEST_F(StoreTest, TakesTheWritesOfManyThreads) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      const std::unique_ptr<Store> store = open();
      for (int entry = 0; entry < 5; ++entry) {
        EXPECT_TRUE(
            store->insertKey(entryOf(std::to_string(thread) + "." + std::to_string(entry), one_)));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(labels(), SizeIs(22));
}

// Run by the test below in a process of its own.
TEST(StoreProcess, DISABLED_InsertsWhatTheEnvironmentSays) {
  const char* file = std::getenv("VOSMAR_TEST_FILE");
  const char* name = std::getenv("VOSMAR_TEST_NAME");
  ASSERT_TRUE(file != nullptr && name != nullptr);
  const std::unique_ptr<Store> store =
      KeyDatabase::open(fileName(file), password(kPassword)).value();
  const cms::TestAuthority authority(name);
  for (int entry = 0; entry < 10; ++entry) {
    ASSERT_TRUE(store->insertKey(entryOf(name + std::to_string(entry), authority)));
  }
}

TEST_F(StoreTest, TakesTheWritesOfTwoProcesses) {
  const auto writer = [&](const char* name) {
    const cms::CommandResult result =
        cms::run("VOSMAR_TEST_FILE=" + file_ + " VOSMAR_TEST_NAME=" + name + " " +
                 std::filesystem::read_symlink("/proc/self/exe").string() +
                 " --gtest_also_run_disabled_tests --gtest_filter=StoreProcess.*");
    EXPECT_EQ(result.exitCode, 0) << result.output;
  };
  std::thread first([&] { writer("first"); });
  std::thread second([&] { writer("second"); });
  for (int round = 0; round < 50; ++round) EXPECT_TRUE(store_->keyLabels());
  first.join();
  second.join();
  EXPECT_THAT(labels(), SizeIs(22));
}

}  // namespace
}  // namespace zel::km
