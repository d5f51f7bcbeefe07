#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/VirtualKeys.h"
#include "shortcut/Options.h"

namespace seldial {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string errorOf(const std::vector<std::string>& arguments) {
  std::string error;
  return readShortcutOptions(arguments, error) ? "none" : error;
}

ShortcutOptions optionsOf(const std::vector<std::string>& arguments) {
  std::string error;
  const auto options = readShortcutOptions(arguments, error);
  EXPECT_TRUE(options) << error;
  return options.value_or(ShortcutOptions());
}

TEST(ShortcutOptions, WithoutArgumentsItPrintsAndBeginsWithNothing) {
  const auto options = optionsOf({});
  EXPECT_FALSE(options.hotKey);
  EXPECT_FALSE(options.delay);
  EXPECT_EQ(options.socket, "");
  EXPECT_EQ(optionsOf({"--print"}).socket, "");
}

TEST(ShortcutOptions, ValuesFollowOrAreJoined) {
  const auto options =
      optionsOf({"--hotkey", "Ctrl+Shift+F5", "--delay=65535", "--socket", "/tmp/seldial"});
  ASSERT_TRUE(options.hotKey);
  EXPECT_EQ(options.hotKey->modifierFlags,
            platform::kModifierFlagControl | platform::kModifierFlagShift);
  EXPECT_EQ(options.hotKey->virtualKey, 96);
  EXPECT_EQ(options.delay, 65535);
  EXPECT_EQ(options.socket, "/tmp/seldial");
}

TEST(ShortcutOptions, InvalidArgumentsAreReported) {
  EXPECT_THAT(errorOf({"--hotkey", "ctrl+"}), StartsWith("--hotkey ctrl+: "));
  EXPECT_THAT(errorOf({"--delay", "65536"}), HasSubstr("from 0 to 65535, not 65536"));
  EXPECT_THAT(errorOf({"--delay", ""}), HasSubstr("--delay takes"));
  EXPECT_THAT(errorOf({"--socket", "seldial"}), HasSubstr("--socket takes"));
  EXPECT_THAT(errorOf({"--socket=/a", "--client", "b"}), HasSubstr("--client takes"));
  EXPECT_EQ(errorOf({"--client=/a"}), "--client needs --socket");
  EXPECT_EQ(errorOf({"--socket"}), "--socket needs a value");
  EXPECT_EQ(errorOf({"--socket=/tmp/a", "--print"}),
            "--print, --socket and --settings cannot be used together");
  EXPECT_EQ(errorOf({"--settings", "--print"}),
            "--print, --socket and --settings cannot be used together");
  EXPECT_EQ(errorOf({"--style"}), "unknown option --style");
  EXPECT_EQ(errorOf({"extra"}), "unknown option extra");
}

TEST(ShortcutOptions, TheSettingsAreKeptInAFile) {
  const auto options = optionsOf({"--settings", "--config", "/tmp/file"});
  EXPECT_TRUE(options.settings);
  EXPECT_EQ(options.configuration, "/tmp/file");
}

TEST(ShortcutOptions, HelpHasTwoSpellings) {
  EXPECT_TRUE(optionsOf({"--help"}).help);
  EXPECT_TRUE(optionsOf({"-h"}).help);
  EXPECT_FALSE(optionsOf({}).help);
}

}  // namespace
}  // namespace seldial
