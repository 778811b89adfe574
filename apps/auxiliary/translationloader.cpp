// SPDX-License-Identifier: LGPL-2.1-or-later
#include "translationloader.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace {

/// Qt's own catalogue, for the texts of QCommandLineParser ("Usage:", "Options:"), when the
/// system has it.
void installQtCatalogue(QLocale const &locale)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const QString path = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    const QString path = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), path))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

bool TranslationLoader::install(QLocale const &locale)
{
    // Owned by the application, which needs the catalogue until it quits.
    auto *translator = new QTranslator(QCoreApplication::instance());
    const QString paths[] = { QCoreApplication::applicationDirPath()
                                  + QStringLiteral("/../share/messageapiframework/translations"),
                              QStringLiteral(MESSAGEAPI_TRANSLATIONS_DIR) };
    for (QString const &path : paths) {
        if (translator->load(locale, QStringLiteral("messageapiframework"), QStringLiteral("_"),
                             path)) {
            QCoreApplication::installTranslator(translator);
            installQtCatalogue(locale);
            return true;
        }
    }
    delete translator;
    return false;
}
