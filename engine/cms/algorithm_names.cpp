#include "engine/cms/algorithm_names.h"

#include <openssl/objects.h>

namespace zel::cms {

std::string dottedDecimal(const ASN1_OBJECT* identifier) {
  char text[128];
  OBJ_obj2txt(text, sizeof text, identifier, 1);
  return text;
}

std::string usualName(const ASN1_OBJECT* identifier) {
  const int nid = OBJ_obj2nid(identifier);
  return nid == NID_undef ? dottedDecimal(identifier) : OBJ_nid2ln(nid);
}

}  // namespace zel::cms
