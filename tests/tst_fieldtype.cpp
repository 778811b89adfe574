// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldtype.h"
#include "fieldvalue.h"
#include "messageinfo.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QTest>

using TypeFactory = FieldType (*)();
Q_DECLARE_METATYPE(TypeFactory)

namespace {

// Sub-message types only compare the pointer; these are never looked at.
MessageInfo const *const infoA = reinterpret_cast<MessageInfo const *>(0x10);
MessageInfo const *const infoB = reinterpret_cast<MessageInfo const *>(0x20);

} // namespace

class tst_FieldType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsSizesAndTexts_data();
    void kindsSizesAndTexts();
    void equality_data();
    void equality();
    void tracesConstructionAndCopyButNotAssignment();
    void subMessageTextsNameTheMessageType_data();
    void subMessageTextsNameTheMessageType();
};

void tst_FieldType::kindsSizesAndTexts_data()
{
    QTest::addColumn<TypeFactory>("make");
    QTest::addColumn<int>("kind");
    QTest::addColumn<uint>("bits");
    QTest::addColumn<QString>("shortText");
    QTest::addColumn<QString>("longText");

    QTest::newRow("u8") << TypeFactory([] { return FieldType::u(8); }) << 0 << 8u
                        << QStringLiteral("u8") << QStringLiteral("Unsigned integer on 8 bits");
    QTest::newRow("u255, the widest factory")
        << TypeFactory([] { return FieldType::u(255); }) << 0 << 255u << QStringLiteral("u255")
        << QStringLiteral("Unsigned integer on 255 bits");
    QTest::newRow("u100 by constructor, not refused")
        << TypeFactory([] { return FieldType(FieldType::UnsignedInteger, 100); }) << 0 << 100u
        << QStringLiteral("u100") << QStringLiteral("Unsigned integer on 100 bits");
    QTest::newRow("u1000 by constructor, beyond the factories")
        << TypeFactory([] { return FieldType(FieldType::UnsignedInteger, 1000); }) << 0 << 1000u
        << QStringLiteral("u1000") << QStringLiteral("Unsigned integer on 1000 bits");
    QTest::newRow("i16") << TypeFactory([] { return FieldType::i(16); }) << 1 << 16u
                         << QStringLiteral("i16") << QStringLiteral("Signed integer on 16 bits");
    QTest::newRow("f32") << TypeFactory(FieldType::f32) << 2 << 32u << QStringLiteral("f32")
                         << QStringLiteral("IEEE float on 32 bits");
    QTest::newRow("f64") << TypeFactory(FieldType::f64) << 2 << 64u << QStringLiteral("f64")
                         << QStringLiteral("IEEE float on 64 bits");
    QTest::newRow("ch") << TypeFactory(FieldType::ch) << 3 << 8u << QStringLiteral("c8")
                        << QStringLiteral("Character on 8 bits");
    QTest::newRow("nch, shown like ch")
        << TypeFactory(FieldType::nch) << 4 << 8u << QStringLiteral("c8")
        << QStringLiteral("Character on 8 bits");
    QTest::newRow("byte") << TypeFactory(FieldType::byte) << 5 << 8u << QStringLiteral("b8")
                          << QStringLiteral("Byte on 8 bits");
    QTest::newRow("invalid") << TypeFactory(FieldType::invalid) << 255 << 0u
                             << QStringLiteral("Invalid") << QStringLiteral("Invalid");
    QTest::newRow("sub-message without message type")
        << TypeFactory([] { return FieldType::subMessage(nullptr); }) << 6 << 0u
        << QStringLiteral("") << QStringLiteral("Message of type ");
    QTest::newRow("unused kind 7: no short code")
        << TypeFactory([] { return FieldType(FieldType::BasisType(7), 8); }) << 7 << 8u << QString()
        << QStringLiteral("Unknown type");
    QTest::newRow("unused kind 254")
        << TypeFactory([] { return FieldType(FieldType::BasisType(254), 0); }) << 254 << 0u
        << QString() << QStringLiteral("Unknown type");
}

void tst_FieldType::kindsSizesAndTexts()
{
    QFETCH(TypeFactory, make);
    QFETCH(int, kind);
    QFETCH(uint, bits);
    QFETCH(QString, shortText);
    QFETCH(QString, longText);

    const FieldType type = make();
    QCOMPARE(int(type.getBasisType()), kind);
    QCOMPARE(type.getBitSize(), bits);
    QVERIFY(type.getSubMessageInfo() == nullptr);
    QCOMPARE(type.toShortString(), shortText);
    QCOMPARE(type.toShortString().isNull(), shortText.isNull());
    QCOMPARE(type.toString(), longText);
}

