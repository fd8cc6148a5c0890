#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"
#include "tests/transcripts/fault_sweep.h"

namespace zel::test {

#define LEGACY(native) Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1##native

std::vector<Row> legacyRows() {
  std::vector<Row> all;
  const auto legacy = [&all](const std::string& name, std::function<void(Sweep&)> call,
                             Held leaves = {}, Held mayLeave = {}) {
    all.push_back({"Legacy_" + name, "CMSKeyDatabase", std::move(call), std::move(leaves),
                   std::move(mayLeave), kLegacy});
  };

  legacy("CMSInit", [](Sweep& s) { s.call(LEGACY(CMSInit), JNI_TRUE); });
  legacy("CreateNewKeyDb",
         [](Sweep& s) { s.call(LEGACY(CreateNewKeyDb), s.text("a.kdb"), s.text("secret"), 1000); });
  legacy("CreateNewKeyDbFIPS", [](Sweep& s) {
    s.call(LEGACY(CreateNewKeyDbFIPS), s.text("a.kdb"), s.text("secret"), 1000);
  });
  legacy("OpenKeyDb",
         [](Sweep& s) { s.call(LEGACY(OpenKeyDb), s.text("a.kdb"), s.text("secret")); });
  legacy("ChangeKeyDbPwd", [](Sweep& s) {
    s.call(LEGACY(ChangeKeyDbPwd), s.text("a.kdb"), s.text("old"), s.text("new"), 0);
  });
  legacy("StashKeyDbPwd",
         [](Sweep& s) { s.call(LEGACY(StashKeyDbPwd), s.text("a.kdb"), s.text("secret")); });
  legacy("BuildKeyLabelList",
         [](Sweep& s) { s.call(LEGACY(BuildKeyLabelList), s.text("a.kdb"), s.text("secret")); }, {},
         {{kString, 2}});
  legacy("IsPrivateKeyPresent", [](Sweep& s) {
    s.call(LEGACY(IsPrivateKeyPresent), s.text("a.kdb"), s.text("secret"), s.text("my key"));
  });
  legacy("InsertKey",
         [](Sweep& s) {
           s.call(LEGACY(InsertKey), s.text("a.kdb"), s.text("secret"), s.text("my key"), 2,
                  s.bytes({1, 2}), 1, s.bytes({3}), JNI_TRUE, JNI_FALSE);
         },
         {{kElements, 2}});
  legacy("DeleteKeyByLabel", [](Sweep& s) {
    s.call(LEGACY(DeleteKeyByLabel), s.text("a.kdb"), s.text("secret"), s.text("my key"),
           JNI_FALSE);
  });

  legacy("GetKeyItemByLabel",
         [](Sweep& s) {
           s.call(LEGACY(GetKeyItemByLabel), s.text("a.kdb"), s.text("secret"), s.text("my key"),
                  JNI_FALSE);
         },
         {{kUnsignedCert, 1}});
  legacy("GetKeyItemListByLabel",
         [](Sweep& s) {
           s.call(LEGACY(GetKeyItemListByLabel), s.text("a.kdb"), s.text("secret"),
                  s.text("my key"));
         },
         {{kUnsignedCert, 2}});
  legacy("GetKeyItemsByPublicKey",
         [](Sweep& s) {
           s.call(LEGACY(GetKeyItemsByPublicKey), s.text("a.kdb"), s.text("secret"), 2,
                  s.bytes({0x30, 0x5b}));
         },
         {{kUnsignedCert, 2}, {kElements, 1}}, {{kString, 2}});
  legacy("EncryptPrivateKey",
         [](Sweep& s) {
           s.call(LEGACY(EncryptPrivateKey), 2, s.bytes({1, 2}), s.text("secret"));
         },
         {{kBlock, 1}, {kElements, 1}}, {{kString, 1}});
  legacy("DecryptPrivateKey",
         [](Sweep& s) {
           s.call(LEGACY(DecryptPrivateKey), 2, s.bytes({1, 2}), s.text("secret"));
         },
         {{kElements, 1}}, {{kString, 1}});
  return all;
}

}  // namespace zel::test
