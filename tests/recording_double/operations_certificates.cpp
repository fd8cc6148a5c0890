#include "tests/recording_double/library_call.h"

using namespace zel::test;

namespace {

/** The attributes that are set, as DN{cn="Alice", c="DE"}. */
std::string textOf(const ZELKMDNItem* dn) {
  if (dn == nullptr) return "null";
  std::string attributes;
  const auto add = [&attributes](const char* name, const char* value) {
    if (value == nullptr) return;
    attributes += (attributes.empty() ? "" : ", ") + std::string(name) + "=" + quoted(value);
  };
  add("cn", dn->cn);
  add("ou", dn->ou);
  add("o", dn->o);
  add("l", dn->l);
  add("s", dn->s);
  add("pc", dn->pc);
  add("c", dn->c);
  add("optional1", dn->optionalField1);
  add("optional2", dn->optionalField2);
  add("optional3", dn->optionalField3);
  add("optional4", dn->optionalField4);
  if (dn->derLength != 0) attributes += ", der=" + inHex(dn->derData, dn->derLength);
  return "DN{" + attributes + "}";
}

}  // namespace

int ZELKM_CreateSelfSignedCert(int handle, const char* label, unsigned char firstFlag,
                               int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                               int thirdNumber, const char* certFileName,
                               unsigned char secondFlag) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), firstFlag, firstNumber,
                       secondNumber, textOf(dn), thirdNumber, quoted(certFileName), secondFlag)
      .answer();
}

int ZELKM_CreateSelfSignedCertSigExt(int handle, const char* label, unsigned char firstFlag,
                                     int firstNumber, int secondNumber, const ZELKMDNItem* dn,
                                     int thirdNumber, int signatureAlgorithm,
                                     const unsigned char* extensions, uint32_t extensionsLength,
                                     const char* certFileName, unsigned char secondFlag) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), firstFlag, firstNumber,
                       secondNumber, textOf(dn), thirdNumber, signatureAlgorithm,
                       inHex(extensions, extensionsLength), extensionsLength, quoted(certFileName),
                       secondFlag)
      .answer();
}

int ZELKM_CreateNewCertReq(int handle, const char* label, int keySize, const ZELKMDNItem* dn,
                           const char* certReqFileName, int64_t zero1, int64_t zero2) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), keySize, textOf(dn),
                       quoted(certReqFileName), zero1, zero2)
      .answer();
}

int ZELKM_CreateNewCertReqSigExt(int handle, const char* label, int keySize, const ZELKMDNItem* dn,
                                 int signatureAlgorithm, const unsigned char* extensions,
                                 uint32_t extensionsLength, const char* certReqFileName,
                                 int64_t zero1, int64_t zero2) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), keySize, textOf(dn),
                       signatureAlgorithm, inHex(extensions, extensionsLength), extensionsLength,
                       quoted(certReqFileName), zero1, zero2)
      .answer();
}

int ZELKM_ReCreateCertReq(int handle, const char* label, const char* certReqFileName, int64_t zero1,
                          int64_t zero2) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), quoted(certReqFileName), zero1,
                       zero2)
      .answer();
}

int ZELKM_ReCreateCertReqSig(int handle, const char* label, int signatureAlgorithm,
                             const char* certReqFileName, int64_t zero1, int64_t zero2) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), signatureAlgorithm,
                       quoted(certReqFileName), zero1, zero2)
      .answer();
}

int ZELKM_IssueCert(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                    const char* issuerLabel, int firstNumber, const char* serialNumber,
                    int secondNumber, const char* certFileName, unsigned char flag, int64_t zero1,
                    int64_t zero2) {
  return OperationCall(__func__, OpenHandle{handle}, inHex(requestBytes, requestLength),
                       requestLength, quoted(issuerLabel), firstNumber, quoted(serialNumber),
                       secondNumber, quoted(certFileName), flag, zero1, zero2)
      .answer();
}

int ZELKM_IssueCertSig(int handle, const unsigned char* requestBytes, uint32_t requestLength,
                       const char* issuerLabel, int firstNumber, const char* serialNumber,
                       int secondNumber, int signatureAlgorithm, const char* certFileName,
                       unsigned char flag, int64_t zero1, int64_t zero2) {
  return OperationCall(__func__, OpenHandle{handle}, inHex(requestBytes, requestLength),
                       requestLength, quoted(issuerLabel), firstNumber, quoted(serialNumber),
                       secondNumber, signatureAlgorithm, quoted(certFileName), flag, zero1, zero2)
      .answer();
}

int ZELKM_ReceiveCert(int handle, const unsigned char* certBytes, uint32_t certLength,
                      unsigned char flag) {
  return OperationCall(__func__, OpenHandle{handle}, inHex(certBytes, certLength), certLength, flag)
      .answer();
}

int ZELKM_StoreCACert(int handle, const unsigned char* certBytes, uint32_t certLength,
                      const char* label) {
  return OperationCall(__func__, OpenHandle{handle}, inHex(certBytes, certLength), certLength,
                       quoted(label))
      .answer();
}

int ZELKM_ExportCert(int handle, const char* label, const char* certFileName,
                     unsigned char format) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), quoted(certFileName), format)
      .answer();
}

int ZELKM_RenewCert(int handle, const unsigned char* certBytes, uint32_t certLength) {
  return OperationCall(__func__, OpenHandle{handle}, inHex(certBytes, certLength), certLength)
      .answer();
}

int ZELKM_CheckCertAsRenewal(int handle, const unsigned char* certBytes, uint32_t certLength,
                             unsigned char* isRenewal) {
  OperationCall call(__func__, OpenHandle{handle}, inHex(certBytes, certLength), certLength);
  call.setsFlag(isRenewal);
  return call.answer();
}

int ZELKM_ValidateCertChain(int handle, const unsigned char* certBytes, uint32_t certLength,
                            unsigned char* isValid) {
  OperationCall call(__func__, OpenHandle{handle}, inHex(certBytes, certLength), certLength);
  call.setsFlag(isValid);
  return call.answer();
}

int ZELKM_GetUnsignedCertFromCert(const unsigned char* certBytes, uint32_t certLength,
                                  unsigned char** buffer, uint32_t* length) {
  OperationCall call(__func__, inHex(certBytes, certLength), certLength);
  call.handsOutBuffer(buffer, length, library().unsignedCert);
  return call.answer();
}

int ZELKM_Base64DecodeFileToBuf(const char* fileName, unsigned char** buffer, uint32_t* length) {
  OperationCall call(__func__, quoted(fileName));
  call.handsOutBuffer(buffer, length, library().decodedFile);
  return call.answer();
}

int ZELKM_ExtractCertListFromPKCS7Data(const unsigned char* bytes, uint32_t length,
                                       ZELKMCertItemList** certList) {
  OperationCall call(__func__, inHex(bytes, length), length);
  call.handsOut(certList, library().certList);
  return call.answer();
}
