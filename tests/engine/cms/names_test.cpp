#include "engine/cms/names.h"

#include <gtest/gtest.h>

#include "engine/cms/openssl_ptr.h"

namespace zel::cms {
namespace {

NameFields everyField() {
  return {.cn = "Ägir & Söhne",
          .ou = "Keys",
          .o = "Sea",
          .l = "Kiel",
          .s = "Schleswig-Holstein",
          .pc = "24103",
          .c = "DE",
          .optionalFields = {"emailAddress=sea@example.net", "DC=example", std::nullopt,
                             "1.2.3.4=an own type"}};
}

std::string oneLine(const sys::Bytes& der) {
  const NamePtr name = decodeDer<NamePtr>(d2i_X509_NAME, der);
  char line[512];
  X509_NAME_oneline(name.get(), line, sizeof line);
  return line;
}

/** A Name whose entries are all of one string type, as other tools write them. */
sys::Bytes nameOf(int stringType, const char* organization, const char* commonName) {
  const NamePtr name(X509_NAME_new());
  for (const auto& [type, value] : {std::pair{"O", organization}, std::pair{"CN", commonName}}) {
    X509_NAME_add_entry_by_txt(name.get(), type, stringType,
                               reinterpret_cast<const unsigned char*>(value), -1, -1, 0);
  }
  return encodeDer(i2d_X509_NAME, name.get());
}

TEST(Names, AreWrittenFromTheCountryDownToTheCommonName) {
  const NameFields fields{.cn = "n", .ou = "u", .o = "o", .l = "l", .s = "s", .pc = "p", .c = "US"};
  EXPECT_EQ(oneLine(encodeName(fields).value()), "/C=US/ST=s/L=l/postalCode=p/O=o/OU=u/CN=n");
}

TEST(Names, ComeBackAsTheyWere) {
  const NameFields fields = everyField();
  const NameFields again = decodeName(encodeName(fields).value()).value();
  EXPECT_EQ(again.cn, fields.cn);
  EXPECT_EQ(again.ou, fields.ou);
  EXPECT_EQ(again.o, fields.o);
  EXPECT_EQ(again.l, fields.l);
  EXPECT_EQ(again.s, fields.s);
  EXPECT_EQ(again.pc, fields.pc);
  EXPECT_EQ(again.c, fields.c);
  EXPECT_EQ(again.optionalFields[0], "emailAddress=sea@example.net");
  EXPECT_EQ(again.optionalFields[1], "DC=example");
  EXPECT_EQ(again.optionalFields[2], "1.2.3.4=an own type");
  EXPECT_EQ(again.optionalFields[3], std::nullopt);
}

TEST(Names, PutTheSecondOfAKindAmongTheFurtherAttributes) {
  const NameFields fields{.ou = "first", .optionalFields = {"OU=second", "OU=third"}};
  const NameFields again = decodeName(encodeName(fields).value()).value();
  EXPECT_EQ(again.ou, "first");
  EXPECT_EQ(again.optionalFields[0], "OU=second");
  EXPECT_EQ(again.optionalFields[1], "OU=third");
}

TEST(Names, WriteTheCountryAsPrintableStringAndTextsAsUtf8) {
  const NamePtr name =
      decodeDer<NamePtr>(d2i_X509_NAME, encodeName({.cn = "n", .c = "US"}).value());
  const auto typeAt = [&](int i) {
    return ASN1_STRING_type(X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name.get(), i)));
  };
  EXPECT_EQ(typeAt(0), V_ASN1_PRINTABLESTRING);
  EXPECT_EQ(typeAt(1), V_ASN1_UTF8STRING);
}

TEST(Names, CarryANulCharacterAndCharactersBeyondTheBasicPlane) {
  const std::string cn("a\0\xF0\x9F\x94\x91", 6);
  EXPECT_EQ(decodeName(encodeName({.cn = cn}).value()).value().cn, cn);
}

