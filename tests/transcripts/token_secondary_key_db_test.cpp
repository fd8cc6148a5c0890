#include "bridge/token/secondary_key_db.h"
#include "tests/transcripts/token_passages.h"

namespace zel::test {
namespace {

/** A token with a key database file beside it. */
class SecondaryKeyDbTest : public TokenNative {
 protected:
  void open(const char* fileName, const char* password) {
    convert([&] {
      code = bridge::openTokenKeyDb({"p11.so", "token", "1234"}, {fileName, password}, &handles);
      return nullptr;
    });
  }

  void close() {
    convert([&] {
      bridge::closeTokenKeyDb(handles);
      return nullptr;
    });
  }

  bridge::TokenHandles handles{91, 92};
  int code = -1;
};

TEST_F(SecondaryKeyDbTest, IsAttachedToTheTokenAndDetachedBeforeTheClose) {
  open("a.kdb", "secret");
  close();
  EXPECT_TRANSCRIPT(kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    return null
    held handle 1
    held handle 2
    held secondary key database of 1
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
  EXPECT_EQ(code, 0);
}

TEST_F(SecondaryKeyDbTest, IsOpenedWithoutAPassword) {
  open("a.kdb", nullptr);
  close();
  EXPECT_TRANSCRIPT(kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 0
    return null
    held handle 1
    held handle 2
    held secondary key database of 1
    ZELKM_UnsetSecondaryKeyDb(1) = 0
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
}

TEST_F(SecondaryKeyDbTest, IsLeftOutWithoutAFileName) {
  open(nullptr, "secret");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(handles.secondary, 0);
  close();
  EXPECT_TRANSCRIPT(kTokenOpened + R"(
    return null
    held handle 1
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
}

TEST_F(SecondaryKeyDbTest, IsNotOpenedWhenTheTokenCannotBe) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  open("a.kdb", "secret");
  EXPECT_TRANSCRIPT(kTokenNotOpened + R"(
    return null
    held nothing
  )");
  EXPECT_EQ(code, 137);
  EXPECT_EQ(handles.secondary, 0);
}

TEST_F(SecondaryKeyDbTest, ClosesTheTokenWhenItCannotBeOpened) {
  recorder().faults.failCall("ZELKM_OpenKeyDbX", 2);
  open("a.kdb", "wrong");
  EXPECT_TRANSCRIPT(kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "wrong"}) = 1
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
  EXPECT_EQ(code, 1);
  EXPECT_EQ(handles.token, 0);
}

/** The handle of a token that could not be opened is as the library left it. */
TEST_F(SecondaryKeyDbTest, ClosesAndForgetsNoHandleThatCameWithAFailedTokenOpen) {
  library().answers["ZELKM_OpenKeyDbX"] = 137;
  library().outputsDespiteErrors = true;
  open("a.kdb", "secret");
  EXPECT_TRANSCRIPT(R"(
    ZELKM_OpenKeyDbX({type 2, module "p11.so", token "token", password "1234"}) = 137, handle 1
    return null
    held handle 1
  )");
  EXPECT_EQ(code, 137);
  EXPECT_EQ(handles.token, 1);
  EXPECT_EQ(handles.secondary, 0);
}

TEST_F(SecondaryKeyDbTest, ClosesNoHandleThatCameWithItsOwnFailedOpen) {
  recorder().faults.failCall("ZELKM_OpenKeyDbX", 2);
  library().outputsDespiteErrors = true;
  open("a.kdb", "wrong");
  EXPECT_TRANSCRIPT(kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "wrong"}) = 1, handle 2
    ZELKM_CloseKeyDb(1) = 0
    return null
    held handle 2
  )");
  EXPECT_EQ(code, 1);
  EXPECT_EQ(handles.token, 0);
}

TEST_F(SecondaryKeyDbTest, ClosesItselfThenTheTokenWhenItCannotBeAttached) {
  library().answers["ZELKM_SetSecondaryKeyDb"] = 136;
  open("a.kdb", "secret");
  EXPECT_TRANSCRIPT(kTokenOpened + R"(
    ZELKM_OpenKeyDbX({type 1, file "a.kdb", password "secret"}) = 0, handle 2
    ZELKM_SetSecondaryKeyDb(1, 2) = 136
    ZELKM_CloseKeyDb(2) = 0
    ZELKM_CloseKeyDb(1) = 0
    return null
    held nothing
  )");
  EXPECT_EQ(code, 136);
  EXPECT_EQ(handles.token, 0);
  EXPECT_EQ(handles.secondary, 0);
}

TEST_F(SecondaryKeyDbTest, CausesNoCallWithoutHandles) {
  handles = {0, 0};
  close();
  EXPECT_TRANSCRIPT(R"(
    return null
    held nothing
  )");
}

}  // namespace
}  // namespace zel::test
