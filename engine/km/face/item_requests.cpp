#include "engine/km/face/item_requests.h"

#include "engine/cms/requests.h"
#include "engine/km/face/item_keys.h"
#include "engine/km/face/item_names.h"
#include "engine/sys/memory.h"

namespace zel::km {

namespace {

std::uint32_t lengthOf(const sys::Bytes& bytes) { return static_cast<std::uint32_t>(bytes.size()); }

// The parts are hung into the item before they are filled: whatever fails, the item releases them.

void fillInfo(ZELKMCertReqItem& request, const cms::RequestFields& fields) {
  auto* info = sys::handOutRecord<ZELKMCertReqInfoItem>();
  request.certReqInfoItem = info;
  info->berData = sys::handOutBytes(fields.info);
  info->berDataLength = lengthOf(fields.info);
  info->keySize = fields.key.size;
  info->subjectName = handOutName(fields.subject, fields.subjectDer).release();
  info->spki = sys::handOutBytes(fields.publicKeyInfo);
  info->spkiLength = lengthOf(fields.publicKeyInfo);
  info->optionalBer = sys::handOutBytes(fields.attributes);
  info->optionalBerLength = lengthOf(fields.attributes);
}

void fillRequest(ZELKMReqKeyItem& item, const sys::Bytes& der, const cms::RequestFields& fields) {
  auto* request = sys::handOutRecord<ZELKMCertReqItem>();
  item.certReq = request;
  request->berData = sys::handOutBytes(der);
  request->berDataLength = lengthOf(der);
  request->sig = sys::handOutBytes(fields.signature);
  request->sigLength = lengthOf(fields.signature);
  request->sigAlgId = sys::handOutBytes(fields.signatureAlgorithm);
  request->sigAlgIdLength = lengthOf(fields.signatureAlgorithm);
  request->sigAlgIdOID = sys::handOutText(fields.signatureOid);
  request->sigAlgIdOIDName = sys::handOutText(fields.signatureName);
  fillInfo(*request, fields);
}

}  // namespace

sys::Result<ReqKeyItemPtr> handOutRequest(PrivateKeys& store, const RequestEntry& entry) {
  const sys::Result<cms::RequestFields> read = cms::readRequest(entry.request);
  if (!read) return read.failure();
  const cms::RequestFields& fields = read.value();

  ReqKeyItemPtr item(sys::handOutRecord<ZELKMReqKeyItem>());
  item->shortValue1 = static_cast<std::int64_t>(fields.key.algorithm);
  item->label = sys::handOutText(entry.label.text());
  item->keySize = fields.key.size;
  item->hasBerData = 1;
  item->berData = sys::handOutBytes(fields.publicKeyInfo);
  item->berDataLength = lengthOf(fields.publicKeyInfo);
  fillRequest(*item, entry.request, fields);

  sys::Result<EpkiItemPtr> epki = handOutEncryptedKey(store, entry.privateKey);
  if (!epki) return epki.failure();
  item->epki = epki.value().release();
  return item;
}

}  // namespace zel::km
