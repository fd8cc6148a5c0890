#ifndef ZEL_CMS_ALGORITHM_NAMES_H_
#define ZEL_CMS_ALGORITHM_NAMES_H_

#include <openssl/asn1.h>

#include <string>

namespace zel::cms {

/** The identifier in dotted decimal. */
std::string dottedDecimal(const ASN1_OBJECT* identifier);

/** The usual name of what is identified, dotted decimal when it has none. */
std::string usualName(const ASN1_OBJECT* identifier);

}  // namespace zel::cms

#endif  // ZEL_CMS_ALGORITHM_NAMES_H_
