#include "com_nelo_zel_vosmar_basic_MSCertificateStore.h"
#include "tests/transcripts/fault_sweep.h"

namespace zel::test {

#define STORE(native) Java_com_nelo_zel_vosmar_basic_MSCertificateStore_c_1##native

std::vector<Row> storeRows() {
  std::vector<Row> all;
  const auto store = [&all](const std::string& name, std::function<void(Sweep&)> call,
                            Held leaves = {}, Held mayLeave = {}) {
    all.push_back({"Store_" + name, "MSCertificateStore", std::move(call), std::move(leaves),
                   std::move(mayLeave)});
  };

  store("GetCSPNameList", [](Sweep& s) { s.call(STORE(GetCSPNameList)); });
  store("BuildKeyLabelList", [](Sweep& s) {
    s.call(STORE(BuildKeyLabelList), s.text("CurrentUser/My"), s.text("secret"));
  });
  store("GetKeyItemByLabel",
        [](Sweep& s) {
          s.call(STORE(GetKeyItemByLabel), s.text("CurrentUser/My"), s.text("secret"),
                 s.text("my key"));
        },
        {{kUnsignedCert, 1}});
  store("GetKeyItemListByLabel",
        [](Sweep& s) {
          s.call(STORE(GetKeyItemListByLabel), s.text("CurrentUser/My"), s.text("secret"),
                 s.text("my key"));
        },
        {{kUnsignedCert, 2}});
  store("GetKeyItemsByPublicKey",
        [](Sweep& s) {
          s.call(STORE(GetKeyItemsByPublicKey), s.text("CurrentUser/My"), s.text("secret"), 2,
                 s.bytes({0x30, 0x5b}));
        },
        {{kUnsignedCert, 2}, {kElements, 1}}, {{kString, 2}});
  store("DeleteKeyItemByLabel", [](Sweep& s) {
    s.call(STORE(DeleteKeyItemByLabel), s.text("CurrentUser/My"), s.text("secret"),
           s.text("my key"));
  });

  store("ImportCertificate",
        [](Sweep& s) {
          s.call(STORE(ImportCertificate), s.text("CurrentUser/My"), s.text("secret"),
                 s.text("my key"), 2, s.bytes({1, 2}), 1, s.bytes({3}));
        },
        {{kElements, 2}});
  for (bool isBase64 : {false, true}) {
    store(isBase64 ? "AddSignerCertificate_Base64" : "AddSignerCertificate", [isBase64](Sweep& s) {
      s.call(STORE(AddSignerCertificate), s.text("CurrentUser/My"), s.text("secret"), s.text("ca"),
             s.text("a.der"), isBase64);
    });
  }
  store("CreateNewSelfSignedCertificate",
        [](Sweep& s) {
          s.call(STORE(CreateNewSelfSignedCertificate), s.text("CurrentUser/My"), s.text("secret"),
                 3, s.text("my key"), 2048, s.subject(), 365, 1, 2, s.bytes({1, 2}));
        },
        {{kElements, 1}});
  return all;
}

}  // namespace zel::test
