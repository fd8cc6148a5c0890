#ifndef ZEL_KM_FACE_LABEL_LIST_H_
#define ZEL_KM_FACE_LABEL_LIST_H_

#include <memory>
#include <vector>

#include "engine/km/face/item_ptr.h"
#include "engine/km/store/label.h"
#include "engine/sys/result.h"

/**
 * @file
 * Lists of labels, between the C interface and stores.
 */

namespace zel::km {

using LabelListPtr = std::unique_ptr<ZELKMLabelList, ItemReleaser<ZELKM_FreeLabelList>>;

/** labelListOf makes the record of the C interface; null for no labels. */
LabelListPtr labelListOf(const std::vector<Label>& labels);

/**
 * The labels that a caller lists, up to the first node without one. ZELKM_ERR_NULL_PARAMETER (66)
 * for none, ZELKM_ERR_PARAMETER (65) for text that is no label.
 */
sys::Result<std::vector<Label>> labelsArgument(const ZELKMLabelList* list);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_LABEL_LIST_H_
