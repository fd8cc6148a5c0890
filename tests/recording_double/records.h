#ifndef TESTS_RECORDING_DOUBLE_RECORDS_H_
#define TESTS_RECORDING_DOUBLE_RECORDS_H_

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "bridge/kmlib/zelkm.h"

/**
 * @file
 * Records for the double to hand out. Each function makes a plain one, with no more in it than it
 * is given; a test sets the fields that it is about:
 *
 *     library().keyItem = [] {
 *       ZELKMKeyItem* item = newKeyItem("my key");
 *       item->hasPrivateKey = 1;
 *       item->epki = newEpki({0x30, 0x01});
 *       return item;
 *     };
 *
 * What a record points to belongs to it and goes with it; every byte is from malloc.
 */

namespace zel::test {

using Bytes = std::vector<uint8_t>;

/** copyOf() answers null for no bytes. */
unsigned char* copyOf(const Bytes& bytes);

/** A null among the labels is a node without a label. */
ZELKMLabelList* newLabelList(std::initializer_list<const char*> labels);

ZELKMDNItem* newDn(const char* cn, const Bytes& der);

/** newCert() is a certificate of only its bytes; newLabelledCert() one with every needed field. */
ZELKMCertItem* newCert(const Bytes& der);
ZELKMCertItem* newLabelledCert(const char* label);
ZELKMCertItemList* newCertList(std::initializer_list<ZELKMCertItem*> certs);

ZELKMKeyItem* newKeyItem(const char* label);
ZELKMKeyItemList* newKeyItemList(std::initializer_list<ZELKMKeyItem*> items);

ZELKMReqKeyItem* newReqKeyItem(const char* label);
/** newCertReq() is a request with every needed field. */
ZELKMCertReqItem* newCertReq();

ZELKMEPKIItem* newEpki(const Bytes& der);
ZELKMPrivKeyInfoItem* newPrivKeyInfo(const Bytes& der);

void freeLabelList(ZELKMLabelList* list);
void freeDn(ZELKMDNItem* dn);
void freeCertList(ZELKMCertItemList* list);
void freeKeyItem(ZELKMKeyItem* item);
void freeKeyItemList(ZELKMKeyItemList* list);
void freeReqKeyItem(ZELKMReqKeyItem* item);
void freeEpki(ZELKMEPKIItem* epki);
void freePrivKeyInfo(ZELKMPrivKeyInfoItem* privKeyInfo);

}  // namespace zel::test

#endif  // TESTS_RECORDING_DOUBLE_RECORDS_H_
