#include "tests/transcripts/native_test.h"

#include <sstream>
#include <vector>

#include "bridge/frame/trace.h"

namespace zel::test {

namespace {

/** The text with every shorthand of a long signature written out. */
std::string writtenOut(std::string text) {
  for (const LongSignature& known : kLongSignatures) {
    const std::string shorthand = '"' + std::string(known.shorthand) + '"';
    const std::string whole = '"' + std::string(known.signature) + '"';
    for (size_t at = text.find(shorthand); at != std::string::npos; at = text.find(shorthand, at)) {
      text.replace(at, shorthand.size(), whole);
    }
  }
  return text;
}

/** The lines of a text, without indentation and without empty ones. */
std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    const size_t begin = line.find_first_not_of(' ');
    if (begin != std::string::npos) lines.push_back(line.substr(begin));
  }
  return lines;
}

}  // namespace

NativeTest::NativeTest(const std::string& className, const std::string& package) {
  recorder().reset();
  jni.nameReferences();
  watchedLibc().reset();
  resetLibrary();
  declareJavaClasses(jni.heap);
  type = jni.heap.classNamed(package + className);
  self = jni.heap.newObject(type, "this");
  bridge::debugMsgEnv = "";
}

NativeTest::~NativeTest() {
  bridge::debugMsgEnv = nullptr;
  for (const std::string& error : recorder().errors()) ADD_FAILURE() << error;
  recorder().reset();
  resetLibrary();
}

jobjectArray NativeTest::texts(std::initializer_list<const char*> values) {
  if (jni.heap.classNamed("java/lang/String") == nullptr) jni.heap.declare("java/lang/String", {});
  std::vector<jobject> elements;
  for (const char* value : values) {
    elements.push_back(value == nullptr ? nullptr : text(value));
  }
  return jni.heap.newArray(jni.heap.classNamed("java/lang/String"), elements);
}

jobject NativeTest::dnItem(const std::map<std::string, std::string>& fields) {
  jobject item = jni.heap.newObject(classOf("DNItem"), "dn");
  for (const auto& [field, value] : fields) jni.heap.thing(item)->fields[field] = text(value);
  return item;
}

std::string NativeTest::shown(jboolean result) {
  if (result == JNI_TRUE) return "true";
  return result == JNI_FALSE ? "false" : "true as " + std::to_string(result);
}

void NativeTest::finish(const std::string& result) {
  recorder().event("return " + result);
  const std::vector<std::string> held = recorder().owned.held();
  if (held.empty()) recorder().event("held nothing");
  for (const std::string& name : held) recorder().event("held " + name);
}

testing::AssertionResult transcriptIs(const std::string& expected) {
  const std::vector<std::string> wanted = linesOf(writtenOut(expected));
  const std::vector<std::string> actual = linesOf(recorder().transcript());
  if (wanted == actual) return testing::AssertionSuccess();
  size_t first = 0;
  while (first < wanted.size() && first < actual.size() && wanted[first] == actual[first]) ++first;
  testing::AssertionResult failure = testing::AssertionFailure();
  failure << "the transcript differs from line " << first + 1 << " on (- expected, + actual)\n";
  for (size_t i = 0; i < first; ++i) failure << "  " << wanted[i] << "\n";
  for (size_t i = first; i < wanted.size(); ++i) failure << "- " << wanted[i] << "\n";
  for (size_t i = first; i < actual.size(); ++i) failure << "+ " << actual[i] << "\n";
  return failure;
}

}  // namespace zel::test
