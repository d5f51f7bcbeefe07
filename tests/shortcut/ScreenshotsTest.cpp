// Pictures of the window in each of its states, for the manual, in the theme and at the scale that
// the environment asks for; and that there is something to see on them.
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QSet>
#include <algorithm>
#include <cstdlib>

#include "hotkey/QKKeyStrings.h"
#include "shortcut/Settings.h"
#include "tests/platform/x11/ForeignGrabs.h"
#include "tests/shortcut/WindowTest.h"

namespace seldial {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

class Screenshots : public WindowTest {
 protected:
  /// Keeps a picture of the window as it is now.
  QImage take(const char* state) {
    QCoreApplication::processEvents();  // a longer text makes the window larger
    const QImage picture = window->grab().toImage();
    const auto file = environment("SELDIAL_SCREENSHOTS") + "-" + state + ".png";
    EXPECT_TRUE(picture.save(QString::fromStdString(file))) << file;
    const qreal scale = environment("QT_SCALE_FACTOR") == "2" ? 2 : 1;
    EXPECT_EQ(picture.size(), window->size() * scale);
    EXPECT_GT(coloursIn(picture), 20) << "there is nothing to see";
    expectTextsFit();
    return picture;
  }

  static int coloursIn(const QImage& picture) {
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, y));
    }
    return static_cast<int>(colours.size());
  }

  void expectTextsFit() const {
    const int texts = status()->layout()->heightForWidth(status()->width());
    EXPECT_GE(status()->height(), texts);
    EXPECT_LT(status()->height(), 2 * texts) << "most of it is empty";
    for (const auto* const label : window->findChildren<QLabel*>()) {
      EXPECT_GE(label->height(), label->heightForWidth(label->width()))
          << label->text().toStdString();
      EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width())
          << label->text().toStdString();
    }
  }

  /// In the middle above all texts.
  static QColor colourAtEdge(const QImage& picture) {
    return picture.pixelColor(picture.width() / 2, picture.height() / 12);
  }

  /// The picture of one control.
  [[nodiscard]] QImage pictureOf(const char* name) const {
    return control<QWidget>(name)->grab().toImage();
  }
};

TEST_F(Screenshots, OfEachState) {
  open();
  take("empty");
  const QImage emptyField = pictureOf("shortcut");
  control<QPushButton>("record")->click();
  take("recording");
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(comesTrue([this] { return !field()->isEditing(); }));

  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  take("recorded");
  EXPECT_NE(pictureOf("shortcut"), emptyField);
  const QImage unlit = pictureOf("status");
  press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  ASSERT_TRUE(comesTrue([this] { return isLit(); }));
  take("lit");
  EXPECT_EQ(colourAtEdge(pictureOf("status")), window->palette().color(QPalette::Highlight));
  EXPECT_NE(colourAtEdge(unlit), window->palette().color(QPalette::Highlight));

  platform::x11::ForeignGrabs other(QtDesktop::shared().server.display());
  ASSERT_TRUE(other.take(kKeyK, kStateControl | kStateAlt));
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(says("Another program holds this shortcut"));
  take("held");

  record({kKeyLeftControl});
  take("incomplete");
  record({kKeyLeftControl, kKeyInsert});
  take("unusable");

  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  deliveryError =
      "Is Seldial running? At /run/user/1000/seldial: Failed to connect to socket. fd: 17. "
      "errno: 2. No such file or directory";
  control<QPushButton>("accept")->click();
  take("failed");
}

TEST_F(Screenshots, OfTheSettings) {
  auto* const panel = new SettingsPanel;
  panel->begin({{"open", "tel", 1}, {"region", "NL", 2}}, true);
  window =
      std::make_unique<ShortcutWindow>(QtDesktop::shared().ports().keyboard(),
                                       ShortcutWindow::Deliver(), QStringLiteral("Sa&ve"), panel);
  window->begin(controlAltD(), 100);
  ASSERT_TRUE(activate(*window));
  take("settings");
}

TEST_F(Screenshots, EveryKeyLooksDifferent) {
  std::vector<QImage> pictures;
  for (const auto key :
       {platform::kVK_Help, platform::kVK_ContextualMenu, platform::kVK_ANSI_KeypadEnter,
        platform::kVK_Return, platform::kVK_ANSI_Keypad0, platform::kVK_ANSI_0}) {
    open(HotKey{key, platform::kModifierFlagCommand});
    pictures.push_back(pictureOf("shortcut"));
    EXPECT_EQ(std::count(pictures.begin(), pictures.end(), pictures.back()), 1) << key;
  }
}

TEST_F(Screenshots, TheThemeOfTheDesktopDecides) {
  open();
  const bool isDark = environment("SELDIAL_SCREENSHOTS").find("dark") != std::string::npos;
  const QImage picture = window->grab().toImage();
  EXPECT_EQ(qGray(picture.pixel(2, 2)) < 128, isDark);
}

TEST_F(Screenshots, NoGlyphIsMissing) {
  open();
  const QFontMetrics metrics(field()->font());
  EXPECT_FALSE(metrics.inFontUcs4(0xE000)) << "so a missing one would be seen";
  const auto expectAll = [&metrics](const std::string& text) {
    for (const uint character : QString::fromStdString(text).toUcs4()) {
      EXPECT_TRUE(metrics.inFontUcs4(character)) << text;
    }
  };
  for (const auto& [keyCode, text] : QKKeyGlyphTable()) expectAll(std::string(text));
  expectAll("…");
}

}  // namespace
}  // namespace seldial
