// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldtype.h"
#include "fieldvalue.h"
#include "messageinfo.h"
#include "testmessage.h"

#include <QTest>

namespace {
// Sub-message types only compare the pointer; these are never looked at.
MessageInfo const *const infoA = reinterpret_cast<MessageInfo const *>(0x10);
MessageInfo const *const infoB = reinterpret_cast<MessageInfo const *>(0x20);
} // namespace

class tst_FieldType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsSizesAndTexts_data()
    {
        QTest::addColumn<FieldValue>("ofType"); // a value carrying the type
        QTest::addColumn<int>("kind");
        QTest::addColumn<uint>("bits");
        QTest::addColumn<QString>("shortText"); // null where the short code is null
        QTest::addColumn<QString>("longText");
        auto row = [](char const *name, FieldType const &type, int kind, uint bits,
                      char const *code, char const *text) {
            QTest::newRow(name) << FieldValue(type) << kind << bits
                                << (code ? QString::fromLatin1(code) : QString())
                                << QString::fromLatin1(text);
        };
        row("u8", FieldType::u(8), 0, 8, "u8", "Unsigned integer on 8 bits");
        row("u1000 unchecked", FieldType(FieldType::UnsignedInteger, 1000), 0, 1000, "u1000",
            "Unsigned integer on 1000 bits");
        row("i16", FieldType::i(16), 1, 16, "i16", "Signed integer on 16 bits");
        row("f64", FieldType::f64(), 2, 64, "f64", "IEEE float on 64 bits");
        row("ch", FieldType::ch(), 3, 8, "c8", "Character on 8 bits");
        row("nch shown like ch", FieldType::nch(), 4, 8, "c8", "Character on 8 bits");
        row("byte", FieldType::byte(), 5, 8, "b8", "Byte on 8 bits");
        row("invalid", FieldType::invalid(), 255, 0, "Invalid", "Invalid");
        row("no message type", FieldType::subMessage(nullptr), 6, 0, "", "Message of type ");
        row("unused kind", FieldType(FieldType::BasisType(7), 8), 7, 8, nullptr, "Unknown type");
    }

    void kindsSizesAndTexts()
    {
        QFETCH(FieldValue, ofType);
        QFETCH(int, kind);
        QFETCH(uint, bits);
        QFETCH(QString, shortText);
        QFETCH(QString, longText);
        FieldType const &type = ofType.getType();
        QCOMPARE(int(type.getBasisType()), kind);
        QCOMPARE(type.getBitSize(), bits);
        QVERIFY(type.getSubMessageInfo() == nullptr);
        QCOMPARE(type.toShortString(), shortText);
        QCOMPARE(type.toShortString().isNull(), shortText.isNull());
        QCOMPARE(type.toString(), longText);
    }

    void equalOnlyWhenKindSizeAndMessageTypeAgree()
    {
        QVERIFY(FieldType::f32() == FieldType(FieldType::Float, 32));
        QVERIFY(FieldType::subMessage(infoA) == FieldType(infoA));
        QVERIFY(FieldType::u(8) != FieldType::u(16) && FieldType::u(8) != FieldType::i(8));
        QVERIFY(FieldType::ch() != FieldType::nch());
        QVERIFY(FieldType::invalid() != FieldType(FieldType::Invalid, 8));
        QVERIFY(FieldType::subMessage(infoA) != FieldType::subMessage(infoB));
        QVERIFY(!(FieldType::subMessage(infoA) == FieldType::subMessage(infoB)));
    }

    void subMessageTextsNameTheMessageType()
    {
        // "%1" in a name must come through as it is, not be filled a second time.
        for (QString const &name : { QStringLiteral("PvtCartesian"), QStringLiteral("A%1") }) {
            const MessageInfo info(name);
            const FieldType type = FieldType::subMessage(&info);
            QCOMPARE(type.toShortString(), name);
            QCOMPARE(type.toString(), QStringLiteral("Message of type ") + name);

            // A value shows the message's address, even in decimal mode, and the name as its
            // suffix.
            TestMessage message(&info);
            const QString address = QString::number(reinterpret_cast<quintptr>(&message), 16);
            QCOMPARE(FieldValue::subMessage(&message).toString(true, -1, FieldValue::Decimal, true),
                     address + QStringLiteral(" (") + name + QLatin1Char(')'));
        }
    }
};

QTEST_GUILESS_MAIN(tst_FieldType)
#include "tst_fieldtype.moc"
