// Issuing certificates for the requests of others.

#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/issuing.h"

using namespace zel;
using namespace zel::km;

namespace {

/** What a caller wants issued, as the C interface has it. */
struct IssuingArguments {
  const unsigned char* requestBytes;
  uint32_t requestLength;
  const char* issuerLabel;
  int version;
  const char* serialNumber;
  int days;
  const char* certFileName;
  unsigned char isBase64;
};

sys::Status issueWith(Store& store, const IssuingArguments& given,
                      cms::SignatureSelector signature) {
  const sys::Result<sys::ByteView> request = bytesArgument(given.requestBytes, given.requestLength);
  if (!request) return request.failure();
  sys::Result<Label> issuer = labelArgument(given.issuerLabel);
  if (!issuer) return issuer.failure();
  sys::Result<sys::Bytes> serialNumber = serialNumberArgument(given.serialNumber);
  if (!serialNumber) return serialNumber.failure();
  sys::Result<CertificateFile> file = certificateFileArgument(given.certFileName, given.isBase64);
  if (!file) return file.failure();
  return issue(store, {.request = request.value(),
                       .issuer = std::move(issuer).value(),
                       .version = given.version,
                       .serialNumber = std::move(serialNumber).value(),
                       .days = given.days,
                       .signature = signature,
                       .file = std::move(file).value()});
}

}  // namespace

int ZELKM_IssueCert(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                    const char* issuerLabel, int firstNumber, const char* serialNumber,
                    int secondNumber, const char* certFileName, unsigned char flag, int64_t,
                    int64_t) {
  return onStore(__func__, handle, [&](Store& store) {
    return issueWith(store,
                     {requestBytes, requestLength, issuerLabel, firstNumber, serialNumber,
                      secondNumber, certFileName, flag},
                     cms::kByKeyStrength);
  });
}

int ZELKM_IssueCertSig(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                       const char* issuerLabel, int firstNumber, const char* serialNumber,
                       int secondNumber, int signatureAlgorithm, const char* certFileName,
                       unsigned char flag, int64_t, int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<cms::SignatureSelector> signature = signatureArgument(signatureAlgorithm);
    if (!signature) return signature.failure();
    return issueWith(store,
                     {requestBytes, requestLength, issuerLabel, firstNumber, serialNumber,
                      secondNumber, certFileName, flag},
                     signature.value());
  });
}
