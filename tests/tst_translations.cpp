// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldtype.h"
#include "messageapievent.h"
#include "testfieldinfo.h"

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

#include <functional>

Q_DECLARE_METATYPE(std::function<QString()>)

/// The library's texts with the German catalogue that the build makes from translations/.
class tst_Translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(mTranslator.load(QStringLiteral(MESSAGEAPI_QM_DIR "/messageapiframework_de.qm")),
                 "the German catalogue is not built");
    }

    void german_data()
    {
        QTest::addColumn<std::function<QString()>>("text");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("german");

        QTest::newRow("event type") << std::function<QString()>([] {
            return MessageApiEvent::getTypeString(MessageApiEvent::CrcError);
        }) << "CRC Error"
                                    << "CRC-Fehler";
        QTest::newRow("discarding prefix") << std::function<QString()>([] {
            MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("x"), nullptr);
            event.addNotificationOfFutureDiscarding();
            return event.getMessage();
        }) << "[Event discarded in future:] x"
                                           << "[Ereignis wird künftig verworfen:] x";
        QTest::newRow("field type")
            << std::function<QString()>([] { return FieldType::u(12).toString(); })
            << "Unsigned integer on 12 bits"
            << "Vorzeichenlose Ganzzahl mit 12 Bit";
        QTest::newRow("do-not-use value") << std::function<QString()>([] {
            return TestFieldInfo(QStringLiteral("f"), FieldType::u(8)).getDoNotUseString();
        }) << "N/A"
                                          << "n. v.";
    }

    void german()
    {
        QFETCH(std::function<QString()>, text);
        QFETCH(QString, english);
        QFETCH(QString, german);

        QCOMPARE(text(), english);
        QCoreApplication::installTranslator(&mTranslator);
        const QString translated = text();
        QCoreApplication::removeTranslator(&mTranslator);
        QCOMPARE(translated, german);
    }

private:
    QTranslator mTranslator;
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
