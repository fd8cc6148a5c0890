#include "tests/engine/work/work_test.h"

#include <filesystem>
#include <memory>

#include "engine/cms/certificates.h"
#include "engine/km/keydb/creation.h"
#include "tests/engine/work/failing_store.h"

namespace zel::km {

namespace {

/** More calls than any use case makes. */
constexpr int kMostCalls = 60;

/** The database of all tests, with the folder that it lies in. */
struct SharedDatabase {
  cms::TemporaryFolder folder;
  std::unique_ptr<Store> store;

  explicit SharedDatabase(const char* password)
      : store(createKeyDatabase(fileName(folder.path("keys.kdb")), km::password(password), {})
                  .value()) {}
};

Store& sharedStore(const char* password) {
  static SharedDatabase database(password);
  return *database.store;
}

}  // namespace

std::string lineOf(const KeyEntry& entry) {
  return "key " + entry.label.text() + " " + cms::thumbprint(entry.certificate) +
         (entry.privateKey.present() ? " with its key" : "") + (entry.trusted ? " trusted" : "") +
         (entry.isDefault ? " default" : "");
}

std::string lineOf(const RequestEntry& entry) {
  return "request " + entry.label.text() + " " + cms::thumbprint(entry.request) +
         (entry.privateKey.present() ? " with its key" : "");
}

std::vector<std::string> contentOf(Store& store) {
  std::vector<std::string> lines;
  const auto keys = store.keyLabels();
  for (const Label& label : keys.value()) lines.push_back(lineOf(store.findKey(label).value()));
  const auto requests = store.requestLabels();
  for (const Label& label : requests.value()) {
    lines.push_back(lineOf(store.findRequest(label).value()));
  }
  return lines;
}

WorkTest::WorkTest() : store_(sharedStore(kPassword)) {
  const auto keys = store_.keyLabels();
  for (const Label& label : keys.value()) EXPECT_TRUE(store_.removeKey(label));
  const auto requests = store_.requestLabels();
  for (const Label& label : requests.value()) EXPECT_TRUE(store_.removeRequest(label));
}

bool WorkTest::exists(const char* name) const {
  return std::filesystem::exists(folder_.path(name));
}

void WorkTest::expectAllOrNothing(const std::function<sys::Status(Store&)>& useCase) {
  const std::vector<std::string> before = content();
  for (int call = 1; call <= kMostCalls; ++call) {
    FailingStore failing(store_, call);
    const sys::Status done = useCase(failing);
    if (!failing.hasFailed()) {
      EXPECT_GT(call, 1) << "the use case does not ask the store";
      EXPECT_EQ(done.code(), ZELKM_OK);
      return;
    }
    EXPECT_EQ(done.code(), FailingStore::kCode) << "call " << call;
    ASSERT_EQ(content(), before) << "call " << call;
  }
  FAIL() << "the use case never comes to its end";
}

}  // namespace zel::km
