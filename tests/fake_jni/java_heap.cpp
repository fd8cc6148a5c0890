#include "tests/fake_jni/java_heap.h"

#include <algorithm>
#include <utility>

namespace zel::test {

namespace {

constexpr uintptr_t kFirstReference = 0x7e500000;
constexpr uintptr_t kReferenceStep = 16;

/** "KeyItem" of "com/nelo/zel/vosmar/basic/KeyItem", and "basic/KeyItem" with one folder kept. */
std::string lastParts(const std::string& className, int foldersKept) {
  size_t at = className.size();
  for (int i = 0; i <= foldersKept && at != std::string::npos && at > 0; ++i) {
    at = className.rfind('/', at - 1);
  }
  return at == std::string::npos ? className : className.substr(at + 1);
}

}  // namespace

void JavaHeap::declare(const std::string& name, std::vector<JavaMember> members) {
  JavaThing* type = add({.kind = JavaThing::kClass,
                         .shown = "class " + lastParts(name, 1),
                         .type = "Ljava/lang/Class;",
                         .text = name});
  classes_.push_back({name, {members.begin(), members.end()}, type});
}

void JavaHeap::removeClass(const std::string& name) {
  std::erase_if(classes_, [&](const Declared& known) { return known.name == name; });
}

void JavaHeap::removeMember(const std::string& className, const std::string& member) {
  std::erase_if(declared(className)->members,
                [&](const JavaMember& known) { return known.name == member; });
}

jclass JavaHeap::classNamed(const std::string& name) {
  const Declared* known = declared(name);
  return known == nullptr ? nullptr : static_cast<jclass>(referenceTo(known->thing));
}

JavaThing* JavaHeap::memberOf(jclass type, JavaMember::Kind kind, const std::string& name,
                              const std::string& signature) {
  const JavaThing* classThing = thing(type);
  Declared* known = classThing == nullptr ? nullptr : declared(classThing->text);
  if (known == nullptr) return nullptr;
  for (const JavaMember& member : known->members) {
    if (member.kind != kind || member.name != name || member.signature != signature) continue;
    return add({.kind = JavaThing::kMember,
                .shown = name,
                .type = 'L' + known->name + ';',
                .text = signature,
                .member = &member});
  }
  return nullptr;
}

jstring JavaHeap::newString(const std::string& text) {
  return static_cast<jstring>(referenceTo(add({.kind = JavaThing::kString,
                                               .shown = '"' + text + '"',
                                               .type = "Ljava/lang/String;",
                                               .text = text})));
}

jbyteArray JavaHeap::newBytes(std::vector<uint8_t> bytes, const std::string& shown) {
  return static_cast<jbyteArray>(
      referenceTo(add({.kind = JavaThing::kByteArray,
                       .shown = shown.empty() ? numbered("bytes") : shown,
                       .type = "[B",
                       .bytes = std::move(bytes)})));
}

jobjectArray JavaHeap::newArray(jclass elementType, std::vector<jobject> elements) {
  const std::string& name = thing(elementType)->text;
  return static_cast<jobjectArray>(referenceTo(add({.kind = JavaThing::kObjectArray,
                                                    .shown = numbered(lastParts(name, 0) + "[]"),
                                                    .type = "[L" + name + ';',
                                                    .elements = std::move(elements)})));
}

jobject JavaHeap::newObject(jclass type, const std::string& shown) {
  const std::string& name = thing(type)->text;
  return static_cast<jobject>(
      referenceTo(add({.kind = JavaThing::kObject,
                       .shown = shown.empty() ? numbered(lastParts(name, 0)) : shown,
                       .type = 'L' + name + ';'})));
}

JavaThing* JavaHeap::thing(const void* reference) {
  return const_cast<JavaThing*>(std::as_const(*this).thing(reference));
}

const JavaThing* JavaHeap::thing(const void* reference) const {
  return thingNumbered(reinterpret_cast<uintptr_t>(reference));
}

const JavaThing* JavaHeap::thingNumbered(uintptr_t value) const {
  if (value < kFirstReference || (value - kFirstReference) % kReferenceStep != 0) return nullptr;
  const size_t index = (value - kFirstReference) / kReferenceStep;
  return index < things_.size() ? &things_[index] : nullptr;
}

void* JavaHeap::referenceTo(const JavaThing* thing) const {
  const auto at = std::find_if(things_.begin(), things_.end(),
                               [&](const JavaThing& known) { return &known == thing; });
  if (at == things_.end()) return nullptr;
  const auto index = static_cast<uintptr_t>(at - things_.begin());
  // NOLINTNEXTLINE(performance-no-int-to-ptr): references are numbers that nobody dereferences.
  return reinterpret_cast<void*>(kFirstReference + kReferenceStep * index);
}

jclass JavaHeap::classOf(jobject object) {
  const JavaThing* known = thing(object);
  if (known == nullptr || known->kind != JavaThing::kObject) return nullptr;
  return classNamed(known->type.substr(1, known->type.size() - 2));
}

std::string JavaHeap::shown(const void* reference) const {
  if (reference == nullptr) return "null";
  return shownNumber(reinterpret_cast<uintptr_t>(reference));
}

std::string JavaHeap::shownNumber(uint64_t reference) const {
  const JavaThing* known = thingNumbered(reference);
  return known == nullptr ? "" : known->shown;
}

JavaHeap::Declared* JavaHeap::declared(const std::string& name) {
  const auto known = std::find_if(classes_.begin(), classes_.end(),
                                  [&](const Declared& one) { return one.name == name; });
  return known == classes_.end() ? nullptr : &*known;
}

JavaThing* JavaHeap::add(JavaThing thing) {
  things_.push_back(std::move(thing));
  return &things_.back();
}

std::string JavaHeap::numbered(const std::string& word) {
  return word + '#' + std::to_string(++numbers_[word]);
}

}  // namespace zel::test
