// A renewed certificate against the one that a token holds.

#include "bridge/frame/gate.h"
#include "bridge/frame/trace.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/token/with_token.h"
#include "com_nelo_zel_vosmar_basic_CryptographicToken.h"

using namespace zel::bridge;

namespace {

constexpr TextTrace kTraceNumberedModule{
    "JNI_CryptographicToken::IsPersonalCertificateRenewal 0010, cCryptographicModuleName = %s\n"};
constexpr TextTrace kTraceNumberedLabel{
    "JNI_CryptographicToken::IsPersonalCertificateRenewal 0020, cCryptographicTokenLabel = %s\n"};
constexpr FixedTrace kTraceNumberedNoPassword{
    "JNI_CryptographicToken::IsPersonalCertificateRenewal 0030, cCryptographicTokenPassword = NULL\n"};
constexpr TextTrace kTraceNumberedPassword{
    "JNI_CryptographicToken::IsPersonalCertificateRenewal 0040, cCryptographicTokenPassword = %s\n"};

/** takeTokenNumbered is takeToken with the numbered traces of c_IsPersonalCertificateRenewal. */
Token takeTokenNumbered(HeldStrings& held, jstring moduleName, jstring tokenLabel,
                        jstring tokenPassword) {
  const char* module = held.take(moduleName, kTraceNumberedModule);
  const char* label = held.take(tokenLabel, kTraceNumberedLabel);
  const char* password =
      held.takeIfGiven(tokenPassword, kTraceNumberedPassword, kTraceNumberedNoPassword);
  return {module, label, password};
}

}  // namespace

// The answer is the library's byte as it stands, after a failed check too.
jboolean Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1IsPersonalCertificateRenewal(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jint certLength, jbyteArray certificate) {
  if (lacksAny(env, self, moduleName, tokenLabel, certificate) || certLength <= 0) return JNI_FALSE;
  HeldStrings held(env);
  const Token token = takeTokenNumbered(held, moduleName, tokenLabel, tokenPassword);
  unsigned char* cert = nullptr;
  JavaByteArrayToUChar(env, certificate, certLength, &cert);
  traceMessage(
      "JNI_CryptographicToken::IsPersonalCertificateRenewal 0050, Check Duplicate CertData = %.*s\n",
      bytesShown(cert, certLength), bytesAsText(cert));
  unsigned char isRenewal = 0;
  withToken(token, [&](int handle) {
    const int rc =
        ZELKM_CheckCertAsRenewal(handle, cert, static_cast<uint32_t>(certLength), &isRenewal);
    traceMessage("JNI_CryptographicToken::IsPersonalCertificateRenewal 0060, jrc = %d\n", rc);
    return rc;
  });
  wipeAndFree(cert, certLength);
  held.releaseAll();
  return isRenewal;
}

jint Java_com_nelo_zel_vosmar_basic_CryptographicToken_c_1RenewPersonalCertificate(
    JNIEnv* env, jobject self, jstring moduleName, jstring tokenLabel, jstring tokenPassword,
    jint certLength, jbyteArray certificate) {
  if (lacksAny(env, self, moduleName, tokenLabel, certificate) || certLength <= 0) {
    return ZELKM_ERR_PARAMETER;
  }
  HeldStrings held(env);
  const Token token = takeToken(held, moduleName, tokenLabel, tokenPassword);
  unsigned char* cert = nullptr;
  JavaByteArrayToUChar(env, certificate, certLength, &cert);
  traceMessage("JNI_DEBUG......Renew CertData = %.*s\n", bytesShown(cert, certLength),
               bytesAsText(cert));
  const int rc = withToken(token, [&](int handle) {
    return ZELKM_RenewCert(handle, cert, static_cast<uint32_t>(certLength));
  });
  wipeAndFree(cert, certLength);
  held.releaseAll();
  return rc;
}