TEST(Names, LeaveEmptyAttributesOut) {
  EXPECT_EQ(oneLine(encodeName({.cn = "n", .o = "", .optionalFields = {""}}).value()), "/CN=n");
}

TEST(Names, RefuseWhatMakesNoName) {
  const NameFields refused[] = {
      {},
      {.cn = ""},
      {.cn = "n", .c = "USA"},
      {.cn = "n", .c = "U"},
      {.cn = "n", .c = "\xC3\x84"},
      {.cn = std::string(65, 'n')},
      {.cn = "\xFF"},
      {.cn = "n", .optionalFields = {"no equals sign"}},
      {.cn = "n", .optionalFields = {"noSuchType=value"}},
      {.cn = "n", .optionalFields = {"OU="}},
  };
  for (const NameFields& fields : refused) {
    EXPECT_EQ(encodeName(fields).code(), ZELKM_ERR_INVALID_DN_INPUT);
  }
  EXPECT_TRUE(encodeName({.cn = std::string(64, 'n')}));
}

TEST(Names, ShowWhatIsNoTextAsHexadecimalDer) {
  const NamePtr name(X509_NAME_new());
  const unsigned char bits[] = {0xA5};
  ASSERT_EQ(X509_NAME_add_entry_by_txt(name.get(), "x500UniqueIdentifier", V_ASN1_BIT_STRING, bits,
                                       1, -1, 0),
            1);
  const NameFields fields = decodeName(encodeDer(i2d_X509_NAME, name.get())).value();
  EXPECT_EQ(fields.optionalFields[0], "x500UniqueIdentifier=#030200A5");
}

TEST(Names, RefuseBytesThatAreNone) {
  const sys::Bytes der = encodeName({.cn = "n"}).value();
  EXPECT_EQ(decodeName({}).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(decodeName(sys::ByteView(der).first(der.size() - 1)).code(), ZELKM_ERR_ASN);
  sys::Bytes longer = der;
  longer.push_back(0);
  EXPECT_EQ(decodeName(longer).code(), ZELKM_ERR_ASN);
  EXPECT_EQ(canonicalName(longer).code(), ZELKM_ERR_ASN);
}

TEST(CanonicalNames, AreEqualWhateverTheStringTypeCaseAndSpacing) {
  const sys::Bytes utf8 = nameOf(V_ASN1_UTF8STRING, "The Sea", "Root CA");
  const sys::Bytes printable = nameOf(V_ASN1_PRINTABLESTRING, "  the  SEA ", "ROOT ca");
  ASSERT_NE(utf8, printable);
  EXPECT_EQ(canonicalName(utf8).value(), canonicalName(printable).value());
}

TEST(CanonicalNames, DifferForNamesThatDiffer) {
  EXPECT_NE(canonicalName(nameOf(V_ASN1_UTF8STRING, "Sea", "Root")).value(),
            canonicalName(nameOf(V_ASN1_UTF8STRING, "Sea", "Roots")).value());
  EXPECT_NE(canonicalName(encodeName({.cn = "a", .o = "b"}).value()).value(),
            canonicalName(encodeName({.cn = "b", .o = "a"}).value()).value());
}

TEST(CanonicalNames, KeepAttributesOfOneRdnTogether) {
  const NamePtr joined(X509_NAME_new());
  const auto* value = reinterpret_cast<const unsigned char*>("x");
  X509_NAME_add_entry_by_txt(joined.get(), "O", MBSTRING_UTF8, value, 1, -1, 0);
  X509_NAME_add_entry_by_txt(joined.get(), "CN", MBSTRING_UTF8, value, 1, -1, -1);
  EXPECT_NE(canonicalName(encodeDer(i2d_X509_NAME, joined.get())).value(),
            canonicalName(encodeName({.cn = "x", .o = "x"}).value()).value());
}

}  // namespace
}  // namespace zel::cms
