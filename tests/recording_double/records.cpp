#include "tests/recording_double/records.h"

#include <cstdlib>
#include <cstring>

namespace zel::test {

namespace {

template <typename Record>
Record* cleared() {
  return static_cast<Record*>(std::calloc(1, sizeof(Record)));
}

char* copyOfText(const char* text) { return text == nullptr ? nullptr : strdup(text); }

void setBytes(unsigned char*& field, uint32_t& length, const Bytes& bytes) {
  field = copyOf(bytes);
  length = static_cast<uint32_t>(bytes.size());
}

template <typename List, typename Payload>
List* listOf(std::initializer_list<Payload> payloads, auto copied) {
  List* head = nullptr;
  List** end = &head;
  for (Payload payload : payloads) {
    *end = cleared<List>();
    copied(**end, payload);
    end = &(*end)->next;
  }
  return head;
}

template <typename List>
void freeList(List* list, auto freePayload) {
  while (list != nullptr) {
    List* next = list->next;
    freePayload(*list);
    std::free(list);
    list = next;
  }
}

void freeCert(ZELKMCertItem* cert) {
  if (cert == nullptr) return;
  freeDn(cert->subjectDN);
  freeDn(cert->issuerDN);
  for (void* field : {static_cast<void*>(cert->certDer), static_cast<void*>(cert->label),
                      static_cast<void*>(cert->sig), static_cast<void*>(cert->sigAlgId),
                      static_cast<void*>(cert->sigAlgIdOID),
                      static_cast<void*>(cert->sigAlgIdOIDName), static_cast<void*>(cert->spki)}) {
    std::free(field);
  }
  std::free(cert);
}

void freeCertReq(ZELKMCertReqItem* request) {
  if (request == nullptr) return;
  if (ZELKMCertReqInfoItem* info = request->certReqInfoItem) {
    freeDn(info->subjectName);
    std::free(info->berData);
    std::free(info->spki);
    std::free(info->optionalBer);
    std::free(info);
  }
  std::free(request->berData);
  std::free(request->sig);
  std::free(request->sigAlgId);
  std::free(request->sigAlgIdOID);
  std::free(request->sigAlgIdOIDName);
  std::free(request);
}

}  // namespace

unsigned char* copyOf(const Bytes& bytes) {
  if (bytes.empty()) return nullptr;
  auto* copy = static_cast<unsigned char*>(std::malloc(bytes.size()));
  std::memcpy(copy, bytes.data(), bytes.size());
  return copy;
}

ZELKMLabelList* newLabelList(std::initializer_list<const char*> labels) {
  return listOf<ZELKMLabelList>(
      labels, [](ZELKMLabelList& node, const char* label) { node.label = copyOfText(label); });
}

ZELKMDNItem* newDn(const char* cn, const Bytes& der) {
  auto* dn = cleared<ZELKMDNItem>();
  dn->cn = copyOfText(cn);
  setBytes(dn->derData, dn->derLength, der);
  return dn;
}

ZELKMCertItem* newCert(const Bytes& der) {
  auto* cert = cleared<ZELKMCertItem>();
  setBytes(cert->certDer, cert->certDerLength, der);
  return cert;
}

ZELKMCertItem* newLabelledCert(const char* label) {
  ZELKMCertItem* cert = newCert({0x30, 0xce});
  cert->label = copyOfText(label);
  cert->shortValue1 = 3;
  cert->shortValue2 = 2048;
  cert->effectTime = 1000;
  cert->expireTime = 2000;
  setBytes(cert->sig, cert->sigLength, {0x51});
  setBytes(cert->sigAlgId, cert->sigAlgIdLength, {0x30, 0xa1});
  cert->sigAlgIdOID = copyOfText("1.2.3");
  cert->sigAlgIdOIDName = copyOfText("algorithm");
  setBytes(cert->spki, cert->spkiLength, {0x30, 0x5b});
  return cert;
}

ZELKMCertItemList* newCertList(std::initializer_list<ZELKMCertItem*> certs) {
  return listOf<ZELKMCertItemList>(
      certs, [](ZELKMCertItemList& node, ZELKMCertItem* cert) { node.item = cert; });
}

ZELKMKeyItem* newKeyItem(const char* label) {
  auto* item = cleared<ZELKMKeyItem>();
  item->shortValue1 = 1;
  item->label = copyOfText(label);
  item->keySize = 2048;
  return item;
}

ZELKMKeyItemList* newKeyItemList(std::initializer_list<ZELKMKeyItem*> items) {
  return listOf<ZELKMKeyItemList>(
      items, [](ZELKMKeyItemList& node, ZELKMKeyItem* item) { node.item = item; });
}

ZELKMReqKeyItem* newReqKeyItem(const char* label) {
  auto* item = cleared<ZELKMReqKeyItem>();
  item->shortValue1 = 1;
  item->label = copyOfText(label);
  item->keySize = 2048;
  return item;
}

ZELKMCertReqItem* newCertReq() {
  auto* request = cleared<ZELKMCertReqItem>();
  setBytes(request->berData, request->berDataLength, {0x30, 0xe9});
  setBytes(request->sig, request->sigLength, {0x51});
  setBytes(request->sigAlgId, request->sigAlgIdLength, {0x30, 0xa1});
  request->sigAlgIdOID = copyOfText("1.2.3");
  request->sigAlgIdOIDName = copyOfText("algorithm");
  auto* info = request->certReqInfoItem = cleared<ZELKMCertReqInfoItem>();
  setBytes(info->berData, info->berDataLength, {0x30, 0x1f});
  info->keySize = 2048;
  setBytes(info->spki, info->spkiLength, {0x30, 0x5b});
  return request;
}

ZELKMEPKIItem* newEpki(const Bytes& der) {
  auto* epki = cleared<ZELKMEPKIItem>();
  setBytes(epki->berData, epki->berDataLength, der);
  return epki;
}

ZELKMPrivKeyInfoItem* newPrivKeyInfo(const Bytes& der) {
  auto* privKeyInfo = cleared<ZELKMPrivKeyInfoItem>();
  setBytes(privKeyInfo->berData, privKeyInfo->berDataLength, der);
  return privKeyInfo;
}

void freeLabelList(ZELKMLabelList* list) {
  freeList(list, [](ZELKMLabelList& node) { std::free(node.label); });
}

void freeDn(ZELKMDNItem* dn) {
  if (dn == nullptr) return;
  for (char* text : {dn->cn, dn->ou, dn->o, dn->l, dn->s, dn->pc, dn->c, dn->optionalField1,
                     dn->optionalField2, dn->optionalField3, dn->optionalField4}) {
    std::free(text);
  }
  std::free(dn->derData);
  std::free(dn);
}

void freeCertList(ZELKMCertItemList* list) {
  freeList(list, [](ZELKMCertItemList& node) { freeCert(node.item); });
}

void freeKeyItem(ZELKMKeyItem* item) {
  if (item == nullptr) return;
  std::free(item->label);
  freeEpki(item->epki);
  std::free(item->berData);
  freeCertList(item->certList);
  std::free(item);
}

void freeKeyItemList(ZELKMKeyItemList* list) {
  freeList(list, [](ZELKMKeyItemList& node) { freeKeyItem(node.item); });
}

void freeReqKeyItem(ZELKMReqKeyItem* item) {
  if (item == nullptr) return;
  std::free(item->label);
  freeCertReq(item->certReq);
  freeEpki(item->epki);
  std::free(item->berData);
  std::free(item);
}

void freeEpki(ZELKMEPKIItem* epki) {
  if (epki == nullptr) return;
  std::free(epki->berData);
  std::free(epki);
}

void freePrivKeyInfo(ZELKMPrivKeyInfoItem* privKeyInfo) {
  if (privKeyInfo == nullptr) return;
  std::free(privKeyInfo->berData);
  std::free(privKeyInfo);
}

}  // namespace zel::test
