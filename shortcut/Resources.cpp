#include "shortcut/Resources.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace seldial {
namespace {

/// Installs a translation; nothing happens where there is none.
bool add(Translators& translators, const QString& file) {
  auto translator = std::make_unique<QTranslator>();
  if (!translator->load(file)) return false;
  QCoreApplication::installTranslator(translator.get());
  translators.push_back(std::move(translator));
  return true;
}

}  // namespace

Translators translateInto(const QStringList& languages) {
  Translators translators;
  for (const QString& name : languages) {
    if (QLocale(name).language() == QLocale::English) break;
    const QString language = name.section(QLatin1Char('-'), 0, 0);
    if (!add(translators, QStringLiteral(":/seldial/") + language + QStringLiteral(".qm")))
      continue;
    // The menus of text fields are Qt's own.
    add(translators, QLibraryInfo::path(QLibraryInfo::TranslationsPath) +
                         QStringLiteral("/qtbase_") + language + QStringLiteral(".qm"));
    break;
  }
  return translators;
}

QIcon windowIcon() {
  return QIcon::fromTheme(QStringLiteral("org.seldial.Client"),
                          QIcon(QStringLiteral(":/seldial/icon.png")));
}

}  // namespace seldial
