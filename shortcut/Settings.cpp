#include "shortcut/Settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProcess>
#include <QRegularExpressionValidator>
#include <QStandardPaths>
#include <algorithm>

#include "client/Connection.h"
#include "client/Options.h"

namespace seldial {
namespace {

constexpr int kSpacing = 12;
constexpr int kFieldWidth = 230;

/// The value of the item that shows the field for a program. The other values are URI schemes.
constexpr const char* kProgram = "program";

/// The translated texts of this file's functions.
struct Texts {
  Q_DECLARE_TR_FUNCTIONS(SettingsPanel)
};

/// The error of parseDialCommand() in the user's language.
QString translatedError(const std::string& error) {
  static constexpr const char* kErrors[] = {
      QT_TRANSLATE_NOOP("SettingsPanel", "there is no program"),
      QT_TRANSLATE_NOOP("SettingsPanel", "a quote is not closed, or nothing follows a backslash"),
      QT_TRANSLATE_NOOP("SettingsPanel", "the program cannot be a part of the selection")};
  const auto* const known = std::find(std::begin(kErrors), std::end(kErrors), error);
  return known != std::end(kErrors) ? Texts::tr(*known) : QString::fromStdString(error);
}

std::optional<std::string> failure(const QString& sentence) {
  return sentence.toStdString();
}

/// The current values of the settings in `names`.
std::optional<SettingValues> currentValues(const std::string& path, const SettingValues& names,
                                           std::string& error) {
  const auto settings = readConfiguration(path, error);
  if (!settings) return std::nullopt;
  SettingValues present;
  for (const auto& [name, value] : names) present[name] = std::nullopt;
  for (const Setting& setting : *settings) {
    if (names.count(setting.name) != 0) present[setting.name] = setting.value;
  }
  return present;
}

/// seldial-uc in the directory of this program, in the sibling directory of a build tree, or in
/// PATH.
QString clientPath() {
  const QString name = QStringLiteral("seldial-uc");
  const QString own = QCoreApplication::applicationDirPath();
  const QString near =
      QStandardPaths::findExecutable(name, {own, own + QStringLiteral("/../ucclient")});
  return near.isEmpty() ? QStandardPaths::findExecutable(name) : near;
}

/// Returns the error, if any. Under systemd this also starts seldial-uc.
std::optional<std::string> applyLogin(bool startsAtLogin) {
  std::string result;
  const bool done = startsAtLogin ? enableLoginStart(clientPath().toStdString(), result)
                                  : disableLoginStart(result);
  return done ? std::nullopt : std::optional(result + ".");
}

std::optional<std::string> startClient(const std::string& path) {
  const bool started = QProcess::startDetached(
      clientPath(), {QStringLiteral("--config"), QString::fromStdString(path)});
  return started ? std::nullopt : failure(Texts::tr("seldial-uc could not be started."));
}

/// Applies the new settings of the file, by reloading the running client or starting one.
std::optional<std::string> applyFile(const std::string& path, const SettingValues& values,
                                     bool startsAtLogin) {
  std::string notRunning;
  auto answer = askRunningClient(kReloadRequest, notRunning);
  const bool isRefused = answer && !answer->empty() && !answer->starts_with(kReloadNote);
  if (isRefused) return *answer + ".";
  const bool changesLogin = startsAtLogin != seldial::startsAtLogin();
  auto failed = changesLogin ? applyLogin(startsAtLogin) : std::nullopt;
  const bool isStarted = answer || (changesLogin && startsBySystemd());
  const bool dials = values.at("dial") || values.at("open");
  if (failed || isStarted || !dials) return failed;
  return startClient(path);
}

}  // namespace

SettingsPanel::SettingsPanel()
    : action_(new QComboBox(this)),
      program_(new QLineEdit(this)),
      region_(new QLineEdit(this)),
      login_(new QCheckBox(tr("&Start when I log in"), this)) {
  action_->addItem(tr("Nothing yet"), QString());
  action_->addItem(tr("The application for tel: links"), QStringLiteral("tel"));
  action_->addItem(tr("The application for sip: links"), QStringLiteral("sip"));
  action_->addItem(tr("The application for callto: links"), QStringLiteral("callto"));
  action_->addItem(tr("A program"), QString::fromLatin1(kProgram));
  program_->setPlaceholderText(tr("program --call {}"));
  region_->setPlaceholderText(QLocale::system().name().section(QLatin1Char('_'), 1, 1));
  region_->setValidator(new QRegularExpressionValidator(
      QRegularExpression(QStringLiteral("[A-Za-z]{0,2}")), region_));
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setHorizontalSpacing(kSpacing);
  layout->setVerticalSpacing(kSpacing);
  layout->setColumnStretch(0, 1);
  addRow(*layout, tr("&Dial with"), action_);
  addRow(*layout, tr("&Program"), program_);
  addRow(*layout, tr("C&ountry of the numbers"), region_);
  layout->addWidget(login_, layout->rowCount(), 0, 1, -1);
  connect(action_, &QComboBox::currentIndexChanged, this, &SettingsPanel::showProgram);
  describeControls();
  showProgram();
}

void SettingsPanel::addRow(QGridLayout& layout, const QString& text, QWidget* field) {
  auto* const label = new QLabel(text, this);
  label->setBuddy(field);
  field->setMinimumWidth(kFieldWidth);
  const int row = layout.rowCount();
  layout.addWidget(label, row, 0);
  layout.addWidget(field, row, 1);
}

void SettingsPanel::describeControls() {
  const auto describe = [](QWidget* control, const char* name, const QString& text,
                           const QString& description) {
    control->setObjectName(QString::fromLatin1(name));
    control->setAccessibleName(text);
    control->setAccessibleDescription(description);
    control->setToolTip(description);
  };
  describe(action_, "action", tr("Dial with"), tr("What calls the number that was selected."));
  describe(program_, "program", tr("Program"),
           tr("{} stands for the number, {tel} for its tel: URI, {text} for the selected text."));
  describe(region_, "region", tr("Country of the numbers"),
           tr("Two letters, such as NL: where numbers without a country code belong."));
  describe(login_, "login", tr("Start when I log in"), tr("Dials in every session from now on."));
}

void SettingsPanel::showProgram() {
  program_->setEnabled(action_->currentData().toString() == QLatin1String(kProgram));
}

void SettingsPanel::begin(const std::vector<Setting>& settings, bool startsAtLogin) {
  const auto choose = [this](const QString& action) {
    action_->setCurrentIndex(std::max(0, action_->findData(action)));
  };
  for (const Setting& setting : settings) {
    const QString value = QString::fromStdString(setting.value);
    if (setting.name == "open") choose(value);
    if (setting.name == "region") region_->setText(value);
    if (setting.name != "dial") continue;
    choose(QString::fromLatin1(kProgram));
    program_->setText(value);
  }
  login_->setChecked(startsAtLogin);
}

SettingValues SettingsPanel::values() const {
  SettingValues values{{"dial", std::nullopt}, {"open", std::nullopt}, {"region", std::nullopt}};
  const std::string action = action_->currentData().toString().toStdString();
  if (action == kProgram) {
    values["dial"] = program_->text().toStdString();
  } else if (!action.empty()) {
    values["open"] = action;
  }
  if (!region_->text().isEmpty()) values["region"] = region_->text().toUpper().toStdString();
  return values;
}

bool SettingsPanel::startsAtLogin() const {
  return login_->isChecked();
}

std::optional<std::string> applySettings(const std::string& path, const SettingValues& values,
                                         bool startsAtLogin) {
  std::string error;
  if (const auto& command = values.at("dial")) {
    if (!parseDialCommand(*command, error)) {
      return failure(Texts::tr("The program cannot be run: %1.").arg(translatedError(error)));
    }
  } else if (startsAtLogin && !values.at("open")) {
    return failure(Texts::tr("Choose what to dial with first."));
  }
  const auto before = currentValues(path, values, error);
  if (!before || !writeConfiguration(path, values, error)) return error + ".";
  auto failed = applyFile(path, values, startsAtLogin);
  if (failed) (void)writeConfiguration(path, *before, error);  // the first failure is shown
  return failed;
}

std::optional<SettingValues> shortcutSettings(const HotKey& hotKey, std::uint16_t delay) {
  const auto spelling = hotKeySpelling(hotKey);
  if (!spelling) return std::nullopt;
  return SettingValues{{"hotkey", *spelling}, {"delay", std::to_string(delay)}};
}

}  // namespace seldial
