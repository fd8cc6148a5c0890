#ifndef BRIDGE_MARSHAL_TRACE_TEXTS_H_
#define BRIDGE_MARSHAL_TRACE_TEXTS_H_

#include "bridge/marshal/text_trace.h"

/**
 * @file
 * The traces of the strings that natives of several classes take. Passwords are traced in clear,
 * like every other argument.
 */

namespace zel::bridge {

inline constexpr TextTrace kTraceKeyDbFileName{"JNI_DEBUG......cKeyDbFileName = %s\n"};
inline constexpr TextTrace kTraceKeyDbPwd{"JNI_DEBUG......cKeyDbPwd = %s\n"};
inline constexpr TextTrace kTraceKeyLabel{"JNI_DEBUG......cKeyLabel = %s\n"};
inline constexpr TextTrace kTraceTokenPassword{"JNI_DEBUG......cCryptographicTokenPassword = %s\n"};
inline constexpr TextTrace kTraceCertFileName{"JNI_DEBUG......cCertFileName = %s\n"};
inline constexpr TextTrace kTraceCertReqFileName{"JNI_DEBUG......cCertReqFileName = %s\n"};

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_TRACE_TEXTS_H_
