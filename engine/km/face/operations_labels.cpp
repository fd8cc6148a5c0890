// Lists of labels: of what is in a store, and of the stores themselves.

#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/certstore/store_folder.h"
#include "engine/km/face/entry_arguments.h"
#include "engine/km/face/label_list.h"
#include "engine/km/face/locators.h"
#include "engine/km/face/operation.h"
#include "engine/km/token/token_access.h"

using namespace zel;
using namespace zel::km;

namespace {

sys::Status handOut(sys::Result<std::vector<Label>> labels, ZELKMLabelList** list) {
  if (!labels) return labels.failure();
  *list = labelListOf(labels.value()).release();
  return sys::success();
}

}  // namespace

int ZELKM_GetKeyDbLabelList(int handle, ZELKMLabelList** list) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(list); !given) return given;
    return handOut(store.keyLabels(), list);
  });
}

int ZELKM_GetReqKeyDbLabelList(int handle, ZELKMLabelList** list) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (sys::Status given = requireOutput(list); !given) return given;
    return handOut(store.requestLabels(), list);
  });
}

int ZELKM_GetCryptoTokenLabelList(const char* moduleName, ZELKMLabelList** list) {
  return answering(__func__, [&]() -> sys::Status {
    if (sys::Status given = requireOutput(list); !given) return given;
    const sys::Result<std::string> module = moduleNameArgument(moduleName);
    if (!module) return module.failure();
    // The certificate stores stand in for the tokens of a module without a name.
    return handOut(
        module.value().empty() ? certstore::storeNames() : token::listTokenLabels(module.value()),
        list);
  });
}
