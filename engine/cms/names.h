#ifndef ZEL_CMS_NAMES_H_
#define ZEL_CMS_NAMES_H_

#include <array>
#include <optional>
#include <string>

#include "engine/cms/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Distinguished names: the attributes by name, and X.509 Names (RFC 5280, 4.1.2.4) as DER.
 */

namespace zel::cms {

/** NameFields are the attributes of a distinguished name, in real UTF-8. */
struct NameFields {
  std::optional<std::string> cn = {};
  std::optional<std::string> ou = {};
  std::optional<std::string> o = {};
  std::optional<std::string> l = {};
  std::optional<std::string> s = {};
  std::optional<std::string> pc = {};
  std::optional<std::string> c = {};
  /** Further attributes as "type=value": a short name ("DC", "emailAddress") or a dotted OID. */
  std::array<std::optional<std::string>, 4> optionalFields = {};

  bool operator==(const NameFields&) const = default;
};

/**
 * encodeName answers the DER of a Name with one attribute per RDN, in the order C, ST, L,
 * postalCode, O, OU, CN, then the further attributes. Absent and empty attributes are left out.
 *
 * ZELKM_ERR_INVALID_DN_INPUT when nothing is left, when the country is not two letters, and when a
 * text is not UTF-8, longer than RFC 5280's upper bound or of an unknown type.
 */
ZEL_CMS_API sys::Result<sys::Bytes> encodeName(const NameFields& fields);

/**
 * decodeName takes a Name apart. The first attribute of a kind fills its field; all others become
 * further attributes, and what exceeds their four places is to be found in the DER only.
 *
 * ZELKM_ERR_ASN when the bytes are not a Name.
 */
ZEL_CMS_API sys::Result<NameFields> decodeName(sys::ByteView der);

/**
 * canonicalName answers a form of the Name that is the same for all Names that RFC 5280, 7.1, holds
 * equal, whatever string types, letter case and spacing they were written with. It is what Names
 * are looked up by.
 */
ZEL_CMS_API sys::Result<sys::Bytes> canonicalName(sys::ByteView der);

}  // namespace zel::cms

#endif  // ZEL_CMS_NAMES_H_
