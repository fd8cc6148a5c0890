#include "engine/km/face/item_certificates.h"

#include <ranges>

#include "engine/cms/certificates.h"
#include "engine/km/face/item_names.h"
#include "engine/sys/memory.h"

namespace zel::km {

sys::Result<CertItemPtr> handOutCertificate(const LabelledCertificate& certificate) {
  const sys::Result<cms::CertificateFields> read = cms::readCertificate(certificate.certificate);
  if (!read) return read.failure();
  const cms::CertificateFields& fields = read.value();

  CertItemPtr item(sys::handOutRecord<ZELKMCertItem>());
  item->certDer = sys::handOutBytes(certificate.certificate);
  item->certDerLength = static_cast<std::uint32_t>(certificate.certificate.size());
  item->shortValue1 = fields.version;
  item->shortValue2 = fields.key.size;
  item->label = sys::handOutText(certificate.label.text());
  item->subjectDN = handOutName(fields.subject, fields.subjectDer).release();
  item->issuerDN = handOutName(fields.issuer, fields.issuerDer).release();
  item->effectTime = fields.notBefore;
  item->expireTime = fields.notAfter;
  item->sig = sys::handOutBytes(fields.signature);
  item->sigLength = static_cast<std::uint32_t>(fields.signature.size());
  item->sigAlgId = sys::handOutBytes(fields.signatureAlgorithm);
  item->sigAlgIdLength = static_cast<std::uint32_t>(fields.signatureAlgorithm.size());
  item->sigAlgIdOID = sys::handOutText(fields.signatureOid);
  item->sigAlgIdOIDName = sys::handOutText(fields.signatureName);
  item->spki = sys::handOutBytes(fields.publicKeyInfo);
  item->spkiLength = static_cast<std::uint32_t>(fields.publicKeyInfo.size());
  return item;
}

sys::Result<CertItemListPtr> handOutCertificates(
    const std::vector<LabelledCertificate>& certificates) {
  CertItemListPtr list;
  for (const LabelledCertificate& certificate : std::views::reverse(certificates)) {
    sys::Result<CertItemPtr> item = handOutCertificate(certificate);
    if (!item) return item.failure();
    auto* node = sys::handOutRecord<ZELKMCertItemList>();
    node->item = item.value().release();
    node->next = list.release();
    list.reset(node);
  }
  return list;
}

}  // namespace zel::km
