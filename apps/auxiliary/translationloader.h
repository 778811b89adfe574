// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_APPS_TRANSLATIONLOADER_H
#define MESSAGEAPI_APPS_TRANSLATIONLOADER_H

#include <QLocale>

/**
 * Installs the catalogue of the library, its format libraries and the programs for a locale,
 * so that every text that reaches the user (events, reports, option help) comes in the user's
 * language. The catalogue is looked for beside an installed program
 * (`../share/messageapiframework/translations`) and in the folder the build installs to, so
 * that a relocated installation finds its own catalogue first.
 */
class TranslationLoader
{
public:
    /// Installs the catalogue of `locale` (by default the user's) on the running application.
    /// Returns false, changing nothing, when no folder holds one for that locale, as for
    /// English, the language of the sources.
    static bool install(QLocale const &locale = QLocale::system());
};

#endif // MESSAGEAPI_APPS_TRANSLATIONLOADER_H
