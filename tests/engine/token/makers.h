#ifndef ZEL_TESTS_ENGINE_TOKEN_MAKERS_H_
#define ZEL_TESTS_ENGINE_TOKEN_MAKERS_H_

#include <string>

#include "tests/engine/cms/tools.h"

/**
 * @file
 * Tokens of two makers, each in a folder that the test gives.
 */

namespace zel::km::token {

inline constexpr const char* kPin = "123456";
inline constexpr const char* kWrongPin = "654321";

inline constexpr const char* kSoftHsmModule = "/usr/lib/softhsm/libsofthsm2.so";
/** A label that is not the same in every encoding. */
inline constexpr const char* kSoftHsmLabel = "T\u00f6k\u20acn";
inline constexpr const char* kNssLabel = "NSS Certificate DB";

/** SoftHSM 2 with a token directory of its own; SOFTHSM2_CONF points to it. */
class SoftHsm {
 public:
  explicit SoftHsm(const cms::TemporaryFolder& folder);
  /** Adds a token whose PIN is kPin. */
  void addToken(const std::string& label) const;
};

/** NSS softokn with a key database of its own, which is its token. */
class NssDatabase {
 public:
  enum class Pin { wanted, none };

  explicit NssDatabase(const cms::TemporaryFolder& folder, Pin pin = Pin::wanted,
                       const std::string& name = "nss");
  std::string moduleName() const;
  /** As certutil and its like take it. */
  std::string folder() const { return "sql:" + folder_; }
  std::string pinFile() const { return pinFile_; }

 private:
  std::string folder_;
  std::string pinFile_;
};

}  // namespace zel::km::token

#endif  // ZEL_TESTS_ENGINE_TOKEN_MAKERS_H_
