#include "engine/km/face/item_names.h"

#include "engine/sys/memory.h"
#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

struct NamedField {
  char* ZELKMDNItem::*item;
  std::optional<std::string> cms::NameFields::*name;
};
constexpr NamedField kNamedFields[] = {
    {&ZELKMDNItem::cn, &cms::NameFields::cn}, {&ZELKMDNItem::ou, &cms::NameFields::ou},
    {&ZELKMDNItem::o, &cms::NameFields::o},   {&ZELKMDNItem::l, &cms::NameFields::l},
    {&ZELKMDNItem::s, &cms::NameFields::s},   {&ZELKMDNItem::pc, &cms::NameFields::pc},
    {&ZELKMDNItem::c, &cms::NameFields::c},
};
constexpr char* ZELKMDNItem::*kOptionalFields[] = {
    &ZELKMDNItem::optionalField1, &ZELKMDNItem::optionalField2, &ZELKMDNItem::optionalField3,
    &ZELKMDNItem::optionalField4};

char* handOutField(const std::optional<std::string>& text) {
  return text ? sys::handOutText(sys::toModifiedUtf8(*text)) : nullptr;
}

bool takeField(const char* text, std::optional<std::string>& field) {
  if (text == nullptr) return true;
  sys::Result<std::string> utf8 = sys::toUtf8(text);
  if (!utf8) return false;
  field = std::move(utf8).value();
  return true;
}

}  // namespace

DnItemPtr handOutName(const cms::NameFields& name, sys::ByteView der) {
  DnItemPtr item(sys::handOutRecord<ZELKMDNItem>());
  for (const NamedField& field : kNamedFields) {
    (*item).*field.item = handOutField(name.*field.name);
  }
  for (std::size_t i = 0; i < name.optionalFields.size(); ++i) {
    (*item).*kOptionalFields[i] = handOutField(name.optionalFields[i]);
  }
  item->derData = sys::handOutBytes(der);
  item->derLength = static_cast<std::uint32_t>(der.size());
  return item;
}

sys::Result<sys::Bytes> nameArgument(const ZELKMDNItem* dn) {
  if (dn == nullptr) return sys::fail(ZELKM_ERR_INVALID_DN_INPUT, "no name");
  cms::NameFields name;
  bool isText = true;
  for (const NamedField& field : kNamedFields) {
    isText = takeField((*dn).*field.item, name.*field.name) && isText;
  }
  for (std::size_t i = 0; i < name.optionalFields.size(); ++i) {
    isText = takeField((*dn).*kOptionalFields[i], name.optionalFields[i]) && isText;
  }
  if (!isText) return sys::Failure{ZELKM_ERR_INVALID_DN_INPUT};
  return cms::encodeName(name);
}

}  // namespace zel::km
