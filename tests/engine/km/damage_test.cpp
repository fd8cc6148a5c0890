#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "engine/km/keydb/key_database.h"
#include "tests/engine/km/filled_database.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

/** What a reader learns from a database. */
struct Seen {
  std::vector<Label> keys;
  std::vector<Label> requests;
  sys::Bytes one;
  sys::SecretBytes oneKey;
  bool oneTrusted = false;
  Label defaultLabel;
  std::size_t withTwosKey = 0;

  bool operator==(const Seen&) const = default;
};

class DamageTest : public FilledDatabaseTest {
 protected:
  DamageTest() {
    store_.reset();
    std::ifstream content(file_, std::ios::binary);
    good_ = {std::istreambuf_iterator<char>(content), std::istreambuf_iterator<char>()};
  }

  /** Writes into the file as it stands, so that the derived key of the password stays cached. */
  void put(const sys::Bytes& bytes) const { folder_.write("test.kdb", bytes); }
  sys::Bytes present() const { return folder_.read("test.kdb"); }

  /** The first failure, or what there is to be seen. */
  sys::Result<Seen> look() const {
    sys::Result<std::unique_ptr<Store>> store =
        KeyDatabase::open(fileName(file_), password(kPassword));
    if (!store) return store.failure();
    Seen seen;
    sys::Result<std::vector<Label>> keys = store.value()->keyLabels();
    if (!keys) return keys.failure();
    sys::Result<std::vector<Label>> requests = store.value()->requestLabels();
    if (!requests) return requests.failure();
    sys::Result<KeyEntry> one = store.value()->findKey("one"_label);
    if (!one) return one.failure();
    sys::Result<KeyEntry> byDefault = store.value()->defaultKey();
    if (!byDefault) return byDefault.failure();
    sys::Result<std::vector<KeyEntry>> withTwosKey =
        store.value()->findKeysByPublicKey(cms::publicKeyInfo(two_.key()).value());
    if (!withTwosKey) return withTwosKey.failure();
    seen.keys = keys.value();
    seen.requests = requests.value();
    seen.one = one.value().certificate;
    seen.oneKey = one.value().privateKey.pkcs8;
    seen.oneTrusted = one.value().trusted;
    seen.defaultLabel = byDefault.value().label;
    seen.withTwosKey = withTwosKey.value().size();
    return seen;
  }

  /** Flips a bit of every byte of the file's header, and of every so many bytes after it. */
  void flipEach(std::size_t step);
  /** Cuts the file off after its last byte but one, and after so many bytes less each time. */
  void cutEach(std::size_t step);

  sys::Bytes good_;
  int refused_ = 0;
};

constexpr int kTellingCodes[] = {
    ZELKM_ERR_DATABASE_INVALID_VERSION, ZELKM_ERR_DATABASE_INVALID_FILE_TYPE,
    ZELKM_ERR_DATABASE_CORRUPTION, ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION,
    ZELKM_ERR_DATABASE_KEY_INTEGRITY};

bool isTelling(int code) { return std::ranges::count(kTellingCodes, code) == 1; }

void DamageTest::flipEach(std::size_t step) {
  const sys::Result<Seen> right = look();
  ASSERT_TRUE(right);
  for (std::size_t at = 0; at < good_.size(); at += at < 100 ? 1 : step) {
    sys::Bytes bad = good_;
    bad[at] ^= static_cast<std::uint8_t>(1U << (at % 8));
    put(bad);
    const sys::Result<Seen> seen = look();
    if (seen) {
      ASSERT_EQ(seen.value(), right.value()) << "byte " << at;
    } else {
      ASSERT_TRUE(isTelling(seen.code())) << "byte " << at << ": code " << seen.code();
      ++refused_;
    }
    ASSERT_EQ(present(), bad) << "byte " << at;
  }
}

void DamageTest::cutEach(std::size_t step) {
  for (std::size_t length = good_.size() - 1;; length -= step) {
    const sys::Bytes cut(good_.begin(), good_.begin() + static_cast<std::ptrdiff_t>(length));
    put(cut);
    const int code = look().code();
    ASSERT_TRUE(isTelling(code)) << length << ": code " << code;
    ASSERT_EQ(present(), cut) << length;
    if (length < step) break;
  }
}

TEST_F(DamageTest, NeverShowsAWrongAnswerWhicheverByteIsFlipped) {
  flipEach(37);
  EXPECT_GT(refused_, 100);
}

// Takes a minute; script/soak runs it.
TEST_F(DamageTest, DISABLED_NeverShowsAWrongAnswerForAnyByteOfTheFile) {
  flipEach(1);
  EXPECT_GT(refused_, 1000);
}

TEST_F(DamageTest, RefusesAFileWhereverItIsTruncated) { cutEach(509); }

// Takes a minute; script/soak runs it.
TEST_F(DamageTest, DISABLED_RefusesAFileTruncatedAtAnyByte) { cutEach(1); }

TEST_F(DamageTest, NeverTakesDamageForAWrongPassword) {
  std::set<int> codes;
  for (std::size_t at = 0; at < good_.size(); at += 127) {
    sys::Bytes bad = good_;
    bad[at] ^= 0xFFU;
    put(bad);
    codes.insert(look().code());
  }
  EXPECT_FALSE(codes.contains(ZELKM_ERR_DATABASE_INVALID_PASSWORD));
}

TEST_F(DamageTest, WritesNothingIntoADamagedFile) {
  for (std::size_t at = 4096; at < good_.size(); at += 501) {
    sys::Bytes bad = good_;
    bad[at] ^= 0x40U;
    put(bad);
    sys::Result<std::unique_ptr<Store>> store =
        KeyDatabase::open(fileName(file_), password(kPassword));
    const bool written = store && store.value()->setTrusted("one"_label, true);
    if (!written) {
      ASSERT_EQ(present(), bad) << at;
      continue;
    }
    const sys::Result<Seen> seen = look();
    ASSERT_TRUE(!seen || seen.value().oneTrusted) << at;
  }
}

TEST_F(DamageTest, TakesNoTroubleOfOpenSslForDamage) {
  const std::unique_ptr<Store> store = open();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  ASSERT_TRUE(store->findRequest("one"_label)) << "examined from here on";
  ASSERT_EQ(EVP_set_default_properties(nullptr, "provider=none"), 1);
  const int codeOfRecord = store->findRequest("one"_label).code();
  const int codeOfDirectory = store->keyLabels().code();
  ASSERT_EQ(EVP_set_default_properties(nullptr, ""), 1);
  EXPECT_EQ(codeOfRecord, ZELKM_ERR_CRYPTO);
  EXPECT_EQ(codeOfDirectory, ZELKM_ERR_CRYPTO);
  EXPECT_TRUE(store->findRequest("one"_label));
}

TEST_F(DamageTest, NoticesDamageUnderAnOpenHandle) {
  const std::unique_ptr<Store> store = open();
  ASSERT_TRUE(store->keyLabels());
  sys::Bytes bad = good_;
  const sys::Bytes label{'t', 'w', 'o'};
  const auto at = std::search(bad.begin(), bad.end(), label.begin(), label.end());
  ASSERT_NE(at, bad.end());
  *at = 'T';
  put(bad);
  EXPECT_EQ(store->keyLabels().code(), ZELKM_ERR_DATABASE_CORRUPTION);
}

}  // namespace
}  // namespace zel::km
