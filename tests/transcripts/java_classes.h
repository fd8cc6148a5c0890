#ifndef TESTS_TRANSCRIPTS_JAVA_CLASSES_H_
#define TESTS_TRANSCRIPTS_JAVA_CLASSES_H_

#include "tests/fake_jni/java_heap.h"

namespace zel::test {

/** Package of the item classes and of the classes with natives. */
inline constexpr const char* kBasic = "com/nelo/zel/vosmar/basic/";

/** declareJavaClasses() declares every class that the bridge looks up, with what it looks up. */
void declareJavaClasses(JavaHeap& heap);

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_JAVA_CLASSES_H_
