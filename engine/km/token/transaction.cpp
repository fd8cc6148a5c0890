#include "engine/km/token/transaction.h"

#include <new>
#include <utility>
#include <vector>

#include "engine/km/token/cryptoki_codes.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

bool isTolerated(Refusal tolerated, CK_RV rv) {
  switch (tolerated) {
    case Refusal::attributeType:
      return rv == CKR_ATTRIBUTE_TYPE_INVALID;
    case Refusal::objectKind:
      return refusesSuchObjects(rv);
    case Refusal::any:
      return true;
    case Refusal::none:
      break;
  }
  return false;
}

/** What an action is called in the trace. */
const char* attemptOf(const Action& action) {
  const auto* create = std::get_if<CreateObject>(&action);
  if (create == nullptr) return "change an object";
  if (std::holds_alternative<CertificateObject>(create->object)) return "take a certificate";
  if (std::holds_alternative<RequestObject>(create->object)) return "keep a request";
  return "take a key";
}

CK_OBJECT_HANDLE& handleOf(TokenObject& object) {
  return std::visit([](auto& each) -> CK_OBJECT_HANDLE& { return each.handle; }, object);
}

}  // namespace

/** Goes back to where it was made, unless what was done since is kept. */
class Transaction::Savepoint {
 public:
  explicit Savepoint(Transaction& transaction)
      : transaction_(transaction), view_(*transaction.view_), mark_(transaction.undos_.size()) {}
  ~Savepoint() {
    if (kept_) return;
    transaction_.undoTo(mark_);
    std::swap(*transaction_.view_, view_);
  }
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;

  void keep() { kept_ = true; }

 private:
  Transaction& transaction_;
  TokenView view_;
  const std::size_t mark_;
  bool kept_ = false;
};

Transaction::Transaction(const Session& session, Handles newKeys)
    : session_(session), token_(session, std::move(newKeys)) {}

Transaction::~Transaction() { undoTo(0); }

sys::Status Transaction::apply(Plan plan) {
  sys::Result<TokenView*> view = token_.view();
  if (!view) return view.failure();
  view_ = view.value();
  Savepoint savepoint(*this);
  Made made;
  sys::Status done = apply(plan, made);
  if (done) savepoint.keep();
  return done;
}

sys::Status Transaction::apply(Plan& plan, Made& made) {
  for (Step& step : plan) {
    const CK_RV rv = std::visit([&](auto& action) { return carryOut(action, made); }, step.action);
    if (rv == CKR_OK) {
      follow(*view_, step.action);
      continue;
    }
    const sys::Failure refused = cryptokiFailure(rv, attemptOf(step.action));
    if (!isTolerated(step.tolerated, rv)) return refused;
    sys::traceLine("that is %s", step.instead.empty() ? "left undone" : "done in another way");
    if (sys::Status done = apply(step.instead, made); !done) return done;
  }
  return sys::success();
}

// The undoing is noted first: once the token has been changed nothing else may fail.

CK_RV Transaction::carryOut(CreateObject& action, Made& made) {
  CK_OBJECT_HANDLE& handle = handleOf(action.object);
  const auto place = made.insert_or_assign(handle, CK_INVALID_HANDLE).first;
  Undo& undo = undos_.emplace_back();
  const CK_RV rv = session_.create(action.attributes, &undo.made);
  if (rv == CKR_OK) {
    handle = place->second = undo.made;
  } else {
    made.erase(place);
    undos_.pop_back();
  }
  return rv;
}

CK_RV Transaction::carryOut(SetAttribute& action, Made& made) {
  if (auto known = made.find(action.object); known != made.end()) action.object = known->second;
  Template value;
  value.addBytes(action.type, action.value);
  Undo& undo = undos_.emplace_back();
  undo.oldValue.addBytes(action.type, view_->attribute(action.object, action.type));
  const CK_RV rv = session_.change(action.object, value);
  if (rv == CKR_OK) {
    undo.changed = action.object;
  } else {
    undos_.pop_back();
  }
  return rv;
}

CK_RV Transaction::carryOut(RemoveObject& action, Made& made) {
  if (auto known = made.find(action.object); known != made.end()) action.object = known->second;
  return CKR_OK;
}

CK_RV Transaction::carryOut(RestoreKey& /*action*/, Made& /*made*/) { return CKR_OK; }

CK_RV Transaction::carryOut(UseNewKey& /*action*/, Made& /*made*/) { return CKR_OK; }

sys::Status Transaction::commit() {
  std::vector<CK_OBJECT_HANDLE> removed;
  if (token_.viewSoFar()) removed = token_.viewSoFar()->removed();
  undos_.clear();
  sys::Status status = sys::success();
  for (const CK_OBJECT_HANDLE object : removed) {
    sys::Status destroyed = session_.destroy(object);
    if (!destroyed && status) status = destroyed;
  }
  return status;
}

bool Transaction::undo(const Undo& change) const {
  if (change.made != CK_INVALID_HANDLE) return static_cast<bool>(session_.destroy(change.made));
  if (change.changed == CK_INVALID_HANDLE) return true;  // noted, but not done
  return session_.change(change.changed, change.oldValue) == CKR_OK;
}

void Transaction::undoTo(std::size_t mark) noexcept {
  for (; undos_.size() > mark; undos_.pop_back()) {
    try {
      if (!undo(undos_.back())) sys::traceLine("an object stays changed on the token");
    } catch (const std::bad_alloc&) {  // there was no memory to trace it with
      continue;
    }
  }
}

}  // namespace zel::km::token
