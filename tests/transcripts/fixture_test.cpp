#include "com_nelo_zel_vosmar_basic_CMSKeyDatabase.h"
#include "tests/transcripts/native_test.h"

namespace zel::test {
namespace {

/** The fixture itself: a transcript that is not what happened has to fail, and show why. */
class Fixture : public NativeTest {
 protected:
  Fixture() : NativeTest("CMSKeyDatabase") {
    callOn(env, nullptr, Java_com_nelo_zel_vosmar_basic_CMSKeyDatabase_c_1OpenKeyDb, nullptr,
           nullptr);
  }
};

TEST_F(Fixture, AcceptsExactlyTheLinesThatHappened) {
  EXPECT_TRUE(transcriptIs("return 65\nheld nothing\n"));
  EXPECT_TRUE(transcriptIs("\n      return 65\n      held nothing\n    "));
}

TEST_F(Fixture, RefusesALineTooFewOrTooMany) {
  EXPECT_FALSE(transcriptIs("return 65"));
  EXPECT_FALSE(transcriptIs("return 65\nheld nothing\nheld nothing"));
  EXPECT_FALSE(transcriptIs(""));
}

TEST_F(Fixture, ShowsWhereTheTranscriptsPart) {
  const testing::AssertionResult result = transcriptIs("return 65\nheld handle 1");
  EXPECT_STREQ(result.message(),
               "the transcript differs from line 2 on (- expected, + actual)\n"
               "  return 65\n- held handle 1\n+ held nothing\n");
}

}  // namespace
}  // namespace zel::test
