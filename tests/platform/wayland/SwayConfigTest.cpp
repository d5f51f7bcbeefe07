// Finding the bindings of a combination in sway's configuration.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/VirtualKeys.h"
#include "platform/wayland/SwayConfig.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial::platform::wayland {
namespace {

constexpr std::uint32_t kKeyD = 40;

bool binds(const std::string& text, const std::string& directory = "/nonexistent") {
  const SwayCombination combination{kKeyD, kHotKeyControl | kHotKeyOption};
  const auto isD = [](const std::string& symbol) { return symbol == "d" || symbol == "D"; };
  return findBinding({text, directory}, combination, isD).has_value();
}

TEST(SwayCombinationText, NamesModifiersAsSwayDoes) {
  EXPECT_EQ((SwayCombination{71, 0}.text()), "71");
  EXPECT_EQ((SwayCombination{kKeyD, kHotKeyControl | kHotKeyOption | kHotKeyShift | kHotKeyCommand}
                 .text()),
            "Ctrl+Mod1+Shift+Mod4+40");
}

TEST(SwayConfiguration, BindsByCodeAndBySymbolInAnyOrderAndCase) {
  for (const auto* const line :
       {"bindsym Ctrl+Mod1+d exec menu", "bindsym alt+control+D exec menu",
        "  bindcode Ctrl+Mod1+40 exec menu", "bindsym --release --locked Ctrl+Mod1+d exec menu",
        "set $mod Mod1\nbindsym Ctrl+$mod+d exec menu",
        "set $mod Mod1\nset $modctrl $mod+Ctrl\nset $modctrl Mod1+Ctrl\nbindsym $modctrl+d exec a",
        "bindsym {\n  Ctrl+Mod1+d exec menu\n}", "bindsym \\\n Ctrl+Mod1+d exec menu"}) {
    EXPECT_TRUE(binds(line)) << line;
  }
}

TEST(SwayConfiguration, OtherLinesDoNotBindIt) {
  for (const auto* const line :
       {"", "bindsym Ctrl+Mod1+f exec menu", "bindsym Ctrl+d exec menu",
        "bindsym Ctrl+Mod1+Shift+d exec menu", "bindsym Ctrl+Mod1+Mod5+d exec menu",
        "bindcode Ctrl+Mod1+41 exec menu", "# bindsym Ctrl+Mod1+d exec menu",
        "bindsym Ctrl+Mod1+d+f exec menu", "unbindsym Ctrl+Mod1+d", "bindsym",
        "mode \"a\" {\n  bindsym Ctrl+Mod1+d exec menu\n}"}) {
    EXPECT_FALSE(binds(line)) << line;
  }
}

TEST(SwayConfiguration, IncludedFilesCount) {
  const tests::TemporaryDirectory directory;
  std::filesystem::create_directory(directory.path("config.d"));
  std::ofstream(directory.path("config.d/keys")) << "include ../more\ninclude keys\n";
  std::ofstream(directory.path("more")) << "bindsym Ctrl+$alt+d exec menu\n";
  const std::string here = std::filesystem::path(directory.path("more")).parent_path();
  for (const std::string& name :
       {std::string("config.d/*"), here + "/more", std::string("./more")}) {
    EXPECT_TRUE(binds("set $alt Mod1\ninclude " + name, here)) << name;
    EXPECT_FALSE(binds("include " + name, here)) << name;
  }
  EXPECT_FALSE(binds("set $alt Mod1\ninclude $(cat more)\ninclude none", here));
  EXPECT_TRUE(binds("set $alt Mod1\ninclude none\ninclude config.d/none more\ninclude more", here));
}

TEST(SwayConfiguration, ABlockEndsAtItsBrace) {
  EXPECT_TRUE(binds("mode \"a\" {\n bindsym x exec b\n}\nbindsym Ctrl+Mod1+d exec menu"));
}

}  // namespace
}  // namespace seldial::platform::wayland
