#ifndef ZEL_CMS_PKCS12_ATTRIBUTES_H_
#define ZEL_CMS_PKCS12_ATTRIBUTES_H_

#include <cstddef>
#include <string>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * What is said of a bag of a PKCS #12 file beside its content (RFC 7292, 4.2), read and written.
 *
 * The marks that a key ring needs and no standard has are attributes of our own, under an arc made
 * from a random GUID. Its numbers have 24 bits at most: GnuTLS refuses a whole safe for one of the
 * 128 bits that the UUID arc 2.25 would bring along.
 */

namespace zel::cms {

struct Pkcs12Attributes {
  std::string friendlyName = {}; /**< real UTF-8; empty when there is none */
  sys::Bytes localKeyId = {};    /**< joins a key and its certificate */
  bool trusted = false;          /**< of a certificate */
  bool isDefault = false;        /**< of a certificate: its key is the default key of a key ring */
  sys::Bytes request = {};       /**< of a key: the CertificationRequest that it waits with; DER */
};

/** The identifier that joins the key and the certificate of the entry at a place, from 0. */
sys::Bytes localKeyIdOf(std::size_t place);

/** What a bag says; what it does not say, or in a form that is not known, is left out. */
Pkcs12Attributes attributesOf(PKCS12_SAFEBAG& bag);

/**
 * Adds the attributes to a bag that has none. A trusted certificate alone gets the attribute by
 * which the JDK knows a trusted certificate entry, one with a key a mark of our own: the JDK would
 * take the former for the entry and lose the key.
 */
[[nodiscard]] bool setAttributes(PKCS12_SAFEBAG& bag, const Pkcs12Attributes& attributes);

}  // namespace zel::cms

#endif  // ZEL_CMS_PKCS12_ATTRIBUTES_H_
