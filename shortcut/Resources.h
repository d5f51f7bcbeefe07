// The built-in resources of the windows: translations and icon.
#pragma once

#include <QIcon>
#include <QStringList>
#include <QTranslator>
#include <memory>
#include <vector>

namespace seldial {

/// Installed translators. Destroying one removes it.
using Translators = std::vector<std::unique_ptr<QTranslator>>;

/// Translates the windows into the first of these languages that has a translation. The names are
/// those of QLocale::uiLanguages(), such as "de-AT". English needs no translation. Existing widgets
/// are not retranslated. Main thread only, after the QApplication has been created.
[[nodiscard]] Translators translateInto(const QStringList& languages);

/// Seldial's icon from the desktop's theme, or the built-in one if it is not installed.
[[nodiscard]] QIcon windowIcon();

}  // namespace seldial
