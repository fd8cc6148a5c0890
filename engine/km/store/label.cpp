#include "engine/km/store/label.h"

#include "engine/sys/modified_utf8.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

/** Cuts modified UTF-8 between two characters, one of which may be a pair of surrogates. */
std::string cutTo(std::string text, std::size_t longest) {
  if (text.size() <= longest) return text;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  std::size_t end = longest;
  while (end > 0 && (byte(end) & 0xC0U) == 0x80U) --end;
  const bool endsInHighSurrogate =
      end >= 3 && byte(end - 3) == 0xEDU && (byte(end - 2) & 0xF0U) == 0xA0U;
  text.resize(endsInHighSurrogate ? end - 3 : end);
  return text;
}

}  // namespace

sys::Result<Label> Label::given(std::string_view text) {
  if (text.empty() || text.size() > kLongest) {
    return sys::fail(ZELKM_ERR_PARAMETER, "a label of %zu bytes", text.size());
  }
  const sys::Result<std::string> readable = sys::toUtf8(text);
  if (!readable) return readable.failure();
  return Label(std::string(text));
}

Label Label::ofName(std::string_view name) {
  return Label(cutTo(sys::toModifiedUtf8(name), kLongest));
}

std::string Label::name() const {
  sys::Result<std::string> utf8 = sys::toUtf8(text_);
  // Text that was kept is text that was given, or made of a name.
  return utf8 ? std::move(utf8).value() : text_;
}

Label Label::numbered(int number) const {
  const std::string suffix = " (" + std::to_string(number) + ")";
  return Label(cutTo(text_, kLongest - suffix.size()) + suffix);
}

}  // namespace zel::km
