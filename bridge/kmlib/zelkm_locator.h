#ifndef ZELKM_LOCATOR_H_
#define ZELKM_LOCATOR_H_

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

/**
 * @file
 * KeyDbLocator, the record that names a key database file, a cryptographic token or a certificate
 * store.
 *
 * A caller zero-fills as many bytes as the operation it calls reads, then sets only the fields it
 * needs; the record borrows its strings for the length of the call:
 *
 *     KeyDbLocator locator;
 *     memset(&locator, 0, KEYDB_LOCATOR_OPEN_EXTENT);
 *     locator.type = KEYDB_LOCATOR_KEY_DATABASE;
 *     locator.fileName = fileName;
 *     locator.password = password;
 *     int rc = ZELKM_OpenKeyDbX(&locator, &handle);
 *
 * A library must not read past the extent of the operation.
 *
 * What follows "Our engine:" is how libzel7km_64, the library of this repository, reads a field;
 * another library may keep the layout and read it otherwise.
 */

#ifdef __cplusplus
extern "C" {
#endif

/** What a KeyDbLocator names. */
enum {
  KEYDB_LOCATOR_KEY_DATABASE = 1,
  KEYDB_LOCATOR_TOKEN = 2,
  /** Our engine: 80, but for ZELKM_IsPasswordRequired, where it is as type 1. */
  KEYDB_LOCATOR_WEBDB = 3,
  KEYDB_LOCATOR_CERTIFICATE_STORE = 4
};

/** The bytes of the record that each operation may read. */
enum {
  KEYDB_LOCATOR_QUERY_EXTENT = 528, /**< ZELKM_IsPasswordRequired */
  KEYDB_LOCATOR_OPEN_EXTENT = 536,  /**< ZELKM_OpenKeyDbX */
  KEYDB_LOCATOR_CHANGE_EXTENT = 544 /**< ZELKM_ChangeKeyDbPwdX */
};

typedef struct KeyDbLocator {
  uint32_t type; /**< one of KEYDB_LOCATOR_... */
  uint32_t padding;
  const char* fileName; /**< type 1 and 3: the key database file */
  /**
   * Type 2: the PKCS #11 module.
   * Our engine: a file, or a name out of p11-kit's configuration, with initialisation arguments
   * after "?args=" (docs/tokens.md).
   */
  const char* moduleName;
  /**
   * Type 2: the token's label; type 4: the CSP name.
   * Our engine: tokens of one module with one label are numbered, "twin", "twin (2)"; CSP names
   * are "CurrentUser/My", "CurrentUser/Root" and "CurrentUser/CA".
   */
  const char* tokenLabel;
  unsigned char reserved1[240];
  /**
   * Null when there is none.
   * Our engine: the empty password is none. Without one, type 1 opens with its stash file (103 when
   * it has none), type 2 a token that wants no PIN (138 when it wants one). Type 4 never takes one
   * (139).
   */
  const char* password;
  const char* newPassword; /**< ZELKM_ChangeKeyDbPwdX only */
  unsigned char reserved2[256];
} KeyDbLocator;

#ifdef __cplusplus
}
#endif

// clang-format off
static_assert(offsetof(KeyDbLocator, type) == 0, "KeyDbLocator.type is at 0");
static_assert(offsetof(KeyDbLocator, fileName) == 8, "KeyDbLocator.fileName is at 8");
static_assert(offsetof(KeyDbLocator, moduleName) == 16, "KeyDbLocator.moduleName is at 16");
static_assert(offsetof(KeyDbLocator, tokenLabel) == 24, "KeyDbLocator.tokenLabel is at 24");
static_assert(offsetof(KeyDbLocator, password) == 272, "KeyDbLocator.password is at 272");
static_assert(offsetof(KeyDbLocator, newPassword) == 280, "KeyDbLocator.newPassword is at 280");
static_assert(sizeof(KeyDbLocator) == KEYDB_LOCATOR_CHANGE_EXTENT, "the largest extent is the record");
// clang-format on

#endif  // ZELKM_LOCATOR_H_
