#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/engine/certstore/test_stores.h"

namespace zel::km::certstore {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class StoreAccess : public StoreTest {
 protected:
  static int changePassword(const char* name) {
    KeyDbLocator named = locator(name, "");
    named.newPassword = "secret";
    return ZELKM_ChangeKeyDbPwdX(&named);
  }
  /** 0 or 1, or the negative code. */
  static int isPasswordRequired(const char* name) {
    const KeyDbLocator named = locator(name);
    unsigned char required = 9;
    const int code = ZELKM_IsPasswordRequired(&named, &required);
    return code == ZELKM_OK ? required : -code;
  }
  std::string made(const char* name, mode_t mode) const {
    fs::create_directories(path(name));
    for (const char* above : {".dotnet", ".dotnet/corefx", ".dotnet/corefx/cryptography",
                              ".dotnet/corefx/cryptography/x509stores"}) {
      EXPECT_EQ(::chmod(home_.path(above).c_str(), 0700), 0);
    }
    EXPECT_EQ(::chmod(path(name).c_str(), mode), 0);
    return path(name);
  }

  cms::TestAuthority owner_{"Owner"};
};

TEST_F(StoreAccess, ListsTheStores) {
  ZELKMLabelList* list = nullptr;
  ASSERT_EQ(ZELKM_GetCryptoTokenLabelList("", &list), ZELKM_OK);
  std::vector<std::string> names;
  for (const ZELKMLabelList* node = list; node != nullptr; node = node->next) {
    names.emplace_back(node->label);
  }
  ZELKM_FreeLabelList(list);
  EXPECT_THAT(names, ElementsAre(kMy, kRoot, kAuthorities));
  for (const std::string& name : names) EXPECT_GT(open(name.c_str()), 0) << name;
}

TEST_F(StoreAccess, OpensAStoreThatWasNeverWrittenToAndLeavesItSo) {
  const int my = open(kMy);
  EXPECT_THAT(labels(my), IsEmpty());
  EXPECT_EQ(ZELKM_DeleteKey(my, "web"), ZELKM_ERR_KEY_GET_BY_LABEL);
  EXPECT_FALSE(fs::exists(home_.path(".dotnet")));
}

TEST_F(StoreAccess, KnowsNoOtherStores) {
  for (const char* name : {"", "My", "CurrentUser/Other", "LocalMachine/My", "CurrentUser/../My"}) {
    EXPECT_EQ(open(name), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST) << name;
    EXPECT_EQ(isPasswordRequired(name), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST) << name;
  }
  EXPECT_EQ(open(nullptr), -ZELKM_ERR_NULL_PARAMETER);
  EXPECT_EQ(isPasswordRequired(nullptr), -ZELKM_ERR_NULL_PARAMETER);
}

TEST_F(StoreAccess, TakesNoPassword) {
  EXPECT_GT(open(kMy, ""), 0);
  EXPECT_EQ(open(kMy, "secret"), -ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED);
  EXPECT_EQ(isPasswordRequired(kMy), 0);
  EXPECT_EQ(changePassword(kMy), ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED);
}

TEST_F(StoreAccess, RefusesAStoreThatOthersMayWriteTo) {
  for (const mode_t mode : {0777, 01777, 0770}) {
    made("my", mode);
    EXPECT_EQ(open(kMy), -ZELKM_ERR_FILE_OPEN_NOT_ALLOWED) << mode;
  }
  made("my", 0755);
  EXPECT_GT(open(kMy), 0);
}

TEST_F(StoreAccess, RefusesAStoreInAFolderThatOthersMayWriteTo) {
  made("my", 0700);
  ASSERT_EQ(::chmod(home_.path(".dotnet").c_str(), 0777), 0);
  EXPECT_EQ(open(kMy), -ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  ASSERT_EQ(::chmod(home_.path(".dotnet").c_str(), 0775), 0);
  EXPECT_GT(open(kMy), 0);
}

TEST_F(StoreAccess, RefusesAStoreThatBecameOpenToOthersMeanwhile) {
  const int my = open(kMy);
  made("my", 0777);
  ZELKMLabelList* list = nullptr;
  EXPECT_EQ(ZELKM_GetKeyDbLabelList(my, &list), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  EXPECT_EQ(insert(my, "web", owner_), ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
  EXPECT_THAT(files(), IsEmpty());
}

TEST_F(StoreAccess, RefusesAStoreOfSomebodyElse) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root makes folders for others";
  ASSERT_EQ(::chown(made("my", 0700).c_str(), 4711, 4711), 0);
  EXPECT_EQ(open(kMy), -ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(StoreAccess, FollowsALinkToAFolderOfTheUser) {
  fs::create_directory(home_.path("elsewhere"));
  made("root", 0700);
  fs::create_directory_symlink(home_.path("elsewhere"), path("my"));
  ASSERT_EQ(::chmod(home_.path("elsewhere").c_str(), 0700), 0);
  ASSERT_EQ(insert(open(kMy), "web", owner_), ZELKM_OK);
  ASSERT_EQ(::chmod(home_.path("elsewhere").c_str(), 0777), 0);
  EXPECT_EQ(open(kMy), -ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(StoreAccess, RefusesAFileInThePlaceOfAFolder) {
  made("root", 0700);
  home_.write(".dotnet/corefx/cryptography/x509stores/my", cms::text("no folder"));
  EXPECT_EQ(open(kMy), -ZELKM_ERR_FILE_OPEN_NOT_ALLOWED);
}

TEST_F(StoreAccess, GoesOnWithoutHome) {
  const cms::HomeVariable noHome(nullptr);
  // Of the user's own stores only the names are asked for.
  EXPECT_EQ(isPasswordRequired(kMy), 0);
}

}  // namespace
}  // namespace zel::km::certstore
