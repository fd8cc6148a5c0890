#include "tests/engine/stores/labels.h"

#include <gmock/gmock.h>

#include "engine/km/store/numbered_labels.h"

namespace zel::km {

namespace {

using testing::ElementsAre;

constexpr const char* kKeyName = "\xF0\x9F\x94\x91";
constexpr const char* kKeyText = "\xED\xA0\xBD\xED\xB4\x91";

TEST(LabelTest, OfACallerIsTextOfOneTo511Bytes) {
  EXPECT_EQ(Label::given("web").value().text(), "web");
  EXPECT_TRUE(Label::given(std::string(511, 'x')));
  EXPECT_EQ(Label::given("").code(), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(Label::given(std::string(512, 'x')).code(), ZELKM_ERR_PARAMETER);
  EXPECT_EQ(Label::given("a\xFF").code(), ZELKM_ERR_PARAMETER);
}

TEST(LabelTest, IsKeptAsGivenAndShownAsAName) {
  const Label label = Label::given(kKeyText).value();
  EXPECT_EQ(label.text(), kKeyText);
  EXPECT_EQ(label.name(), kKeyName);
}

TEST(LabelTest, OfANameIsModifiedUtf8CutBetweenCharacters) {
  EXPECT_EQ(Label::ofName(kKeyName).text(), kKeyText);
  EXPECT_EQ(Label::ofName(std::string(510, 'x') + "€").text(), std::string(510, 'x'));
  EXPECT_EQ(Label::ofName(std::string(508, 'x') + kKeyName).text(), std::string(508, 'x'));
  EXPECT_EQ(Label::ofName(std::string(505, 'x') + kKeyName).text().size(), 511U);
  EXPECT_EQ(Label::ofName(std::string(511, 'x') + "y").text(), std::string(511, 'x'));
}

TEST(LabelTest, IsCutForItsNumber) {
  EXPECT_EQ("web"_label.numbered(2), "web (2)");
  EXPECT_EQ(Label::ofName(std::string(511, 'x')).numbered(10).text(),
            std::string(506, 'x') + " (10)");
}

TEST(NumberedLabels, TellEqualOnesApartAndPassOverWhatIsThere) {
  EXPECT_THAT(numberedLabels({"web"_label, "web"_label, "mail"_label}),
              ElementsAre("web", "web (2)", "mail"));
  EXPECT_THAT(numberedLabels({"web"_label, "web"_label, "web (2)"_label, "web"_label}),
              ElementsAre("web", "web (3)", "web (2)", "web (4)"));
}

}  // namespace

}  // namespace zel::km
