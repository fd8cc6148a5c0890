#ifndef TESTS_RECORDER_OWNERSHIP_H_
#define TESTS_RECORDER_OWNERSHIP_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/**
 * @file
 * Who still holds what: every string, block, record and handle that a native was given has to be
 * given back once, by the right function.
 *
 *     owned.take(Kind::kKeyItem, item);                 // named "key item#1"
 *     if (!owned.give(Kind::kKeyItem, item)) recorder().error("...");
 *     owned.held();                                     // what was never given back, oldest first
 */

namespace zel::test {

enum class Kind {
  kStringChars,
  kArrayElements,
  kBlock,         // of malloc
  kLibraryBlock,  // of ZELKM_Malloc
  kText,          // of ZELKM_Strdup
  kBuffer,        // handed out by an operation: free and ZELKM_Free both release it
  kFile,
  kHandle,
  kSecondaryKeyDb,
  kLabelList,
  kKeyItem,
  kKeyItemList,
  kReqKeyItem,
  kCertList,
  kEpki,
  kPrivKeyInfo,
};

class Ownership {
 public:
  /** How the test's end releases what the native left held. */
  using Release = void (*)(void* what);

  /** take() notes that something is held, and answers the name it got: its kind and a number. */
  std::string take(Kind kind, const void* what, Release release = nullptr);
  /** takeAs() is take() for something that has a name already. */
  void takeAs(Kind kind, const void* what, const std::string& name, Release release = nullptr);

  /** give() ends what take() began; false when it was not held as that kind. */
  bool give(Kind kind, const void* what);

  bool holds(Kind kind, const void* what) const;

  /** nameOf() is the name of whatever is held at the address, or the empty string. */
  std::string nameOf(const void* what) const;

  /** held() names all that is still held, in the order it was taken. */
  std::vector<std::string> held() const;

  /** releaseHeld() releases all that is still held, so that a stated leak is none of the test's. */
  void releaseHeld();

  /** setSize() tells how large a block is, so that isWiped() can tell whether it is all zeros. */
  void setSize(const void* block, size_t size);
  bool isWiped(const std::string& name) const;

 private:
  struct Holding {
    Kind kind;
    const void* what;
    std::string name;
    Release release = nullptr;
    size_t size = 0;
  };

  const Holding* find(Kind kind, const void* what) const;

  std::vector<Holding> holdings_;
  std::map<std::string, int> numbers_;
};

}  // namespace zel::test

#endif  // TESTS_RECORDER_OWNERSHIP_H_
