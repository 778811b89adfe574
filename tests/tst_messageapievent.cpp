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
    void storesWhatItIsGiven();
    void copyKeepsOldTextWhenOriginalIsMarked();
    void discardingNotice_data();
    void discardingNotice();
    void tracesEveryConstructionButNotAssignment();
    void moveTakesTheTextAndReports();
    void carriedByQVariant();
};

void tst_MessageApiEvent::typeTexts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isError");

    QTest::newRow("0 connection opened") << 0 << QStringLiteral("Connection Opened") << false;
    QTest::newRow("1 connection closed") << 1 << QStringLiteral("Connection Closed") << false;
    QTest::newRow("2 crc error") << 2 << QStringLiteral("CRC Error") << true;
    QTest::newRow("3 unknown message") << 3 << QStringLiteral("Unknown Message") << true;
    QTest::newRow("4 decoder error") << 4 << QStringLiteral("Decoder Error") << true;
    QTest::newRow("5 application error") << 5 << QStringLiteral("Application Error") << true;
    QTest::newRow("6 client error") << 6 << QStringLiteral("Client Error") << true;
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
    QCOMPARE(MessageApiEvent::getTypeString(eventType), text);
    QCOMPARE(MessageApiEvent::getTypeString(eventType).isNull(), text.isNull());
}

void tst_MessageApiEvent::storesWhatItIsGiven()
{
    auto const *format = reinterpret_cast<FormatInfo const *>(0x1234);
    const MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("bad block"), format);
    QCOMPARE(event.getType(), MessageApiEvent::DecoderError);
    QCOMPARE(event.getMessage(), QStringLiteral("bad block"));
    QCOMPARE(event.getFormat(), format);

    const MessageApiEvent copy(event);
    QCOMPARE(copy.getType(), MessageApiEvent::DecoderError);
    QCOMPARE(copy.getMessage(), QStringLiteral("bad block"));
    QCOMPARE(copy.getFormat(), format);
}

void tst_MessageApiEvent::copyKeepsOldTextWhenOriginalIsMarked()
{
    MessageApiEvent event(MessageApiEvent::CrcError, QStringLiteral("VEXA CRC error"), nullptr);
    const MessageApiEvent copy(event);
    event.addNotificationOfFutureDiscarding();
    QCOMPARE(copy.getMessage(), QStringLiteral("VEXA CRC error"));
    QCOMPARE(event.getMessage(), QStringLiteral("[Event discarded in future:] VEXA CRC error"));
}

void tst_MessageApiEvent::discardingNotice_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("times");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty text") << QString() << 1
                                << QStringLiteral("[Event discarded in future:] ");
    QTest::newRow("once") << QStringLiteral("abc") << 1
                          << QStringLiteral("[Event discarded in future:] abc");
    QTest::newRow("twice, no guard")
        << QStringLiteral("abc") << 2
        << QStringLiteral("[Event discarded in future:] [Event discarded in future:] abc");
}

void tst_MessageApiEvent::discardingNotice()
{
    QFETCH(QString, text);
    QFETCH(int, times);
    QFETCH(QString, expected);

    MessageApiEvent event(MessageApiEvent::ApplicationError, text, nullptr);
    for (int i = 0; i < times; ++i)
        event.addNotificationOfFutureDiscarding();
    QCOMPARE(event.getMessage(), expected);
}

void tst_MessageApiEvent::tracesEveryConstructionButNotAssignment()
{
    TracerRecorder recorder;
    {
        MessageApiEvent event(MessageApiEvent::ClientError, QStringLiteral("a"), nullptr);
        MessageApiEvent copy(event);
        copy = event;
    }
    QCOMPARE(
        recorder.events(),
        QStringList({ QStringLiteral("+MessageApiEvent"), QStringLiteral("+MessageApiEvent"),
                      QStringLiteral("-MessageApiEvent"), QStringLiteral("-MessageApiEvent") }));
}

void tst_MessageApiEvent::moveTakesTheTextAndReports()
{
    auto const *format = reinterpret_cast<FormatInfo const *>(0x1234);
    TracerRecorder recorder;
    {
        MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("bad block"), format);
        const MessageApiEvent moved(std::move(event));
        QCOMPARE(moved.getType(), MessageApiEvent::DecoderError);
        QCOMPARE(moved.getMessage(), QStringLiteral("bad block"));
        QCOMPARE(moved.getFormat(), format);
    }
    QCOMPARE(
        recorder.events(),
        QStringList({ QStringLiteral("+MessageApiEvent"), QStringLiteral("+MessageApiEvent"),
                      QStringLiteral("-MessageApiEvent"), QStringLiteral("-MessageApiEvent") }));
}

void tst_MessageApiEvent::carriedByQVariant()
{
    const MessageApiEvent event(MessageApiEvent::UnknownMessage, QStringLiteral("u"), nullptr);
    const QVariant variant = QVariant::fromValue(event);
    QCOMPARE(variant.value<MessageApiEvent>().getMessage(), QStringLiteral("u"));
    QCOMPARE(variant.value<MessageApiEvent>().getType(), MessageApiEvent::UnknownMessage);
}

QTEST_GUILESS_MAIN(tst_MessageApiEvent)
#include "tst_messageapievent.moc"
