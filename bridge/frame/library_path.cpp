#include "bridge/frame/library_path.h"

#include <dlfcn.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace zel::bridge {

char* getLibraryPath() {
  char loadedFrom[PATH_MAX] = "";
  char resolved[PATH_MAX] = "";
  Dl_info object{};
  if (dladdr(reinterpret_cast<void*>(&getLibraryPath), &object) != 0) {
    std::snprintf(loadedFrom, sizeof loadedFrom, "%s", object.dli_fname);
  }
  if (realpath(loadedFrom, resolved) == nullptr) resolved[0] = '\0';

  const std::size_t size = std::strlen(resolved) + 1;
  auto* copy = static_cast<char*>(std::malloc(size));
  if (copy != nullptr) std::memcpy(copy, resolved, size);
  return copy;
}

}  // namespace zel::bridge
