#include "engine/km/work/decoding.h"

#include <utility>

#include "engine/cms/bundles.h"
#include "engine/cms/epki.h"
#include "engine/cms/keys.h"
#include "engine/cms/pem.h"
#include "engine/km/store/new_labels.h"
#include "engine/sys/files.h"

namespace zel::km {

namespace {

/** A certificate, a request or a bundle of them is far smaller. */
constexpr std::size_t kMostFileBytes = 64UL << 20;

}  // namespace

sys::Result<sys::Bytes> decodeFile(const sys::FileName& file) {
  const sys::Result<sys::Bytes> text = sys::readFile(file.path(), kMostFileBytes);
  if (!text) return text.failure();
  return cms::decodePem(text.value());
}

sys::Result<std::vector<LabelledCertificate>> labelledBundle(sys::ByteView bundle) {
  sys::Result<std::vector<sys::Bytes>> certificates = cms::readBundle(bundle);
  if (!certificates) return certificates.failure();
  std::vector<LabelledCertificate> labelled;
  for (sys::Bytes& certificate : certificates.value()) {
    sys::Result<Label> label = labelForCertificate(certificate);
    if (!label) return label.failure();
    labelled.push_back({std::move(label).value(), std::move(certificate)});
  }
  return labelled;
}

sys::Result<sys::Bytes> encryptKey(sys::ByteView privateKey, const sys::Password& password) {
  const sys::Result<cms::KeyPtr> key = cms::readPrivateKey(privateKey);
  if (!key) return key.failure();
  const sys::Result<sys::SecretBytes> pkcs8 = cms::privateKeyInfo(*key.value());
  if (!pkcs8) return pkcs8.failure();
  return cms::encryptPrivateKey(pkcs8.value(), password.bytes());
}

}  // namespace zel::km
