#include "bridge/marshal/held_strings.h"

#include <algorithm>
#include <cassert>

namespace zel::bridge {

HeldStrings::~HeldStrings() {
  assert(count_ == 0 && "release the strings or leave them held");  // GCOVR_EXCL_BR_LINE: aborts
}

const char* HeldStrings::take(jstring string, TextTrace trace) {
  const char* text = acquire(string);
  trace(text);
  return text;
}

const char* HeldStrings::takeIfGiven(jstring string, TextTrace trace) {
  const char* text = takeIfGiven(string);
  trace(text);
  return text;
}

const char* HeldStrings::takeIfGiven(jstring string, TextTrace given, FixedTrace absent) {
  if (string != nullptr) return take(string, given);
  absent();
  return nullptr;
}

const char* HeldStrings::takeIfGiven(jstring string) {
  return string == nullptr ? nullptr : acquire(string);
}

void HeldStrings::releaseAll() {
  for (std::size_t i = 0; i < count_; ++i) release(held_[i]);
  count_ = 0;
}

void HeldStrings::releaseInOrder(std::initializer_list<const char*> texts) {
  assert(texts.size() == count_);  // GCOVR_EXCL_BR_LINE: aborts
  for (const char* text : texts) {
    const auto held = std::ranges::find(held_, text, &Held::text);
    assert(held != held_.end() && "only what is held is released");  // GCOVR_EXCL_BR_LINE: aborts
    release(*held);
  }
  count_ = 0;
}

void HeldStrings::leaveHeld() { count_ = 0; }

const char* HeldStrings::acquire(jstring string) {
  assert(count_ < held_.size());  // GCOVR_EXCL_BR_LINE: aborts
  const char* text = env_->GetStringUTFChars(string, nullptr);
  held_[count_++] = {string, text};
  return text;
}

void HeldStrings::release(Held& held) {
  if (held.text == nullptr) return;
  env_->ReleaseStringUTFChars(held.string, held.text);
  held.text = nullptr;
}

}  // namespace zel::bridge
