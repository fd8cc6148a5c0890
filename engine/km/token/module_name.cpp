#include "engine/km/token/module_name.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

namespace zel::km::token {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kArgumentsMark = "?args=";

/** Where p11-kit keeps its module configurations, the closest to the user first. */
std::vector<fs::path> configurationFolders() {
  std::vector<fs::path> folders;
  if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config != '\0') {
    folders.emplace_back(fs::path(config) / "pkcs11/modules");
  } else if (const char* home = std::getenv("HOME"); home != nullptr) {
    folders.emplace_back(fs::path(home) / ".config/pkcs11/modules");
  }
  folders.emplace_back("/etc/pkcs11/modules");
  folders.emplace_back(ZEL_P11KIT_MODULE_CONFIGS);
  return folders;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/** Reads the "key: value" lines of a module configuration; nothing when it names no module. */
std::optional<ModuleName> readConfiguration(const fs::path& path) {
  std::ifstream file(path);
  ModuleName name;
  std::string line;
  while (std::getline(file, line)) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos || line.front() == '#') continue;
    const std::string_view key = trimmed(std::string_view(line).substr(0, colon));
    const std::string_view value = trimmed(std::string_view(line).substr(colon + 1));
    if (key == "module") name.file = value;
    if (key == "x-init-reserved") name.arguments = value;
  }
  if (name.file.empty()) return std::nullopt;
  return name;
}

std::optional<ModuleName> configuredModule(const std::string& name) {
  for (const fs::path& folder : configurationFolders()) {
    std::optional<ModuleName> found = readConfiguration(folder / (name + ".module"));
    if (found) return found;
  }
  return std::nullopt;
}

/** A bare file name is looked for where p11-kit's modules are before dlopen looks elsewhere. */
std::string inModuleFolder(const std::string& file) {
  if (file.find('/') != std::string::npos) return file;
  const fs::path path = fs::path(ZEL_P11KIT_MODULE_PATH) / file;
  std::error_code ignored;
  return fs::exists(path, ignored) ? path.string() : file;
}

}  // namespace

ModuleName resolveModuleName(std::string_view name) {
  const std::size_t mark = name.find(kArgumentsMark);
  ModuleName resolved{.file = std::string(name.substr(0, mark)), .arguments = {}};
  if (resolved.file.find('/') == std::string::npos) {
    std::optional<ModuleName> configured = configuredModule(resolved.file);
    if (configured) resolved = *std::move(configured);
    resolved.file = inModuleFolder(resolved.file);
  }
  if (mark != std::string_view::npos) {
    resolved.arguments = name.substr(mark + kArgumentsMark.size());
  }
  return resolved;
}

}  // namespace zel::km::token
