// What is built into the windows: their translations and their icon.
#pragma once

#include <QIcon>
#include <QStringList>
#include <QTranslator>
#include <memory>
#include <vector>

namespace seldial {

/// Translators that are installed. Each one goes with its object.
using Translators = std::vector<std::unique_ptr<QTranslator>>;

/// Translates the windows into the first of these languages that there is a translation for; names
/// as QLocale::uiLanguages() has them, such as "de-AT". English stays English. Widgets that exist
/// already stay as they are. Main thread only, after the application was made.
[[nodiscard]] Translators translateInto(const QStringList& languages);

/// The desktop's icon of Seldial, or the one that is built in where that is not installed.
[[nodiscard]] QIcon windowIcon();

}  // namespace seldial
