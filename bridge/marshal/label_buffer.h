#ifndef BRIDGE_MARSHAL_LABEL_BUFFER_H_
#define BRIDGE_MARSHAL_LABEL_BUFFER_H_

#include <cstddef>

namespace zel::bridge {

/**
 * LabelBuffer is where a native copies each label of a list before Java sees it. A label of 512
 * bytes or more is cut at the last whole character that fits.
 */
class LabelBuffer {
 public:
  /** copy answers the buffer, with the label in it. */
  const char* copy(const char* label);

 private:
  static constexpr std::size_t kSize = 512;
  char text_[kSize] = {};
};

}  // namespace zel::bridge

#endif  // BRIDGE_MARSHAL_LABEL_BUFFER_H_
