#ifndef TESTS_CONTRACT_CONTRACT_H_
#define TESTS_CONTRACT_CONTRACT_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"

/**
 * @file
 * The promises of the C interface, kept by every library behind it. The same tests are linked with
 * the engine and with the recording double; what differs stands in given_by_engine.cpp and
 * given_by_double.cpp.
 *
 *     TEST_F(Contract, DeletesAKey) {
 *       const OpenDatabase database;
 *       EXPECT_EQ(ZELKM_DeleteKey(database.handle(), Loan("server")), ZELKM_OK);
 *     }
 */

namespace zel::contract {

using Bytes = std::vector<unsigned char>;

/** What a library is given to work on. Labels: "ca", "server", "other"; a request: "pending". */
struct Given {
  std::string file;     /**< a key database */
  std::string password; /**< its password */
  std::string otherPassword;
  std::string textFile; /**< a certificate in Base64 */
  std::string pfxFile;
  std::string pfxPassword;
  std::string folder;     /**< for new files, ends with a slash */
  std::string moduleName; /**< a PKCS #11 module */
  std::string tokenLabel;
  std::string pin;
  Bytes certificate; /**< of "server", whose chain is valid */
  Bytes publicKey;   /**< of "server" */
  Bytes renewal;     /**< a certificate that renews that of "server" */
  Bytes issued;      /**< a certificate for "pending" */
  Bytes stranger;    /**< a certificate that is not in the database, with a key and a request */
  Bytes strangersKey;
  Bytes strangersRequest;
};

/** given makes all of it anew, once for each test. */
Given given();

/** What the library has to complain about its caller, or left unreleased, when a test ends. */
std::vector<std::string> complaints();
void forget();

/** The next calls of the operation fail, in a library that does not find out by itself. */
void refuse(const char* operation);

/** The caller's own malloc and free, for records that it makes and buffers that it was handed. */
void* allocateAsCaller(std::size_t size);
void releaseAsCaller(void* block);

/** An argument that is gone when the call is over, overwritten besides. */
class Loan {
 public:
  explicit Loan(const std::string& text) : block_(text.begin(), text.end()) {
    block_.push_back('\0');
  }
  explicit Loan(const Bytes& bytes) : block_(bytes) {}
  ~Loan() {
    for (volatile unsigned char& byte : block_) byte = 0xDD;
  }
  Loan(const Loan&) = delete;
  Loan& operator=(const Loan&) = delete;

  // NOLINTNEXTLINE(google-explicit-constructor): an argument like any other
  operator const char*() const { return reinterpret_cast<const char*>(block_.data()); }
  const unsigned char* bytes() const { return block_.data(); }
  std::uint32_t length() const { return static_cast<std::uint32_t>(block_.size()); }

 private:
  std::vector<unsigned char> block_;
};

/** A locator of which only the extent of an operation can be read. */
class Locator {
 public:
  Locator(const KeyDbLocator& fields, std::size_t extent);
  ~Locator();
  Locator(const Locator&) = delete;
  Locator& operator=(const Locator&) = delete;

  // NOLINTNEXTLINE(google-explicit-constructor): an argument like any other
  operator const KeyDbLocator*() const { return locator_; }

 private:
  unsigned char* pages_;
  KeyDbLocator* locator_;
};

/** A name as a caller makes it; lent for the call and released after it. */
class Name {
 public:
  explicit Name(const char* commonName);
  ~Name() { ZELKM_FreeDNItem(record_); }
  Name(const Name&) = delete;
  Name& operator=(const Name&) = delete;

  // NOLINTNEXTLINE(google-explicit-constructor): an argument like any other
  operator const ZELKMDNItem*() const { return record_; }

 private:
  ZELKMDNItem* record_;
};

class Contract : public testing::Test {
 protected:
  Contract() : given_(given()) {}
  ~Contract() override {
    EXPECT_EQ(complaints(), std::vector<std::string>());
    forget();
  }

  std::string newFile(const char* name) const { return given_.folder + name; }
  KeyDbLocator databaseLocator(const Loan& file, const Loan& password) const;
  int open() const;

  const Given given_;
};

/** A test with an open key database. */
class DatabaseContract : public Contract {
 protected:
  DatabaseContract() : handle_(open()) {}
  ~DatabaseContract() override { EXPECT_EQ(ZELKM_CloseKeyDb(handle_), ZELKM_OK); }

  int handle_;
};

/** One of the codes that there are. */
inline bool isErrorCode(int code) { return code >= 1 && code <= ZELKM_ERROR_CODE_COUNT; }

}  // namespace zel::contract

#endif  // TESTS_CONTRACT_CONTRACT_H_
