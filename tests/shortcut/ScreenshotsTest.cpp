// Takes pictures of the windows in each state and language, for the manual, in the theme and at the
// scale that the environment sets, and checks that they show something.
#include <QAbstractButton>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QSet>
#include <QStyle>
#include <algorithm>
#include <cstdlib>

#include "hotkey/QKKeyStrings.h"
#include "shortcut/NumberChooser.h"
#include "shortcut/Resources.h"
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
  /// Saves a picture of the window in its current state.
  QImage take(const std::string& state) {
    QImage picture = capture(*window, state);
    const int texts = status()->layout()->heightForWidth(status()->width());
    EXPECT_GE(status()->height(), texts) << state;
    EXPECT_LT(status()->height(), 2 * texts) << state << ": most of it is empty";
    for (const auto* const label : status()->findChildren<QLabel*>()) {
      EXPECT_FALSE(label->geometry().intersects(signRect(*status())))
          << label->text().toStdString();
    }
    EXPECT_LE(widthOf(translated("Click here and press a shortcut"), *window), field()->width());
    return picture;
  }

  /// Saves a picture of any window.
  QImage capture(QWidget& shown, const std::string& state) const {
    QCoreApplication::processEvents();  // a longer text makes the window larger
    QImage picture = shown.grab().toImage();
    const auto file = environment("SELDIAL_SCREENSHOTS") + "-" + prefix_ + state + ".png";
    constexpr int kQuicklyWritten = 60;
    const int quality = prefix_.empty() ? -1 : kQuicklyWritten;
    EXPECT_TRUE(picture.save(QString::fromStdString(file), nullptr, quality)) << file;
    const qreal scale = environment("QT_SCALE_FACTOR") == "2" ? 2 : 1;
    EXPECT_EQ(picture.size(), shown.size() * scale);
    EXPECT_TRUE(isNotBlank(picture));
    expectTextsFit(shown);
    return picture;
  }

  /// The area of the panel's lamp or warning sign.
  static QRect signRect(const QWidget& panel) {
    constexpr int kEdge = 44;
    const QRect left(0, 0, kEdge, panel.height());
    return QStyle::visualRect(panel.layoutDirection(), panel.rect(), left);
  }

  static QString translated(const char* text) {
    return QCoreApplication::translate("ShortcutWindow", text);
  }

  static int widthOf(const QString& text, const QWidget& widget) {
    return widget.fontMetrics().horizontalAdvance(text);
  }

  /// Whether the picture has more than a few colours.
  static bool isNotBlank(const QImage& picture) {
    constexpr qsizetype kFew = 10;
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height() && colours.size() <= kFew; ++y) {
      for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, y));
    }
    return colours.size() > kFew;
  }

  static void expectTextsFit(const QWidget& shown) {
    for (const auto* const label : shown.findChildren<QLabel*>()) {
      EXPECT_GE(label->height(), label->heightForWidth(label->width()))
          << label->text().toStdString();
      EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width())
          << label->text().toStdString();
    }
    for (const auto* const button : shown.findChildren<QAbstractButton*>()) {
      EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
    }
    for (const auto* const list : shown.findChildren<QComboBox*>()) {
      EXPECT_GE(list->width(), list->sizeHint().width()) << "its longest item does not fit";
    }
    for (const auto* const line : shown.findChildren<QLineEdit*>()) {
      EXPECT_GE(line->width(), widthOf(line->placeholderText(), *line));
    }
    for (const auto* const widget : shown.findChildren<QWidget*>()) {
      EXPECT_TRUE(!widget->isVisible() || widget->isWindow() ||
                  widget->parentWidget()->rect().contains(widget->geometry()))
          << widget->objectName().toStdString() << " is cut off";
    }
  }

  /// The colour at the top centre, above all texts.
  static QColor colourAtEdge(const QImage& picture) {
    return picture.pixelColor(picture.width() / 2, picture.height() / 12);
  }

  /// The picture of one control.
  [[nodiscard]] QImage pictureOf(const char* name) const {
    return control<QWidget>(name)->grab().toImage();
  }

  void captureStates();
  void captureLitPanel();
  void takeSettings();

  std::string prefix_;  ///< of the file names of the pictures
};

