#ifndef ZEL_TESTS_INTEROP_WORKSHOP_H_
#define ZEL_TESTS_INTEROP_WORKSHOP_H_

#include <string>

#include "tests/engine/operations/database.h"

/**
 * @file
 * Our files and those of other programs, side by side in one folder.
 *
 * One test suite is one format and one test is one direction with one program, named
 * IsReadBy<Program> or Of<Program>[With<Something>]IsRead: docs/interop.md is made from the names
 * and results.
 */

namespace zel::km {

/** What a file's password is, in both directions. */
inline constexpr char kFilePassword[] = "pfx secret";

/**
 * A test with a key database in which "root" is an authority that has issued "leaf". The programs
 * run in its folder.
 */
class InteropTest : public DatabaseTest {
 protected:
  InteropTest();

  /** What a command prints; one that fails fails the test. */
  std::string shown(const std::string& command);
  void run(const std::string& command) { (void)shown(command); }

  /** A certificate or request, whatever its armour. */
  sys::Bytes derOf(const char* fileName);

  /** The program's own self-signed certificate for CN=theirs, in theirs.pem and theirs.der. */
  void certifyWithOpenSsl();
  void certifyWithKeytool();
  void certifyWithNss();
  void certifyWithGnuTls();

  /**
   * The program's own theirs.p12, with the key "theirs" and its certificate, which "authority" has
   * issued. OpenSSL makes those, in PEM; the others take them in and give them out.
   */
  void exportWithOpenSsl(const std::string& options = "");
  void exportWithKeytool();
  void exportWithNss();
  void exportWithGnuTls(const std::string& cipher = "aes-256");

  /** The NSS database "nss", with nothing in it. */
  void makeNssDatabase();
};

}  // namespace zel::km

#endif  // ZEL_TESTS_INTEROP_WORKSHOP_H_
