// Issue a certificate over a request read from a file.

#include <cstdlib>

#include "bridge/frame/gate.h"
#include "bridge/keydb/with_key_db.h"
#include "bridge/kmlib/zelkm.h"
#include "bridge/marshal/held_strings.h"
#include "bridge/marshal/trace_texts.h"
#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"

using namespace zel::bridge;

namespace {

constexpr TextTrace kTraceIssuerKeyLabel{"JNI_DEBUG......cIssuerKeyLabel = %s\n"};
constexpr TextTrace kTraceSerialNumber{"JNI_DEBUG......cSerialNumber = %s\n"};

/** IssueStrings are the Java strings of an issue native, in the order of acquiring. */
struct IssueStrings {
  jstring keyDbFileName;
  jstring keyDbPwd;
  jstring issuerKeyLabel;
  jstring serialNumber;
  jstring certFileName;
  jstring certReqFileName;
};

/** Issue is what the library's two issue operations have in common. */
struct Issue {
  const unsigned char* request;
  uint32_t requestLength;
  const char* issuerLabel;
  const char* serialNumber;
  const char* certFile;
};

/** issueFromFile reads the request before it opens the database. */
template <typename Operation>
jint issueFromFile(JNIEnv* env, const IssueStrings& strings, Operation&& operation) {
  HeldStrings held(env);
  const char* file = held.take(strings.keyDbFileName, kTraceKeyDbFileName);
  const char* pwd = held.take(strings.keyDbPwd, kTraceKeyDbPwd);
  const char* issuerLabel = held.take(strings.issuerKeyLabel, kTraceIssuerKeyLabel);
  const char* serialNumber = held.take(strings.serialNumber, kTraceSerialNumber);
  const char* certFile = held.take(strings.certFileName, kTraceCertFileName);
  const char* certReqFile = held.take(strings.certReqFileName, kTraceCertReqFileName);

  unsigned char* request = nullptr;
  uint32_t requestLength = 0;
  int rc = ZELKM_Base64DecodeFileToBuf(certReqFile, &request, &requestLength);
  if (rc == ZELKM_OK) {
    const Issue issue{request, requestLength, issuerLabel, serialNumber, certFile};
    rc = withKeyDb(file, pwd, [&](int handle) { return operation(handle, issue); });
    std::free(request);
  }
  held.releaseInOrder({file, pwd, issuerLabel, serialNumber, certReqFile, certFile});
  return rc;
}

}  // namespace

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IssueCertificate(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring issuerKeyLabel,
    jint firstNumber, jstring serialNumber, jint secondNumber, jstring certReqFileName,
    jstring certFileName, jboolean flag) {
  if (lacksAny(env, self, issuerKeyLabel, serialNumber, certReqFileName, certFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  const IssueStrings strings{keyDbFileName, keyDbPwd,     issuerKeyLabel,
                             serialNumber,  certFileName, certReqFileName};
  return issueFromFile(env, strings, [&](int handle, const Issue& issue) {
    return ZELKM_IssueCert(handle, issue.request, issue.requestLength, issue.issuerLabel,
                           firstNumber, issue.serialNumber, secondNumber, issue.certFile,
                           static_cast<unsigned char>(flag == JNI_TRUE), 0, 0);
  });
}

jint Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1IssueCertificateSig(
    JNIEnv* env, jobject self, jstring keyDbFileName, jstring keyDbPwd, jstring issuerKeyLabel,
    jint firstNumber, jstring serialNumber, jint secondNumber, jint sigAlg, jstring certReqFileName,
    jstring certFileName, jboolean flag) {
  if (lacksAny(env, self, issuerKeyLabel, serialNumber, certReqFileName, certFileName)) {
    return ZELKM_ERR_PARAMETER;
  }
  if (lacksClass(env, self)) return ZELKM_ERR_PARAMETER;
  if (!isSignatureAlgorithm(sigAlg)) return ZELKM_ERR_PARAMETER;
  const IssueStrings strings{keyDbFileName, keyDbPwd,     issuerKeyLabel,
                             serialNumber,  certFileName, certReqFileName};
  return issueFromFile(env, strings, [&](int handle, const Issue& issue) {
    return ZELKM_IssueCertSig(handle, issue.request, issue.requestLength, issue.issuerLabel,
                              firstNumber, issue.serialNumber, secondNumber, sigAlg, issue.certFile,
                              static_cast<unsigned char>(flag == JNI_TRUE), 0, 0);
  });
}
