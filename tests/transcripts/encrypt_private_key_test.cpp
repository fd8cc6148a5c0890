#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_EncryptPrivateKey =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1EncryptPrivateKey;

class EncryptPrivateKey : public NativeTest {
 protected:
  EncryptPrivateKey() : NativeTest("CMSKeyDatabase") {
    library().epki = [] { return newEpki({0x30, 0x0e}); };
  }
};

/** The copy of the key stays behind wiped, as on every call that made one. */
TEST_F(EncryptPrivateKey, MakesAnItemOfTheEncryptedKey) {
  call(c_EncryptPrivateKey, 3, bytes({0x30, 0x01, 0x0c}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#1
    GetByteArrayElements(bytes#1) = [30 01 0c]
    ZELKM_GetEPKIItemFromPrivateKey([30 01 0c], 3, "secret") = 0, epki#1
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 0
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = class basic/EncryptedPrivateKeyInfoItem
    GetMethodID(class basic/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 0e])
    NewObject(class basic/EncryptedPrivateKeyInfoItem, <init>, bytes#2) = EncryptedPrivateKeyInfoItem#1
    trace JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x{class basic/EncryptedPrivateKeyInfoItem}, retObj = 0x{EncryptedPrivateKeyInfoItem#1}
    ZELKM_FreeEPKIItem(epki#1)
    ReleaseStringUTFChars("secret")
    return EncryptedPrivateKeyInfoItem#1
    held block#1
    held elements of bytes#1
  )");
  EXPECT_TRUE(recorder().owned.isWiped("block#1"));
}

TEST_F(EncryptPrivateKey, AcquiresOnlyThePasswordForALengthBelowOne) {
  call(c_EncryptPrivateKey, 0, bytes({0x30}), text("secret"));
  call(c_EncryptPrivateKey, -1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    return null
    held string "secret"
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    return null
    held string "secret"
    held string "secret"
  )");
}

TEST_F(EncryptPrivateKey, LeavesThePasswordHeldWhenTheKeyHasAnotherLength) {
  call(c_EncryptPrivateKey, 4, bytes({0x30, 0x01, 0x0c}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held string "secret"
  )");
}

TEST_F(EncryptPrivateKey, LeavesThePasswordHeldWithoutAKey) {
  call(c_EncryptPrivateKey, 3, nullptr, text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    return null
    held string "secret"
  )");
}

TEST_F(EncryptPrivateKey, LeavesThePasswordHeldWithoutMemory) {
  recorder().faults.failCall("malloc", 1);
  call(c_EncryptPrivateKey, 3, bytes({0x30, 0x01, 0x0c}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = null
    return null
    held string "secret"
  )");
}

TEST_F(EncryptPrivateKey, OnlyTracesTheCodeOfAFailure) {
  library().answers["ZELKM_GetEPKIItemFromPrivateKey"] = 41;
  call(c_EncryptPrivateKey, 3, bytes({0x30, 0x01, 0x0c}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 3
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(3) = block#1
    GetByteArrayElements(bytes#1) = [30 01 0c]
    ZELKM_GetEPKIItemFromPrivateKey([30 01 0c], 3, "secret") = 41
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 41
    ReleaseStringUTFChars("secret")
    return null
    held block#1
    held elements of bytes#1
  )");
}

/** An output of a failed operation is not the caller's. */
TEST_F(EncryptPrivateKey, NeitherConvertsNorFreesWhatCameWithAnError) {
  library().answers["ZELKM_GetEPKIItemFromPrivateKey"] = 41;
  library().outputsDespiteErrors = true;
  call(c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_GetEPKIItemFromPrivateKey([30], 1, "secret") = 41, epki#1
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 41
    ReleaseStringUTFChars("secret")
    return null
    held block#1
    held elements of bytes#1
    held epki#1
  )");
}

TEST_F(EncryptPrivateKey, MakesNothingOfASuccessWithoutAnItem) {
  library().epki = nullptr;
  call(c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_GetEPKIItemFromPrivateKey([30], 1, "secret") = 0, null
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 0
    ZELKM_FreeEPKIItem(null)
    ReleaseStringUTFChars("secret")
    return null
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(EncryptPrivateKey, FreesAnItemThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem");
  call(c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_GetEPKIItemFromPrivateKey([30], 1, "secret") = 0, epki#1
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 0
    FindClass("com/nelo/zel/vosmar/basic/EncryptedPrivateKeyInfoItem") = null
    ZELKM_FreeEPKIItem(epki#1)
    ReleaseStringUTFChars("secret")
    return null
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(EncryptPrivateKey, PassesANullPasswordOn) {
  library().answers["ZELKM_GetEPKIItemFromPrivateKey"] = 66;
  call(c_EncryptPrivateKey, 1, bytes({0x30}), nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    GetArrayLength(bytes#1) = 1
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(1) = block#1
    GetByteArrayElements(bytes#1) = [30]
    ZELKM_GetEPKIItemFromPrivateKey([30], 1, null) = 66
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 66
    return null
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(EncryptPrivateKey, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  callOn(env, nullptr, c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
