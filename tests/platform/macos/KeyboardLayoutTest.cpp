#include "platform/Keyboard.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::StrEq;
using tests::apple;

struct MacKeyboardLayout : tests::AppleTest {
  [[nodiscard]] std::optional<std::string> translateKey(std::uint16_t keyCode = 12) const {
    return layout->translate(keyCode, 0x1100);
  }

  std::shared_ptr<KeyboardLayout> layout = makeSystemKeyboardLayout();
};

TEST_F(MacKeyboardLayout, TranslatesByTheCurrentSourceAndReleasesIt) {
  EXPECT_THAT(translateKey(), Optional(StrEq("q")));
  EXPECT_THAT(apple().calls,
              ElementsAre("TISCopyCurrentKeyboardInputSource",
                          "TISGetInputSourceProperty current source layout data",
                          "UCKeyTranslate by current key 12 action 0 modifiers 4352 type 43 "
                          "options 0 dead key state 0 room 255",
                          "CFRelease current source"));
}

TEST_F(MacKeyboardLayout, FallsBackToTheASCIICapableSourceOnceTheFirstIsReleased) {
  apple().currentSourceHasLayout = false;
  EXPECT_THAT(translateKey(), Optional(StrEq("q")));
  EXPECT_THAT(
      apple().calls,
      ElementsAre("TISCopyCurrentKeyboardInputSource",
                  "TISGetInputSourceProperty current source layout data",
                  "CFRelease current source", "TISCopyCurrentASCIICapableKeyboardLayoutInputSource",
                  "TISGetInputSourceProperty fallback source layout data",
                  "UCKeyTranslate by fallback key 12 action 0 modifiers 4352 type 43 "
                  "options 0 dead key state 0 room 255",
                  "CFRelease fallback source"));
}

TEST_F(MacKeyboardLayout, TranslatesNothingIfNeitherSourceHasALayout) {
  apple().currentSourceHasLayout = false;
  apple().fallbackSourceHasLayout = false;
  EXPECT_EQ(translateKey(), std::nullopt);
  EXPECT_THAT(apple().calls, ElementsAre("TISCopyCurrentKeyboardInputSource",
                                         "TISGetInputSourceProperty current source layout data",
                                         "CFRelease current source",
                                         "TISCopyCurrentASCIICapableKeyboardLayoutInputSource",
                                         "TISGetInputSourceProperty fallback source layout data",
                                         "CFRelease fallback source"));
}

TEST_F(MacKeyboardLayout, TranslatesNothingIfThereIsNoSource) {
  apple().hasCurrentSource = false;
  apple().hasFallbackSource = false;
  EXPECT_EQ(translateKey(), std::nullopt);
  EXPECT_THAT(apple().calls, ElementsAre("TISCopyCurrentKeyboardInputSource",
                                         "TISCopyCurrentASCIICapableKeyboardLayoutInputSource"));
}

TEST_F(MacKeyboardLayout, TranslatesNothingIfTheSystemFails) {
  apple().translationStatus = -50;
  EXPECT_EQ(translateKey(), std::nullopt);
  EXPECT_EQ(apple().calls.back(), "CFRelease current source");
}

TEST_F(MacKeyboardLayout, TranslatesNothingIfAKeyTypesNoCharacter) {
  apple().translation = {};
  EXPECT_EQ(translateKey(), std::nullopt);
}

TEST_F(MacKeyboardLayout, IsReadAgainForEachKey) {
  (void)translateKey(0);
  newCalls();
  (void)translateKey(65535);
  EXPECT_EQ(apple().calls.size(), 4U);
}

TEST_F(MacKeyboardLayout, ReturnsUtf8) {
  apple().translation = {0x41, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0xD83D, 0xDD0A};
  EXPECT_THAT(translateKey(), Optional(StrEq("A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"
                                             "\xF0\x9F\x94\x8A")));
}

TEST_F(MacKeyboardLayout, ReturnsTheFirstAndTheLastCharacterOfFourBytes) {
  apple().translation = {0xD800, 0xDC00, 0xDBFF, 0xDFFF};
  EXPECT_THAT(translateKey(), Optional(StrEq("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF")));
}

TEST_F(MacKeyboardLayout, ReplacesHalfASurrogatePair) {
  const std::string replacement = "\xEF\xBF\xBD";
  apple().translation = {0xD83D, 0x61, 0xDD0A, 0xD83D, 0xD83D, 0xDD0A, 0xD83D};
  EXPECT_THAT(translateKey(), Optional(StrEq(replacement + "a" + replacement + replacement +
                                             "\xF0\x9F\x94\x8A" + replacement)));
}

TEST_F(MacKeyboardLayout, DoesNotTakeALowSurrogateForAHighOne) {
  apple().translation = {0xDC00, 0xDC00};
  EXPECT_THAT(translateKey(), Optional(StrEq("\xEF\xBF\xBD\xEF\xBF\xBD")));
}

TEST_F(MacKeyboardLayout, TakesUpTo255Units) {
  apple().translation = std::vector<UniChar>(255, 'x');
  EXPECT_THAT(translateKey(), Optional(std::string(255, 'x')));
}

}  // namespace
}  // namespace seldial::platform
