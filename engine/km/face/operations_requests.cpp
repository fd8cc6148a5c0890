// Certification requests and the keys that wait for their certificates.

#include <optional>
#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/item_names.h"
#include "engine/km/face/item_requests.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/requesting.h"

using namespace zel;
using namespace zel::km;

namespace {

/** What every new request takes, but for its key's size. */
sys::Result<NewRequest> newRequest(const char* label, const ZELKMDNItem* dn, const char* fileName) {
  sys::Result<std::optional<sys::FileName>> file = optionalFileName(fileName);
  if (!file) return file.failure();
  sys::Result<Label> wanted = labelArgument(label);
  if (!wanted) return wanted.failure();
  sys::Result<sys::Bytes> subject = nameArgument(dn);
  if (!subject) return subject.failure();
  return NewRequest{.label = std::move(wanted).value(),
                    .subject = std::move(subject).value(),
                    .file = std::move(file).value()};
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
    sys::Result<NewRequest> wanted = newRequest(label, dn, certReqFileName);
    if (!wanted) return wanted.failure();
    wanted.value().keySize = keySize;
    return requestCertificate(store, wanted.value());
  });
}

int ZELKM_CreateNewCertReqSigExt(int handle, const char* label, int keySize, const ZELKMDNItem* dn,
                                 int signatureAlgorithm, const unsigned char* extensions,
                                 uint32_t extensionsLength, const char* certReqFileName, int64_t,
                                 int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<cms::SignatureSelector> signature = signatureArgument(signatureAlgorithm);
    if (!signature) return signature.failure();
    const sys::Result<sys::ByteView> given = optionalBytesArgument(extensions, extensionsLength);
    if (!given) return given.failure();
    sys::Result<NewRequest> wanted = newRequest(label, dn, certReqFileName);
    if (!wanted) return wanted.failure();
    wanted.value().keySize = keySize;
    wanted.value().signature = signature.value();
    wanted.value().extensions = given.value();
    return requestCertificate(store, wanted.value());
  });
}

int ZELKM_ReCreateCertReq(int handle, const char* label, const char* certReqFileName, int64_t,
                          int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::FileName> file = sys::FileName::given(certReqFileName);
    if (!file) return file.failure();
    return rewriteRequest(store, wanted.value(), file.value());
  });
}

int ZELKM_ReCreateCertReqSig(int handle, const char* label, int signatureAlgorithm,
                             const char* certReqFileName, int64_t, int64_t) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<cms::SignatureSelector> signature = signatureArgument(signatureAlgorithm);
    if (!signature) return signature.failure();
    const sys::Result<Label> wanted = labelArgument(label);
    if (!wanted) return wanted.failure();
    const sys::Result<sys::FileName> file = sys::FileName::given(certReqFileName);
    if (!file) return file.failure();
    return signRequestAnew(store, wanted.value(), signature.value(), file.value());
  });
}
