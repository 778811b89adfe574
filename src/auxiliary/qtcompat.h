// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_QTCOMPAT_H
#define MESSAGEAPI_AUXILIARY_QTCOMPAT_H

// Every difference between Qt 5.15 and Qt 6 that the library's sources meet is settled here.
// Not installed.

#include <QList>
#include <QtGlobal>

#include <utility>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QtCore5Compat/QRegExp>
#else
#include <QRegExp>
#endif

namespace MessageApiCompat {

/// Appends an element built from the arguments, in place where the list can (Qt 6).
template <typename T, typename... Arguments>
void emplaceBack(QList<T> &list, Arguments &&...arguments)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    list.emplaceBack(std::forward<Arguments>(arguments)...);
#else
    list.append(T(std::forward<Arguments>(arguments)...));
#endif
}

} // namespace MessageApiCompat

#endif // MESSAGEAPI_AUXILIARY_QTCOMPAT_H
