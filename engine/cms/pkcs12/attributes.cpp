#include "engine/cms/pkcs12/attributes.h"

#include <string_view>

namespace zel::cms {

namespace {

using ObjectPtr = std::unique_ptr<ASN1_OBJECT, Releaser<ASN1_OBJECT_free>>;

/** By which the JDK knows a trusted certificate; its value is a key purpose. */
constexpr char kJdkTrust[] = "2.16.840.1.113894.746875.1.1";

// Under the arc of our own; docs/engine.md tells what they say.
constexpr char kKeyRingDefault[] =
    "1.2.840.113556.1.8000.2554.6597.57826.22428.17853.38604.6747763.14605345.1";
constexpr char kKeyRingTrust[] =
    "1.2.840.113556.1.8000.2554.6597.57826.22428.17853.38604.6747763.14605345.2";
constexpr char kKeyRingRequest[] =
    "1.2.840.113556.1.8000.2554.6597.57826.22428.17853.38604.6747763.14605345.3";

/** The first value of an attribute, null when the bag has no such attribute. */
const ASN1_TYPE* valueOf(const PKCS12_SAFEBAG& bag, const char* oid) {
  const ObjectPtr object(OBJ_txt2obj(oid, 1));
  const STACK_OF(X509_ATTRIBUTE)* attributes = PKCS12_SAFEBAG_get0_attrs(&bag);
  const int at = X509at_get_attr_by_OBJ(attributes, object.get(), -1);
  return at < 0 ? nullptr : X509_ATTRIBUTE_get0_type(X509at_get_attr(attributes, at), 0);
}

constexpr int kUnitLength = 2;  // of UTF-16, which friendly names are written in

std::string toUtf8(sys::ByteView units) {
  char* converted = OPENSSL_uni2utf8(units.data(), static_cast<int>(units.size()));
  if (converted == nullptr) return {};
  std::string text = converted;
  OPENSSL_free(converted);
  return text;
}

/**
 * A name may hold U+0000, where OpenSSL's conversion ends: it gets the parts between. One at the
 * end is the terminator that some programs write.
 */
std::string friendlyNameOf(PKCS12_SAFEBAG& bag) {
  const ASN1_TYPE* value = PKCS12_SAFEBAG_get0_attr(&bag, NID_friendlyName);
  if (value == nullptr || value->type != V_ASN1_BMPSTRING) return {};
  const sys::ByteView units = viewOf(value->value.bmpstring);
  const auto isUnit = [&](std::size_t at) { return at + kUnitLength <= units.size(); };
  std::string name;
  for (std::size_t begin = 0; isUnit(begin);) {
    std::size_t end = begin;
    while (isUnit(end) && (units[end] != 0 || units[end + 1] != 0)) end += kUnitLength;
    name += toUtf8(units.subspan(begin, end - begin));
    begin = end + kUnitLength;
    if (isUnit(begin)) name += '\0';
  }
  return name;
}

bool addFriendlyName(PKCS12_SAFEBAG& bag, const std::string& name) {
  // OpenSSL's setter for UTF-8 refuses what lies beyond the basic plane; UTF-16 carries it.
  unsigned char* utf16 = nullptr;
  int length = 0;
  if (OPENSSL_utf82uni(name.data(), static_cast<int>(name.size()), &utf16, &length) == nullptr) {
    return false;
  }
  // A terminator of OpenSSL's comes along, which only a name that ends like one needs.
  if (name.back() != '\0') length -= kUnitLength;
  const bool done = PKCS12_add_friendlyname_uni(&bag, utf16, length) == 1;
  OPENSSL_free(utf16);
  return done;
}

bool addLocalKeyId(PKCS12_SAFEBAG& bag, const sys::Bytes& id) {
  sys::Bytes bytes = id;  // OpenSSL's setter takes what it may not change without const
  return PKCS12_add_localkeyid(&bag, bytes.data(), static_cast<int>(bytes.size())) == 1;
}

bool addValue(PKCS12_SAFEBAG& bag, const char* oid, int type, sys::ByteView value) {
  return PKCS12_add1_attr_by_txt(&bag, oid, type, value.data(), static_cast<int>(value.size())) ==
         1;
}

/** The value says again what the attribute does, for whoever looks at the file with other tools. */
bool addMark(PKCS12_SAFEBAG& bag, const char* oid, std::string_view meaning) {
  return addValue(bag, oid, V_ASN1_UTF8STRING, sys::bytesOf(meaning));
}

bool addJdkTrust(PKCS12_SAFEBAG& bag) {
  const ASN1_OBJECT* anyUse = OBJ_nid2obj(NID_anyExtendedKeyUsage);
  // The length -1 says that the value is an object of the type, not its bytes.
  return PKCS12_add1_attr_by_txt(&bag, kJdkTrust, V_ASN1_OBJECT,
                                 reinterpret_cast<const unsigned char*>(anyUse), -1) == 1;
}

}  // namespace

sys::Bytes localKeyIdOf(std::size_t place) {
  const auto number = static_cast<std::uint32_t>(place + 1);
  return {static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
          static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

Pkcs12Attributes attributesOf(PKCS12_SAFEBAG& bag) {
  Pkcs12Attributes attributes;
  attributes.friendlyName = friendlyNameOf(bag);
  const ASN1_TYPE* id = PKCS12_SAFEBAG_get0_attr(&bag, NID_localKeyID);
  if (id != nullptr && id->type == V_ASN1_OCTET_STRING) {
    const sys::ByteView bytes = viewOf(id->value.octet_string);
    attributes.localKeyId.assign(bytes.begin(), bytes.end());
  }
  attributes.trusted = valueOf(bag, kJdkTrust) != nullptr || valueOf(bag, kKeyRingTrust) != nullptr;
  attributes.isDefault = valueOf(bag, kKeyRingDefault) != nullptr;
  const ASN1_TYPE* request = valueOf(bag, kKeyRingRequest);
  if (request != nullptr && request->type == V_ASN1_SEQUENCE) {
    const sys::ByteView bytes = viewOf(request->value.sequence);
    attributes.request.assign(bytes.begin(), bytes.end());
  }
  ERR_clear_error();
  return attributes;
}

bool setAttributes(PKCS12_SAFEBAG& bag, const Pkcs12Attributes& attributes) {
  const bool hasKey = !attributes.localKeyId.empty();
  if (!attributes.friendlyName.empty() && !addFriendlyName(bag, attributes.friendlyName)) {
    return false;
  }
  if (hasKey && !addLocalKeyId(bag, attributes.localKeyId)) return false;
  if (attributes.trusted && !(hasKey ? addMark(bag, kKeyRingTrust, "trusted") : addJdkTrust(bag))) {
    return false;
  }
  if (attributes.isDefault && !addMark(bag, kKeyRingDefault, "default")) return false;
  return attributes.request.empty() ||
         addValue(bag, kKeyRingRequest, V_ASN1_SEQUENCE, attributes.request);
}

}  // namespace zel::cms
