#include "tests/recorder/ownership.h"

#include <algorithm>

namespace zel::test {

namespace {

const char* wordFor(Kind kind) {
  switch (kind) {
    case Kind::kStringChars:
      return "string";
    case Kind::kArrayElements:
      return "elements";
    case Kind::kBlock:
    case Kind::kLibraryBlock:
      return "block";
    case Kind::kText:
      return "text";
    case Kind::kBuffer:
      return "buffer";
    case Kind::kFile:
      return "file";
    case Kind::kHandle:
      return "handle";
    case Kind::kSecondaryKeyDb:
      return "secondary key database";
    case Kind::kLabelList:
      return "label list";
    case Kind::kKeyItem:
      return "key item";
    case Kind::kKeyItemList:
      return "key item list";
    case Kind::kReqKeyItem:
      return "request key item";
    case Kind::kCertList:
      return "certificate list";
    case Kind::kEpki:
      return "epki";
    case Kind::kPrivKeyInfo:
      return "private key info";
  }
  return "";
}

}  // namespace

std::string Ownership::take(Kind kind, const void* what, Release release) {
  const std::string word = wordFor(kind);
  std::string name = word + "#" + std::to_string(++numbers_[word]);
  takeAs(kind, what, name, release);
  return name;
}

void Ownership::takeAs(Kind kind, const void* what, const std::string& name, Release release) {
  holdings_.push_back({kind, what, name, release});
}

bool Ownership::give(Kind kind, const void* what) {
  const auto held = std::find_if(holdings_.begin(), holdings_.end(), [&](const Holding& h) {
    return h.kind == kind && h.what == what;
  });
  if (held == holdings_.end()) return false;
  holdings_.erase(held);
  return true;
}

bool Ownership::holds(Kind kind, const void* what) const { return find(kind, what) != nullptr; }

std::string Ownership::nameOf(const void* what) const {
  for (const Holding& holding : holdings_) {
    if (holding.what == what && holding.kind != Kind::kHandle) return holding.name;
  }
  return "";
}

std::vector<std::string> Ownership::held() const {
  std::vector<std::string> names;
  for (const Holding& holding : holdings_) names.push_back(holding.name);
  return names;
}

void Ownership::releaseHeld() {
  for (const Holding& holding : holdings_) {
    if (holding.release != nullptr) holding.release(const_cast<void*>(holding.what));
  }
  holdings_.clear();
}

void Ownership::setSize(const void* block, size_t size) {
  for (Holding& holding : holdings_) {
    if (holding.what == block && holding.kind != Kind::kHandle) holding.size = size;
  }
}

bool Ownership::isWiped(const std::string& name) const {
  for (const Holding& holding : holdings_) {
    if (holding.name != name || holding.size == 0) continue;
    const auto* bytes = static_cast<const unsigned char*>(holding.what);
    return std::all_of(bytes, bytes + holding.size, [](unsigned char byte) { return byte == 0; });
  }
  return false;
}

const Ownership::Holding* Ownership::find(Kind kind, const void* what) const {
  for (const Holding& holding : holdings_) {
    if (holding.kind == kind && holding.what == what) return &holding;
  }
  return nullptr;
}

}  // namespace zel::test
