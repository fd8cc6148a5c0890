// The library as a whole: its beginning and end, its trace, its cryptography.

#include <set>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/keys.h"
#include "engine/km/face/handle_table.h"
#include "engine/km/face/operation.h"
#include "engine/km/keydb/output_files.h"
#include "engine/km/keydb/password_cache.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/sys/file_name.h"
#include "engine/sys/mutex.h"
#include "engine/sys/password.h"
#include "engine/sys/trace.h"

using namespace zel;
using namespace zel::km;

namespace {

// The caller gives the block away for good. It is kept, not freed, because nothing forbids to give
// the same one twice.
void keepForGood(ZELKMCryptoInfo* info) {
  struct Kept {
    sys::Mutex mutex;
    std::set<ZELKMCryptoInfo*> infos ZEL_GUARDED_BY(mutex);
  };
  static auto* kept = new Kept;
  const sys::Lock lock(kept->mutex);
  kept->infos.insert(info);
}

}  // namespace

int ZELKM_Init() {
  return answering(__func__, []() -> sys::Status {
    sys::traceLine("the key management library starts");
    return sys::success();
  });
}

int ZELKM_CleanAll() {
  return answering(__func__, []() -> sys::Status {
    HandleTable::instance().closeAll();
    PasswordCache::instance().forgetAll();
    sys::traceLine("the key management library has closed all handles and forgotten all passwords");
    sys::stopTrace();
    return sys::success();
  });
}

int ZELKM_StartTrace(const char* componentTag, const char* traceFileName, int64_t firstSetting,
                     int64_t secondSetting) {
  return answering(__func__, [&]() -> sys::Status {
    if (traceFileName == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
    const sys::Result<sys::FileName> name = sys::FileName::given(traceFileName);
    if (!name) return name.failure();
    sys::Status free = checkIsNoKeyDatabase(name.value());
    if (!free) return free;
    return sys::startTrace(componentTag, name.value().path().c_str(),
                           {firstSetting, secondSetting});
  });
}

int ZELKM_SetCryptoInfo(ZELKMCryptoInfo* info) {
  return answering(__func__, [&]() -> sys::Status {
    if (info == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
    keepForGood(info);
    return setCryptoMode(info->firstFlag != 0, info->secondFlag != 0);
  });
}

uint32_t ZELKM_GetMaxCryptoKeySize(uint32_t selector) {
  return selector == 1 ? uint32_t{cms::kMaxKeySize} : 0;
}
