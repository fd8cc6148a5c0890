#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabaseException.h"
#include "com_nelo_zel_vosmar_basic_KMSystem.h"
#include "com_nelo_zel_vosmar_basic_WEBDBKeyDatabase.h"
#include "tests/transcripts/fault_sweep.h"

namespace zel::test {

#define BASIC(class_, native) Java_com_nelo_zel_vosmar_basic_##class_##_c_1##native
#define DATABASE(native) BASIC(CMSKeyDatabase, native)

std::vector<Row> systemRows() {
  std::vector<Row> all;
  const auto system = [&all](const char* name, std::function<void(Sweep&)> call) {
    all.push_back({name, "KMSystem", std::move(call)});
  };
  system("IsUSSharedLibraryLoaded",
         [](Sweep& s) { s.call(BASIC(KMSystem, IsUSSharedLibraryLoaded)); });
  system("enableFIPSMode",
         [](Sweep& s) { s.call(BASIC(KMSystem, enableFIPSMode), JNI_TRUE, JNI_TRUE); });
  system("ZELKMInit", [](Sweep& s) { s.call(BASIC(KMSystem, ZELKMInit), JNI_TRUE); });
  system("ZELKMInitDebug_and_ZELKMCleanAll", [](Sweep& s) {
    s.call(BASIC(KMSystem, ZELKMInitDebug), JNI_TRUE, JNI_TRUE);
    s.call(BASIC(KMSystem, ZELKMCleanAll));
  });
  system("ShowLibInfo", [](Sweep& s) { s.call(BASIC(KMSystem, ShowLibInfo)); });
  all.push_back({"BuildErrCodeNameTable", "CMSKeyDatabaseException",
                 [](Sweep& s) { s.call(BASIC(CMSKeyDatabaseException, BuildErrCodeNameTable)); }});
  return all;
}

std::vector<Row> keyDatabaseRows() {
  std::vector<Row> all;
  const auto database = [&all](const char* name, std::function<void(Sweep&)> call, Held leaves = {},
                               Held mayLeave = {}) {
    all.push_back(
        {name, "CMSKeyDatabase", std::move(call), std::move(leaves), std::move(mayLeave)});
  };
  database("CreateNewKeyDb", [](Sweep& s) {
    s.call(DATABASE(CreateNewKeyDb), s.text("a.kdb"), s.text("secret"), 1000);
  });
  database("CreateNewKeyDbFIPS", [](Sweep& s) {
    s.call(DATABASE(CreateNewKeyDbFIPS), s.text("a.kdb"), s.text("secret"), 1000);
  });
  database("OpenKeyDb",
           [](Sweep& s) { s.call(DATABASE(OpenKeyDb), s.text("a.kdb"), s.text("secret")); });
  database("ChangeKeyDbPwd", [](Sweep& s) {
    s.call(DATABASE(ChangeKeyDbPwd), s.text("a.kdb"), s.text("old"), s.text("new"), 0);
  });
  database("StashKeyDbPwd",
           [](Sweep& s) { s.call(DATABASE(StashKeyDbPwd), s.text("a.kdb"), s.text("secret")); });
  database("IsPasswordRequired",
           [](Sweep& s) { s.call(DATABASE(IsPasswordRequired), s.text("a.kdb")); });
  all.push_back({"WEBDBKeyDatabase_IsPasswordRequired", "WEBDBKeyDatabase", [](Sweep& s) {
                   s.call(BASIC(WEBDBKeyDatabase, IsPasswordRequired), s.text("a.kdb"));
                 }});

  database("BuildKeyLabelList",
           [](Sweep& s) { s.call(DATABASE(BuildKeyLabelList), s.text("a.kdb"), s.text("secret")); },
           {}, {{kString, 2}});
  database("GetKeyItemByLabel",
           [](Sweep& s) {
             s.call(DATABASE(GetKeyItemByLabel), s.text("a.kdb"), s.text("secret"),
                    s.text("my key"), JNI_FALSE);
           },
           {{kUnsignedCert, 1}});
  database("GetKeyItemByLabel_of_a_request", [](Sweep& s) {
    s.call(DATABASE(GetKeyItemByLabel), s.text("a.kdb"), s.text("secret"), s.text("my request"),
           JNI_TRUE);
  });
  database("GetKeyItemListByLabel",
           [](Sweep& s) {
             s.call(DATABASE(GetKeyItemListByLabel), s.text("a.kdb"), s.text("secret"),
                    s.text("my key"));
           },
           {{kUnsignedCert, 2}});
  database("GetKeyItemsByPublicKey",
           [](Sweep& s) {
             s.call(DATABASE(GetKeyItemsByPublicKey), s.text("a.kdb"), s.text("secret"), 2,
                    s.bytes({0x30, 0x5b}));
           },
           {{kUnsignedCert, 2}, {kElements, 1}}, {{kString, 2}});
  database("GetDefaultKeyItem",
           [](Sweep& s) { s.call(DATABASE(GetDefaultKeyItem), s.text("a.kdb"), s.text("secret")); },
           {{kUnsignedCert, 1}});
  database("IsPrivateKeyPresent", [](Sweep& s) {
    s.call(DATABASE(IsPrivateKeyPresent), s.text("a.kdb"), s.text("secret"), s.text("my key"));
  });

  database("InsertKey",
           [](Sweep& s) {
             s.call(DATABASE(InsertKey), s.text("a.kdb"), s.text("secret"), s.text("my key"), 2,
                    s.bytes({1, 2}), 1, s.bytes({3}), JNI_TRUE, JNI_FALSE);
           },
           {{kElements, 2}});
  database("InsertReqKey",
           [](Sweep& s) {
             s.call(DATABASE(InsertReqKey), s.text("a.kdb"), s.text("secret"), s.text("my key"), 2,
                    s.bytes({1, 2}), 1, s.bytes({3}));
           },
           {{kElements, 2}});
  for (bool isRequest : {false, true}) {
    database(isRequest ? "DeleteKeyByLabel_of_a_request" : "DeleteKeyByLabel",
             [isRequest](Sweep& s) {
               s.call(DATABASE(DeleteKeyByLabel), s.text("a.kdb"), s.text("secret"),
                      s.text("my key"), isRequest);
             });
  }
  database("SetDefaultKey", [](Sweep& s) {
    s.call(DATABASE(SetDefaultKey), s.text("a.kdb"), s.text("secret"), s.text("my key"));
  });
  database("SetKeyTrust", [](Sweep& s) {
    s.call(DATABASE(SetKeyTrust), s.text("a.kdb"), s.text("secret"), s.text("my key"), JNI_TRUE);
  });

  database("CreateNewSelfSignedCertificate", [](Sweep& s) {
    s.call(DATABASE(CreateNewSelfSignedCertificate), s.text("a.kdb"), s.text("secret"), 3,
           s.text("my key"), JNI_TRUE, 2048, s.subject(), 365, s.text("a.arm"), JNI_TRUE);
  });
  database("CreateNewSelfSignedCertificateSigExt",
           [](Sweep& s) {
             s.call(DATABASE(CreateNewSelfSignedCertificateSigExt), s.text("a.kdb"),
                    s.text("secret"), 3, s.text("my key"), JNI_TRUE, 2048, s.subject(), 365, 1, 2,
                    s.bytes({1, 2}), s.text("a.arm"), JNI_TRUE);
           },
           {{kElements, 1}});
  for (bool createNew : {false, true}) {
    database(createNew ? "CreateNewCertRequest" : "CreateNewCertRequest_again",
             [createNew](Sweep& s) {
               s.call(DATABASE(CreateNewCertRequest), s.text("a.kdb"), s.text("secret"),
                      s.text("my key"), 2048, s.subject(), s.text("r.arm"), createNew);
             });
    database(createNew ? "CreateNewCertRequestSigExt" : "CreateNewCertRequestSigExt_again",
             [createNew](Sweep& s) {
               s.call(DATABASE(CreateNewCertRequestSigExt), s.text("a.kdb"), s.text("secret"),
                      s.text("my key"), 2048, s.subject(), 2, 2, s.bytes({1, 2}), s.text("r.arm"),
                      createNew);
             },
             {{kElements, 1}});
  }
  database("IssueCertificate", [](Sweep& s) {
    s.call(DATABASE(IssueCertificate), s.text("a.kdb"), s.text("secret"), s.text("issuer"), 3,
           s.text("17"), 365, s.text("r.arm"), s.text("c.arm"), JNI_TRUE);
  });
  database("IssueCertificateSig", [](Sweep& s) {
    s.call(DATABASE(IssueCertificateSig), s.text("a.kdb"), s.text("secret"), s.text("issuer"), 3,
           s.text("17"), 365, 1, s.text("r.arm"), s.text("c.arm"), JNI_TRUE);
  });

  database("EncryptPrivateKey",
           [](Sweep& s) {
             s.call(DATABASE(EncryptPrivateKey), 2, s.bytes({1, 2}), s.text("secret"));
           },
           {{kBlock, 1}, {kElements, 1}}, {{kString, 1}});
  database("DecryptPrivateKey",
           [](Sweep& s) {
             s.call(DATABASE(DecryptPrivateKey), 2, s.bytes({1, 2}), s.text("secret"));
           },
           {{kElements, 1}}, {{kString, 1}});

  database("ExportToPFXFile",
           [](Sweep& s) {
             s.call(DATABASE(ExportToPFXFile), s.text("a.kdb"), s.text("secret"), s.text("a.p12"),
                    s.text("pfx"), s.texts({"a", "b", "c"}));
           },
           {{kText, 1}}, {{kBlock, 2}});
  database("ImportFromPFXFile", [](Sweep& s) {
    s.call(DATABASE(ImportFromPFXFile), s.text("a.kdb"), s.text("secret"), s.text("a.p12"),
           s.text("pfx"));
  });
  for (bool isBase64 : {false, true}) {
    database(isBase64 ? "ReceiveCert_Base64" : "ReceiveCert", [isBase64](Sweep& s) {
      s.call(DATABASE(ReceiveCert), s.text("a.kdb"), s.text("secret"), s.text("a.der"), isBase64,
             JNI_TRUE);
    });
    database(isBase64 ? "AddCaCert_Base64" : "AddCaCert", [isBase64](Sweep& s) {
      s.call(DATABASE(AddCaCert), s.text("a.kdb"), s.text("secret"), s.text("ca"), s.text("a.der"),
             isBase64);
    });
    database(isBase64 ? "ExtractCertFromPKCS7Data_Base64" : "ExtractCertFromPKCS7Data",
             [isBase64](Sweep& s) {
               s.call(DATABASE(ExtractCertFromPKCS7Data), s.text("a.der"), isBase64);
             },
             {{kUnsignedCert, 1}});
  }
  database("ExtractCert", [](Sweep& s) {
    s.call(DATABASE(ExtractCert), s.text("a.kdb"), s.text("secret"), s.text("my key"),
           s.text("a.arm"), JNI_TRUE);
  });
  database("ExtractCertReq", [](Sweep& s) {
    s.call(DATABASE(ExtractCertReq), s.text("a.kdb"), s.text("secret"), s.text("my request"),
           s.text("r.arm"));
  });
  database("ExtractCertReqSig", [](Sweep& s) {
    s.call(DATABASE(ExtractCertReqSig), s.text("a.kdb"), s.text("secret"), s.text("my request"), 1,
           s.text("r.arm"));
  });

  database("Kyr2Kdb", [](Sweep& s) {
    s.call(DATABASE(Kyr2Kdb), s.text("a.kyr"), s.text("ring"), s.text("a.kdb"), s.text("secret"));
  });
  database("Kdb2Kyr", [](Sweep& s) {
    s.call(DATABASE(Kdb2Kyr), s.text("a.kdb"), s.text("secret"), s.text("a.kyr"), s.text("ring"));
  });
  database(
      "CheckCertAsRenewal",
      [](Sweep& s) {
        s.call(DATABASE(CheckCertAsRenewal), s.text("a.kdb"), s.text("secret"), 2, s.bytes({1, 2}));
      },
      {{kBlock, 1}, {kElements, 1}});
  database("RenewCert",
           [](Sweep& s) {
             s.call(DATABASE(RenewCert), s.text("a.kdb"), s.text("secret"), 2, s.bytes({1, 2}));
           },
           {{kBlock, 1}, {kElements, 1}});
  database("ValidateCertificateChain",
           [](Sweep& s) {
             s.call(DATABASE(ValidateCertificateChain), s.text("a.kdb"), s.text("secret"),
                    s.bytes({1, 2}), 2);
           },
           {{"handle 1", 1}, {kElements, 1}}, {{kString, 2}});
  return all;
}

}  // namespace zel::test
