#ifndef TESTS_FAKE_JNI_JAVA_HEAP_H_
#define TESTS_FAKE_JNI_JAVA_HEAP_H_

#include <jni.h>

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

/**
 * @file
 * A small heap of Java classes, members, objects, strings and arrays.
 *
 * References are numbers of the heap's own, not addresses: the same on every run, and small enough
 * that a trace which prints 32 bits of one still tells which it is.
 */

namespace zel::test {

struct JavaClass;

/** A method, constructor ("<init>") or field. */
struct JavaMember {
  enum Kind { kMethod, kStaticMethod, kField };
  Kind kind;
  std::string name;
  std::string signature;
};

/** Whatever a reference, a method ID or a field ID names. */
struct JavaThing {
  enum Kind { kClass, kMember, kObject, kString, kByteArray, kObjectArray };
  Kind kind;
  std::string shown;              // its name in transcripts
  std::string type;               // the signature of its type, or of the class that a member is of
  std::string text = {};          // of a string; of a class its full name
  const JavaMember* member = {};  // of a member
  std::vector<uint8_t> bytes = {};
  std::vector<jobject> elements = {};  // of an array; of an object what it was made of
  std::map<std::string, jobject> fields = {};
};

class JavaHeap {
 public:
  /** declare() adds a class; name as FindClass takes it. */
  void declare(const std::string& name, std::vector<JavaMember> members);
  /** remove() takes a class away again, so that FindClass does not find it. */
  void removeClass(const std::string& name);
  /** removeMember() takes a class's members of that name away. */
  void removeMember(const std::string& className, const std::string& member);

  /** Each answers a reference, or null when there is no such class or member. */
  jclass classNamed(const std::string& name);
  JavaThing* memberOf(jclass type, JavaMember::Kind kind, const std::string& name,
                      const std::string& signature);

  jstring newString(const std::string& text);
  jobjectArray newArray(jclass elementType, std::vector<jobject> elements);
  /** Arrays and objects get a name of their own when they are given none. */
  jbyteArray newBytes(std::vector<uint8_t> bytes, const std::string& shown = "");
  jobject newObject(jclass type, const std::string& shown = "");

  /** thing() is what a reference or ID names, or null when it names nothing. */
  JavaThing* thing(const void* reference);
  const JavaThing* thing(const void* reference) const;
  /** referenceTo() is the reverse. */
  void* referenceTo(const JavaThing* thing) const;
  jclass classOf(jobject object);

  /** shown() is a reference as transcripts show it; a number that is none gives no text. */
  std::string shown(const void* reference) const;
  std::string shownNumber(uint64_t reference) const;

 private:
  struct Declared {
    std::string name;
    std::deque<JavaMember> members;
    const JavaThing* thing;
  };

  const JavaThing* thingNumbered(uintptr_t value) const;
  Declared* declared(const std::string& name);
  JavaThing* add(JavaThing thing);
  std::string numbered(const std::string& word);

  std::deque<JavaThing> things_;
  std::deque<Declared> classes_;
  std::map<std::string, int> numbers_;
};

}  // namespace zel::test

#endif  // TESTS_FAKE_JNI_JAVA_HEAP_H_
