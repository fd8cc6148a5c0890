#include "tests/engine/km/many_entries.h"

#include <cstdint>
#include <cstdio>

#include "tests/engine/cms/tools.h"

namespace zel::km {

std::string labelOfEntry(int number) {
  char label[32];
  std::snprintf(label, sizeof label, "the entry of number %06d", number);
  return label;
}

sys::Bytes publicKeyOfEntry(int number) {
  // RFC 8410: SEQUENCE of the algorithm's identifier and a BIT STRING of 32 bytes.
  sys::Bytes info = {0x30, 0x2a, 0x30, 0x05, 0x06, 0x03, 0x2b, 0x65, 0x70, 0x03, 0x21, 0x00};
  info.resize(info.size() + 32);
  for (std::size_t byte = 0; byte < sizeof number; ++byte) {
    info[info.size() - 1 - byte] = static_cast<std::uint8_t>(number >> (8 * byte));
  }
  return info;
}

sys::Status insertEntries(Store& store, int count) {
  const cms::TestAuthority authority("Many");
  return inTransaction(store, [&]() -> sys::Status {
    for (int number = 0; number < count; ++number) {
      KeyEntry entry;
      entry.label = Label::ofName(labelOfEntry(number));
      entry.certificate = authority.issueFor(publicKeyOfEntry(number), entry.label.text());
      sys::Status inserted = store.insertKey(entry);
      if (!inserted) return inserted;
    }
    return sys::success();
  });
}

}  // namespace zel::km
