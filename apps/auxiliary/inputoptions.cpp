// SPDX-License-Identifier: LGPL-2.1-or-later
#include "inputoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

// The texts keep the context of the programs' main(), where the catalogue has them.
InputOptions::InputOptions()
    : mReconnectOption(
        QStringLiteral("reconnect"),
        QCoreApplication::translate("main", "Reconnect a dropped input after this many seconds."),
        QCoreApplication::translate("main", "seconds"), QStringLiteral("10"))
    , mDateOption(QStringLiteral("date"),
                  QCoreApplication::translate(
                      "main",
                      "The UTC date (YYYY-MM-DD) whose GPS week the stream's times fall in until "
                      "the stream tells its week; by default the week that a file's first "
                      "messages tell, else today."),
                  QCoreApplication::translate("main", "date"))
{ }

void InputOptions::addTo(QCommandLineParser &parser) const
{
    parser.addOptions({ mReconnectOption, mDateOption });
}

QString InputOptions::read(QCommandLineParser const &parser)
{
    bool ok = true;
    mReconnectSeconds = parser.value(mReconnectOption).toInt(&ok);
    if (!ok || mReconnectSeconds < 0)
        return QCoreApplication::translate("main",
                                           "bad --reconnect %1: not a whole number of seconds")
            .arg(parser.value(mReconnectOption));
    mDate = QDate();
    if (!parser.isSet(mDateOption))
        return {};
    mDate = QDate::fromString(parser.value(mDateOption), Qt::ISODate);
    if (!mDate.isValid())
        return QCoreApplication::translate("main", "bad --date %1: not a date YYYY-MM-DD")
            .arg(parser.value(mDateOption));
    return {};
}
