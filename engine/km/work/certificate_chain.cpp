#include "engine/km/work/certificate_chain.h"

#include <map>

#include "engine/cms/chains.h"

namespace zel::km {

sys::Result<std::vector<LabelledCertificate>> chainOf(KeyEntries& store, const KeyEntry& entry) {
  std::map<sys::Bytes, Label> labels;
  const auto lookUp = [&](sys::ByteView subject) -> sys::Result<std::vector<sys::Bytes>> {
    const sys::Result<std::vector<KeyEntry>> entries = store.findKeysBySubject(subject);
    if (!entries) return entries.failure();
    std::vector<sys::Bytes> certificates;
    for (const KeyEntry& found : entries.value()) {
      labels.emplace(found.certificate, found.label);
      certificates.push_back(found.certificate);
    }
    return certificates;
  };
  const sys::Result<std::vector<sys::Bytes>> chain = cms::buildChain(entry.certificate, lookUp);
  if (!chain) return chain.failure();

  std::vector<LabelledCertificate> labelled;
  for (const sys::Bytes& certificate : chain.value()) {
    // The entry itself comes first and need not have been looked up.
    labelled.push_back({labelled.empty() ? entry.label : labels.at(certificate), certificate});
  }
  return labelled;
}

}  // namespace zel::km
