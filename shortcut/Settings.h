// The settings of seldial-uc besides the shortcut: how it dials, and whether it starts at login.
#pragma once

#include <QCoreApplication>
#include <QWidget>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "client/Configuration.h"
#include "client/Protocol.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;

namespace seldial {

/// Settings by name, for writeConfiguration().
using SettingValues = std::map<std::string, std::optional<std::string>>;

/// The controls for the settings. Main thread only.
class SettingsPanel : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(SettingsPanel)

 public:
  SettingsPanel();

  /// Shows the settings of a configuration file. Settings without a control are ignored.
  void begin(const std::vector<Setting>& settings, bool startsAtLogin);

  /// The settings "dial", "open" and "region".
  [[nodiscard]] SettingValues values() const;
  [[nodiscard]] bool startsAtLogin() const;

 private:
  void addRow(QGridLayout& layout, const QString& text, QWidget* field);
  void describeControls();
  void showProgram();

  QComboBox* action_;
  QLineEdit* program_;
  QLineEdit* region_;
  QCheckBox* login_;
};

/// Writes settings to the configuration file at `path`, sets the start at login, and applies both
/// at once: the running seldial-uc reloads the file; if none is running, it is started if it has a
/// way to dial. If that fails, the file is restored. Returns the error, if any, as text for the
/// user. Takes as long as seldial-uc needs to set the hot key.
[[nodiscard]] std::optional<std::string> applySettings(const std::string& path,
                                                       const SettingValues& values,
                                                       bool startsAtLogin);

/// The settings "hotkey" and "delay". Nothing for a key without a name.
[[nodiscard]] std::optional<SettingValues> shortcutSettings(const HotKey& hotKey,
                                                            std::uint16_t delay);

}  // namespace seldial
