#include "tests/recording_double/library_call.h"

using namespace zel::test;

int ZELKM_GetKeyDbLabelList(int handle, ZELKMLabelList** list) {
  OperationCall call(__func__, OpenHandle{handle});
  call.handsOut(list, library().keyLabels);
  return call.answer();
}

int ZELKM_GetReqKeyDbLabelList(int handle, ZELKMLabelList** list) {
  OperationCall call(__func__, OpenHandle{handle});
  call.handsOut(list, library().requestLabels);
  return call.answer();
}

int ZELKM_GetCryptoTokenLabelList(const char* moduleName, ZELKMLabelList** list) {
  OperationCall call(__func__, quoted(moduleName));
  call.handsOut(list, library().tokenLabels);
  return call.answer();
}

int ZELKM_GetKeyItemByLabel(int handle, const char* label, ZELKMKeyItem** item) {
  OperationCall call(__func__, OpenHandle{handle}, quoted(label));
  call.handsOut(item, library().keyItem);
  return call.answer();
}

int ZELKM_GetKeyItemListByLabel(int handle, const char* label, ZELKMKeyItemList** list) {
  OperationCall call(__func__, OpenHandle{handle}, quoted(label));
  call.handsOut(list, library().keyItemList);
  return call.answer();
}

int ZELKM_GetKeyItemsByPublicKey(int handle, uint32_t keyLength, const unsigned char* keyBytes,
                                 ZELKMKeyItemList** list) {
  OperationCall call(__func__, OpenHandle{handle}, keyLength, inHex(keyBytes, keyLength));
  call.handsOut(list, library().keyItemList);
  return call.answer();
}

int ZELKM_GetDefaultKeyItem(int handle, ZELKMKeyItem** item) {
  OperationCall call(__func__, OpenHandle{handle});
  call.handsOut(item, library().keyItem);
  return call.answer();
}

int ZELKM_GetReqKeyItemByLabel(int handle, const char* label, ZELKMReqKeyItem** item) {
  OperationCall call(__func__, OpenHandle{handle}, quoted(label));
  call.handsOut(item, library().reqKeyItem);
  return call.answer();
}

int ZELKM_IsPrivateKeyPresent(int handle, const char* label, unsigned char* present) {
  OperationCall call(__func__, OpenHandle{handle}, quoted(label));
  call.setsFlag(present);
  return call.answer();
}

int ZELKM_InsertKey(int handle, const char* label, uint32_t certLength,
                    const unsigned char* certBytes, uint32_t keyLength,
                    const unsigned char* keyBytes, unsigned char firstFlag,
                    unsigned char secondFlag) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), certLength,
                       inHex(certBytes, certLength), keyLength, inHex(keyBytes, keyLength),
                       firstFlag, secondFlag)
      .answer();
}

int ZELKM_InsertReqKey(int handle, const char* label, uint32_t firstLength,
                       const unsigned char* firstBytes, uint32_t secondLength,
                       const unsigned char* secondBytes) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), firstLength,
                       inHex(firstBytes, firstLength), secondLength,
                       inHex(secondBytes, secondLength))
      .answer();
}

int ZELKM_DeleteKey(int handle, const char* label) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label)).answer();
}

int ZELKM_DeleteRequestKeyPair(int handle, const char* label) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label)).answer();
}

int ZELKM_SetDefaultKeyByLabel(int handle, const char* label) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label)).answer();
}

int ZELKM_SetTrustStatus(int handle, const char* label, unsigned char trusted) {
  return OperationCall(__func__, OpenHandle{handle}, quoted(label), trusted).answer();
}
