// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_TESTPARSER_H
#define MESSAGEAPI_TESTS_TESTPARSER_H

#include <QByteArray>
#include <QObject>

/**
 * Stands in for an application's stream parser: its signals and a buffer that never moves.
 */
class TestParser : public QObject
{
    Q_OBJECT

public:
    static constexpr int capacity = 4096;

    explicit TestParser(QObject *parent = nullptr)
        : QObject(parent)
        , mBuffer(capacity, '\0')
    { }

    char const *buffer() const { return mBuffer.constData(); }

Q_SIGNALS:
    void vexa(unsigned int id, unsigned int length);
    void crcErrorVexa();

private:
    QByteArray mBuffer;
};

/// Stands in for an application's connection object.
class TestConnection : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void connected();
    void connectionClosed();
};

#endif // MESSAGEAPI_TESTS_TESTPARSER_H
