#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_DecryptPrivateKey =
    Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1DecryptPrivateKey;

class DecryptPrivateKey : public NativeTest {
 protected:
  DecryptPrivateKey() : NativeTest("CMSKeyDatabase") {
    library().privKeyInfo = [] { return newPrivKeyInfo({0x30, 0x1f}); };
  }
};

/** The copy of the encrypted key goes with the record that it was put into. */
TEST_F(DecryptPrivateKey, MakesAnItemOfTheDecryptedKey) {
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 0e], 2}, "secret") = 0, private key info#1
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 0
    FindClass("com/nelo/zel/vosmar/basic/PrivateKeyInfoItem") = class basic/PrivateKeyInfoItem
    GetMethodID(class basic/PrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 1f])
    NewObject(class basic/PrivateKeyInfoItem, <init>, bytes#2) = PrivateKeyInfoItem#1
    trace JNI_DEBUG......jPrivateKeyInfoItem = 0x{class basic/PrivateKeyInfoItem}, retObj = 0x{PrivateKeyInfoItem#1}
    ZELKM_FreePrivKeyInfoItem(private key info#1)
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return PrivateKeyInfoItem#1
    held elements of bytes#1
  )");
}

TEST_F(DecryptPrivateKey, AcquiresOnlyThePasswordForALengthBelowOne) {
  call(c_DecryptPrivateKey, 0, bytes({0x30}), text("secret"));
  call(c_DecryptPrivateKey, -1, bytes({0x30}), text("secret"));
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

TEST_F(DecryptPrivateKey, OnlyTracesTheCodeOfAWrongPassword) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 16;
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), text("wrong"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("wrong")
    trace JNI_DEBUG......cKeyDbPwd = wrong
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 0e], 2}, "wrong") = 16
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 16
    ReleaseStringUTFChars("wrong")
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
  )");
}

/** The encrypting native ends without a copy; this one leaves the answer to the library. */
TEST_F(DecryptPrivateKey, AsksTheLibraryEvenWithoutACopyOfTheKey) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 65;
  call(c_DecryptPrivateKey, 5, bytes({0x30, 0x0e}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    ZELKM_Malloc(64) = block#1
    ZELKM_InitEPKIItem(block#1)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{null, 5}, "secret") = 65
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 65
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#1)
    return null
    held nothing
  )");
}

TEST_F(DecryptPrivateKey, AsksTheLibraryEvenWithoutAKey) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 65;
  call(c_DecryptPrivateKey, 2, nullptr, text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    ZELKM_Malloc(64) = block#1
    ZELKM_InitEPKIItem(block#1)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{null, 2}, "secret") = 65
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 65
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#1)
    return null
    held nothing
  )");
}

/** Nothing depends on the copy, so it does not stay behind with the password. */
TEST_F(DecryptPrivateKey, LeavesThePasswordHeldWithoutARecord) {
  recorder().faults.failCall("ZELKM_Malloc", 1);
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = null
    free(block#1 wiped)
    return null
    held string "secret"
    held elements of bytes#1
  )");
}

TEST_F(DecryptPrivateKey, FreesAnItemThatCannotBeConverted) {
  jni.heap.removeMember("com/nelo/zel/vosmar/basic/PrivateKeyInfoItem", "<init>");
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 0e], 2}, "secret") = 0, private key info#1
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 0
    FindClass("com/nelo/zel/vosmar/basic/PrivateKeyInfoItem") = class basic/PrivateKeyInfoItem
    GetMethodID(class basic/PrivateKeyInfoItem, "<init>", "([B)V") = null
    ZELKM_FreePrivKeyInfoItem(private key info#1)
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
  )");
}

TEST_F(DecryptPrivateKey, MakesNothingOfASuccessWithoutAnItem) {
  library().privKeyInfo = nullptr;
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 0e], 2}, "secret") = 0, null
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 0
    ZELKM_FreePrivKeyInfoItem(null)
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
  )");
}

TEST_F(DecryptPrivateKey, NeitherConvertsNorFreesWhatCameWithAnError) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 20;
  library().outputsDespiteErrors = true;
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 0e], 2}, "secret") = 20, private key info#1
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 20
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
    held private key info#1
  )");
}

TEST_F(DecryptPrivateKey, PassesANullPasswordOn) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 16;
  call(c_DecryptPrivateKey, 2, bytes({0x30, 0x0e}), nullptr);
  EXPECT_TRANSCRIPT(R"(
    GetStringUTFChars(null) = null
    trace JNI_DEBUG......cKeyDbPwd = null
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 0e]
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 0e], 2}, null) = 16
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 16
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
  )");
}

TEST_F(DecryptPrivateKey, RefusesANullEnvironmentOrObject) {
  callOn(nullptr, self, c_DecryptPrivateKey, 1, bytes({0x30}), text("secret"));
  callOn(env, nullptr, c_DecryptPrivateKey, 1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
