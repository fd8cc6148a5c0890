// Releasing what other operations have handed out.

#include <openssl/crypto.h>

#include <cstdlib>
#include <cstring>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/item_ptr.h"

namespace {

/** Releases a list whose nodes are released by the function given; a node may hold nothing. */
template <typename List, typename ReleasePayload>
void releaseList(List* list, ReleasePayload&& releasePayload) {
  while (list != nullptr) {
    List* next = list->next;
    releasePayload(*list);
    std::free(list);
    list = next;
  }
}

/** Wipes what a private key record holds before it is released. */
template <typename KeyInfo>
void releaseKeyInfo(KeyInfo* info) {
  if (info == nullptr) return;
  if (info->berData != nullptr) OPENSSL_cleanse(info->berData, info->berDataLength);
  std::free(info->berData);
  std::free(info);
}

void releaseRequestInfo(ZELKMCertReqInfoItem* info) {
  if (info == nullptr) return;
  std::free(info->berData);
  ZELKM_FreeDNItem(info->subjectName);
  std::free(info->spki);
  std::free(info->optionalBer);
  std::free(info);
}

void releaseRequest(ZELKMCertReqItem* request) {
  if (request == nullptr) return;
  std::free(request->berData);
  std::free(request->sig);
  std::free(request->sigAlgId);
  std::free(request->sigAlgIdOID);
  std::free(request->sigAlgIdOIDName);
  releaseRequestInfo(request->certReqInfoItem);
  std::free(request);
}

}  // namespace

namespace zel::km {

void releaseCertItem(ZELKMCertItem* item) {
  if (item == nullptr) return;
  std::free(item->certDer);
  std::free(item->label);
  ZELKM_FreeDNItem(item->subjectDN);
  ZELKM_FreeDNItem(item->issuerDN);
  std::free(item->sig);
  std::free(item->sigAlgId);
  std::free(item->sigAlgIdOID);
  std::free(item->sigAlgIdOIDName);
  std::free(item->spki);
  std::free(item);
}

}  // namespace zel::km

void ZELKM_InitDNItem(ZELKMDNItem** dn) {
  if (dn != nullptr && *dn != nullptr) std::memset(*dn, 0, sizeof **dn);
}

void ZELKM_InitEPKIItem(ZELKMEPKIItem** epki) {
  if (epki != nullptr && *epki != nullptr) std::memset(*epki, 0, sizeof **epki);
}

void ZELKM_FreeDNItem(ZELKMDNItem* dn) {
  if (dn == nullptr) return;
  for (char* text : {dn->cn, dn->ou, dn->o, dn->l, dn->s, dn->pc, dn->c, dn->optionalField1,
                     dn->optionalField2, dn->optionalField3, dn->optionalField4}) {
    std::free(text);
  }
  std::free(dn->derData);
  std::free(dn);
}

void ZELKM_FreeKeyItem(ZELKMKeyItem* item) {
  if (item == nullptr) return;
  std::free(item->label);
  ZELKM_FreeEPKIItem(item->epki);
  std::free(item->berData);
  ZELKM_FreeCertItemList(item->certList);
  std::free(item);
}

void ZELKM_FreeKeyItemList(ZELKMKeyItemList* list) {
  releaseList(list, [](const ZELKMKeyItemList& node) { ZELKM_FreeKeyItem(node.item); });
}

void ZELKM_FreeCertItemList(ZELKMCertItemList* list) {
  releaseList(list, [](const ZELKMCertItemList& node) { zel::km::releaseCertItem(node.item); });
}

void ZELKM_FreeLabelList(ZELKMLabelList* list) {
  releaseList(list, [](const ZELKMLabelList& node) { std::free(node.label); });
}

void ZELKM_FreeReqKeyItem(ZELKMReqKeyItem* item) {
  if (item == nullptr) return;
  std::free(item->label);
  releaseRequest(item->certReq);
  ZELKM_FreeEPKIItem(item->epki);
  std::free(item->berData);
  std::free(item);
}

void ZELKM_FreeEPKIItem(ZELKMEPKIItem* epki) { releaseKeyInfo(epki); }

void ZELKM_FreePrivKeyInfoItem(ZELKMPrivKeyInfoItem* privKeyInfo) { releaseKeyInfo(privKeyInfo); }
