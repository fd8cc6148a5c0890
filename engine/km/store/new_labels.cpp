#include "engine/km/store/new_labels.h"

#include "engine/cms/certificates.h"
#include "engine/km/store/numbered_labels.h"

namespace zel::km {

sys::Result<Label> labelForCertificate(sys::ByteView certificate) {
  const sys::Result<cms::CertificateFields> fields = cms::readCertificate(certificate);
  if (!fields) return fields.failure();
  const cms::NameFields& subject = fields.value().subject;
  for (const auto& text : {subject.cn, subject.ou, subject.o}) {
    if (text && !text->empty()) return Label::ofName(*text);
  }
  return Label::ofName("certificate");
}

std::string nameOfUnlabelled(sys::ByteView certificate) {
  const sys::Result<cms::CertificateFields> fields = cms::readCertificate(certificate);
  if (fields && !fields.value().subject.cn.value_or("").empty()) return *fields.value().subject.cn;
  return cms::thumbprint(certificate);
}

sys::Result<Label> wantedLabel(const std::string& name, sys::ByteView certificate) {
  if (name.empty()) return labelForCertificate(certificate);
  return Label::ofName(name);
}

sys::Result<Label> freeKeyLabel(KeyEntries& store, const Label& wanted) {
  const sys::Result<KeyEntry> holder = store.findKey(wanted);
  if (holder.code() == ZELKM_ERR_KEY_GET_BY_LABEL) return wanted;
  if (!holder) return holder.failure();
  sys::Result<std::vector<Label>> labels = store.keyLabels();
  if (!labels) return labels.failure();
  labels.value().push_back(wanted);
  return numberedLabels(std::move(labels).value()).back();
}

}  // namespace zel::km
