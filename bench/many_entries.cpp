// How the time of one access to a key database depends on how many entries there are: open, read
// one entry, close, as every native of the bridge does.

#include "tests/engine/km/many_entries.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <random>
#include <string>

#include "bridge/kmlib/zelkm.h"
#include "engine/km/keydb/creation.h"
#include "tests/engine/cms/tools.h"
#include "tests/engine/stores/labels.h"

namespace zel::km {
namespace {

constexpr const char* kPassword = "correct horse";

/** A key database of so many entries, made when it is first asked for. */
const std::string& databaseOf(int count) {
  static const cms::TemporaryFolder folder;
  static std::map<int, std::string> files;
  const auto found = files.find(count);
  if (found != files.end()) return found->second;
  const std::string file = folder.path(std::to_string(count) + ".kdb");
  const auto store = createKeyDatabase(fileName(file), password(kPassword), {}).value();
  if (!insertEntries(*store, count)) std::abort();
  return files.emplace(count, file).first->second;
}

/** Opens, lets the access read an entry chosen at random, and closes, over and over. */
template <typename Access>
void accessEntries(benchmark::State& state, Access access) {
  const int count = static_cast<int>(state.range(0));
  const std::string& file = databaseOf(count);
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): each run reads the same entries
  std::uniform_int_distribution<int> any(0, count - 1);
  for ([[maybe_unused]] auto _ : state) {
    int handle = 0;
    const bool read = ZELKM_OpenKeyDb(file.c_str(), kPassword, &handle) == ZELKM_OK &&
                      access(handle, any(random));
    ZELKM_CloseKeyDb(handle);
    if (!read) {
      state.SkipWithError("an entry could not be read");
      break;
    }
  }
}

void byLabel(benchmark::State& state) {
  accessEntries(state, [](int handle, int number) {
    ZELKMKeyItem* item = nullptr;
    const int code = ZELKM_GetKeyItemByLabel(handle, labelOfEntry(number).c_str(), &item);
    ZELKM_FreeKeyItem(item);
    return code == ZELKM_OK;
  });
}

void byPublicKey(benchmark::State& state) {
  accessEntries(state, [](int handle, int number) {
    const sys::Bytes key = publicKeyOfEntry(number);
    ZELKMKeyItemList* list = nullptr;
    const int code = ZELKM_GetKeyItemsByPublicKey(handle, static_cast<std::uint32_t>(key.size()),
                                                  key.data(), &list);
    const bool found = list != nullptr;
    ZELKM_FreeKeyItemList(list);
    return code == ZELKM_OK && found;
  });
}

BENCHMARK(byLabel)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(byPublicKey)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zel::km
