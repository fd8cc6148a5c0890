#include <cstdlib>

#include "tests/contract/contract.h"
#include "tests/recorder/recorder.h"
#include "tests/recording_double/recording_double.h"

// The double hands out what it is told to, and notes what its caller does wrong or leaves behind.

namespace zel::contract {

using namespace zel::test;

namespace {

ZELKMCertItem* wholeCertificate(const char* label) {
  ZELKMCertItem* certificate = newLabelledCert(label);
  certificate->subjectDN = newDn(label, {0x30, 0x00});
  certificate->issuerDN = newDn("ca", {0x30, 0x00});
  return certificate;
}

ZELKMKeyItem* wholeKeyItem() {
  ZELKMKeyItem* item = newKeyItem("server");
  item->hasPrivateKey = 1;
  item->epki = newEpki({0x30, 0x00});
  item->hasBerData = 1;
  item->berData = copyOf({0x30, 0x01});
  item->berDataLength = 2;
  item->hasCertList = 1;
  item->certList = newCertList({wholeCertificate("server"), wholeCertificate("ca")});
  return item;
}

ZELKMReqKeyItem* wholeRequest() {
  ZELKMReqKeyItem* item = newReqKeyItem("pending");
  item->hasBerData = 1;
  item->berData = copyOf({0x30, 0x01});
  item->berDataLength = 2;
  item->epki = newEpki({0x30, 0x00});
  item->certReq = newCertReq();
  return item;
}

}  // namespace

Given given() {
  RecordingDouble& double_ = library();
  double_.keyLabels = [] { return newLabelList({"ca", "server", "other"}); };
  double_.requestLabels = [] { return newLabelList({"pending"}); };
  double_.tokenLabels = [] { return newLabelList({"token"}); };
  double_.keyItem = wholeKeyItem;
  double_.keyItemList = [] { return newKeyItemList({wholeKeyItem()}); };
  double_.reqKeyItem = wholeRequest;
  double_.certList = [] { return newCertList({wholeCertificate("server")}); };
  double_.epki = [] { return newEpki({0x30, 0x00}); };
  double_.privKeyInfo = [] { return newPrivKeyInfo({0x30, 0x00}); };
  return {.file = "keys.kdb",
          .password = "correct horse",
          .otherPassword = "battery staple",
          .textFile = "certificate.pem",
          .pfxFile = "keys.p12",
          .pfxPassword = "pfx secret",
          .folder = "folder/",
          .moduleName = "module.so",
          .tokenLabel = "token",
          .pin = "123456",
          .certificate = {0x30, 0x10},
          .publicKey = {0x30, 0x11},
          .renewal = {0x30, 0x12},
          .issued = {0x30, 0x13},
          .stranger = {0x30, 0x14},
          .strangersKey = {0x30, 0x15},
          .strangersRequest = {0x30, 0x16}};
}

std::vector<std::string> complaints() {
  std::vector<std::string> all = recorder().errors();
  for (const std::string& held : recorder().owned.held()) all.push_back(held + " is left held");
  return all;
}

void forget() {
  recorder().owned.releaseHeld();
  recorder().reset();
  resetLibrary();
}

void refuse(const char* operation) { library().answers[operation] = ZELKM_ERR_KEY_GET_BY_LABEL; }

void* allocateAsCaller(std::size_t size) {
  const BridgeCall caller;
  return std::malloc(size);
}

void releaseAsCaller(void* block) {
  const BridgeCall caller;
  std::free(block);
}

}  // namespace zel::contract
