#ifndef TESTS_TRANSCRIPTS_KEY_ITEM_PASSAGE_H_
#define TESTS_TRANSCRIPTS_KEY_ITEM_PASSAGE_H_

#include <string>

namespace zel::test {

/**
 * keyItemConverted() is the passage in which a key item without key and certificates becomes a Java
 * object with the given name. key_items_test.cpp is about its steps.
 */
inline std::string keyItemConverted(const std::string& label,
                                    const std::string& object = "KeyItem#1") {
  return R"(
    FindClass("com/nelo/zel/vosmar/basic/KeyItem") = class basic/KeyItem
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}
    GetMethodID(class basic/KeyItem, "<init>", "{KeyItem}")
    trace JNI_DEBUG......jKeyItemClass = 0x{class basic/KeyItem}, constructor=0x{<init>}
    NewStringUTF(")" +
         label + R"(")
    NewObject(class basic/KeyItem, <init>, ")" +
         label + R"(", 1, 2048, null, null, null, false, false) = )" + object + R"(
    GetMethodID(class basic/KeyItem, "setHasPrivateKey", "(Z)V")
    CallVoidMethod()" +
         object + R"(, setHasPrivateKey, false)
)";
}

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_KEY_ITEM_PASSAGE_H_
