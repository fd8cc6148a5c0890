#ifndef TESTS_TRANSCRIPTS_FAULT_SWEEP_H_
#define TESTS_TRANSCRIPTS_FAULT_SWEEP_H_

#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/transcripts/native_test.h"

/**
 * @file
 * Every native with good arguments and a rich library behind it, while one call after the other
 * fails: the n-th JNI function, library operation or allocation, for every n until the native runs
 * through. Whatever fails, nothing crashes, no null is used where none may stand, nothing is
 * released twice, and nothing stays held but what the native's row permits.
 *
 * A new native needs a row among those of its class and nothing else.
 */

namespace zel::test {

class Sweep;

/** How many of a kind are held; a kind is a name of the transcript without its number. */
using Held = std::map<std::string, int>;

/** A native, how it is called, and what it leaves held. */
struct Row {
  std::string name;
  const char* className;
  std::function<void(Sweep&)> call;
  /** Held after a call in which nothing fails, no more and no less. */
  Held leaves = {};
  /** Held at most, and beside the others, when a step fails. */
  Held mayLeave = {};
  /** The package of the class. */
  const char* package = kBasic;
};

/** The natives of each class, or of the classes that belong together. */
std::vector<Row> systemRows();
std::vector<Row> keyDatabaseRows();
std::vector<Row> tokenRows();
std::vector<Row> storeRows();
std::vector<Row> legacyRows();

/** Kinds of what stays behind. */
inline constexpr const char* kString = "string ";
inline constexpr const char* kText = "text ";
inline constexpr const char* kBlock = "block";
inline constexpr const char* kElements = "elements of bytes";
inline constexpr const char* kUnsignedCert = "buffer";

class Sweep : public NativeTest {
 public:
  explicit Sweep(const Row& row) : NativeTest(row.className, row.package) {
    library().keyLabels = [] { return newLabelList({"one", "two"}); };
    library().requestLabels = [] { return newLabelList({"request"}); };
    library().tokenLabels = [] { return newLabelList({"one", "two"}); };
    library().nextFlags = {1, 0};
    library().keyItem = richKeyItem;
    library().keyItemList = [] { return newKeyItemList({richKeyItem(), richKeyItem()}); };
    library().reqKeyItem = richReqKeyItem;
    library().certList = [] { return newCertList({richCert(), newCert({0x30, 0xcf})}); };
    library().epki = [] { return newEpki({0x30, 0x0e}); };
    library().privKeyInfo = [] { return newPrivKeyInfo({0x30, 0x0f}); };
    watchedLibc().addFile("a.der", Bytes(1500, 0x30));
  }

  void TestBody() override {}

  using NativeTest::bytes;
  using NativeTest::call;
  using NativeTest::dnItem;
  using NativeTest::text;
  using NativeTest::texts;

  jobject subject() { return dnItem({{"cn", "Alice"}, {"c", "DE"}}); }

 private:
  static ZELKMCertItem* richCert() {
    ZELKMCertItem* cert = newLabelledCert("my cert");
    cert->subjectDN = newDn("Alice", {0x30, 0x0a});
    cert->subjectDN->optionalField1 = strdup("DC=one");
    cert->issuerDN = newDn("Root", {0x30, 0x0b});
    return cert;
  }

  static ZELKMKeyItem* richKeyItem() {
    ZELKMKeyItem* item = newKeyItem("my key");
    item->hasPrivateKey = 1;
    item->epki = newEpki({0x30, 0x0e});
    item->hasBerData = 1;
    item->berData = copyOf({0x30, 0x5b});
    item->berDataLength = 2;
    item->hasCertList = 1;
    item->certList = newCertList({richCert(), newCert({0x30, 0xcf})});
    return item;
  }

  static ZELKMReqKeyItem* richReqKeyItem() {
    ZELKMReqKeyItem* item = newReqKeyItem("my request");
    item->epki = newEpki({0x30, 0x0e});
    item->certReq = newCertReq();
    item->certReq->certReqInfoItem->subjectName = newDn("Alice", {0x30, 0x0a});
    item->certReq->certReqInfoItem->optionalBer = copyOf({0xa0, 0x00});
    item->certReq->certReqInfoItem->optionalBerLength = 2;
    return item;
  }
};

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_FAULT_SWEEP_H_
