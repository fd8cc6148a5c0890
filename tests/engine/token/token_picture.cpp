#include "tests/engine/token/token_picture.h"

#include <cstring>
#include <map>

#include "engine/sys/hexadecimal.h"

namespace zel::km::token {

namespace {

std::string nameOf(CK_ATTRIBUTE_TYPE type) {
  switch (type) {
    case CKA_LABEL:
      return "label";
    case CKA_ID:
      return "ID";
    case CKA_SUBJECT:
      return "subject";
    case CKA_CERTIFICATE_CATEGORY:
      return "category";
    default:
      return "attribute " + std::to_string(type);
  }
}

std::string nameOf(Refusal refusal) {
  switch (refusal) {
    case Refusal::attributeType:
      return "attribute";
    case Refusal::objectKind:
      return "kind";
    case Refusal::any:
      return "any";
    case Refusal::none:
      break;
  }
  return "none";
}

/** Labels as they are, numbers as numbers, what cannot be read by its length. */
std::string nameOf(CK_ATTRIBUTE_TYPE type, const sys::Bytes& value) {
  if (type == CKA_LABEL) return {value.begin(), value.end()};
  if (type == CKA_CERTIFICATE_CATEGORY && value.size() == sizeof(CK_ULONG)) {
    CK_ULONG number = 0;
    std::memcpy(&number, value.data(), sizeof number);
    return std::to_string(number);
  }
  return std::to_string(value.size()) + " bytes";
}

/** Tells steps in words; objects that are made have names from then on. */
class Teller {
 public:
  std::string tell(const Step& step) {
    std::string words =
        std::visit([this](const auto& action) { return tell(action); }, step.action);
    if (step.tolerated == Refusal::none) return words;
    words += " | " + token::nameOf(step.tolerated) + ":";
    if (step.instead.empty()) words += " nothing";
    for (const Step& each : step.instead) words += " " + tell(each) + ";";
    return words;
  }

 private:
  std::string tell(const CreateObject& create) {
    std::string words = std::visit([this](const auto& made) { return tell(made); }, create.object);
    return "make " + words;
  }
  std::string tell(const CertificateObject& made) {
    names_[made.handle] = "the certificate";
    return "certificate " + made.label + " of category " + std::to_string(made.category);
  }
  std::string tell(const PrivateKeyObject& made) {
    names_[made.handle] = "the private key";
    return "private key " + made.label;
  }
  std::string tell(const PublicKeyObject& made) {
    names_[made.handle] = "the public key";
    return "public key " + made.label;
  }
  std::string tell(const RequestObject& made) {
    names_[made.handle] = "the request";
    return "request " + made.label;
  }
  std::string tell(const SetAttribute& set) {
    return "set " + nameOf(set.object) + " " + token::nameOf(set.type) + " to " +
           token::nameOf(set.type, set.value);
  }
  std::string tell(const RemoveObject& remove) { return "remove " + nameOf(remove.object); }
  std::string tell(const RestoreKey& restore) { return "restore " + nameOf(restore.privateKey); }
  std::string tell(const UseNewKey& use) { return "use " + nameOf(use.privateKey); }

  std::string nameOf(CK_OBJECT_HANDLE object) {
    auto made = names_.find(object);
    return made == names_.end() ? std::to_string(object) : made->second;
  }

  std::map<CK_OBJECT_HANDLE, std::string> names_;
};

}  // namespace

std::vector<std::string> inWords(const sys::Result<Plan>& plan) {
  if (!plan) return {"code " + std::to_string(plan.code())};
  Teller teller;
  std::vector<std::string> words;
  for (const Step& step : plan.value()) words.push_back(teller.tell(step));
  return words;
}

TokenView after(TokenView view, const sys::Result<Plan>& plan) {
  for (const Step& step : plan.value()) follow(view, step.action);
  return view;
}

}  // namespace zel::km::token
