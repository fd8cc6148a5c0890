#ifndef TESTS_TRANSCRIPTS_TOKEN_PASSAGES_H_
#define TESTS_TRANSCRIPTS_TOKEN_PASSAGES_H_

#include <string>

#include "tests/transcripts/native_test.h"

/**
 * @file
 * What the transcripts of the natives of CryptographicToken share: the three strings that name and
 * unlock a token, acquired, used for opening it, and released.
 */

namespace zel::test {

class TokenNative : public NativeTest {
 protected:
  TokenNative() : NativeTest("CryptographicToken") {}
};

inline const std::string kTokenStrings = R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    GetStringUTFChars("1234")
    trace JNI_DEBUG......cCryptographicTokenPassword = 1234
)";

inline const std::string kTokenOpened = R"(
    ZELKM_OpenKeyDbX({type 2, module "p11.so", token "token", password "1234"}) = 0, handle 1
)";

inline const std::string kTokenNotOpened = R"(
    ZELKM_OpenKeyDbX({type 2, module "p11.so", token "token", password "1234"}) = 137
)";

inline const std::string kTokenReleases = R"(
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
    ReleaseStringUTFChars("1234")
)";

/** The same of a token without a password. */
inline const std::string kOpenTokenStrings = R"(
    GetStringUTFChars("p11.so")
    trace JNI_DEBUG......cCryptographicModuleName = p11.so
    GetStringUTFChars("token")
    trace JNI_DEBUG......cCryptographicTokenLabel = token
    trace JNI_DEBUG......cCryptographicTokenPassword = NULL
)";

inline const std::string kOpenTokenOpened = R"(
    ZELKM_OpenKeyDbX({type 2, module "p11.so", token "token"}) = 0, handle 1
)";

inline const std::string kOpenTokenReleases = R"(
    ReleaseStringUTFChars("p11.so")
    ReleaseStringUTFChars("token")
)";

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_TOKEN_PASSAGES_H_
