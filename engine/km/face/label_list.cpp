#include "engine/km/face/label_list.h"

#include <ranges>
#include <utility>

#include "engine/sys/memory.h"
#include "engine/sys/trace.h"

namespace zel::km {

LabelListPtr labelListOf(const std::vector<Label>& labels) {
  LabelListPtr list;
  // From the last to the first, so that what is done can always be released from its head.
  for (const Label& label : std::views::reverse(labels)) {
    auto* node = sys::handOutRecord<ZELKMLabelList>();
    node->next = list.release();
    list.reset(node);
    node->label = sys::handOutText(label.text());
  }
  return list;
}

sys::Result<std::vector<Label>> labelsArgument(const ZELKMLabelList* list) {
  std::vector<Label> labels;
  for (; list != nullptr && list->label != nullptr; list = list->next) {
    sys::Result<Label> label = Label::given(list->label);
    if (!label) return label.failure();
    labels.push_back(std::move(label).value());
  }
  if (labels.empty()) return sys::fail(ZELKM_ERR_NULL_PARAMETER, "no label is listed");
  return labels;
}

}  // namespace zel::km
