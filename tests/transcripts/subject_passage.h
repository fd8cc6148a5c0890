#ifndef TESTS_TRANSCRIPTS_SUBJECT_PASSAGE_H_
#define TESTS_TRANSCRIPTS_SUBJECT_PASSAGE_H_

#include <string>

namespace zel::test {

/**
 * subjectConverted() is the passage in which the DNItem "dn", with only its common name "Alice",
 * becomes a record in the named block. subjects_test.cpp is about its steps.
 */
inline std::string subjectConverted(const std::string& block = "block#1") {
  return R"(
    GetObjectClass(dn) = class basic/DNItem
    GetFieldID(class basic/DNItem, "cn", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "ou", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "o", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "l", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "s", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "pc", "Ljava/lang/String;")
    GetFieldID(class basic/DNItem, "c", "Ljava/lang/String;")
    GetObjectField(dn, cn) = "Alice"
    GetObjectField(dn, ou) = null
    GetObjectField(dn, o) = null
    GetObjectField(dn, l) = null
    GetObjectField(dn, s) = null
    GetObjectField(dn, pc) = null
    GetObjectField(dn, c) = null
    malloc(104) = )" +
         block + R"(
    ZELKM_InitDNItem()" +
         block + R"()
    GetStringUTFChars("Alice")
    trace JNI_DEBUG......ccn = Alice
    ZELKM_Strdup("Alice")
    ReleaseStringUTFChars("Alice")
    trace JNI_DEBUG......cou = null
    trace JNI_DEBUG......co = null
    trace JNI_DEBUG......cl = null
    trace JNI_DEBUG......cs = null
    trace JNI_DEBUG......cpc = null
    trace JNI_DEBUG......cc = null
)";
}

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_SUBJECT_PASSAGE_H_