void Screenshots::captureStates() {
  open();
  take("empty");
  const QImage emptyField = pictureOf("shortcut");
  control<QPushButton>("record")->click();
  take("recording");
  keyboard.tap(kKeyReturn);
  ASSERT_TRUE(becomesTrue([this] { return !field()->isEditing(); }));

  record({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  take("recorded");
  EXPECT_NE(pictureOf("shortcut"), emptyField);
  if (prefix_.empty()) captureLitPanel();

  platform::x11::ForeignGrabs other(QtDesktop::shared().server.display());
  ASSERT_TRUE(other.grab(kKeyK, kStateControl | kStateAlt));
  record({kKeyLeftControl, kKeyLeftAlt, kKeyK});
  ASSERT_TRUE(says(translated("Another program holds this shortcut").toStdString()));
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

/// The panel is lit only for a short time.
void Screenshots::captureLitPanel() {
  const QImage unlit = pictureOf("status");
  press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  ASSERT_TRUE(becomesTrue([this] { return isLit(); }));
  take("lit");
  EXPECT_EQ(colourAtEdge(pictureOf("status")), window->palette().color(QPalette::Highlight));
  EXPECT_NE(colourAtEdge(unlit), window->palette().color(QPalette::Highlight));
}

void Screenshots::takeSettings() {
  auto* const panel = new SettingsPanel;
  panel->begin({{"open", "tel", 1}, {"region", "NL", 2}}, true);
  window = std::make_unique<ShortcutWindow>(
      QtDesktop::shared().ports().keyboard(), ShortcutWindow::Deliver(),
      QCoreApplication::translate("Delivery", "Sa&ve"), panel);
  window->begin(controlAltD(), 100);
  ASSERT_TRUE(activate(*window));
  take("settings");
}

TEST_F(Screenshots, OfEachState) {
  captureStates();
}

TEST_F(Screenshots, OfTheSettings) {
  takeSettings();
}

/// The windows in another language, or from right to left.
class Translated : public Screenshots, public testing::WithParamInterface<const char*> {
 protected:
  Translated() {
    prefix_ = GetParam() + std::string("-");
    if (isRightToLeft()) QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  }
  ~Translated() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

  static bool isRightToLeft() { return GetParam() == std::string("rtl"); }

  const Translators translators_ = translateInto({QString::fromLatin1(GetParam())});
};

TEST_P(Translated, EachStateFits) {
  EXPECT_EQ(translated("Recording") == QStringLiteral("Recording"), isRightToLeft());
  captureStates();
}

TEST_P(Translated, TheSettingsFitAndEachHasItsOwnLetter) {
  takeSettings();
  QStringList letters;
  const auto add = [&letters](const QString& text) {
    letters << QKeySequence::mnemonic(text).toString();
  };
  for (const auto* const button : window->findChildren<QAbstractButton*>()) add(button->text());
  for (const auto* const label : window->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) add(label->text());
  }
  letters.removeAll(QString());
  EXPECT_EQ(letters.size(), 9) << letters.join(QLatin1Char(' ')).toStdString();
  EXPECT_EQ(letters.removeDuplicates(), 0) << letters.join(QLatin1Char(' ')).toStdString();
}

TEST_P(Translated, TheChoiceOfANumberFits) {
  for (const auto& numbers :
       {QStringList{QStringLiteral("+31201234567")},
        QStringList{QStringLiteral("+31201234567 ext. 5"), QStringLiteral("112")}}) {
    NumberChooser chooser(numbers);
    chooser.show();
    capture(chooser, "choice-of-" + std::to_string(numbers.size()));
    EXPECT_EQ(chooser.findChild<QListWidget*>()->layoutDirection(), Qt::LeftToRight);
  }
}

TEST_P(Translated, NoTwoKeysHaveTheSameName) {
  const std::vector<std::uint16_t> keys{platform::kVK_Return,
                                        platform::kVK_ANSI_KeypadEnter,
                                        platform::kVK_Tab,
                                        platform::kVK_Space,
                                        platform::kVK_Delete,
                                        platform::kVK_ForwardDelete,
                                        platform::kVK_Escape,
                                        platform::kVK_CapsLock,
                                        platform::kVK_ANSI_KeypadClear,
                                        platform::kVK_Help,
                                        platform::kVK_ContextualMenu,
                                        platform::kVK_VolumeUp,
                                        platform::kVK_Home,
                                        platform::kVK_End,
                                        platform::kVK_VolumeDown,
                                        platform::kVK_PageUp,
                                        platform::kVK_PageDown,
                                        platform::kVK_Mute,
                                        platform::kVK_ANSI_0,
                                        platform::kVK_ANSI_Keypad0,
                                        platform::kVK_LeftArrow,
                                        platform::kVK_UpArrow,
                                        platform::kVK_DownArrow,
                                        platform::kVK_RightArrow};
  QSet<QString> names;
  for (const auto key : keys) {
    const auto hotKey = QKHotKey::hotKeyWithKeyCode(key, 0, nullptr);
    names << shortcutText(*hotKey, *QtDesktop::shared().ports().keyboard().layout);
  }
  EXPECT_EQ(names.size(), static_cast<qsizetype>(keys.size()));
}

INSTANTIATE_TEST_SUITE_P(Languages, Translated,
                         testing::Values("de", "es", "fr", "nl", "pl", "rtl"),
                         [](const auto& language) { return std::string(language.param); });

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
  const bool isDark = environment("SELDIAL_SCREENSHOTS").find("light") == std::string::npos;
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
