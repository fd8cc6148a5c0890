#include "engine/km/store/numbered_labels.h"

#include <set>

#include "engine/km/store/store.h"
#include "engine/sys/modified_utf8.h"

namespace zel::km {

namespace {

std::string cutTo(std::string_view label, std::size_t longest) {
  if (label.size() <= longest) return std::string(label);
  std::size_t end = longest;
  const auto continues = [&](std::size_t at) {
    return (static_cast<unsigned char>(label[at]) & 0xC0U) == 0x80U;
  };
  while (end > 0 && continues(end)) --end;
  return std::string(label.substr(0, end));
}

std::string numbered(const std::string& label, int number) {
  const std::string suffix = " (" + std::to_string(number) + ")";
  return cutTo(label, kLongestLabel - suffix.size()) + suffix;
}

}  // namespace

std::vector<std::string> numberedLabels(std::vector<std::string> labels) {
  std::set<std::string> inUse(labels.begin(), labels.end());
  std::set<std::string> seen;
  for (std::string& label : labels) {
    if (seen.insert(label).second) continue;
    int number = 2;
    while (inUse.contains(numbered(label, number))) ++number;
    label = numbered(label, number);
    inUse.insert(label);
  }
  return labels;
}

std::vector<std::string> labelsOfNames(const std::vector<std::string>& names) {
  std::vector<std::string> labels;
  labels.reserve(names.size());
  for (const std::string& name : names) labels.push_back(boundedLabel(sys::toModifiedUtf8(name)));
  return numberedLabels(std::move(labels));
}

std::string boundedLabel(std::string_view label) { return cutTo(label, kLongestLabel); }

}  // namespace zel::km
