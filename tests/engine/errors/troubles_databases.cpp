#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "tests/engine/errors/faults.h"
#include "tests/engine/errors/provocation.h"

// Key databases that are not there, not as they were, or not to be used; and passwords.

namespace zel::km::errors {

namespace {

namespace fs = std::filesystem;

/** A new database in the place of the world's, by its bytes. */
void put(World& world, const sys::Bytes& database) {
  ZELKM_CloseKeyDb(world.handle);
  world.handle = 0;
  world.write(world.file, database);
}

/** The database of a password whose lifetime of a second has passed. */
const sys::Bytes& expiredDatabase() {
  static const sys::Bytes bytes = [] {
    const cms::TemporaryFolder folder;
    int handle = 0;
    ZELKM_CreateNewKeyDb(folder.path("expired").c_str(), kPassword, 1, &handle);
    ZELKM_CloseKeyDb(handle);
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    return folder.read("expired");
  }();
  return bytes;
}

constexpr const char* kApprovedPassword = "correct horse 1";

const sys::Bytes& approvedDatabase() {
  static const sys::Bytes bytes = [] {
    const cms::TemporaryFolder folder;
    int handle = 0;
    ZELKM_CreateNewKeyDbFIPS(folder.path("approved").c_str(), kApprovedPassword, 0, &handle);
    ZELKM_CloseKeyDb(handle);
    return folder.read("approved");
  }();
  return bytes;
}

/** What is known of the file is out of date, so that it is opened and examined anew. */
void touch(const World& world) {
  fs::last_write_time(world.file, fs::file_time_type::clock::now());
}

void failOpening(World& world) {
  touch(world);
  faults::failOpening(SQLITE_CANTOPEN);
}

template <int sqliteCode>
void failReading(World& world) {
  touch(world);
  faults::failReading(sqliteCode);
}

void lockOut(World& world) {
  touch(world);
  faults::lockOut();
}

void replaceByText(World& world) { world.write(world.file, sys::Bytes(4096, 't')); }

void writeStash(World& world, fs::perms permissions, std::string_view content) {
  const std::string stash = world.path("keys.sth");
  world.write(stash, sys::bytesOf(content));
  fs::permissions(stash, permissions);
  world.given.password = nullptr;
}

/** What may have happened to the file of a database, open or not. */
std::vector<Trouble> ofTheFile() {
  return {
      {ZELKM_ERR_KEYDB_NOT_EXIST, "the file does not exist",
       [](World& w) { fs::rename(w.file, w.movedFile); }},
      {ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the user may not open the file",
       [](World& w) { w.forbid(w.file); }},
      {ZELKM_ERR_DATABASE_OPEN, "SQLite cannot open the file: too many open files", failOpening},
      {ZELKM_ERR_DATABASE_READ, "the file cannot be read", failReading<SQLITE_IOERR_READ>},
      {ZELKM_ERR_DATABASE_READ, "another program keeps the file locked for 5 s", lockOut},
      {ZELKM_ERR_DATABASE, "SQLite answers what no other code stands for",
       failReading<SQLITE_PROTOCOL>},
      {ZELKM_ERR_DATABASE_INVALID_FILE_TYPE, "the file is no key database", replaceByText},
      {ZELKM_ERR_DATABASE_INVALID_VERSION, "a key database of a version that is not known",
       [](World& w) { w.tamper("PRAGMA user_version = 2"); }},
      {ZELKM_ERR_DATABASE_CORRUPTION, "damage: the structure, a table, an index",
       [](World& w) { w.tamper("DROP INDEX keys_by_subject"); }},
  };
}

}  // namespace

std::vector<Troubles> troublesOfDatabases() {
  return {
      {"Operations on the handle of a key database", operationsOnEntries(), ofTheFile()},

      {"Operations on the handle of a key database",
       operationsOnEntries(),
       {{ZELKM_ERR_DATABASE_CORRUPTION, "damage: a record was removed, added or exchanged",
         [](World& w) { w.tamper("DELETE FROM keys WHERE label = 'other'"); }},
        {ZELKM_ERR_DATABASE_CORRUPTION, "damage: the directory of the records",
         [](World& w) { w.tamper("UPDATE directory SET sealed = zeroblob(200)"); }}}},

      {"Operations that read a record of a key database",
       {"ZELKM_GetKeyItemByLabel",
        "ZELKM_GetKeyItemListByLabel",
        "ZELKM_GetKeyItemsByPublicKey",
        "ZELKM_GetDefaultKeyItem",
        "ZELKM_GetReqKeyItemByLabel",
        "ZELKM_IsPrivateKeyPresent",
        "ZELKM_DeleteKey",
        "ZELKM_DeleteRequestKeyPair",
        "ZELKM_SetDefaultKeyByLabel",
        "ZELKM_SetTrustStatus",
        "ZELKM_ReCreateCertReq",
        "ZELKM_ReCreateCertReqSig",
        "ZELKM_IssueCert",
        "ZELKM_IssueCertSig",
        "ZELKM_ReceiveCert",
        "ZELKM_ExportCert",
        "ZELKM_RenewCert",
        "ZELKM_CheckCertAsRenewal",
        "ZELKM_ValidateCertChain",
        "ZELKM_ExportKeys",
        "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_DATABASE_KEY_INTEGRITY, "damage: the record is not as it was sealed",
         [](World& w) {
           w.tamper(
               "UPDATE keys SET content = zeroblob(100);"
               "UPDATE requests SET content = zeroblob(100)");
         }}}},

      {"Operations that write into a key database",
       {"ZELKM_InsertKey", "ZELKM_InsertReqKey", "ZELKM_DeleteKey", "ZELKM_DeleteRequestKeyPair",
        "ZELKM_SetDefaultKeyByLabel", "ZELKM_SetTrustStatus", "ZELKM_CreateSelfSignedCert",
        "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReq",
        "ZELKM_CreateNewCertReqSigExt", "ZELKM_ReCreateCertReqSig", "ZELKM_ReceiveCert",
        "ZELKM_StoreCACert", "ZELKM_RenewCert", "ZELKM_ImportKeysFromPFXFile",
        "ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX"},
       {{ZELKM_ERR_DATABASE_WRITE, "the user may only read the file",
         [](World& w) { w.forbidWriting(); }},
        {ZELKM_ERR_DATABASE_WRITE, "the disk is full", [](World&) { faults::fillDisk(); }},
        {ZELKM_ERR_DATABASE_WRITE, "another program writes for more than 5 s",
         [](World&) { faults::lockOutOfWriting(); }}}},

      {nullptr,
       {"ZELKM_OpenKeyDb", "ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX",
        "ZELKM_StashKeyDbPwd", "ZELKM_IsPasswordRequired", "ZELKM_Kdb2Kyr"},
       ofTheFile()},

      {nullptr,
       {"ZELKM_OpenKeyDb", "ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX",
        "ZELKM_StashKeyDbPwd", "ZELKM_IsPasswordRequired", "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION, "damage: the password record",
         [](World& w) { w.tamper("UPDATE parameters SET salt = zeroblob(32)"); }}}},

