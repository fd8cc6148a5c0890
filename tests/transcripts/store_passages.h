#ifndef TESTS_TRANSCRIPTS_STORE_PASSAGES_H_
#define TESTS_TRANSCRIPTS_STORE_PASSAGES_H_

#include <string>

#include "tests/transcripts/native_test.h"

/**
 * @file
 * What the transcripts of the natives of MSCertificateStore share: the two strings that name and
 * unlock a store, acquired, used for opening it, and released. Either string may be null.
 */

namespace zel::test {

class StoreNative : public NativeTest {
 protected:
  StoreNative() : NativeTest("MSCertificateStore") {}
};

inline const std::string kStoreStrings = R"(
    GetStringUTFChars("CurrentUser/My")
    trace JNI_DEBUG......cCSPName = CurrentUser/My
    GetStringUTFChars("secret")
    trace JNI_DEBUG......cPassword = secret
)";

inline const std::string kStoreOpened = R"(
    ZELKM_OpenKeyDbX({type 4, token "CurrentUser/My", password "secret"}) = 0, handle 1
)";

inline const std::string kStoreNotOpened = R"(
    ZELKM_OpenKeyDbX({type 4, token "CurrentUser/My", password "secret"}) = 139
)";

inline const std::string kStoreReleases = R"(
    ReleaseStringUTFChars("CurrentUser/My")
    ReleaseStringUTFChars("secret")
)";

/** The same of a store without name and password; nothing is released. */
inline const std::string kNamelessStoreStrings = R"(
    trace JNI_DEBUG......cCSPName = NULL
    trace JNI_DEBUG......cPassword = NULL
)";

inline const std::string kNamelessStoreOpened = R"(
    ZELKM_OpenKeyDbX({type 4}) = 0, handle 1
)";

}  // namespace zel::test

#endif  // TESTS_TRANSCRIPTS_STORE_PASSAGES_H_
