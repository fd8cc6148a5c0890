#include "engine/km/store/new_labels.h"

#include "engine/cms/certificates.h"
#include "engine/km/store/numbered_labels.h"
#include "engine/sys/modified_utf8.h"

namespace zel::km {

sys::Result<std::string> labelForCertificate(sys::ByteView certificate) {
  const sys::Result<cms::CertificateFields> fields = cms::readCertificate(certificate);
  if (!fields) return fields.failure();
  const cms::NameFields& subject = fields.value().subject;
  for (const auto& text : {subject.cn, subject.ou, subject.o}) {
    if (text && !text->empty()) return sys::toModifiedUtf8(*text);
  }
  return std::string("certificate");
}

std::string nameOfUnlabelled(sys::ByteView certificate) {
  const sys::Result<cms::CertificateFields> fields = cms::readCertificate(certificate);
  if (fields && !fields.value().subject.cn.value_or("").empty()) return *fields.value().subject.cn;
  return cms::thumbprint(certificate);
}

sys::Result<std::string> wantedLabel(const std::string& name, sys::ByteView certificate) {
  return name.empty() ? labelForCertificate(certificate) : sys::toModifiedUtf8(name);
}

sys::Result<std::string> freeKeyLabel(Store& store, const std::string& wanted) {
  std::string label = boundedLabel(wanted);
  const sys::Result<KeyEntry> holder = store.findKey(label);
  if (holder.code() == ZELKM_ERR_KEY_GET_BY_LABEL) return label;
  if (!holder) return holder.failure();
  sys::Result<std::vector<std::string>> labels = store.keyLabels();
  if (!labels) return labels.failure();
  labels.value().push_back(std::move(label));
  return numberedLabels(std::move(labels).value()).back();
}

}  // namespace zel::km
