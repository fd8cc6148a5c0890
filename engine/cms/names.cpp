#include "engine/cms/names.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "engine/cms/openssl_ptr.h"
#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** The named attributes, in the order in which they are written. */
struct Attribute {
  int nid;
  std::optional<std::string> NameFields::*field;
};
constexpr Attribute kAttributes[] = {
    {NID_countryName, &NameFields::c},      {NID_stateOrProvinceName, &NameFields::s},
    {NID_localityName, &NameFields::l},     {NID_postalCode, &NameFields::pc},
    {NID_organizationName, &NameFields::o}, {NID_organizationalUnitName, &NameFields::ou},
    {NID_commonName, &NameFields::cn},
};

bool isCountry(std::string_view text) {
  const auto isLetter = [](unsigned char c) { return c < 0x80 && std::isalpha(c) != 0; };
  return text.size() == 2 && std::all_of(text.begin(), text.end(), isLetter);
}

bool addAttribute(X509_NAME* name, const ASN1_OBJECT* type, std::string_view value) {
  return X509_NAME_add_entry_by_OBJ(name, type, MBSTRING_UTF8,
                                    reinterpret_cast<const unsigned char*>(value.data()),
                                    static_cast<int>(value.size()), -1, 0) == 1;
}

/** Adds an attribute given as "type=value". */
bool addFurtherAttribute(X509_NAME* name, const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals + 1 == text.size()) return false;
  const std::unique_ptr<ASN1_OBJECT, Releaser<ASN1_OBJECT_free>> type(
      OBJ_txt2obj(text.substr(0, equals).c_str(), 0));
  return type && addAttribute(name, type.get(), std::string_view(text).substr(equals + 1));
}

std::string typeText(const ASN1_OBJECT* type) {
  const int nid = OBJ_obj2nid(type);
  if (nid != NID_undef) return OBJ_nid2sn(nid);
  char dotted[128];
  OBJ_obj2txt(dotted, sizeof dotted, type, 1);
  return dotted;
}

/** The value as UTF-8, or as RFC 4514 writes what is no text: "#" and the hexadecimal DER. */
std::string valueText(const ASN1_STRING* value) {
  unsigned char* utf8 = nullptr;
  const int length = ASN1_STRING_to_UTF8(&utf8, value);
  if (length >= 0) {
    std::string text(reinterpret_cast<const char*>(utf8), static_cast<std::size_t>(length));
    OPENSSL_free(utf8);
    return text;
  }
  ERR_clear_error();
  std::string text = "#";
  for (const std::uint8_t byte : encodeDer(i2d_ASN1_PRINTABLE, value)) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
  }
  return text;
}

/** Spaces at the ends gone and runs of them one, ASCII letters small. */
std::string canonicalText(std::string_view text) {
  std::string canonical;
  for (const char c : text) {
    const bool isSpace = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (!isSpace) {
      canonical += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    } else if (!canonical.empty() && canonical.back() != ' ') {
      canonical += ' ';
    }
  }
  if (!canonical.empty() && canonical.back() == ' ') canonical.pop_back();
  return canonical;
}

}  // namespace

sys::Result<sys::Bytes> encodeName(const NameFields& fields) {
  const NamePtr name(X509_NAME_new());
  if (!name) return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "make a name");

  for (const Attribute& attribute : kAttributes) {
    const std::optional<std::string>& value = fields.*attribute.field;
    if (!value || value->empty()) continue;
    if (attribute.nid == NID_countryName && !isCountry(*value)) {
      return sys::fail(ZELKM_ERR_INVALID_DN_INPUT, "the country \"%s\" is not two letters",
                       value->c_str());
    }
    if (!addAttribute(name.get(), OBJ_nid2obj(attribute.nid), *value)) {
      return cryptoFailure(ZELKM_ERR_INVALID_DN_INPUT, OBJ_nid2ln(attribute.nid));
    }
  }
  for (const std::optional<std::string>& text : fields.optionalFields) {
    if (!text || text->empty()) continue;
    if (!addFurtherAttribute(name.get(), *text)) {
      return cryptoFailure(ZELKM_ERR_INVALID_DN_INPUT, "use a further attribute of a name");
    }
  }

  if (X509_NAME_entry_count(name.get()) == 0) {
    return sys::fail(ZELKM_ERR_INVALID_DN_INPUT, "a name without any attribute");
  }
  return encodeDer(i2d_X509_NAME, name.get());
}

sys::Result<NameFields> decodeName(sys::ByteView der) {
  const NamePtr name = decodeDer<NamePtr>(d2i_X509_NAME, der);
  if (!name) return cryptoFailure(ZELKM_ERR_ASN, "read a name");

  NameFields fields;
  auto nextOptional = fields.optionalFields.begin();
  for (int i = 0; i < X509_NAME_entry_count(name.get()); ++i) {
    const X509_NAME_ENTRY* entry = X509_NAME_get_entry(name.get(), i);
    const ASN1_OBJECT* type = X509_NAME_ENTRY_get_object(entry);
    std::string value = valueText(X509_NAME_ENTRY_get_data(entry));

    const auto* named = std::find_if(
        std::begin(kAttributes), std::end(kAttributes),
        [&](const Attribute& attribute) { return attribute.nid == OBJ_obj2nid(type); });
    if (named != std::end(kAttributes) && !(fields.*named->field)) {
      fields.*named->field = std::move(value);
    } else if (nextOptional != fields.optionalFields.end()) {
      *nextOptional++ = typeText(type) + "=" + value;
    }
  }
  return fields;
}

sys::Result<sys::Bytes> canonicalName(sys::ByteView der) {
  const NamePtr name = decodeDer<NamePtr>(d2i_X509_NAME, der);
  const NamePtr canonical(X509_NAME_new());
  if (!name || !canonical) return cryptoFailure(ZELKM_ERR_ASN, "read a name");

  int previousRdn = -1;
  for (int i = 0; i < X509_NAME_entry_count(name.get()); ++i) {
    const X509_NAME_ENTRY* entry = X509_NAME_get_entry(name.get(), i);
    const std::string text = canonicalText(valueText(X509_NAME_ENTRY_get_data(entry)));
    const int rdn = X509_NAME_ENTRY_set(entry);
    // The last argument joins an attribute to the one before it in a multi-valued RDN.
    if (X509_NAME_add_entry_by_OBJ(
            canonical.get(), X509_NAME_ENTRY_get_object(entry), V_ASN1_UTF8STRING,
            reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()), -1,
            rdn == previousRdn ? -1 : 0) != 1) {
      return cryptoFailure(ZELKM_ERR_MEMORY_ALLOCATE, "compare a name");
    }
    previousRdn = rdn;
  }
  return encodeDer(i2d_X509_NAME, canonical.get());
}

}  // namespace zel::cms
