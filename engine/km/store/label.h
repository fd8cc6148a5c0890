#ifndef ZEL_KM_STORE_LABEL_H_
#define ZEL_KM_STORE_LABEL_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/sys/result.h"

/**
 * @file
 * Labels: the names of entries, checked and converted where they come in, and nowhere else.
 *
 *     Result<Label> wanted = Label::given("server");      // text of a caller's
 *     Label label = Label::ofName("Größe 🔑");             // a name of another program's
 *     entry.friendlyName = label.name();                  // and back to a name
 */

namespace zel::km {

/**
 * A Label is a text of 1 to 511 bytes in the modified UTF-8 of the C interface. A default one is
 * empty, and stands in an entry that is still being put together.
 */
class Label {
 public:
  /** The longest label in bytes. */
  static constexpr std::size_t kLongest = 511;

  Label() = default;

  /** A label that a caller gives. ZELKM_ERR_PARAMETER (65) for text that is none. */
  static sys::Result<Label> given(std::string_view text);
  /** The label that is made of a name in real UTF-8, cut between two characters if need be. */
  static Label ofName(std::string_view name);
  /** A label that was kept somewhere as text(), and cannot have been changed there. */
  static Label kept(std::string text) { return Label(std::move(text)); }

  /** Modified UTF-8, as callers gave it. */
  const std::string& text() const { return text_; }
  const char* c_str() const { return text_.c_str(); }
  /** Real UTF-8, as other programs want it; it may hold U+0000. */
  std::string name() const;

  bool empty() const { return text_.empty(); }
  /** The label with " (number)" behind it, cut before that if need be. */
  Label numbered(int number) const;

  bool operator<(const Label& other) const { return text_ < other.text_; }
  bool operator==(const Label&) const = default;
  bool operator==(std::string_view text) const { return text_ == text; }

 private:
  explicit Label(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

}  // namespace zel::km

#endif  // ZEL_KM_STORE_LABEL_H_
