#include "tests/engine/errors/documents.h"
#include "tests/engine/errors/provocation.h"

// Certificates and requests that cannot be made, issued, received or renewed.

namespace zel::km::errors {

namespace {

uint32_t lengthOf(const sys::Bytes& bytes) { return static_cast<uint32_t>(bytes.size()); }

const ZELKMDNItem kEmptyName{};

ZELKMDNItem nameOfCountry(const char* country) {
  ZELKMDNItem name{};
  name.c = const_cast<char*>(country);
  return name;
}
const ZELKMDNItem kLongCountry = nameOfCountry("DEU");

std::string tooLong(65, 'n');  // ub-common-name is 64
const ZELKMDNItem kLongName = [] {
  ZELKMDNItem name{};
  name.cn = tooLong.data();
  return name;
}();

/** The same extension twice: basicConstraints, CA true. */
const sys::Bytes kTwice = {0x30, 0x1C, 0x30, 0x0C, 0x06, 0x03, 0x55, 0x1D, 0x13, 0x04,
                           0x05, 0x30, 0x03, 0x01, 0x01, 0xFF, 0x30, 0x0C, 0x06, 0x03,
                           0x55, 0x1D, 0x13, 0x04, 0x05, 0x30, 0x03, 0x01, 0x01, 0xFF};
/** keyUsage, digitalSignature only. */
const sys::Bytes kNoIssuersUsage = {0x30, 0x0D, 0x30, 0x0B, 0x06, 0x03, 0x55, 0x1D,
                                    0x0F, 0x04, 0x04, 0x03, 0x02, 0x07, 0x80};

/** A message of PKCS #7 type signedData without certificates. */
const sys::Bytes kEmptyMessage = {0x30, 0x23, 0x06, 0x09, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D,
                                  0x01, 0x07, 0x02, 0xA0, 0x16, 0x30, 0x14, 0x02, 0x01, 0x01,
                                  0x31, 0x00, 0x30, 0x0B, 0x06, 0x09, 0x2A, 0x86, 0x48, 0x86,
                                  0xF7, 0x0D, 0x01, 0x07, 0x01, 0x31, 0x00};

/** A certificate that renews that of "server", but for what is changed. */
sys::Bytes serverFrom(int notBefore) {
  const sys::Bytes& publicKey = materials().publicKey;
  sys::Bytes certificate = materials().stranger.issueFor(publicKey, "server");
  if (notBefore == 0) return certificate;
  return changed(certificate, materials().stranger,
                 [](X509& x) { X509_gmtime_adj(X509_getm_notBefore(&x), -1'000'000); });
}

/** Issuing with the key of the stranger, whose certificate is changed. */
void issueAs(World& world, void (*change)(X509& certificate)) {
  const sys::Bytes certificate =
      changed(authorityCertificate(materials().stranger), materials().stranger, change);
  const sys::Bytes& key = materials().key;
  ZELKM_InsertKey(world.handle, "issuer", lengthOf(certificate), certificate.data(), lengthOf(key),
                  key.data(), 0, 0);
  world.given.label = "issuer";
}

}  // namespace

std::vector<Troubles> troublesOfCertificates() {
  return {
      {nullptr,
       {"ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReq",
        "ZELKM_CreateNewCertReqSigExt"},
       {{ZELKM_ERR_INVALID_DN_INPUT, "the name is missing, or has no attribute",
         [](World& w) { w.given.name = nullptr; }},
        {ZELKM_ERR_INVALID_DN_INPUT, "the name is missing, or has no attribute",
         [](World& w) { w.given.name = &kEmptyName; }},
        {ZELKM_ERR_INVALID_DN_INPUT, "the country is not two letters",
         [](World& w) { w.given.name = &kLongCountry; }},
        {ZELKM_ERR_INVALID_DN_INPUT, "an attribute of the name is too long",
         [](World& w) { w.given.name = &kLongName; }}}},

      {nullptr,
       {"ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_IssueCert",
        "ZELKM_IssueCertSig"},
       {{ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION, "the X.509 version is not 1, 2 or 3",
         [](World& w) { w.given.version = 4; }},
        {ZELKM_ERR_VALIDATION_KEY_VALIDITY_PERIOD, "a validity of less than a day",
         [](World& w) { w.given.days = 0; }},
        {ZELKM_ERR_EXPIRE_DAYS_TOO_LARGE, "the validity would end after the year 9999",
         [](World& w) { w.given.days = 10'000'000; }}}},

      {nullptr,
       {"ZELKM_CreateSelfSignedCertSigExt"},
       {{ZELKM_ERR_VALIDATION_KEY_WRONG_VERSION, "extensions for an X.509 version below 3",
         [](World& w) {
           w.given.version = 1;
           w.given.extensions = kNoIssuersUsage;
         }}}},

      {nullptr,
       {"ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReqSigExt"},
       {{ZELKM_ERR_NULL_PARAMETER, "extensions with a length, but without bytes",
         [](World& w) { w.given.extensionsLength = 5; }},
        {ZELKM_ERR_ASN, "the extensions are no `Extensions`",
         [](World& w) {
           w.given.extensions = {0x04, 0x00};
         }},
        {ZELKM_ERR_VALIDATION_DUPLICATE_EXTENSIONS, "an extension stands twice",
         [](World& w) { w.given.extensions = kTwice; }}}},

      {nullptr,
       {"ZELKM_IssueCert", "ZELKM_IssueCertSig"},
       {{ZELKM_ERR_CRYPTO_VERIFY, "the request is not signed by its own key",
         [](World& w) {
           w.given.document = materials().request;
           w.given.document->back() ^= 1;
         }},
        {ZELKM_ERR_PARAMETER, "the serial number is neither decimal nor 0x hexadecimal, or is 0",
         [](World& w) { w.given.serialNumber = "12a"; }},
        {ZELKM_ERR_NUMBER_SIZE, "the serial number has more than 20 bytes",
         [](World& w) { w.given.serialNumber = "0x0123456789012345678901234567890123456789ab"; }},
        {ZELKM_ERR_VALIDATION_KEY_VALIDITY, "the issuer's certificate is not valid now",
         [](World& w) {
           issueAs(w, [](X509& x) { X509_gmtime_adj(X509_getm_notAfter(&x), -1000); });
         }},
        {ZELKM_ERR_VALIDATION_KEY_BASIC_CONSTRAINTS, "the issuer is no authority",
         [](World& w) {
           issueAs(w, [](X509& x) {
             removeExtension(x, NID_basic_constraints);
             addExtension(x, NID_basic_constraints, "critical,CA:FALSE");
           });
         }},
        {ZELKM_ERR_VALIDATION_KEY_USAGE, "the issuer's key may not sign certificates",
         [](World& w) {
           issueAs(w, [](X509& x) {
             removeExtension(x, NID_key_usage);
             addExtension(x, NID_key_usage, "digitalSignature");
           });
         }}}},

      {nullptr,
       {"ZELKM_ReceiveCert"},
       {{ZELKM_ERR_REQKEY_FOR_CERT_NULL, "no pending request has the certificate's key",
         [](World& w) { w.given.document = materials().stranger.certificate(); }}}},

      {nullptr,
       {"ZELKM_ReceiveCert", "ZELKM_ExtractCertListFromPKCS7Data"},
       {{ZELKM_ERR_KEYREC_CERTIFICATE_NULL, "the PKCS #7 message has no certificate",
         [](World& w) { w.given.document = kEmptyMessage; }},
        {ZELKM_ERR_BASE64_INVALID_MSGTYPE, "PEM: an armour that does not end as it began",
         [](World& w) {
           const auto text = sys::bytesOf("-----BEGIN A-----\nYWJj\n-----END B-----");
           w.given.document = sys::Bytes(text.begin(), text.end());
         }},
        {ZELKM_ERR_BASE64_INVALID_DATA, "PEM: a body that is not Base64",
         [](World& w) {
           const auto text = sys::bytesOf("-----BEGIN A-----\n?\n-----END A-----");
           w.given.document = sys::Bytes(text.begin(), text.end());
         }},
        {ZELKM_ERR_BASE64_DECODING, "PEM: Base64 that is cut off, or wrongly padded",
         [](World& w) {
           const auto text = sys::bytesOf("-----BEGIN A-----\nYWJ\n-----END A-----");
           w.given.document = sys::Bytes(text.begin(), text.end());
         }}}},

      {nullptr,
       {"ZELKM_RenewCert"},
       {{ZELKM_ERR_KEY_GET_BY_LABEL, "no entry has the certificate's subject and key",
         [](World& w) { w.given.document = materials().stranger.certificate(); }},
        {ZELKM_ERR_DATABASE_DUPLICATE_KEY, "the entry has the certificate already",
         [](World& w) { w.given.document = materials().server; }},
        {ZELKM_ERR_VALIDATION_KEY_VALIDITY, "the entry's certificate is the younger one",
         [](World& w) { w.given.document = serverFrom(-1); }}}},
  };
}

}  // namespace zel::km::errors
