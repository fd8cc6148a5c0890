#include <gmock/gmock.h>

#include "tests/interop/workshop.h"

namespace zel::km {
namespace {

using testing::ElementsAre;

/** Bundles of certificates (PKCS #7, RFC 2315). We make none ourselves. */
class Pkcs7 : public InteropTest {
 protected:
  /** The common names in a bundle. */
  std::vector<std::string> namesIn(const sys::Bytes& bundle) {
    ZELKMCertItemList* list = nullptr;
    EXPECT_EQ(ZELKM_ExtractCertListFromPKCS7Data(bundle.data(),
                                                 static_cast<std::uint32_t>(bundle.size()), &list),
              ZELKM_OK);
    std::vector<std::string> names;
    for (const ZELKMCertItemList* node = list; node != nullptr; node = node->next) {
      names.emplace_back(node->item->subjectDN->cn);
    }
    ZELKM_FreeCertItemList(list);
    return names;
  }

  void exportBoth() {
    ASSERT_EQ(ZELKM_ExportCert(handle(), "root", path("root.pem").c_str(), 1), ZELKM_OK);
    run("cat leaf.pem root.pem > both.pem");
  }
};

TEST_F(Pkcs7, OfOpenSslIsRead) {
  exportBoth();
  run("openssl crl2pkcs7 -nocrl -certfile both.pem -outform DER -out theirs.p7b && "
      "openssl crl2pkcs7 -nocrl -certfile both.pem -out theirs.pem");
  EXPECT_THAT(namesIn(folder().read("theirs.p7b")), ElementsAre("leaf", "root"));
  EXPECT_THAT(namesIn(derOf("theirs.pem")), ElementsAre("leaf", "root"));
}

TEST_F(Pkcs7, OfGnuTlsIsRead) {
  exportBoth();
  run("certtool --p7-generate --load-certificate both.pem --outder --outfile theirs.p7b && "
      "certtool --p7-generate --load-certificate both.pem --outfile theirs.pem");
  EXPECT_THAT(namesIn(folder().read("theirs.p7b")), ElementsAre("leaf", "root"));
  EXPECT_THAT(namesIn(derOf("theirs.pem")), ElementsAre("leaf", "root"));
}

}  // namespace
}  // namespace zel::km
