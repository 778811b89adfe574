// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldtype.h"
#include "fieldvalue.h"
#include "messageinfo.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QTest>

using TypeFactory = FieldType (*)();
Q_DECLARE_METATYPE(TypeFactory)
#define TYPE(expr) TypeFactory([] { return expr; })

namespace {

// Sub-message types only compare the pointer; these are never looked at.
MessageInfo const *const infoA = reinterpret_cast<MessageInfo const *>(0x10);
MessageInfo const *const infoB = reinterpret_cast<MessageInfo const *>(0x20);

QStringList words(char const *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

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
    void subMessageTextsNameTheMessageType();
};

void tst_FieldType::kindsSizesAndTexts_data()
{
    QTest::addColumn<TypeFactory>("make");
    QTest::addColumn<int>("kind");
    QTest::addColumn<uint>("bits");
    QTest::addColumn<QString>("shortText"); // null where the short code is null
    QTest::addColumn<QString>("longText");
    auto row = [](char const *name, TypeFactory make, int kind, uint bits, char const *shortText,
                  char const *longText) {
        QTest::newRow(name) << make << kind << bits
                            << (shortText ? QString::fromLatin1(shortText) : QString())
                            << QString::fromLatin1(longText);
    };
    row("u8", TYPE(FieldType::u(8)), 0, 8, "u8", "Unsigned integer on 8 bits");
    row("u255", TYPE(FieldType::u(255)), 0, 255, "u255", "Unsigned integer on 255 bits");
    row("u1000 unchecked", TYPE(FieldType(FieldType::UnsignedInteger, 1000)), 0, 1000, "u1000",
        "Unsigned integer on 1000 bits");
    row("i16", TYPE(FieldType::i(16)), 1, 16, "i16", "Signed integer on 16 bits");
    row("f32", FieldType::f32, 2, 32, "f32", "IEEE float on 32 bits");
    row("f64", FieldType::f64, 2, 64, "f64", "IEEE float on 64 bits");
    row("ch", FieldType::ch, 3, 8, "c8", "Character on 8 bits");
    row("nch shown like ch", FieldType::nch, 4, 8, "c8", "Character on 8 bits");
    row("byte", FieldType::byte, 5, 8, "b8", "Byte on 8 bits");
    row("invalid", FieldType::invalid, 255, 0, "Invalid", "Invalid");
    row("no message type", TYPE(FieldType::subMessage(nullptr)), 6, 0, "", "Message of type ");
    row("unused kind 7", TYPE(FieldType(FieldType::BasisType(7), 8)), 7, 8, nullptr,
        "Unknown type");
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
    QTest::newRow("u8, u8") << TYPE(FieldType::u(8)) << TYPE(FieldType::u(8)) << true;
    QTest::newRow("u8, u16") << TYPE(FieldType::u(8)) << TYPE(FieldType::u(16)) << false;
    QTest::newRow("u8, i8") << TYPE(FieldType::u(8)) << TYPE(FieldType::i(8)) << false;
    QTest::newRow("ch, nch") << TypeFactory(FieldType::ch) << TypeFactory(FieldType::nch) << false;
    QTest::newRow("f32, built") << TypeFactory(FieldType::f32)
                                << TYPE(FieldType(FieldType::Float, 32)) << true;
    QTest::newRow("invalid, sized")
        << TypeFactory(FieldType::invalid) << TYPE(FieldType(FieldType::Invalid, 8)) << false;
    QTest::newRow("same message type")
        << TYPE(FieldType::subMessage(infoA)) << TYPE(FieldType(infoA)) << true;
    QTest::newRow("other message type")
        << TYPE(FieldType::subMessage(infoA)) << TYPE(FieldType::subMessage(infoB)) << false;
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
        fixed = FieldType(infoA);
        QCOMPARE(recorder.events(), words("+FieldType +FieldType +FieldType -FieldType"));
        // Each call hands out its own copy: changing one leaves the next untouched.
        QVERIFY(FieldType::byte() == again);
        recorder.clear();
    }
    QCOMPARE(recorder.events(), words("-FieldType -FieldType"));
}

void tst_FieldType::subMessageTextsNameTheMessageType()
{
    // "%1" in a name must come through as it is, not be filled a second time.
    for (QString const &name : { QStringLiteral("PvtCartesian"), QStringLiteral("A%1") }) {
        const MessageInfo info(name);
        const FieldType type = FieldType::subMessage(&info);
        QCOMPARE(type.toShortString(), name);
        QCOMPARE(type.toString(), QStringLiteral("Message of type ") + name);

        // A value shows the message's address in every mode, and the name as its type suffix.
        TestMessage message(&info);
        const QString address = QString::number(reinterpret_cast<quintptr>(&message), 16);
        QCOMPARE(FieldValue::subMessage(&message).toString(true, -1, FieldValue::Decimal, true),
                 address + QStringLiteral(" (") + name + QLatin1Char(')'));
    }
}

QTEST_GUILESS_MAIN(tst_FieldType)
#include "tst_fieldtype.moc"
