// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_QTCOMPAT_H
#define MESSAGEAPI_AUXILIARY_QTCOMPAT_H

// Every difference between Qt 5.15 and Qt 6 that the library's sources meet is settled here.
// Not installed.

#include <QtGlobal>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QtCore5Compat/QRegExp>
#else
#include <QRegExp>
#endif

#endif // MESSAGEAPI_AUXILIARY_QTCOMPAT_H
