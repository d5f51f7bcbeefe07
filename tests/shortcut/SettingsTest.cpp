// The settings other than the shortcut: their controls, and saving and applying them.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "shortcut/Settings.h"
#include "tests/shortcut/WindowTest.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {
namespace {

class Settings : public WindowTest {
 protected:
  Settings() {
    setenv("XDG_CONFIG_HOME", directory_.path("config").c_str(), 1);
    unsetenv("XDG_RUNTIME_DIR");  // no client runs
  }

  template <class Widget>
  [[nodiscard]] Widget* of(const char* name) const {
    return static_cast<Widget*>(panel_.findChild<QWidget*>(QLatin1String(name)));
  }

  /// The panel's values after showing these settings.
  SettingValues after(const std::vector<Setting>& settings) {
    panel_.begin(settings, false);
    return panel_.values();
  }

  [[nodiscard]] std::string content() const {
    std::ostringstream text;
    text << std::ifstream(file_).rdbuf();
    return text.str();
  }

  const tests::TemporaryDirectory directory_;
  const std::string file_ = directory_.path("file");
  SettingsPanel panel_;
};

SettingValues values(std::optional<std::string> dial, std::optional<std::string> open,
                     std::optional<std::string> region) {
  return {{"dial", std::move(dial)}, {"open", std::move(open)}, {"region", std::move(region)}};
}

TEST_F(Settings, TheControlsShowTheFile) {
  EXPECT_EQ(after({}), values({}, {}, {}));
  EXPECT_EQ(after({{"delay", "5", 1}, {"open", "sip", 2}, {"region", "NL", 3}}),
            values({}, "sip", "NL"));
  EXPECT_FALSE(of<QLineEdit>("program")->isEnabled());
  EXPECT_EQ(after({{"dial", "call --to {}", 1}}), values("call --to {}", {}, "NL"));
  EXPECT_TRUE(of<QLineEdit>("program")->isEnabled());
  panel_.begin({}, true);
  EXPECT_TRUE(panel_.startsAtLogin());
}

TEST_F(Settings, TheCountryIsTwoLetters) {
  auto* const region = of<QLineEdit>("region");
  region->setText(QStringLiteral("de"));
  EXPECT_EQ(panel_.values().at("region"), "DE");
  for (const char* const wrong : {"deu", "3", "d1"}) {
    region->setText(QLatin1String(wrong));
    EXPECT_FALSE(region->hasAcceptableInput()) << wrong;
  }
}

TEST_F(Settings, EveryControlHasAnAccessibleNameAndDescription) {
  for (const char* const name : {"action", "program", "region", "login"}) {
    EXPECT_FALSE(of<QWidget>(name)->accessibleName().isEmpty()) << name;
    EXPECT_FALSE(of<QWidget>(name)->accessibleDescription().isEmpty()) << name;
  }
}

TEST_F(Settings, TheyAreKeptInTheFile) {
  std::ofstream(file_) << "# mine\ndial = \"old\"\nformat = \"raw\"\n";
  auto all = values({}, {}, "NL");
  all.merge(*shortcutSettings(controlAltD(), 70));
  EXPECT_EQ(applySettings(file_, all, false), std::nullopt);
  EXPECT_EQ(content(),
            "# mine\nformat = \"raw\"\ndelay = 70\nhotkey = \"ctrl+alt+d\"\nregion = \"NL\"\n");
}

TEST_F(Settings, WhatCannotBeRunIsNotKept) {
  EXPECT_EQ(applySettings(file_, values("", {}, {}), false),
            "The program cannot be run: there is no program.");
  EXPECT_EQ(applySettings(file_, values({}, {}, {}), true), "Choose what to dial with first.");
  EXPECT_EQ(content(), "");
}

TEST_F(Settings, WhatFailsLeavesTheFileAsItWas) {
  std::ofstream(directory_.path("config")) << "no directory";
  std::ofstream(file_) << "open = \"sip\"\n";
  EXPECT_EQ(applySettings(file_, values({}, "tel", "NL"), true),
            "cannot write " + directory_.path("config/autostart/seldial-uc.desktop") + ".");
  EXPECT_EQ(content(), "open = \"sip\"\n");
}

TEST_F(Settings, AreShownBelowTheDelay) {
  auto* const panel = new SettingsPanel;
  const ShortcutWindow own(QtDesktop::shared().ports().keyboard(), {}, QStringLiteral("Save"),
                           panel);
  EXPECT_EQ(panel->parentWidget(), &own);
}

}  // namespace
}  // namespace seldial
