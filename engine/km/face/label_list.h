#ifndef ZEL_KM_FACE_LABEL_LIST_H_
#define ZEL_KM_FACE_LABEL_LIST_H_

#include <memory>
#include <vector>

#include "engine/km/face/item_ptr.h"
#include "engine/km/store/label.h"

namespace zel::km {

using LabelListPtr = std::unique_ptr<ZELKMLabelList, ItemReleaser<ZELKM_FreeLabelList>>;

/** labelListOf makes the record of the C interface; null for no labels. */
LabelListPtr labelListOf(const std::vector<Label>& labels);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_LABEL_LIST_H_
