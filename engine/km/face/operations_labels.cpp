// Lists of labels.

#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/face/label_list.h"
#include "engine/km/face/operation.h"

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
    if (list == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
    return handOut(store.keyLabels(), list);
  });
}

int ZELKM_GetReqKeyDbLabelList(int handle, ZELKMLabelList** list) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    if (list == nullptr) return sys::Failure{ZELKM_ERR_NULL_PARAMETER};
    return handOut(store.requestLabels(), list);
  });
}
