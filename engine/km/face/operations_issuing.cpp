#include <openssl/bn.h>

#include <cctype>
#include <string_view>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/certificates.h"
#include "engine/cms/issued_extensions.h"
#include "engine/cms/issuing.h"
#include "engine/cms/requests.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/km/store/key_material.h"
#include "engine/km/work/certificate_files.h"
#include "engine/sys/trace.h"

// Issuing certificates for the requests of others.

using namespace zel;
using namespace zel::km;

namespace {

/** What a caller wants issued. */
struct Issuing {
  const unsigned char* requestBytes;
  uint32_t requestLength;
  const char* issuerLabel;
  int version;
  const char* serialNumber;
  int days;
  int signatureSelector;
  const char* certFileName;
  CertificateFormat format;
};

/** RFC 5280, 4.1.2.2: at most 20 octets, the highest bit of which is the sign. */
constexpr int kMostSerialNumberBits = 159;
/** No such number has more, leading zeros allowed for; reading more would take long. */
constexpr std::size_t kMostSerialNumberDigits = 64;

/** Decimal, or hexadecimal after "0x"; nothing for an empty text, which asks for a random one. */
sys::Result<sys::Bytes> serialNumberArgument(const char* text) {
  std::string_view digits = text == nullptr ? "" : text;
  if (digits.empty()) return sys::Bytes();
  const bool isHexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (isHexadecimal) digits.remove_prefix(2);

  const auto isDigit = [&](unsigned char c) {
    return isHexadecimal ? std::isxdigit(c) != 0 : std::isdigit(c) != 0;
  };
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), isDigit)) {
    return sys::fail(ZELKM_ERR_PARAMETER, "no serial number: \"%s\"", text);
  }
  if (digits.size() > kMostSerialNumberDigits) {
    return sys::fail(ZELKM_ERR_NUMBER_SIZE, "a serial number of %zu digits", digits.size());
  }
  BIGNUM* parsed = nullptr;
  const std::string terminated(digits);
  const int taken = isHexadecimal ? BN_hex2bn(&parsed, terminated.c_str())
                                  : BN_dec2bn(&parsed, terminated.c_str());
  const cms::BigNumberPtr number(parsed);
  if (taken == 0) return cms::cryptoFailure(ZELKM_ERR_NUMBER_SIZE, "read a serial number");
  if (BN_is_zero(number.get())) return sys::fail(ZELKM_ERR_PARAMETER, "the serial number 0");
  if (BN_num_bits(number.get()) > kMostSerialNumberBits) {
    return sys::fail(ZELKM_ERR_NUMBER_SIZE, "a serial number of more than 20 bytes");
  }
  sys::Bytes bytes(static_cast<std::size_t>(BN_num_bytes(number.get())));
  BN_bn2bin(number.get(), bytes.data());
  return bytes;
}

/** The issuer's entry, when it has a key and may issue. */
sys::Result<KeyEntry> findIssuer(Store& store, const char* issuerLabel) {
  const sys::Result<Label> label = labelArgument(issuerLabel);
  if (!label) return label.failure();
  sys::Result<KeyEntry> issuer = store.findKey(label.value());
  if (!issuer) return issuer;
  if (sys::Status hasKey = requirePrivateKey(issuer.value()); !hasKey) return hasKey.failure();
  if (sys::Status may = cms::checkIssuer(issuer.value().certificate); !may) return may.failure();
  return issuer;
}

/** What the request asks for, as far as it is granted. */
sys::Result<cms::CertificatePlan> planFor(const Issuing& wanted, const cms::RequestFields& request,
                                          const KeyEntry& issuer) {
  const sys::Result<cms::CertificateFields> issuerFields = cms::readCertificate(issuer.certificate);
  if (!issuerFields) return issuerFields.failure();
  sys::Result<sys::Bytes> serialNumber = serialNumberArgument(wanted.serialNumber);
  if (!serialNumber) return serialNumber.failure();

  cms::CertificatePlan plan;
  plan.version = wanted.version;
  plan.days = wanted.days;
  plan.subject = request.subjectDer;
  plan.issuer = issuerFields.value().subjectDer;
  plan.publicKeyInfo = request.publicKeyInfo;
  plan.serialNumber = std::move(serialNumber).value();
  if (wanted.version == 3) {
    sys::Result<sys::Bytes> extensions =
        cms::issuedExtensions(request.extensions, request.publicKeyInfo, issuer.certificate);
    if (!extensions) return extensions.failure();
    plan.extensions = std::move(extensions).value();
  }
  return plan;
}

sys::Status issue(Store& store, const Issuing& wanted) {
  const sys::Result<sys::ByteView> bytes = bytesArgument(wanted.requestBytes, wanted.requestLength);
  if (!bytes) return bytes.failure();
  const sys::Result<KeyEntry> issuer = findIssuer(store, wanted.issuerLabel);
  if (!issuer) return issuer.failure();
  const sys::Result<cms::RequestFields> request = cms::readRequest(bytes.value());
  if (!request) return request.failure();
  if (sys::Status isGenuine = cms::verifyRequest(bytes.value()); !isGenuine) return isGenuine;

  if (store.approvedOnly()) {
    const sys::Status approved = checkApproved(request.value().publicKeyInfo);
    if (!approved) return approved;
  }

  const sys::Result<cms::CertificatePlan> plan = planFor(wanted, request.value(), issuer.value());
  if (!plan) return plan.failure();
  const sys::Result<cms::CertificateKeys> issuerKeys =
      cms::readCertificateKeys(issuer.value().certificate);
  if (!issuerKeys) return issuerKeys.failure();
  const sys::Result<cms::KeyTraits> signingKey =
      cms::describePublicKey(issuerKeys.value().publicKeyInfo);
  if (!signingKey) return signingKey.failure();
  const sys::Result<sys::Bytes> certificate =
      cms::issueCertificate(plan.value(), signingKey.value(), wanted.signatureSelector,
                            signerOf(store, issuer.value().privateKey));
  if (!certificate) return certificate.failure();
  const sys::Result<sys::FileName> certFile = sys::FileName::given(wanted.certFileName);
  if (!certFile) return certFile.failure();
  return writeCertificateFile(certFile.value(), certificate.value(), wanted.format);
}

}  // namespace

int ZELKM_IssueCert(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                    const char* issuerLabel, int firstNumber, const char* serialNumber,
                    int secondNumber, const char* certFileName, unsigned char flag, int64_t,
                    int64_t) {
  return onStore(__func__, handle, [&](Store& store) {
    return issue(store, {.requestBytes = requestBytes,
                         .requestLength = requestLength,
                         .issuerLabel = issuerLabel,
                         .version = firstNumber,
                         .serialNumber = serialNumber,
                         .days = secondNumber,
                         .signatureSelector = cms::kByKeyStrength,
                         .certFileName = certFileName,
                         .format = formatOfFlag(flag)});
  });
}

int ZELKM_IssueCertSig(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                       const char* issuerLabel, int firstNumber, const char* serialNumber,
                       int secondNumber, int signatureAlgorithm, const char* certFileName,
                       unsigned char flag, int64_t, int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status chosen = requireSignatureSelector(signatureAlgorithm); !chosen) return chosen;
    return issue(store, {.requestBytes = requestBytes,
                         .requestLength = requestLength,
                         .issuerLabel = issuerLabel,
                         .version = firstNumber,
                         .serialNumber = serialNumber,
                         .days = secondNumber,
                         .signatureSelector = signatureAlgorithm,
                         .certFileName = certFileName,
                         .format = formatOfFlag(flag)});
  });
}
