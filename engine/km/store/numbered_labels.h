#ifndef ZEL_KM_STORE_NUMBERED_LABELS_H_
#define ZEL_KM_STORE_NUMBERED_LABELS_H_

#include <string>
#include <string_view>
#include <vector>

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
std::vector<std::string> numberedLabels(std::vector<std::string> labels);

/** labelsOfNames makes labels of names in real UTF-8: modified UTF-8, bounded, numbered. */
std::vector<std::string> labelsOfNames(const std::vector<std::string>& names);

/** makeLabels does so in place, for entries whose label is a name so far. */
template <typename Entry>
void makeLabels(std::vector<Entry>& entries) {
  std::vector<std::string> names;
  names.reserve(entries.size());
  for (const Entry& entry : entries) names.push_back(entry.label);
  const std::vector<std::string> labels = labelsOfNames(names);
  for (std::size_t at = 0; at < entries.size(); ++at) entries[at].label = labels[at];
}

/** boundedLabel cuts a label that is longer than labels may be, between two characters. */
std::string boundedLabel(std::string_view label);

}  // namespace zel::km

#endif  // ZEL_KM_STORE_NUMBERED_LABELS_H_
