#include <algorithm>

#include "tests/recording_double/library_call.h"

using namespace zel::test;

namespace {

/** The fields of a locator that are set; the caller must have cleared the rest of the extent. */
std::string textOf(const KeyDbLocator& locator) {
  std::string text = "{type " + std::to_string(locator.type);
  const auto add = [&text](const char* field, const char* value) {
    if (value != nullptr) text += std::string(", ") + field + " " + quoted(value);
  };
  add("file", locator.fileName);
  add("module", locator.moduleName);
  add("token", locator.tokenLabel);
  add("password", locator.password);
  add("new password", locator.newPassword);
  return text + "}";
}

bool isZero(const void* bytes, size_t length) {
  const auto* first = static_cast<const unsigned char*>(bytes);
  return std::all_of(first, first + length, [](unsigned char byte) { return byte == 0; });
}

/** Not a byte past the extent is read, so the sanitizer sees a record that is too short. */
void checkCleared(OperationCall& call, const KeyDbLocator& locator, size_t extent) {
  const size_t tail = extent - offsetof(KeyDbLocator, reserved2);
  const bool cleared = isZero(&locator.padding, sizeof locator.padding) &&
                       isZero(locator.reserved1, sizeof locator.reserved1) &&
                       isZero(locator.reserved2, tail);
  if (!cleared) call.wrong("is given a locator that was not cleared");
}

}  // namespace

int ZELKM_CreateNewKeyDb(const char* fileName, const char* password, int64_t lifetime,
                         int* handle) {
  OperationCall call(__func__, quoted(fileName), quoted(password), lifetime);
  call.handsOutHandle(handle);
  return call.answer();
}

int ZELKM_CreateNewKeyDbFIPS(const char* fileName, const char* password, int64_t lifetime,
                             int* handle) {
  OperationCall call(__func__, quoted(fileName), quoted(password), lifetime);
  call.handsOutHandle(handle);
  return call.answer();
}

int ZELKM_OpenKeyDb(const char* fileName, const char* password, int* handle) {
  OperationCall call(__func__, quoted(fileName), quoted(password));
  call.handsOutHandle(handle);
  return call.answer();
}

int ZELKM_OpenKeyDbX(const KeyDbLocator* locator, int* handle) {
  OperationCall call(__func__, textOf(*locator));
  checkCleared(call, *locator, KEYDB_LOCATOR_OPEN_EXTENT);
  call.handsOutHandle(handle);
  return call.answer();
}

int ZELKM_ChangeKeyDbPwd(const char* fileName, const char* oldPassword, const char* newPassword,
                         int64_t lifetime) {
  return OperationCall(__func__, quoted(fileName), quoted(oldPassword), quoted(newPassword),
                       lifetime)
      .answer();
}

int ZELKM_ChangeKeyDbPwdX(const KeyDbLocator* locator) {
  OperationCall call(__func__, textOf(*locator));
  checkCleared(call, *locator, KEYDB_LOCATOR_CHANGE_EXTENT);
  return call.answer();
}

int ZELKM_StashKeyDbPwd(const char* fileName, const char* password) {
  return OperationCall(__func__, quoted(fileName), quoted(password)).answer();
}

int ZELKM_IsPasswordRequired(const KeyDbLocator* locator, unsigned char* required) {
  OperationCall call(__func__, textOf(*locator));
  checkCleared(call, *locator, KEYDB_LOCATOR_QUERY_EXTENT);
  call.setsFlag(required);
  return call.answer();
}

int ZELKM_Kyr2Kdb(const char* kyrFileName, const char* kyrPassword, const char* keyDbFileName,
                  const char* keyDbPassword) {
  return OperationCall(__func__, quoted(kyrFileName), quoted(kyrPassword), quoted(keyDbFileName),
                       quoted(keyDbPassword))
      .answer();
}

int ZELKM_Kdb2Kyr(const char* keyDbFileName, const char* keyDbPassword, const char* kyrFileName,
                  const char* kyrPassword) {
  return OperationCall(__func__, quoted(keyDbFileName), quoted(keyDbPassword), quoted(kyrFileName),
                       quoted(kyrPassword))
      .answer();
}