void tst_FieldType::equality_data()
{
    QTest::addColumn<TypeFactory>("a");
    QTest::addColumn<TypeFactory>("b");
    QTest::addColumn<bool>("equal");

    QTest::newRow("u8, u8") << TypeFactory([] { return FieldType::u(8); })
                            << TypeFactory([] { return FieldType::u(8); }) << true;
    QTest::newRow("u8, u16: size differs") << TypeFactory([] { return FieldType::u(8); })
                                           << TypeFactory([] { return FieldType::u(16); }) << false;
    QTest::newRow("u8, i8: kind differs") << TypeFactory([] { return FieldType::u(8); })
                                          << TypeFactory([] { return FieldType::i(8); }) << false;
    QTest::newRow("ch, nch: told apart")
        << TypeFactory(FieldType::ch) << TypeFactory(FieldType::nch) << false;
    QTest::newRow("f32, constructed float of 32 bits")
        << TypeFactory(FieldType::f32)
        << TypeFactory([] { return FieldType(FieldType::Float, 32); }) << true;
    QTest::newRow("invalid, constructed invalid")
        << TypeFactory(FieldType::invalid)
        << TypeFactory([] { return FieldType(FieldType::Invalid, 0); }) << true;
    QTest::newRow("invalid, invalid with a size")
        << TypeFactory(FieldType::invalid)
        << TypeFactory([] { return FieldType(FieldType::Invalid, 8); }) << false;
    QTest::newRow("same message type") << TypeFactory([] { return FieldType::subMessage(infoA); })
                                       << TypeFactory([] { return FieldType(infoA); }) << true;
    QTest::newRow("other message type")
        << TypeFactory([] { return FieldType::subMessage(infoA); })
        << TypeFactory([] { return FieldType::subMessage(infoB); }) << false;
    QTest::newRow("no message type, kept as given")
        << TypeFactory([] { return FieldType::subMessage(nullptr); })
        << TypeFactory([] { return FieldType(FieldType::SubMessage, 0); }) << true;
}

void tst_FieldType::equality()
{
    QFETCH(TypeFactory, a);
    QFETCH(TypeFactory, b);
    QFETCH(bool, equal);

    QCOMPARE(a() == b(), equal);
    QCOMPARE(b() == a(), equal);
    QCOMPARE(a() != b(), !equal);
}

void tst_FieldType::tracesConstructionAndCopyButNotAssignment()
{
    FieldType::byte(); // its function-local static is built outside the recording

    TracerRecorder recorder;
    {
        FieldType fixed = FieldType::byte();
        const FieldType again = FieldType::byte();
        const FieldType sub(infoA);
        fixed = sub;
        QCOMPARE(recorder.events(),
                 QStringList({ QStringLiteral("+FieldType"), QStringLiteral("+FieldType"),
                               QStringLiteral("+FieldType") }));
        // Each call hands out its own copy: changing one leaves the next untouched.
        QVERIFY(fixed != again);
        QVERIFY(FieldType::byte() == again);
        recorder.clear();
    }
    QCOMPARE(recorder.events(),
             QStringList({ QStringLiteral("-FieldType"), QStringLiteral("-FieldType"),
                           QStringLiteral("-FieldType") }));
}

void tst_FieldType::subMessageTextsNameTheMessageType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("longText");

    QTest::newRow("plain name") << QStringLiteral("PvtCartesian")
                                << QStringLiteral("Message of type PvtCartesian");
    QTest::newRow("name with a placeholder")
        << QStringLiteral("A%1") << QStringLiteral("Message of type A%1");
    QTest::newRow("empty name") << QString() << QStringLiteral("Message of type ");
}

void tst_FieldType::subMessageTextsNameTheMessageType()
{
    QFETCH(QString, name);
    QFETCH(QString, longText);

    const MessageInfo info(name);
    const FieldType type = FieldType::subMessage(&info);
    QCOMPARE(type.toShortString(), name);
    QCOMPARE(type.toString(), longText);

    // A value shows the name as its type suffix, after the message's address.
    TestMessage message(&info);
    const QString address = QString::number(reinterpret_cast<quintptr>(&message), 16);
    QCOMPARE(FieldValue::subMessage(&message).toString(true),
             address + QStringLiteral(" (") + name + QLatin1Char(')'));
}

QTEST_GUILESS_MAIN(tst_FieldType)
#include "tst_fieldtype.moc"
