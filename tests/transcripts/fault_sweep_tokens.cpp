#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"
#include "tests/transcripts/fault_sweep.h"

namespace zel::test {

#define TOKEN(native) Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1##native

std::vector<Row> tokenRows() {
  std::vector<Row> all;
  const auto token = [&all](const std::string& name, std::function<void(Sweep&)> call,
                            Held leaves = {}) {
    all.push_back({"Token_" + name, "CryptographicToken", std::move(call), std::move(leaves)});
  };

  token("GetCryptoTokenLabelList",
        [](Sweep& s) { s.call(TOKEN(GetCryptoTokenLabelList), s.text("p11.so")); });
  token("IsPasswordRequired",
        [](Sweep& s) { s.call(TOKEN(IsPasswordRequired), s.text("p11.so"), s.text("token")); });
  token("ChangeKeyDbPwd", [](Sweep& s) {
    s.call(TOKEN(ChangeKeyDbPwd), s.text("p11.so"), s.text("token"), s.text("1234"),
           s.text("5678"));
  });
  token("BuildKeyLabelList", [](Sweep& s) {
    s.call(TOKEN(BuildKeyLabelList), s.text("p11.so"), s.text("token"), s.text("1234"));
  });

  token("GetKeyItemByLabel",
        [](Sweep& s) {
          s.call(TOKEN(GetKeyItemByLabel), s.text("p11.so"), s.text("token"), s.text("1234"),
                 s.text("my key"), JNI_FALSE);
        },
        {{kUnsignedCert, 1}});
  token("GetKeyItemByLabel_of_a_request", [](Sweep& s) {
    s.call(TOKEN(GetKeyItemByLabel), s.text("p11.so"), s.text("token"), s.text("1234"),
           s.text("my request"), JNI_TRUE);
  });
  for (bool isRequest : {false, true}) {
    token(isRequest ? "DeleteKeyItemByLabel_of_a_request" : "DeleteKeyItemByLabel",
          [isRequest](Sweep& s) {
            s.call(TOKEN(DeleteKeyItemByLabel), s.text("p11.so"), s.text("token"), s.text("1234"),
                   s.text("my key"), isRequest);
          });
  }

  for (const char* secondary : {"a.kdb", static_cast<const char*>(nullptr)}) {
    const std::string beside = secondary == nullptr ? "" : "_beside_a_key_database";
    token("ReceivePersonalCertificate" + beside, [secondary](Sweep& s) {
      s.call(TOKEN(ReceivePersonalCertificate), s.text("p11.so"), s.text("token"), s.text("1234"),
             secondary == nullptr ? nullptr : s.text(secondary), s.text("secret"), s.text("a.der"),
             JNI_FALSE);
    });
    token("ImportCertificate" + beside,
          [secondary](Sweep& s) {
            s.call(TOKEN(ImportCertificate), s.text("p11.so"), s.text("token"), s.text("1234"),
                   secondary == nullptr ? nullptr : s.text(secondary), s.text("secret"),
                   s.text("my key"), 2, s.bytes({1, 2}), 1, s.bytes({3}));
          },
          {{kElements, 2}});
  }
  token("ReceivePersonalCertificate_Base64", [](Sweep& s) {
    s.call(TOKEN(ReceivePersonalCertificate), s.text("p11.so"), s.text("token"), nullptr, nullptr,
           nullptr, s.text("a.arm"), JNI_TRUE);
  });
  for (bool isBase64 : {false, true}) {
    token(isBase64 ? "AddSignerCertificate_Base64" : "AddSignerCertificate", [isBase64](Sweep& s) {
      s.call(TOKEN(AddSignerCertificate), s.text("p11.so"), s.text("token"), s.text("1234"),
             s.text("ca"), s.text("a.der"), isBase64);
    });
  }
  token("ExtractCertificate", [](Sweep& s) {
    s.call(TOKEN(ExtractCertificate), s.text("p11.so"), s.text("token"), s.text("1234"),
           s.text("my key"), s.text("a.arm"), JNI_TRUE);
  });

  token("CreatePersonalCertificateRequest", [](Sweep& s) {
    s.call(TOKEN(CreatePersonalCertificateRequest), s.text("p11.so"), s.text("token"),
           s.text("1234"), s.text("my key"), 2048, s.subject(), 1, s.text("r.arm"));
  });
  token("ImportPersonalCertificateRequest",
        [](Sweep& s) {
          s.call(TOKEN(ImportPersonalCertificateRequest), s.text("p11.so"), s.text("token"),
                 s.text("1234"), s.text("my key"), 2, s.bytes({1, 2}), 1, s.bytes({3}));
        },
        {{kElements, 2}});
  token("RecreatePersonalCertificateRequest", [](Sweep& s) {
    s.call(TOKEN(RecreatePersonalCertificateRequest), s.text("p11.so"), s.text("token"),
           s.text("1234"), s.text("my key"), 2, s.text("r.arm"));
  });
  token("ExtractPersonalCertificateRequest", [](Sweep& s) {
    s.call(TOKEN(ExtractPersonalCertificateRequest), s.text("p11.so"), s.text("token"),
           s.text("1234"), s.text("my key"), s.text("r.arm"));
  });
  token("CreateSelfSignedCertificate", [](Sweep& s) {
    s.call(TOKEN(CreateSelfSignedCertificate), s.text("p11.so"), s.text("token"), s.text("1234"), 3,
           s.text("my key"), 2048, s.subject(), 365, 1);
  });

  token("IsPersonalCertificateRenewal",
        [](Sweep& s) {
          s.call(TOKEN(IsPersonalCertificateRenewal), s.text("p11.so"), s.text("token"),
                 s.text("1234"), 2, s.bytes({1, 2}));
        },
        {{kElements, 1}});
  token("RenewPersonalCertificate",
        [](Sweep& s) {
          s.call(TOKEN(RenewPersonalCertificate), s.text("p11.so"), s.text("token"), s.text("1234"),
                 2, s.bytes({1, 2}));
        },
        {{kElements, 1}});
  return all;
}

}  // namespace zel::test
