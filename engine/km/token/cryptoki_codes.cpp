#include "engine/km/token/cryptoki_codes.h"

#include "engine/sys/trace.h"

namespace zel::km::token {

namespace {

struct Meaning {
  CK_RV rv;
  const char* name;
  int code;
};

constexpr int kTokenFailed = ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_FUNCTION_FAILED;
constexpr int kObjectFailed = ZELKM_ERR_CRYPTOGRAPHIC_OBJECT_FUNCTION_FAILED;
constexpr int kUnsupported = ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT;
constexpr int kNoToken = ZELKM_ERR_NO_TOKEN_PRESENT;
constexpr int kWrongPin = ZELKM_ERR_DATABASE_INVALID_PASSWORD;

#define MEANING(rv, code) \
  { rv, #rv, code }
constexpr Meaning kMeanings[] = {
    MEANING(CKR_HOST_MEMORY, ZELKM_ERR_MEMORY_ALLOCATE),
    MEANING(CKR_SLOT_ID_INVALID, kNoToken),
    MEANING(CKR_GENERAL_ERROR, kTokenFailed),
    MEANING(CKR_FUNCTION_FAILED, kTokenFailed),
    MEANING(CKR_ARGUMENTS_BAD, kTokenFailed),
    MEANING(CKR_CANT_LOCK, kUnsupported),
    MEANING(CKR_ATTRIBUTE_READ_ONLY, kObjectFailed),
    MEANING(CKR_ATTRIBUTE_SENSITIVE, kObjectFailed),
    MEANING(CKR_ATTRIBUTE_TYPE_INVALID, kObjectFailed),
    MEANING(CKR_ATTRIBUTE_VALUE_INVALID, kObjectFailed),
    MEANING(CKR_DATA_INVALID, kTokenFailed),
    MEANING(CKR_DATA_LEN_RANGE, kTokenFailed),
    MEANING(CKR_DEVICE_ERROR, kTokenFailed),
    MEANING(CKR_DEVICE_MEMORY, kTokenFailed),
    MEANING(CKR_DEVICE_REMOVED, kNoToken),
    MEANING(CKR_FUNCTION_NOT_SUPPORTED, kUnsupported),
    MEANING(CKR_KEY_HANDLE_INVALID, kObjectFailed),
    MEANING(CKR_KEY_SIZE_RANGE, kUnsupported),
    MEANING(CKR_KEY_TYPE_INCONSISTENT, kObjectFailed),
    MEANING(CKR_KEY_FUNCTION_NOT_PERMITTED, kObjectFailed),
    MEANING(CKR_MECHANISM_INVALID, kUnsupported),
    MEANING(CKR_MECHANISM_PARAM_INVALID, kUnsupported),
    MEANING(CKR_OBJECT_HANDLE_INVALID, kObjectFailed),
    MEANING(CKR_PIN_INCORRECT, kWrongPin),
    MEANING(CKR_PIN_INVALID, kWrongPin),
    MEANING(CKR_PIN_LEN_RANGE, kWrongPin),
    MEANING(CKR_PIN_EXPIRED, ZELKM_ERR_PASSWORD_EXPIRATION_TIME),
    MEANING(CKR_PIN_LOCKED, kTokenFailed),
    MEANING(CKR_SESSION_CLOSED, kNoToken),
    MEANING(CKR_SESSION_COUNT, kTokenFailed),
    MEANING(CKR_SESSION_HANDLE_INVALID, kNoToken),
    MEANING(CKR_SESSION_READ_ONLY, kObjectFailed),
    MEANING(CKR_TEMPLATE_INCOMPLETE, kObjectFailed),
    MEANING(CKR_TEMPLATE_INCONSISTENT, kObjectFailed),
    MEANING(CKR_TOKEN_NOT_PRESENT, kNoToken),
    MEANING(CKR_TOKEN_NOT_RECOGNIZED, kNoToken),
    MEANING(CKR_TOKEN_WRITE_PROTECTED, kObjectFailed),
    MEANING(CKR_USER_ALREADY_LOGGED_IN, kTokenFailed),
    MEANING(CKR_USER_NOT_LOGGED_IN, kTokenFailed),
    MEANING(CKR_USER_PIN_NOT_INITIALIZED, ZELKM_ERR_NOT_INITIALIZED),
    MEANING(CKR_USER_ANOTHER_ALREADY_LOGGED_IN, kTokenFailed),
    MEANING(CKR_USER_TOO_MANY_TYPES, kTokenFailed),
    MEANING(CKR_BUFFER_TOO_SMALL, kTokenFailed),
    MEANING(CKR_CRYPTOKI_NOT_INITIALIZED, kTokenFailed),
    MEANING(CKR_CRYPTOKI_ALREADY_INITIALIZED, kTokenFailed),
    {kNoTurn, "another process keeps its turn", kTokenFailed},
};
#undef MEANING

Meaning meaningOf(CK_RV rv) {
  for (const Meaning& meaning : kMeanings) {
    if (meaning.rv == rv) return meaning;
  }
  return {rv, "CKR_?", kTokenFailed};
}

}  // namespace

const char* cryptokiName(CK_RV rv) { return rv == CKR_OK ? "CKR_OK" : meaningOf(rv).name; }

sys::Failure cryptokiFailure(CK_RV rv, const char* attempt) {
  const Meaning meaning = meaningOf(rv);
  return sys::fail(meaning.code, "the token did not %s: %s (0x%lx)", attempt, meaning.name, rv);
}

bool refusesSuchObjects(CK_RV rv) {
  switch (rv) {
    case CKR_ATTRIBUTE_TYPE_INVALID:
    case CKR_ATTRIBUTE_VALUE_INVALID:
    case CKR_TEMPLATE_INCOMPLETE:
    case CKR_TEMPLATE_INCONSISTENT:
    case CKR_FUNCTION_NOT_SUPPORTED:
      return true;
    default:
      return false;
  }
}

}  // namespace zel::km::token
