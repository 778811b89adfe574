// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_APPS_INPUTOPTIONS_H
#define MESSAGEAPI_APPS_INPUTOPTIONS_H

#include <QCommandLineOption>
#include <QDate>

class QCommandLineParser;

/**
 * The options that every program reading a stream takes for its input: --reconnect SECONDS
 * (after a dropped connection; 10 by default) and --date YYYY-MM-DD (the week the stream's
 * times fall in until the stream tells its own), with the usage errors of bad values.
 */
class InputOptions
{
public:
    InputOptions();

    /// Adds the options to the parser.
    void addTo(QCommandLineParser &parser) const;
    /// Reads the options' values from the parsed parser; returns the usage error of a bad
    /// value, or an empty text.
    QString read(QCommandLineParser const &parser);

    int getReconnectSeconds() const { return mReconnectSeconds; }
    /// The date given with --date; invalid when none was given.
    QDate getDate() const { return mDate; }

private:
    QCommandLineOption mReconnectOption;
    QCommandLineOption mDateOption;
    int mReconnectSeconds = 10;
    QDate mDate;
};

#endif // MESSAGEAPI_APPS_INPUTOPTIONS_H