      {nullptr,
       {"ZELKM_OpenKeyDb", "ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX",
        "ZELKM_StashKeyDbPwd", "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_DATABASE_INVALID_PASSWORD, "the password is wrong",
         [](World& w) { w.given.password = kOtherPassword; }}}},

      {nullptr,
       {"ZELKM_OpenKeyDb", "ZELKM_OpenKeyDbX", "ZELKM_StashKeyDbPwd", "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_PASSWORD_EXPIRATION_TIME, "the password's lifetime has passed",
         [](World& w) { put(w, expiredDatabase()); }}}},

      {nullptr,
       {"ZELKM_OpenKeyDb", "ZELKM_OpenKeyDbX", "ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX",
        "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_PWDFILE_NOT_EXIST, "no password is given, and there is no stash file",
         [](World& w) { w.given.password = nullptr; }},
        {ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the stash file is open to others, or somebody else's",
         [](World& w) {
           writeStash(w, fs::perms::owner_read | fs::perms::group_read, "ZELSTASH1");
         }},
        {ZELKM_ERR_DATABASE_PASSWORD_CORRUPTION,
         "the stash file is damaged, or of an earlier password",
         [](World& w) { writeStash(w, fs::perms::owner_read, "ZELSTASH1"); }},
        {ZELKM_ERR_IO, "the stash file cannot be read: it is far too long",
         [](World& w) { writeStash(w, fs::perms::owner_read, std::string(70'000, 's')); }}}},

      {nullptr,
       {"ZELKM_Kyr2Kdb", "ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_DATABASE_ALREADY_EXISTS, "the new file exists",
         [](World& w) { w.given.target = w.file.c_str(); }},
        {ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the user may not make the new file",
         [](World& w) { w.given.target = w.forbiddenFile(); }},
        {ZELKM_ERR_PWD_TOO_SHORT, "the new password has fewer than 6 characters",
         [](World& w) { w.given.newPassword = "short"; }}}},

      {nullptr,
       {"ZELKM_Kyr2Kdb"},
       {{ZELKM_ERR_DATABASE_CREATE, "the folder of the new file does not exist",
         [](World& w) { w.given.target = w.keep(w.path("none/new.kdb")); }},
        {ZELKM_ERR_DATABASE_WRITE, "the disk is full", [](World&) { faults::fillDisk(); }},
        {ZELKM_ERR_INVALID_PKCS12_DATA, "what is to be converted is a key database itself",
         [](World& w) { w.given.fileName = w.file.c_str(); }}}},

      {nullptr,
       {"ZELKM_Kdb2Kyr"},
       {{ZELKM_ERR_FILE_OPEN_NOT_EXIST, "the folder of the new file does not exist",
         [](World& w) { w.given.target = w.keep(w.path("none/new.kyr")); }},
        {ZELKM_ERR_FILE_WRITE, "the disk is full", [](World&) { faults::fillDisk(); }},
        {ZELKM_ERR_PWD_NO_NUMBER, "approved algorithms only: the new password has no digit",
         [](World& w) {
           w.approveOnly();
           w.given.newPassword = "correct horse battery";
         }},
        {ZELKM_ERR_PWD_NO_CONTROL_KEY,
         "approved algorithms only: the new password has nothing but letters and digits",
         [](World& w) {
           w.approveOnly();
           w.given.newPassword = "correcthorse1battery";
         }}}},

      {nullptr,
       {"ZELKM_CreateNewKeyDb", "ZELKM_CreateNewKeyDbFIPS"},
       {{ZELKM_ERR_DATABASE_ALREADY_EXISTS, "something of that name exists",
         [](World& w) { w.given.fileName = w.file.c_str(); }},
        {ZELKM_ERR_DATABASE_CREATE, "the file cannot be made: its folder does not exist",
         [](World& w) { w.given.fileName = w.keep(w.path("none/new.kdb")); }},
        {ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the user may not make the file",
         [](World& w) { w.given.fileName = w.forbiddenFile(); }},
        {ZELKM_ERR_DATABASE_WRITE, "the disk is full", [](World&) { faults::fillDisk(); }},
        {ZELKM_ERR_PWD_TOO_SHORT,
         "the password has fewer than 6 characters, 14 for approved algorithms only",
         [](World& w) { w.given.password = "short"; }}}},

      {nullptr,
       {"ZELKM_CreateNewKeyDbFIPS"},
       {{ZELKM_ERR_PWD_NO_NUMBER, "the password has no digit",
         [](World& w) { w.given.password = "correct horse battery"; }},
        {ZELKM_ERR_PWD_NO_CONTROL_KEY, "the password has nothing but letters and digits",
         [](World& w) { w.given.password = "correcthorse1battery"; }}}},

      {nullptr,
       {"ZELKM_CreateNewKeyDb", "ZELKM_CreateNewKeyDbFIPS", "ZELKM_ChangeKeyDbPwd"},
       {{ZELKM_ERR_PARAMETER, "the lifetime is negative",
         [](World& w) { w.given.lifetime = -1; }}}},

      {nullptr,
       {"ZELKM_ChangeKeyDbPwd", "ZELKM_ChangeKeyDbPwdX"},
       {{ZELKM_ERR_NEW_PASSWORD, "the new password is missing",
         [](World& w) { w.given.newPassword = nullptr; }},
        {ZELKM_ERR_PARAMETER, "the new password is not modified UTF-8",
         [](World& w) { w.given.newPassword = "\xFF\xFF\xFF\xFF\xFF\xFF"; }},
        {ZELKM_ERR_PWD_TOO_SHORT,
         "the new password has fewer than 6 characters, 14 for approved "
         "algorithms only",
         [](World& w) { w.given.newPassword = "short"; }},
        {ZELKM_ERR_PWD_NO_NUMBER, "approved algorithms only: the new password has no digit",
         [](World& w) {
           put(w, approvedDatabase());
           w.given.password = kApprovedPassword;
           w.given.newPassword = "correct horse battery";
         }},
        {ZELKM_ERR_PWD_NO_CONTROL_KEY,
         "approved algorithms only: the new password has nothing but letters and digits",
         [](World& w) {
           put(w, approvedDatabase());
           w.given.password = kApprovedPassword;
           w.given.newPassword = "correcthorse1battery";
         }}}},
  };
}

}  // namespace zel::km::errors
