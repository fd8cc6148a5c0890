#include "engine/km/work/self_signing.h"

#include <utility>

#include "engine/cms/issuing.h"
#include "engine/km/store/key_material.h"
#include "engine/km/work/free_labels.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** All that is known before there is a key. */
cms::CertificatePlan outlineOf(const SelfSigning& wanted) {
  return {.version = wanted.version,
          .days = wanted.days,
          .subject = wanted.subject,
          .issuer = wanted.subject,
          .extensions = {wanted.extensions.begin(), wanted.extensions.end()}};
}

/** The certificate for the key; without extensions given it has an authority's, where they fit. */
sys::Result<sys::Bytes> certify(Store& store, cms::CertificatePlan plan, const GeneratedKey& key,
                                cms::SignatureSelector signature) {
  plan.publicKeyInfo = key.publicKey;
  if (plan.extensions.empty() && plan.version == 3) {
    sys::Result<sys::Bytes> extensions = cms::authorityExtensions(key.publicKey);
    if (!extensions) return extensions;
    plan.extensions = std::move(extensions).value();
  }
  const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(key.publicKey);
  if (!traits) return traits.failure();
  return cms::issueCertificate(plan, traits.value(), signature, signerOf(store, key.privateKey));
}

/** The label of the entry that has the default mark; empty when none has it. */
sys::Result<Label> defaultLabel(Store& store) {
  const sys::Result<KeyEntry> marked = store.defaultKey();
  if (marked) return marked.value().label;
  if (marked.code() == ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL) return Label();
  return marked.failure();
}

/** Takes an entry out again; the default mark goes back to the one that had it. */
void takeBack(Store& store, const Label& label, const Label& previousDefault) {
  const sys::Status taken = inTransaction(store, [&]() -> sys::Status {
    if (sys::Status removed = store.removeKey(label); !removed) return removed;
    return previousDefault.empty() ? sys::success() : store.setDefault(previousDefault);
  });
  if (!taken) sys::traceLine("\"%s\" stays without its file", label.c_str());
}

/**
 * The file comes last: it may replace another, which nothing brings back, whereas the entry can be
 * taken out again when the file cannot be written.
 */
sys::Status insertAndWrite(Store& store, const KeyEntry& entry, const CertificateFile& file) {
  Label previousDefault;
  if (entry.isDefault) {
    sys::Result<Label> label = defaultLabel(store);
    if (!label) return label.failure();
    previousDefault = std::move(label).value();
  }
  if (sys::Status inserted = store.insertKey(entry); !inserted) return inserted;
  sys::Status written = writeCertificate(file, entry.certificate);
  if (!written) takeBack(store, entry.label, previousDefault);
  return written;
}

}  // namespace

sys::Status selfSign(Store& store, const SelfSigning& wanted) {
  if (sys::Status isFree = requireFree(wanted.label, store.findKey(wanted.label)); !isFree) {
    return isFree;
  }
  const cms::CertificatePlan outline = outlineOf(wanted);
  if (sys::Status canBe = cms::checkPlan(outline); !canBe) return canBe;

  sys::Result<GeneratedKey> key = store.generateKey(wanted.keySize);
  if (!key) return key.failure();
  sys::Result<sys::Bytes> certificate = certify(store, outline, key.value(), wanted.signature);
  if (!certificate) return certificate.failure();

  KeyEntry entry;
  entry.label = wanted.label;
  entry.certificate = std::move(certificate).value();
  entry.privateKey = std::move(key.value().privateKey);
  entry.trusted = true;  // a root of one's own
  entry.isDefault = wanted.makeDefault;
  return wanted.file ? insertAndWrite(store, entry, *wanted.file) : store.insertKey(entry);
}

}  // namespace zel::km
