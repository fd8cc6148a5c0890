#include "engine/km/work/arriving_entries.h"

#include <gmock/gmock.h>

#include "tests/engine/stores/test_entries.h"
#include "tests/engine/work/work_test.h"

namespace zel::km {
namespace {

using testing::ElementsAre;

class ArrivingEntriesTest : public WorkTest {
 protected:
  std::vector<Label> labels() { return store().keyLabels().value(); }

  const cms::TestAuthority web_{"Web"};
  const KeyEntry entry_ = entryOf("", web_);
};

TEST_F(ArrivingEntriesTest, AreLabelledByNameElseBySubject) {
  ASSERT_TRUE(insertNamed(store(), "mine", entry_));
  ASSERT_TRUE(insertNamed(store(), "", entry_));
  EXPECT_THAT(labels(), ElementsAre("mine", "Web"));
}

TEST_F(ArrivingEntriesTest, AreNumberedWhereTheirLabelIsInUse) {
  ASSERT_TRUE(insertNamed(store(), "mine", entry_));
  ASSERT_TRUE(insertNamed(store(), "mine", entry_));
  ASSERT_TRUE(insertNamed(store(), "mine", entry_));
  EXPECT_THAT(labels(), ElementsAre("mine", "mine (2)", "mine (3)"));
}

TEST_F(ArrivingEntriesTest, AreKeptOnceAndNotTrustedAsIssuers) {
  EXPECT_FALSE(hasCertificate(store(), web_.certificate()).value());
  ASSERT_TRUE(addIssuer(store(), web_.certificate()));
  EXPECT_TRUE(hasCertificate(store(), web_.certificate()).value());
  ASSERT_TRUE(addIssuer(store(), web_.certificate()));
  EXPECT_THAT(labels(), ElementsAre("Web"));
  EXPECT_FALSE(store().findKey("Web"_label).value().trusted);
}

TEST_F(ArrivingEntriesTest, AreKnownByTheirCertificateNotByTheirKey) {
  insert(entryOf("web", web_));
  EXPECT_FALSE(hasCertificate(store(), cms::TestAuthority("Root").issueFor(web_)).value());
}

}  // namespace
}  // namespace zel::km
