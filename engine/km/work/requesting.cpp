#include "engine/km/work/requesting.h"

#include <utility>

#include "engine/cms/extensions.h"
#include "engine/cms/requests.h"
#include "engine/km/store/key_material.h"
#include "engine/km/work/certificate_files.h"
#include "engine/km/work/free_labels.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

sys::Result<RequestEntry> makeRequest(Store& store, const NewRequest& wanted) {
  if (sys::Status valid = cms::checkExtensions(wanted.extensions); !valid) return valid.failure();
  sys::Result<GeneratedKey> key = store.generateKey(wanted.keySize);
  if (!key) return key.failure();
  const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(key.value().publicKey);
  if (!traits) return traits.failure();
  const cms::RequestPlan plan{.subject = wanted.subject,
                              .publicKeyInfo = key.value().publicKey,
                              .extensions = {wanted.extensions.begin(), wanted.extensions.end()}};
  sys::Result<sys::Bytes> request = cms::buildRequest(plan, traits.value(), wanted.signature,
                                                      signerOf(store, key.value().privateKey));
  if (!request) return request.failure();

  RequestEntry entry;
  entry.label = wanted.label;
  entry.request = std::move(request).value();
  entry.privateKey = std::move(key.value().privateKey);
  return entry;
}

}  // namespace

// Files come last, for they may replace others, which nothing brings back, whereas the store can be
// put as it was when a file cannot be written.

sys::Status requestCertificate(Store& store, const NewRequest& wanted) {
  if (sys::Status isFree = requireFree(wanted.label, store.findRequest(wanted.label)); !isFree) {
    return isFree;
  }
  const sys::Result<RequestEntry> entry = makeRequest(store, wanted);
  if (!entry) return entry.failure();
  if (sys::Status inserted = store.insertRequest(entry.value()); !inserted) return inserted;
  if (!wanted.file) return sys::success();
  sys::Status written = writeRequest(*wanted.file, entry.value().request);
  if (!written && !store.removeRequest(wanted.label)) {
    sys::traceLine("the request \"%s\" stays without its file", wanted.label.c_str());
  }
  return written;
}

sys::Status rewriteRequest(Store& store, const Label& label, const sys::FileName& file) {
  const sys::Result<RequestEntry> entry = store.findRequest(label);
  if (!entry) return entry.failure();
  return writeRequest(file, entry.value().request);
}

sys::Status signRequestAnew(Store& store, const Label& label, cms::SignatureSelector signature,
                            const sys::FileName& file) {
  sys::Result<RequestEntry> found = store.findRequest(label);
  if (!found) return found.failure();
  RequestEntry& entry = found.value();
  sys::Result<sys::Bytes> request =
      cms::signRequestAgain(entry.request, signature, signerOf(store, entry.privateKey));
  if (!request) return request.failure();
  const sys::Bytes before = std::exchange(entry.request, std::move(request).value());
  if (sys::Status replaced = store.replaceRequest(entry); !replaced) return replaced;
  sys::Status written = writeRequest(file, entry.request);
  if (written) return written;
  entry.request = before;
  if (!store.replaceRequest(entry)) {
    sys::traceLine("the request \"%s\" stays without its file", label.c_str());
  }
  return written;
}

}  // namespace zel::km
