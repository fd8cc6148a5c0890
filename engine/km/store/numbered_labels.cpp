#include "engine/km/store/numbered_labels.h"

#include <set>

namespace zel::km {

std::vector<Label> numberedLabels(std::vector<Label> labels) {
  std::set<Label> inUse(labels.begin(), labels.end());
  std::set<Label> seen;
  for (Label& label : labels) {
    if (seen.insert(label).second) continue;
    int number = 2;
    while (inUse.contains(label.numbered(number))) ++number;
    label = label.numbered(number);
    inUse.insert(label);
  }
  return labels;
}

}  // namespace zel::km
