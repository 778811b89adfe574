// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageapievent.h"
#include "tracerrecorder.h"

#include <QTest>

class tst_MessageApiEvent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typeTexts_data();
    void typeTexts();
    void copiesCarryAllFields();
    void discardingNotice_data();
    void discardingNotice();
    void tracesEveryConstructionButNotAssignment();
};

void tst_MessageApiEvent::typeTexts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text"); // null where there is none
    QTest::addColumn<bool>("isError");
    QTest::newRow("0") << 0 << QStringLiteral("Connection Opened") << false;
    QTest::newRow("1") << 1 << QStringLiteral("Connection Closed") << false;
    QTest::newRow("2") << 2 << QStringLiteral("CRC Error") << true;
    QTest::newRow("3") << 3 << QStringLiteral("Unknown Message") << true;
    QTest::newRow("4") << 4 << QStringLiteral("Decoder Error") << true;
    QTest::newRow("5") << 5 << QStringLiteral("Application Error") << true;
    QTest::newRow("6") << 6 << QStringLiteral("Client Error") << true;
    QTest::newRow("7 beyond the table") << 7 << QString() << false;
    QTest::newRow("-1 below the table") << -1 << QString() << false;
}

void tst_MessageApiEvent::typeTexts()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(bool, isError);
    const auto eventType = static_cast<MessageApiEvent::Type>(type);
    const MessageApiEvent event(eventType, QStringLiteral("x"), nullptr);
    QCOMPARE(int(event.getType()), type);
    QCOMPARE(event.isError(), isError);
    QCOMPARE(event.getTypeString(), text);
    QCOMPARE(MessageApiEvent::getTypeString(eventType).isNull(), text.isNull());
}

void tst_MessageApiEvent::copiesCarryAllFields()
{
    auto const *format = reinterpret_cast<FormatInfo const *>(0x1234);
    const MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("bad block"), format);
    for (MessageApiEvent const &copy :
         { event, QVariant::fromValue(event).value<MessageApiEvent>() }) {
        QCOMPARE(copy.getType(), MessageApiEvent::DecoderError);
        QCOMPARE(copy.getMessage(), QStringLiteral("bad block"));
        QCOMPARE(copy.getFormat(), format);
    }
}

void tst_MessageApiEvent::discardingNotice_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("times");
    QTest::addColumn<QString>("expected");
    const QString prefix = QStringLiteral("[Event discarded in future:] ");
    QTest::newRow("empty text") << QString() << 1 << prefix;
    QTest::newRow("once") << QStringLiteral("abc") << 1 << prefix + QStringLiteral("abc");
    QTest::newRow("twice, no guard")
        << QStringLiteral("abc") << 2 << prefix + prefix + QStringLiteral("abc");
}

void tst_MessageApiEvent::discardingNotice()
{
    QFETCH(QString, text);
    QFETCH(int, times);
    QFETCH(QString, expected);
    MessageApiEvent event(MessageApiEvent::ApplicationError, text, nullptr);
    const MessageApiEvent earlierCopy(event);
    for (int i = 0; i < times; ++i)
        event.addNotificationOfFutureDiscarding();
    QCOMPARE(event.getMessage(), expected);
    QCOMPARE(earlierCopy.getMessage(), text);
}

void tst_MessageApiEvent::tracesEveryConstructionButNotAssignment()
{
    TracerRecorder recorder;
    {
        MessageApiEvent event(MessageApiEvent::ClientError, QStringLiteral("a"), nullptr);
        MessageApiEvent copy(event);
        copy = event;
    }
    QCOMPARE(recorder.events().join(QLatin1Char(' ')),
             QStringLiteral("+MessageApiEvent +MessageApiEvent -MessageApiEvent -MessageApiEvent"));
}

QTEST_GUILESS_MAIN(tst_MessageApiEvent)
#include "tst_messageapievent.moc"
