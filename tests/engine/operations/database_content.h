#ifndef ZEL_TESTS_ENGINE_OPERATIONS_DATABASE_CONTENT_H_
#define ZEL_TESTS_ENGINE_OPERATIONS_DATABASE_CONTENT_H_

#include <ostream>
#include <string>
#include <vector>

#include "engine/sys/bytes.h"

namespace zel::km {

/** All that a database tells of an entry, a key or a pending request. */
struct EntryView {
  std::string label = {};
  std::vector<sys::Bytes> chain = {}; /**< empty for a request */
  sys::Bytes request = {};
  sys::Bytes privateKey = {}; /**< PKCS #8 */
  bool trusted = false;
  bool isDefault = false;

  bool operator==(const EntryView&) const = default;
};

void PrintTo(const EntryView& entry, std::ostream* out);

/** The whole content of a database, in its order, keys before requests. */
std::vector<EntryView> contentOf(int handle, const char* password);

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_OPERATIONS_DATABASE_CONTENT_H_
