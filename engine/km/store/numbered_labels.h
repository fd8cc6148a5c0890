#ifndef ZEL_KM_STORE_NUMBERED_LABELS_H_
#define ZEL_KM_STORE_NUMBERED_LABELS_H_

#include <utility>
#include <vector>

#include "engine/km/store/label.h"

/**
 * @file
 * Labels as names. Tokens and folders let several objects have one name; whoever looks something up
 * by label needs them apart:
 *
 *     numberedLabels({"web", "web", "mail"})  is  {"web", "web (2)", "mail"}
 */

namespace zel::km {

/**
 * numberedLabels tells equal labels apart by numbers from 2 on, in the order given. A number that
 * would make a label that is there already is passed over.
 */
std::vector<Label> numberedLabels(std::vector<Label> labels);

/** numberLabels does so with the labels of entries. */
template <typename Entry>
void numberLabels(std::vector<Entry>& entries) {
  std::vector<Label> labels;
  labels.reserve(entries.size());
  for (Entry& entry : entries) labels.push_back(std::move(entry.label));
  labels = numberedLabels(std::move(labels));
  for (std::size_t at = 0; at < entries.size(); ++at) entries[at].label = std::move(labels[at]);
}

}  // namespace zel::km

#endif  // ZEL_KM_STORE_NUMBERED_LABELS_H_
