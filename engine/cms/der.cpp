#include "engine/cms/der.h"

#include <openssl/asn1.h>
#include <openssl/err.h>

#include "engine/sys/trace.h"

namespace zel::cms {

namespace {

/** One element off the front of the bytes. */
struct Element {
  int tag = 0;
  bool isConstructed = false;
  sys::ByteView whole;
  sys::ByteView content;
};

/** An empty whole when the bytes do not begin with an element of definite length. */
Element firstElement(sys::ByteView der) {
  const unsigned char* at = der.data();
  long length = 0;
  Element element;
  int tagClass = 0;
  const int flags =
      ASN1_get_object(&at, &length, &element.tag, &tagClass, static_cast<long>(der.size()));
  constexpr int kMalformed = 0x80;
  constexpr int kIndefinite = 0x01;
  if ((flags & (kMalformed | kIndefinite)) != 0) {
    ERR_clear_error();
    return {};
  }
  element.isConstructed = (flags & V_ASN1_CONSTRUCTED) != 0;
  if (tagClass != V_ASN1_UNIVERSAL) element.tag = -1;
  element.content = {at, static_cast<std::size_t>(length)};
  element.whole = {der.data(), at + length};
  return element;
}

bool isSequence(const Element& element) {
  return element.isConstructed && element.tag == V_ASN1_SEQUENCE && !element.whole.empty();
}

void append(sys::Bytes& to, sys::ByteView bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

sys::Bytes element(int tag, bool isConstructed, sys::ByteView content) {
  const auto length = static_cast<int>(content.size());
  const auto headerLength =
      static_cast<std::size_t>(ASN1_object_size(isConstructed, length, tag)) - content.size();
  sys::Bytes der(headerLength);
  unsigned char* at = der.data();
  ASN1_put_object(&at, isConstructed, length, tag, V_ASN1_UNIVERSAL);
  append(der, content);
  return der;
}

}  // namespace

std::vector<sys::ByteView> elementsOf(sys::ByteView sequence) {
  const Element outer = firstElement(sequence);
  if (!isSequence(outer)) return {};
  std::vector<sys::ByteView> elements;
  for (sys::ByteView rest = outer.content; !rest.empty();) {
    const Element element = firstElement(rest);
    if (element.whole.empty()) return {};
    elements.push_back(element.whole);
    rest = rest.subspan(element.whole.size());
  }
  return elements;
}

sys::Result<sys::Bytes> toBeSigned(sys::ByteView der) {
  const std::vector<sys::ByteView> elements = elementsOf(der);
  if (elements.empty() || !isSequence(firstElement(elements.front()))) {
    return sys::fail(ZELKM_ERR_ASN, "no signed structure");
  }
  return sys::Bytes(elements.front().begin(), elements.front().end());
}

sys::Bytes assembleSigned(sys::ByteView toBeSigned, sys::ByteView algorithm,
                          sys::ByteView signature) {
  sys::Bytes bits = {0};  // no unused bits
  append(bits, signature);

  sys::Bytes content(toBeSigned.begin(), toBeSigned.end());
  append(content, algorithm);
  append(content, element(V_ASN1_BIT_STRING, false, bits));
  return element(V_ASN1_SEQUENCE, true, content);
}

}  // namespace zel::cms
