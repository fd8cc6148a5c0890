#include "engine/km/token/entry_plans.h"

#include <optional>
#include <utility>

#include "engine/km/token/entry_draft.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

sys::Failure labelInUse(const Label& label) {
  return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                   label.c_str());
}

}  // namespace

sys::Failure noSuchLabel(const Label& label) {
  return sys::fail(ZELKM_ERR_KEY_GET_BY_LABEL, "the token has no \"%s\"", label.c_str());
}

sys::Result<Plan> planInsertKey(const TokenView& view, const KeyEntry& entry) {
  if (view.certificate(entry.label)) return labelInUse(entry.label);
  Draft draft(view);
  if (sys::Status done = draft.writeCertificate(entry); !done) return done.failure();
  return std::move(draft).plan();
}

sys::Result<Plan> planReplaceKey(const TokenView& view, const KeyEntry& entry) {
  const std::optional<CertificateEntry> old = view.certificate(entry.label);
  if (!old) return noSuchLabel(entry.label);
  Draft draft(view);
  const bool isSame = old->certificate->der == entry.certificate;
  sys::Status done =
      isSame ? draft.completeCertificate(*old, entry) : draft.writeCertificate(entry);
  if (!done) return done.failure();
  if (!isSame) draft.removeCertificate(*old);
  return std::move(draft).plan();
}

sys::Result<Plan> planRemoveKey(const TokenView& view, const Label& label) {
  const std::optional<CertificateEntry> old = view.certificate(label);
  if (!old) return noSuchLabel(label);
  Draft draft(view);
  draft.removeCertificate(*old);
  return std::move(draft).plan();
}

sys::Result<Plan> planSetTrusted(const TokenView& view, const Label& label, bool trusted) {
  const std::optional<CertificateEntry> entry = view.certificate(label);
  if (!entry) return noSuchLabel(label);
  Draft draft(view);
  if (sys::Status done = draft.changeTrust(*entry, trusted); !done) return done.failure();
  return std::move(draft).plan();
}

sys::Result<Plan> planInsertRequest(const TokenView& view, const RequestEntry& entry) {
  if (view.request(entry.label)) return labelInUse(entry.label);
  Draft draft(view);
  if (sys::Status done = draft.writeRequest(entry); !done) return done.failure();
  return std::move(draft).plan();
}

sys::Result<Plan> planReplaceRequest(const TokenView& view, const RequestEntry& entry) {
  const std::optional<PendingEntry> old = view.request(entry.label);
  if (!old) return noSuchLabel(entry.label);
  Draft draft(view);
  if (sys::Status done = draft.writeRequest(entry); !done) return done.failure();
  // Without an object of its own the old request was in the key, and the new one is there now.
  if (old->request) draft.removeRequest(*old);
  return std::move(draft).plan();
}

sys::Result<Plan> planRemoveRequest(const TokenView& view, const Label& label) {
  const std::optional<PendingEntry> old = view.request(label);
  if (!old) return noSuchLabel(label);
  Draft draft(view);
  draft.removeRequest(*old);
  return std::move(draft).plan();
}

}  // namespace zel::km::token
