#include <memory>
#include <string>
#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/item_ptr.h"
#include "engine/km/operation.h"
#include "engine/sys/memory.h"

using namespace zel;      // NOLINT(google-build-using-namespace)
using namespace zel::km;  // NOLINT(google-build-using-namespace)

namespace {

using LabelListPtr = std::unique_ptr<ZELKMLabelList, ItemReleaser<ZELKM_FreeLabelList>>;

LabelListPtr listOf(const std::vector<std::string>& labels) {
  LabelListPtr list;
  // From the last to the first, so that what is done can always be released from its head.
  for (auto label = labels.rbegin(); label != labels.rend(); ++label) {
    auto* node = sys::handOutRecord<ZELKMLabelList>();
    node->next = list.release();
    list.reset(node);
    node->label = sys::handOutText(*label);
  }
  return list;
}

sys::Status handOut(sys::Result<std::vector<std::string>> labels, ZELKMLabelList** list) {
  if (!labels) return labels.failure();
  *list = listOf(labels.value()).release();
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
