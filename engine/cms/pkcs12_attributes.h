#ifndef ZEL_CMS_PKCS12_ATTRIBUTES_H_
#define ZEL_CMS_PKCS12_ATTRIBUTES_H_

namespace zel::cms {

/** The bag attribute by which the JDK knows a trusted certificate; its value is a key purpose. */
inline constexpr char kPkcs12TrustedKeyUsage[] = "2.16.840.1.113894.746875.1.1";

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_ATTRIBUTES_H_
