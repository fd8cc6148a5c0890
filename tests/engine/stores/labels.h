#ifndef ZEL_TESTS_ENGINE_STORES_LABELS_H_
#define ZEL_TESTS_ENGINE_STORES_LABELS_H_

#include <cstddef>
#include <ostream>
#include <string>

#include "engine/km/store/label.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"

/**
 * @file
 * What the engine's types for text are made of in tests: `"web"_label`, `fileName(path)`,
 * `password("secret")`.
 */

namespace zel::km {

inline Label operator""_label(const char* text, std::size_t length) {
  return Label::ofName({text, length});
}

inline void PrintTo(const Label& label, std::ostream* out) { *out << label.text(); }

inline sys::FileName fileName(const std::string& path) {
  return sys::FileName::given(path.c_str()).value();
}

inline sys::Password password(const std::string& text) {
  return sys::Password::given(text.c_str()).value();
}

}  // namespace zel::km

#endif  // ZEL_TESTS_ENGINE_STORES_LABELS_H_
