#include <filesystem>

#include "engine/cms/pkcs12/pkcs12.h"
#include "tests/engine/errors/provocation.h"

// Files beside the database that cannot be read or written, or hold something else.

namespace zel::km::errors {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFullDevice = "/dev/full";

void giveFile(World& world, const char* name, std::string_view content) {
  const std::string file = world.path(name);
  world.write(file, sys::bytesOf(content));
  world.given.fileName = world.keep(file);
}

void giveFolder(World& world) {
  fs::create_directory(world.path("folder"));
  world.given.fileName = world.keep(world.path("folder"));
}

}  // namespace

std::vector<Troubles> troublesOfFiles() {
  return {
      {nullptr,
       {"ZELKM_CreateSelfSignedCert", "ZELKM_CreateSelfSignedCertSigExt", "ZELKM_CreateNewCertReq",
        "ZELKM_CreateNewCertReqSigExt", "ZELKM_ReCreateCertReq", "ZELKM_ReCreateCertReqSig",
        "ZELKM_IssueCert", "ZELKM_IssueCertSig", "ZELKM_ExportCert", "ZELKM_ExportKeys"},
       {{ZELKM_ERR_FILE_OPEN_NOT_EXIST, "the folder of the file to be written does not exist",
         [](World& w) { w.given.fileName = w.keep(w.path("none/file")); }},
        {ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the user may not write the file",
         [](World& w) { w.given.fileName = w.forbiddenFile(); }},
        {ZELKM_ERR_FILE_OPEN_TO_WRITE, "the file to be written is a folder", giveFolder},
        {ZELKM_ERR_FILE_WRITE, "the file cannot be written: the disk is full",
         [](World& w) { w.given.fileName = kFullDevice; }},
        {ZELKM_ERR_DATABASE_ALREADY_EXISTS, "the file to be written is a key database",
         [](World& w) { w.given.fileName = w.file.c_str(); }}}},

      {nullptr,
       {"ZELKM_StashKeyDbPwd"},
       {{ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the user may not write into the database's folder",
         [](World& w) { w.forbidWriting(); }},
        {ZELKM_ERR_FILE_OPEN_TO_WRITE, "the stash file is a folder",
         [](World& w) { fs::create_directory(w.path("keys.sth")); }},
        {ZELKM_ERR_FILE_WRITE, "the stash file cannot be written: the disk is full",
         [](World& w) { fs::create_symlink(kFullDevice, w.path("keys.sth")); }}}},

      {nullptr,
       {"ZELKM_StartTrace"},
       {{ZELKM_ERR_FILE_OPEN_TO_WRITE, "the trace file cannot be opened", giveFolder}}},

      {nullptr,
       {"ZELKM_Base64DecodeFileToBuf", "ZELKM_ImportKeysFromPFXFile", "ZELKM_Kyr2Kdb"},
       {{ZELKM_ERR_FILE_OPEN_NOT_EXIST, "the file to be read does not exist",
         [](World& w) { w.given.fileName = w.keep(w.path("none")); }},
        {ZELKM_ERR_FILE_OPEN_TO_READ, "the file to be read cannot be opened: its name is too long",
         [](World& w) { w.given.fileName = w.keep(w.path(std::string(300, 'x').c_str())); }},
        {ZELKM_ERR_IO, "the file cannot be read: a folder", giveFolder}}},

      {nullptr,
       {"ZELKM_Base64DecodeFileToBuf"},
       {{ZELKM_ERR_FILE_OPEN_NOT_ALLOWED, "the user may not read the file",
         [](World& w) { w.forbid(w.textFile); }},
        {ZELKM_ERR_BASE64_INVALID_DATA, "the text is not Base64",
         [](World& w) { giveFile(w, "in", "no? no!"); }},
        {ZELKM_ERR_BASE64_INVALID_MSGTYPE, "an armour that does not end as it began",
         [](World& w) { giveFile(w, "in", "-----BEGIN A-----\nYWJj\n-----END B-----"); }},
        {ZELKM_ERR_BASE64_DECODING, "Base64 that is cut off, or wrongly padded",
         [](World& w) { giveFile(w, "in", "YWJ"); }}}},

      {nullptr,
       {"ZELKM_ImportKeysFromPFXFile", "ZELKM_Kyr2Kdb"},
       {{ZELKM_ERR_INVALID_PKCS12_DATA, "the file is no PFX",
         [](World& w) { w.write(w.pfxFile, sys::bytesOf("no PFX")); }},
        {ZELKM_ERR_INVALID_PKCS12_DATA, "the PFX is damaged",
         [](World& w) {
           sys::Bytes damaged = materials().pfx;
           damaged[damaged.size() / 2] ^= 1;
           w.write(w.pfxFile, damaged);
         }},
        {ZELKM_ERR_PKCS12_PWD_CORRUPTION, "the password of the PFX is wrong",
         [](World& w) { w.given.password = "wrong"; }}}},
  };
}

}  // namespace zel::km::errors
