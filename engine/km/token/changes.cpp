#include "engine/km/token/changes.h"

#include <utility>

#include "engine/km/token/cryptoki_codes.h"
#include "engine/sys/trace.h"

namespace zel::km::token {

sys::Status Changes::commit() {
  sys::Status status = sys::success();
  for (const CK_OBJECT_HANDLE object : std::exchange(doomed_, {})) {
    sys::Status destroyed = session_.destroy(object);
    if (!destroyed && status) status = destroyed;
  }
  done_.clear();
  underWay_ = false;
  return status;
}

void Changes::rollBack() {
  doomed_.clear();
  for (; !done_.empty(); done_.pop_back()) {
    const Undo& undo = done_.back();
    sys::Status status = sys::success();
    if (undo.wasMade) {
      status = session_.destroy(undo.object);
    } else {
      Template old;
      old.addBytes(undo.type, undo.oldValue);
      const CK_RV rv = session_.change(undo.object, old);
      if (rv != CKR_OK) status = cryptokiFailure(rv, "change an object");
    }
    if (!status) sys::traceLine("object %lu stays changed on the token", undo.object);
  }
  underWay_ = false;
}

sys::Result<CK_OBJECT_HANDLE> Changes::create(const Template& attributes) {
  CK_OBJECT_HANDLE object = CK_INVALID_HANDLE;
  const CK_RV rv = tryCreate(attributes, &object);
  if (rv != CKR_OK) return cryptokiFailure(rv, "create an object");
  return object;
}

CK_RV Changes::tryCreate(const Template& attributes, CK_OBJECT_HANDLE* object) {
  const CK_RV rv = session_.create(attributes, object);
  if (rv == CKR_OK) adopt(*object);
  return rv;
}

void Changes::adopt(CK_OBJECT_HANDLE object) {
  done_.push_back({.object = object, .wasMade = true, .type = 0, .oldValue = {}});
}

sys::Status Changes::change(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type, sys::ByteView value) {
  const CK_ATTRIBUTE_TYPE types[] = {type};
  sys::Result<Attributes> old = session_.read(object, types);
  if (!old) return old.failure();
  const sys::ByteView oldValue = old.value().bytes(type);
  Template wanted;
  wanted.addBytes(type, value);
  const CK_RV rv = session_.change(object, wanted);
  if (rv != CKR_OK) return cryptokiFailure(rv, "change an object");
  done_.push_back({.object = object,
                   .wasMade = false,
                   .type = type,
                   .oldValue = {oldValue.begin(), oldValue.end()}});
  return sys::success();
}

}  // namespace zel::km::token
