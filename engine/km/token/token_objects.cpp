#include "engine/km/token/token_objects.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

#include "engine/cms/certificates.h"

namespace zel::km::token {

namespace {

template <typename Object>
using Refs = std::vector<std::shared_ptr<const Object>>;

template <typename Object>
auto withHandle(Refs<Object>& objects, CK_OBJECT_HANDLE handle) {
  return std::ranges::find_if(objects, [&](const auto& each) { return each->handle == handle; });
}

template <typename Object>
void put(Refs<Object>& objects, Object object) {
  auto place = withHandle(objects, object.handle);
  auto made = std::make_shared<const Object>(std::move(object));
  if (place == objects.end()) {
    objects.push_back(std::move(made));
  } else {
    *place = std::move(made);
  }
}

template <typename Object>
void move(CK_OBJECT_HANDLE handle, Refs<Object>& from, Refs<Object>& to) {
  auto found = withHandle(from, handle);
  if (found == from.end()) return;
  to.push_back(*found);
  from.erase(found);
}

template <typename Object>
sys::Bytes valueIn(const Object& object, CK_ATTRIBUTE_TYPE type) {
  if (type == CKA_LABEL) return {object.label.begin(), object.label.end()};
  if constexpr (!std::is_same_v<Object, RequestObject>) {
    if (type == CKA_ID) return object.id;
  }
  if constexpr (std::is_same_v<Object, PrivateKeyObject>) {
    if (type == CKA_SUBJECT) return object.subject;
  }
  if constexpr (std::is_same_v<Object, CertificateObject>) {
    if (type == CKA_CERTIFICATE_CATEGORY) return numberValue(object.category);
  }
  return {};
}

template <typename Object>
void setValueIn(Object& object, CK_ATTRIBUTE_TYPE type, sys::ByteView value) {
  if (type == CKA_LABEL) object.label.assign(value.begin(), value.end());
  if constexpr (!std::is_same_v<Object, RequestObject>) {
    if (type == CKA_ID) object.id.assign(value.begin(), value.end());
  }
  if constexpr (std::is_same_v<Object, PrivateKeyObject>) {
    if (type == CKA_SUBJECT) object.subject.assign(value.begin(), value.end());
  }
  if constexpr (std::is_same_v<Object, CertificateObject>) {
    if (type == CKA_CERTIFICATE_CATEGORY && value.size() == sizeof object.category) {
      std::memcpy(&object.category, value.data(), value.size());
    }
  }
}

}  // namespace

CertificateObject certificateObject(sys::ByteView der) {
  CertificateObject certificate;
  certificate.der.assign(der.begin(), der.end());
  sys::Result<cms::CertificateKeys> keys = cms::readCertificateKeys(der);
  if (keys) {
    certificate.publicKey = std::move(keys.value().publicKeyInfo);
    certificate.subject = std::move(keys.value().subject);
  }
  return certificate;
}

sys::Bytes numberValue(CK_ULONG number) {
  sys::Bytes bytes(sizeof number);
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

void TokenObjects::put(TokenObject object) {
  struct {
    TokenObjects& objects;
    void operator()(CertificateObject& made) { token::put(objects.certificates, std::move(made)); }
    void operator()(PrivateKeyObject& made) { token::put(objects.privateKeys, std::move(made)); }
    void operator()(PublicKeyObject& made) { token::put(objects.publicKeys, std::move(made)); }
    void operator()(RequestObject& made) { token::put(objects.requests, std::move(made)); }
  } putter{*this};
  std::visit(putter, object);
}

void TokenObjects::moveTo(TokenObjects& others, CK_OBJECT_HANDLE object) {
  move(object, certificates, others.certificates);
  move(object, privateKeys, others.privateKeys);
  move(object, publicKeys, others.publicKeys);
  move(object, requests, others.requests);
}

sys::Bytes TokenObjects::attribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const {
  sys::Bytes value;
  const auto lookIn = [&](const auto& objects) {
    for (const auto& each : objects) {
      if (each->handle == object) value = valueIn(*each, type);
    }
  };
  lookIn(certificates);
  lookIn(privateKeys);
  lookIn(publicKeys);
  lookIn(requests);
  return value;
}

void TokenObjects::setAttribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type,
                                sys::ByteView value) {
  const auto setIn = [&](auto& objects) {
    auto found = withHandle(objects, object);
    if (found == objects.end()) return;
    auto changed = **found;
    setValueIn(changed, type, value);
    token::put(objects, std::move(changed));
  };
  setIn(certificates);
  setIn(privateKeys);
  setIn(publicKeys);
  setIn(requests);
}

}  // namespace zel::km::token
