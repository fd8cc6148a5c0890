#include "engine/km/face/label_list.h"

#include "engine/sys/memory.h"

namespace zel::km {

LabelListPtr labelListOf(const std::vector<Label>& labels) {
  LabelListPtr list;
  // From the last to the first, so that what is done can always be released from its head.
  for (auto label = labels.rbegin(); label != labels.rend(); ++label) {
    auto* node = sys::handOutRecord<ZELKMLabelList>();
    node->next = list.release();
    list.reset(node);
    node->label = sys::handOutText(label->text());
  }
  return list;
}

}  // namespace zel::km
