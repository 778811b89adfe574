// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_ASSERTCAPTURE_H
#define MESSAGEAPI_TESTS_ASSERTCAPTURE_H

#include <QByteArray>
#include <QList>
#include <QStringList>

/**
 * Captures the platform's assertion reports while it lives: installs its own handler with
 * dbg_SetAssertHandler and restores the previous one when destroyed. Captures nest.
 */
class AssertCapture
{
public:
    struct Report
    {
        QByteArray module;
        QByteArray subModule;
        QByteArray function;
        QByteArray file;
        int line = 0;
        QByteArray text;
    };

    AssertCapture();
    ~AssertCapture();
    Q_DISABLE_COPY(AssertCapture)

    QList<Report> reports() const { return mReports; }
    /// The texts of the reports, in order.
    QStringList texts() const { return collect(&Report::text); }
    /// The function names of the reports, in order.
    QStringList functions() const { return collect(&Report::function); }
    int count() const { return int(mReports.size()); }

private:
    QStringList collect(QByteArray Report::*part) const;
    static void handle(char const *module, char const *subModule, char const *function,
                       char const *file, int line, char const *text);

    QList<Report> mReports;
    AssertCapture *mOuter;
    void (*mPreviousHandler)(char const *, char const *, char const *, char const *, int,
                             char const *);
};

#endif // MESSAGEAPI_TESTS_ASSERTCAPTURE_H
