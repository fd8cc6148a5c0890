#ifndef ZEL_KM_TOKEN_NUMBERED_LABELS_H_
#define ZEL_KM_TOKEN_NUMBERED_LABELS_H_

#include <string>
#include <string_view>
#include <vector>

/**
 * @file
 * Labels as names. Tokens let several objects have one label; whoever looks something up by label
 * needs them apart:
 *
 *     numberedLabels({"web", "web", "mail"})  is  {"web", "web (2)", "mail"}
 */

namespace zel::km::token {

/**
 * numberedLabels tells equal labels apart by numbers from 2 on, in the order given. A number that
 * would make a label that is there already is passed over.
 */
std::vector<std::string> numberedLabels(std::vector<std::string> labels);

/** boundedLabel cuts a label that is longer than labels may be, between two characters. */
std::string boundedLabel(std::string_view label);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_NUMBERED_LABELS_H_
