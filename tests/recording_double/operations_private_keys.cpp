#include "tests/recording_double/library_call.h"

using namespace zel::test;

namespace {

/** The labels that the library sees, as ["a", "b"]. */
std::string textOf(const ZELKMLabelList* list) {
  if (list == nullptr) return "null";
  std::string labels;
  for (; list != nullptr && list->label != nullptr; list = list->next) {
    labels += (labels.empty() ? "" : ", ") + quoted(list->label);
  }
  return "[" + labels + "]";
}

}  // namespace

int ZELKM_GetEPKIItemFromPrivateKey(const unsigned char* keyBytes, uint32_t keyLength,
                                    const char* password, ZELKMEPKIItem** epki) {
  OperationCall call(__func__, inHex(keyBytes, keyLength), keyLength, quoted(password));
  call.handsOut(epki, library().epki);
  return call.answer();
}

int ZELKM_GetPrivKeyInfoItemFromEPKIItem(const ZELKMEPKIItem* epki, const char* password,
                                         ZELKMPrivKeyInfoItem** privKeyInfo) {
  const std::string bytes = inHex(epki->berData, epki->berDataLength);
  OperationCall call(__func__, "epki{" + bytes + ", " + std::to_string(epki->berDataLength) + "}",
                     quoted(password));
  call.handsOut(privKeyInfo, library().privKeyInfo);
  return call.answer();
}

int ZELKM_ImportKeysFromPFXFile(int handle, const char* pfxFileName, const char* pfxPassword) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(pfxFileName), quoted(pfxPassword))
      .answer();
}

int ZELKM_ExportKeys(int handle, int exportType, const char* pfxFileName, const char* pfxPassword,
                     const ZELKMLabelList* labels) {
  return OperationCall(__func__, OpenHandle{handle}, exportType, quoted(pfxFileName),
                       quoted(pfxPassword), textOf(labels))
      .answer();
}
