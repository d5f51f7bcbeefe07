#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <string>

#include "client/Protocol.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

HotKey read(const std::string& spelling) {
  std::string error;
  const auto hotKey = hotKeyFromSpelling(spelling, error);
  EXPECT_TRUE(hotKey) << spelling << ": " << error;
  return hotKey.value_or(HotKey());
}

std::string errorOf(const std::string& spelling) {
  std::string error;
  EXPECT_FALSE(hotKeyFromSpelling(spelling, error)) << spelling;
  return error;
}

/// The modifiers that are set, in the order of the command's keys.
std::string modifiersOf(const HotKey& hotKey) {
  const auto name = [&hotKey](std::uint64_t flag, const char* text) {
    return std::string((hotKey.modifierFlags & flag) != 0 ? text : "");
  };
  EXPECT_EQ(hotKey.modifierFlags & ~std::uint64_t{0x1E0000}, 0U) << "flags of no modifier";
  return name(platform::kModifierFlagOption, "alt ") +
         name(platform::kModifierFlagCommand, "command ") +
         name(platform::kModifierFlagControl, "ctrl ") +
         name(platform::kModifierFlagShift, "shift ");
}

TEST(HotKeySpelling, CtrlAltD) {
  const HotKey hotKey = read("ctrl+alt+d");
  EXPECT_EQ(modifiersOf(hotKey), "alt ctrl ");
  EXPECT_EQ(hotKey.virtualKey, 2);
}

TEST(HotKeySpelling, EachModifierHasItsNames) {
  const std::map<std::string, std::string> names = {
      {"ctrl", "ctrl "},   {"control", "ctrl "},  {"alt", "alt "},         {"option", "alt "},
      {"shift", "shift "}, {"super", "command "}, {"command", "command "}, {"cmd", "command "},
  };
  for (const auto& [name, modifier] : names) {
    EXPECT_EQ(modifiersOf(read(name + "+d")), modifier) << name;
  }
}

TEST(HotKeySpelling, OrderCaseAndSpacesDoNotMatter) {
  for (const char* const spelling : {"D+Alt+CTRL", " Ctrl + Alt + D ", "alt+d+ctrl"}) {
    const HotKey hotKey = read(spelling);
    EXPECT_EQ(modifiersOf(hotKey), "alt ctrl ") << spelling;
    EXPECT_EQ(hotKey.virtualKey, 2) << spelling;
  }
}

TEST(HotKeySpelling, AKeyAloneIsAHotKey) {
  const HotKey hotKey = read("F5");
  EXPECT_EQ(modifiersOf(hotKey), "");
  EXPECT_EQ(hotKey.virtualKey, 96);
}

TEST(HotKeySpelling, AModifierNamedTwiceCountsOnce) {
  EXPECT_EQ(modifiersOf(read("ctrl+control+d")), "ctrl ");
}

TEST(HotKeySpelling, LettersAndDigitsAreKeysByTheirUSPlace) {
  const std::string keys = "abcdefghijklmnopqrstuvwxyz0123456789";
  const int codes[] = {0, 11, 8,  2, 14, 3, 5,  4, 34, 38, 40, 37, 46, 45, 31, 35, 12, 15,
                       1, 17, 32, 9, 13, 7, 16, 6, 29, 18, 19, 20, 21, 23, 22, 26, 28, 25};
  for (std::size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(read(std::string("ctrl+") + keys[i]).virtualKey, codes[i]) << keys[i];
  }
}

TEST(HotKeySpelling, FunctionKeysGoTo20) {
  const int codes[] = {122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                       103, 111, 105, 107, 113, 106, 64, 79,  80,  90};
  for (std::size_t i = 0; i < std::size(codes); ++i) {
    EXPECT_EQ(read("f" + std::to_string(i + 1)).virtualKey, codes[i]) << i + 1;
  }
  EXPECT_EQ(errorOf("f21"), R"("f21" is neither a modifier nor a key)");
  EXPECT_EQ(errorOf("f0"), R"("f0" is neither a modifier nor a key)");
}

TEST(HotKeySpelling, NamedKeysAndPunctuation) {
  const std::map<std::string, int> codes = {
      {"space", 49}, {"tab", 48},     {"return", 36},    {"escape", 53},      {"left", 123},
      {"up", 126},   {"delete", 117}, {"backspace", 51}, {"keypadenter", 76}, {"-", 27},
      {"minus", 27}, {";", 41},       {"`", 50},         {"\\", 42},          {"keypadplus", 69},
  };
  for (const auto& [name, code] : codes) EXPECT_EQ(read("shift+" + name).virtualKey, code) << name;
}

TEST(HotKeySpelling, InsertHasNoVirtualKey) {
  EXPECT_EQ(errorOf("ctrl+Insert"),
            R"("insert" has no virtual key code, so it cannot be a hot key)");
}

TEST(HotKeySpelling, AHotKeyIsSpelledAsItIsRead) {
  for (const char* const spelling :
       {"ctrl+alt+d", "f5", "super+keypad0", "ctrl+alt+shift+super+minus", "super+help",
        "super+menu", "super+return", "super+keypadenter", "capslock", "alt+delete"}) {
    EXPECT_EQ(hotKeySpelling(read(spelling)), spelling);
  }
  EXPECT_EQ(hotKeySpelling(read("Cmd+Option+esc")), "alt+super+escape");
}

TEST(HotKeySpelling, AKeyWithoutANameHasNoSpelling) {
  EXPECT_EQ(hotKeySpelling({200, platform::kModifierFlagControl}), std::nullopt);
}

TEST(HotKeySpelling, AnythingElseIsAPlainError) {
  EXPECT_EQ(errorOf("ctrl+hyper+d"), R"("hyper" is neither a modifier nor a key)");
  EXPECT_EQ(errorOf("ctrl+é"), "\"é\" is neither a modifier nor a key");
  EXPECT_EQ(errorOf("ctrl+d+e"), R"("d" and "e" are two keys, a hot key has one)");
  EXPECT_EQ(errorOf("ctrl+alt"), "there are only modifiers; a hot key needs a key");
  for (const char* const gap : {"", "+", "ctrl+", "+d", "ctrl++d"}) {
    EXPECT_EQ(errorOf(gap), "a name is missing before or after a plus sign") << gap;
  }
}

}  // namespace
}  // namespace seldial
