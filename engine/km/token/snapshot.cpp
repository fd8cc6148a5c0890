#include "engine/km/token/snapshot.h"

#include <utility>

#include "engine/km/token/cryptoki_codes.h"
#include "engine/km/token/token_reading.h"

namespace zel::km::token {

Snapshot::Snapshot(const Session& session, Handles newKeys)
    : turn_(session.takeTurn()), session_(session), newKeys_(std::move(newKeys)) {}

sys::Status Snapshot::begun() const {
  if (!turn_.had()) return cryptokiFailure(kNoTurn, "give a turn");
  return sys::success();
}

sys::Result<TokenView*> Snapshot::view() {
  if (!view_) {
    sys::Result<TokenView> read = readToken(session_, newKeys_);
    if (!read) return read.failure();
    view_ = std::move(read).value();
  }
  return &*view_;
}

void Snapshot::addNewKey(const KeyPairObjects& pair) {
  newKeys_.insert(pair.privateKey.handle);
  if (view_) view_->addNewKey(pair);
}

}  // namespace zel::km::token
