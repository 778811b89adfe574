// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageapievent.h"
#include "tracerrecorder.h"

#include <QTest>

class tst_MessageApiEvent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typeTexts()
    {
        const QStringList texts = QStringLiteral("Connection Opened,Connection Closed,CRC Error,"
                                                 "Unknown Message,Decoder Error,Application Error,"
                                                 "Client Error")
                                      .split(QLatin1Char(','));
        // Values outside the table are carried as they are, with no text and no error.
        for (int type = -1; type <= 7; ++type) {
            const MessageApiEvent event(MessageApiEvent::Type(type), QString(), nullptr);
            QCOMPARE(int(event.getType()), type);
            QCOMPARE(event.isError(), type >= 2 && type <= 6);
            QCOMPARE(event.getTypeString(), texts.value(type));
            QCOMPARE(MessageApiEvent::getTypeString(event.getType()).isNull(),
                     type < 0 || type > 6);
        }
    }

    void copiesAndTheDiscardingNotice()
    {
        const QString prefix = QStringLiteral("[Event discarded in future:] ");
        MessageApiEvent empty(MessageApiEvent::ApplicationError, QString(), nullptr);
        empty.addNotificationOfFutureDiscarding();
        QCOMPARE(empty.getMessage(), prefix);

        auto const *format = reinterpret_cast<FormatInfo const *>(0x1234);
        MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("abc"), format);
        const MessageApiEvent copy(event);
        const auto carried = QVariant::fromValue(event).value<MessageApiEvent>();
        event.addNotificationOfFutureDiscarding();
        event.addNotificationOfFutureDiscarding(); // nothing guards against a second prefix
        QCOMPARE(event.getMessage(), prefix + prefix + QStringLiteral("abc"));
        for (MessageApiEvent const &earlier : { copy, carried }) {
            QCOMPARE(earlier.getType(), MessageApiEvent::DecoderError);
            QCOMPARE(earlier.getMessage(), QStringLiteral("abc"));
            QCOMPARE(earlier.getFormat(), format);
        }
    }

    void tracesEveryConstructionButNotAssignment()
    {
        auto const *format = reinterpret_cast<FormatInfo const *>(0x1234);
        TracerRecorder recorder;
        {
            MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("abc"), format);
            MessageApiEvent copy(event);
            copy = event;
            const MessageApiEvent moved(std::move(event)); // takes the text and reports
            QCOMPARE(moved.getType(), MessageApiEvent::DecoderError);
            QCOMPARE(moved.getMessage(), QStringLiteral("abc"));
            QCOMPARE(moved.getFormat(), format);
        }
        QCOMPARE(recorder.events().join(QLatin1Char(' ')),
                 QStringLiteral("+MessageApiEvent +MessageApiEvent +MessageApiEvent "
                                "-MessageApiEvent -MessageApiEvent -MessageApiEvent"));
    }
};

QTEST_GUILESS_MAIN(tst_MessageApiEvent)
#include "tst_messageapievent.moc"
