// Whole key databases into key ring files, and back.

#include <optional>
#include <utility>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/operation.h"
#include "engine/km/work/key_rings.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

using namespace zel;
using namespace zel::km;

int ZELKM_Kdb2Kyr(const char* keyDbFileName, const char* keyDbPassword, const char* kyrFileName,
                  const char* kyrPassword) {
  return answering(__func__, [&]() -> sys::Status {
    const sys::Result<sys::FileName> database = sys::FileName::given(keyDbFileName);
    if (!database) return database.failure();
    sys::Result<sys::FileName> ring = sys::FileName::given(kyrFileName);
    if (!ring) return ring.failure();
    const sys::Result<std::optional<sys::Password>> password =
        sys::Password::givenOrKept(keyDbPassword);
    if (!password) return password.failure();
    sys::Result<sys::Password> ringPassword = sys::Password::given(kyrPassword);
    if (!ringPassword) return ringPassword.failure();
    return toKeyRing(database.value(), password.value(),
                     {std::move(ring).value(), std::move(ringPassword).value()});
  });
}

int ZELKM_Kyr2Kdb(const char* kyrFileName, const char* kyrPassword, const char* keyDbFileName,
                  const char* keyDbPassword) {
  return answering(__func__, [&]() -> sys::Status {
    sys::Result<sys::FileName> ring = sys::FileName::given(kyrFileName);
    if (!ring) return ring.failure();
    const sys::Result<sys::FileName> database = sys::FileName::given(keyDbFileName);
    if (!database) return database.failure();
    sys::Result<sys::Password> ringPassword = sys::Password::givenOrEmpty(kyrPassword);
    if (!ringPassword) return ringPassword.failure();
    const sys::Result<sys::Password> password = sys::Password::given(keyDbPassword);
    if (!password) return password.failure();
    return fromKeyRing({std::move(ring).value(), std::move(ringPassword).value()}, database.value(),
                       password.value());
  });
}
