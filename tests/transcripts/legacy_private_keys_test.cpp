#include "com_nelo_security_cmskeystore_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

constexpr auto c_EncryptPrivateKey =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1EncryptPrivateKey;
constexpr auto c_DecryptPrivateKey =
    Java_com_nelo_security_cmskeystore_CMSKeyDatabase_c_1DecryptPrivateKey;

class LegacyPrivateKeys : public NativeTest {
 protected:
  LegacyPrivateKeys() : NativeTest("CMSKeyDatabase", kLegacy) {}
};

const std::string kPasswordAcquired = R"(
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cKeyDbPwd = secret
)";
const std::string kKeyCopied = kPasswordAcquired + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#1) = [30 01]
)";

class LegacyEncryptPrivateKey : public LegacyPrivateKeys {
 protected:
  LegacyEncryptPrivateKey() {
    library().epki = [] { return newEpki({0x30, 0x0e}); };
  }

  void encrypt(jint length) {
    call(c_EncryptPrivateKey, length, bytes({0x30, 0x01}), text("secret"));
  }
};

TEST_F(LegacyEncryptPrivateKey, MakesALegacyItemOfTheEncryptedKey) {
  encrypt(2);
  EXPECT_TRANSCRIPT(kKeyCopied + R"(
    ZELKM_GetEPKIItemFromPrivateKey([30 01], 2, "secret") = 0, epki#1
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 0
    FindClass("com/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem") = class cmskeystore/EncryptedPrivateKeyInfoItem
    GetMethodID(class cmskeystore/EncryptedPrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 0e])
    NewObject(class cmskeystore/EncryptedPrivateKeyInfoItem, <init>, bytes#2) = EncryptedPrivateKeyInfoItem#1
    trace JNI_DEBUG......jEncryptedPrivateKeyInfoItem = 0x{class cmskeystore/EncryptedPrivateKeyInfoItem}, retObj = 0x{EncryptedPrivateKeyInfoItem#1}
    ZELKM_FreeEPKIItem(epki#1)
    ReleaseStringUTFChars("secret")
    return EncryptedPrivateKeyInfoItem#1
    held block#1
    held elements of bytes#1
  )");
  EXPECT_TRUE(recorder().owned.isWiped("block#1"));
}

TEST_F(LegacyEncryptPrivateKey, OnlyTracesTheCodeOfAFailure) {
  library().answers["ZELKM_GetEPKIItemFromPrivateKey"] = 41;
  encrypt(2);
  EXPECT_TRANSCRIPT(kKeyCopied + R"(
    ZELKM_GetEPKIItemFromPrivateKey([30 01], 2, "secret") = 41
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 41
    ReleaseStringUTFChars("secret")
    return null
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(LegacyEncryptPrivateKey, FreesAnItemThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem");
  encrypt(2);
  EXPECT_TRANSCRIPT(kKeyCopied + R"(
    ZELKM_GetEPKIItemFromPrivateKey([30 01], 2, "secret") = 0, epki#1
    trace JNI_DEBUG......ZELKM_GetEPKIItemFromPrivateKey returns 0
    FindClass("com/nelo/security/cmskeystore/EncryptedPrivateKeyInfoItem") = null
    ZELKM_FreeEPKIItem(epki#1)
    ReleaseStringUTFChars("secret")
    return null
    held block#1
    held elements of bytes#1
  )");
}

TEST_F(LegacyEncryptPrivateKey, LeavesThePasswordHeldOnItsEarlyWaysOut) {
  encrypt(0);
  encrypt(3);
  EXPECT_TRANSCRIPT(kPasswordAcquired + R"(
    return null
    held string "secret"
  )" + kPasswordAcquired +
                    R"(
    GetArrayLength(bytes#2) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    return null
    held string "secret"
    held string "secret"
  )");
}

TEST_F(LegacyEncryptPrivateKey, IsNullForANullEnvironmentOrObject) {
  callOn(nullptr, self, c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  callOn(env, nullptr, c_EncryptPrivateKey, 1, bytes({0x30}), text("secret"));
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
    return null
    held nothing
  )");
}

class LegacyDecryptPrivateKey : public LegacyPrivateKeys {
 protected:
  LegacyDecryptPrivateKey() {
    library().privKeyInfo = [] { return newPrivKeyInfo({0x30, 0x1f}); };
  }

  void decrypt(jint length) {
    call(c_DecryptPrivateKey, length, bytes({0x30, 0x01}), text("secret"));
  }
};

TEST_F(LegacyDecryptPrivateKey, MakesALegacyItemOfTheDecryptedKey) {
  decrypt(2);
  EXPECT_TRANSCRIPT(kKeyCopied + R"(
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 01], 2}, "secret") = 0, private key info#1
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 0
    FindClass("com/nelo/security/cmskeystore/PrivateKeyInfoItem") = class cmskeystore/PrivateKeyInfoItem
    GetMethodID(class cmskeystore/PrivateKeyInfoItem, "<init>", "([B)V")
    NewByteArray(2) = bytes#2
    SetByteArrayRegion(bytes#2, 0, 2, [30 1f])
    NewObject(class cmskeystore/PrivateKeyInfoItem, <init>, bytes#2) = PrivateKeyInfoItem#1
    trace JNI_DEBUG......jPrivateKeyInfoItem = 0x{class cmskeystore/PrivateKeyInfoItem}, retObj = 0x{PrivateKeyInfoItem#1}
    ZELKM_FreePrivKeyInfoItem(private key info#1)
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return PrivateKeyInfoItem#1
    held elements of bytes#1
  )");
}

TEST_F(LegacyDecryptPrivateKey, OnlyTracesTheCodeOfAWrongPassword) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 16;
  decrypt(2);
  EXPECT_TRANSCRIPT(kKeyCopied + R"(
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 01], 2}, "secret") = 16
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 16
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
  )");
}

TEST_F(LegacyDecryptPrivateKey, AsksTheLibraryEvenWithoutACopyOfTheKey) {
  library().answers["ZELKM_GetPrivKeyInfoItemFromEPKIItem"] = 65;
  decrypt(3);
  EXPECT_TRANSCRIPT(kPasswordAcquired + R"(
    GetArrayLength(bytes#1) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen != jCertBERLen
    ZELKM_Malloc(64) = block#1
    ZELKM_InitEPKIItem(block#1)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{null, 3}, "secret") = 65
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 65
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#1)
    return null
    held nothing
  )");
}

TEST_F(LegacyDecryptPrivateKey, FreesAnItemThatCannotBeConverted) {
  jni.heap.removeClass("com/nelo/security/cmskeystore/PrivateKeyInfoItem");
  decrypt(2);
  EXPECT_TRANSCRIPT(kKeyCopied + R"(
    ZELKM_Malloc(64) = block#2
    ZELKM_InitEPKIItem(block#2)
    ZELKM_GetPrivKeyInfoItemFromEPKIItem(epki{[30 01], 2}, "secret") = 0, private key info#1
    trace JNI_DEBUG......ZELKM_GetPrivKeyInfoItemFromEPKIItem returns 0
    FindClass("com/nelo/security/cmskeystore/PrivateKeyInfoItem") = null
    ZELKM_FreePrivKeyInfoItem(private key info#1)
    ReleaseStringUTFChars("secret")
    ZELKM_FreeEPKIItem(block#2)
    return null
    held elements of bytes#1
  )");
}

TEST_F(LegacyDecryptPrivateKey, LeavesThePasswordHeldOnItsEarlyWaysOut) {
  decrypt(0);
  recorder().faults.failCall("ZELKM_Malloc", 1);
  decrypt(2);
  EXPECT_TRANSCRIPT(kPasswordAcquired + R"(
    return null
    held string "secret"
  )" + kPasswordAcquired +
                    R"(
    GetArrayLength(bytes#2) = 2
    trace JNI_DEBUG......JavaByteArrayToUChar(): jByteLen == jCertBERLen
    malloc(2) = block#1
    GetByteArrayElements(bytes#2) = [30 01]
    ZELKM_Malloc(64) = null
    free(block#1 wiped)
    return null
    held string "secret"
    held string "secret"
    held elements of bytes#2
  )");
}

TEST_F(LegacyDecryptPrivateKey, IsNullForANullEnvironmentOrObject) {
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
