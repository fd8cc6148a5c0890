#include <optional>
#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/extensions.h"
#include "engine/cms/requests.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_names.h"
#include "engine/km/face/item_requests.h"
#include "engine/km/face/operation.h"
#include "engine/km/store/key_material.h"
#include "engine/km/work/certificate_files.h"
#include "engine/sys/trace.h"

// Certification requests and the keys that wait for their certificates.

using namespace zel;
using namespace zel::km;

namespace {

/** What a caller wants of a new request. */
struct NewRequest {
  const char* label;
  int keySize;
  const ZELKMDNItem* subject;
  int signatureSelector;
  sys::ByteView extensions;
  std::optional<sys::FileName> file;
};

sys::Status requireFreeLabel(Store& store, const Label& label) {
  const sys::Result<RequestEntry> entry = store.findRequest(label);
  if (entry) {
    return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "a request \"%s\" is pending",
                     label.c_str());
  }
  return entry.code() == ZELKM_ERR_KEY_GET_BY_LABEL ? sys::success() : entry.failure();
}

sys::Result<RequestEntry> makeRequest(Store& store, const NewRequest& wanted, const Label& label) {
  const sys::Result<sys::Bytes> subject = nameArgument(wanted.subject);
  if (!subject) return subject.failure();
  if (sys::Status valid = cms::checkExtensions(wanted.extensions); !valid) return valid.failure();

  sys::Result<GeneratedKey> key = store.generateKey(wanted.keySize);
  if (!key) return key.failure();
  const sys::Result<cms::KeyTraits> traits = cms::describePublicKey(key.value().publicKey);
  if (!traits) return traits.failure();
  const cms::RequestPlan plan{.subject = subject.value(),
                              .publicKeyInfo = key.value().publicKey,
                              .extensions = {wanted.extensions.begin(), wanted.extensions.end()}};
  sys::Result<sys::Bytes> request = cms::buildRequest(
      plan, traits.value(), wanted.signatureSelector, signerOf(store, key.value().privateKey));
  if (!request) return request.failure();

  RequestEntry entry;
  entry.label = label;
  entry.request = std::move(request).value();
  entry.privateKey = std::move(key.value().privateKey);
  return entry;
}

/**
 * The file comes last, for it may replace another, which nothing brings back; one that cannot be
 * written leaves no request behind.
 */
sys::Status createRequest(Store& store, const NewRequest& wanted) {
  const sys::Result<Label> label = labelArgument(wanted.label);
  if (!label) return label.failure();
  if (sys::Status isFree = requireFreeLabel(store, label.value()); !isFree) return isFree;
  const sys::Result<RequestEntry> entry = makeRequest(store, wanted, label.value());
  if (!entry) return entry.failure();
  if (sys::Status inserted = store.insertRequest(entry.value()); !inserted) return inserted;
  if (!wanted.file) return sys::success();
  sys::Status written = writeRequestFile(*wanted.file, entry.value().request);
  if (!written && !store.removeRequest(label.value())) {
    sys::traceLine("the request \"%s\" stays without its file", label.value().c_str());
  }
  return written;
}

}  // namespace

int ZELKM_GetReqKeyItemByLabel(int handle, const char* label, ZELKMReqKeyItem** item) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(item); !given) return given;
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<RequestEntry> entry = store.findRequest(wanted.value());
    if (!entry) return entry.failure();
    sys::Result<ReqKeyItemPtr> handedOut = handOutRequest(store, entry.value());
    if (!handedOut) return handedOut.failure();
    *item = handedOut.value().release();
    return sys::success();
  });
}

int ZELKM_CreateNewCertReq(int handle, const char* label, int keySize, const ZELKMDNItem* dn,
                           const char* certReqFileName, int64_t, int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    sys::Result<std::optional<sys::FileName>> file = optionalFileName(certReqFileName);
    if (!file) return file.failure();
    return createRequest(store, {.label = label,
                                 .keySize = keySize,
                                 .subject = dn,
                                 .signatureSelector = cms::kByKeyStrength,
                                 .extensions = {},
                                 .file = std::move(file).value()});
  });
}

int ZELKM_CreateNewCertReqSigExt(int handle, const char* label, int keySize, const ZELKMDNItem* dn,
                                 int signatureAlgorithm, const unsigned char* extensions,
                                 uint32_t extensionsLength, const char* certReqFileName, int64_t,
                                 int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status chosen = requireSignatureSelector(signatureAlgorithm); !chosen) return chosen;
    const sys::Result<sys::ByteView> given = optionalBytesArgument(extensions, extensionsLength);
    if (!given) return given.failure();
    sys::Result<std::optional<sys::FileName>> file = optionalFileName(certReqFileName);
    if (!file) return file.failure();
    return createRequest(store, {.label = label,
                                 .keySize = keySize,
                                 .subject = dn,
                                 .signatureSelector = signatureAlgorithm,
                                 .extensions = given.value(),
                                 .file = std::move(file).value()});
  });
}

int ZELKM_ReCreateCertReq(int handle, const char* label, const char* certReqFileName, int64_t,
                          int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<RequestEntry> entry = store.findRequest(wanted.value());
    if (!entry) return entry.failure();
    const sys::Result<sys::FileName> file = sys::FileName::given(certReqFileName);
    if (!file) return file.failure();
    return writeRequestFile(file.value(), entry.value().request);
  });
}

int ZELKM_ReCreateCertReqSig(int handle, const char* label, int signatureAlgorithm,
                             const char* certReqFileName, int64_t, int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status chosen = requireSignatureSelector(signatureAlgorithm); !chosen) return chosen;
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::FileName> file = sys::FileName::given(certReqFileName);
    if (!file) return file.failure();
    sys::Result<RequestEntry> found = store.findRequest(wanted.value());
    if (!found) return found.failure();
    RequestEntry& entry = found.value();
    sys::Result<sys::Bytes> request =
        cms::signRequestAgain(entry.request, signatureAlgorithm, signerOf(store, entry.privateKey));
    if (!request) return request.failure();
    const sys::Bytes before = std::exchange(entry.request, std::move(request).value());
    if (sys::Status replaced = store.replaceRequest(entry); !replaced) return replaced;
    sys::Status written = writeRequestFile(file.value(), entry.request);
    if (written) return written;
    entry.request = before;
    if (!store.replaceRequest(entry)) {
      sys::traceLine("the request \"%s\" stays without its file", entry.label.c_str());
    }
    return written;
  });
}
