#ifndef TESTS_FAKE_JNI_FUNCTION_TABLE_H_
#define TESTS_FAKE_JNI_FUNCTION_TABLE_H_

#include <jni.h>

namespace zel::test {

/** functionTable() is the table of the scripted environment: answers in a few slots, else abort. */
const JNINativeInterface_& functionTable();

/** Each fills in the answers of one chapter of the JNI specification. */
void answerClasses(JNINativeInterface_& table);
void answerStringsAndArrays(JNINativeInterface_& table);
void answerCalls(JNINativeInterface_& table);

}  // namespace zel::test

#endif  // TESTS_FAKE_JNI_FUNCTION_TABLE_H_
