// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "fieldinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "testfieldinfo.h"
#include "testmessage.h"
#include "warningcapture.h"

#include <QLocale>
#include <QTest>

#include <limits>
#include <utility>

namespace {
double const quietNaN = std::numeric_limits<double>::quiet_NaN();
}

class tst_FieldInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void attributes();
    void membership();
    void subFields();
    void symbolicValues();
    void rendering_data();
    void rendering();
    void unitSymbolBeforeValue();
    void valueString_data();
    void valueString();
};

void tst_FieldInfo::initTestCase()
{
    // Localized rendering takes the default locale of its first use.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_FieldInfo::attributes()
{
    TestFieldInfo field(QStringLiteral("F"), FieldType::i(16));
    QVERIFY(!field.hasRole() && !field.hasDoNotUseValue());
    QVERIFY(!field.isDoNotUseValue(FieldValue::invalid())); // the unset value matches nothing
    field.setRole(FieldInfo::NoRole); // any role set counts, even 0
    field.setScaleFactor(1.0000001);
    QVERIFY(field.hasRole() && field.hasScaleFactor());
    field.setScaleFactor(1.0); // exactly 1 is no factor
    QVERIFY(!field.hasScaleFactor());
}

void tst_FieldInfo::membership()
{
    AssertCapture capture;
    MessageInfo first(QStringLiteral("A"));
    MessageInfo second(QStringLiteral("B"));
    TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));
    QCOMPARE(field.getIndexInMessageInfo(&first), -1);
    field.addMessageInfo(&first, 4);
    field.addMessageInfo(&second, 0);
    field.addMessageInfo(&first, 7); // a second entry; the newer index wins
    QCOMPARE(field.getMessageInfos(), QVector<MessageInfo *>({ &first, &second, &first }));

    // Each entry needs its own removal; the index outlives them.
    field.removeMessageInfo(&first);
    QVERIFY(field.occursIn(&first));
    field.removeMessageInfo(&first);
    QVERIFY(!field.occursIn(&first));
    QCOMPARE(field.getIndexInMessageInfo(&first), 7);
    QCOMPARE(std::as_const(field).getMessageInfos(), QVector<MessageInfo const *> { &second });
    field.removeMessageInfo(&second);
    QCOMPARE(capture.count(), 0);
}

void tst_FieldInfo::subFields()
{
    AssertCapture capture;
    TestFieldInfo parent(QStringLiteral("RxState"), FieldType::u(32));
    TestFieldInfo other(QStringLiteral("Other"), FieldType::u(32));
    TestFieldInfo first(QStringLiteral("ActiveAntenna"), FieldType::u(1));
    TestFieldInfo second(QStringLiteral("ExtFreq"), FieldType::u(1));
    parent.addSubFieldInfo(&first);
    parent.addSubFieldInfo(&second);
    QCOMPARE(parent.getSubFieldInfos(), QVector<FieldInfo *>({ &first, &second }));
    QCOMPARE(first.getParentFieldInfo(), &parent);
    parent.removeSubFieldInfo(&first);
    QCOMPARE(std::as_const(parent).getSubFieldInfos(), QVector<FieldInfo const *> { &second });
    QVERIFY(!first.hasParentFieldInfo());
    QCOMPARE(capture.count(), 0);

    // A second parent is reported and takes over; the former one still lists the sub-field.
    other.addSubFieldInfo(&second);
    QCOMPARE(second.getParentFieldInfo(), &other);
    QCOMPARE(parent.getSubFieldInfos(), QVector<FieldInfo *> { &second });
    QCOMPARE(other.getSubFieldInfos(), QVector<FieldInfo *> { &second });
    // Removing a stranger leaves its parent alone.
    parent.addSubFieldInfo(&first);
    other.removeSubFieldInfo(&first);
    QCOMPARE(first.getParentFieldInfo(), &parent);
    QCOMPARE(
        capture.texts(),
        QStringList(
            { QStringLiteral("FieldInfo already has a parent FieldInfo"),
              QStringLiteral("FieldInfo::removeSubFieldInfo: Trying to remove a non-subfield") }));
    QCOMPARE(
        capture.functions(),
        QStringList({ QStringLiteral("addSubFieldInfo"), QStringLiteral("removeSubFieldInfo") }));

    // Unlink by hand so that no destructor meets a list it does not expect.
    other.removeSubFieldInfo(&second);
    parent.removeSubFieldInfo(&second);
}

void tst_FieldInfo::symbolicValues()
{
    TestFieldInfo field(QStringLiteral("Mode"), FieldType::u(8));
    field.addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("x"));
    field.addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("two"));
    field.addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("y"));
    QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(1, 8)), QStringLiteral("y"));
    QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(3, 8)), QString());
    QCOMPARE(field.getValuesWithSymbolicRepresentation(),
             QList<FieldValue>({ FieldValue::u(1, 8), FieldValue::u(2, 8), FieldValue::u(1, 8) }));
}

void tst_FieldInfo::rendering_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("precision");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("withUnit");
    QTest::addColumn<QString>("interpreted");
    QTest::addColumn<QString>("raw"); // never localized, scaled, symbolic or with a unit

    // The field has unit "m", do-not-use u8 0, and symbolic texts for u8 0, 2 and (empty) 3.
    auto row = [](char const *name, FieldValue value, double scale, int precision, int mode,
                  char const *interpreted, char const *raw, bool withUnit = true) {
        QTest::newRow(name) << value << scale << precision << mode << withUnit
                            << QString::fromUtf8(interpreted) << QString::fromUtf8(raw);
    };
    row("do-not-use before symbolic text", FieldValue::u(0, 8), 1, -1, 0, "N/A", "0");
    row("do-not-use of another size", FieldValue::u(0, 16), 1, -1, 0, "0 m", "0");
    row("NaN double", FieldValue::f64(quietNaN), 1, -1, 0, "N/A", "nan");
    row("NaN float", FieldValue::f32(float(quietNaN)), 1, -1, 0, "N/A", "nan");
    row("symbolic text before scaling", FieldValue::u(2, 8), 0.5, -1, 0, "Differential", "2");
    row("empty symbolic text falls through", FieldValue::u(3, 8), 1, -1, 0, "3 m", "3");
    row("scaled, six decimals", FieldValue::u(12345, 32), 0.001, -1, 0, "12,345000 m", "12345");
    row("scaled, no unit wanted", FieldValue::u(12345, 32), 0.001, -1, 0, "12,345000", "12345",
        false);
    row("scaled negative", FieldValue::i(-12345, 32), 0.001, -1, 0, "-12,345000 m", "-12345");
    row("scaled, precision, mode ignored", FieldValue::u(12346, 32), 0.001, 2, 1, "12,35 m",
        "303a");
    row("scaled and grouped", FieldValue::u(4000000, 32), 0.5, 0, 0, "2.000.000 m", "4000000");
    row("scaled float", FieldValue::f32(8.0f), 0.5, 0, 0, "4 m", "8");
    row("invalid value with scale factor", FieldValue::invalid(), 0.5, -1, 0, "Invalid", "Invalid");
    row("factor 1: raw value, grouped", FieldValue::u(12345, 32), 1, -1, 0, "12.345 m", "12345");
    row("hexadecimal", FieldValue::u(255, 32), 1, -1, 1, "ff m", "ff");
    row("decimal, not grouped", FieldValue::u(12345, 32), 1, -1, 2, "12345 m", "12345");
    row("double with precision", FieldValue::f64(1234.5678), 1, 3, 0, "1.234,568 m", "1234.568");
}

void tst_FieldInfo::rendering()
{
    QFETCH(FieldValue, value);
    QFETCH(double, scale);
    QFETCH(int, precision);
    QFETCH(int, mode);
    QFETCH(bool, withUnit);

    TestFieldInfo field(QStringLiteral("F"), value.getType());
    field.setScaleFactor(scale);
    field.setPrecision(static_cast<signed char>(precision));
    field.setRepresentationMode(FieldValue::RepresentationMode(mode));
    field.setUnit(QStringLiteral("meter"));
    field.setDoNotUseValue(FieldValue::u(0, 8));
    field.addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("zero"));
    field.addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("Differential"));
    field.addSymbolicValue(FieldValue::u(3, 8), QString());
    QTEST(field.getInterpretedString(value, withUnit), "interpreted");
    QTEST(field.getRawString(value), "raw");
}

void tst_FieldInfo::unitSymbolBeforeValue()
{
    // No fixed unit writes its symbol first; a row may be changed to do so.
    WarningCapture warnings; // the first setUnit of a new text warns
    TestFieldInfo field(QStringLiteral("Price"), FieldType::u(16));
    field.setUnit(QStringLiteral("EUR"));
    field.setUnit(QStringLiteral("EUR"));
    FieldInfo::sUnitToUnitDataMap[field.getUnit()].symbolAfterValue = false;
    QCOMPARE(field.getInterpretedString(FieldValue::u(5, 16), true), QStringLiteral("EUR 5"));
}

void tst_FieldInfo::valueString_data()
{
    QTest::addColumn<int>("basis");
    QTest::addColumn<int>("bits");
    QTest::addColumn<bool>("repeated");
    QTest::addColumn<QByteArray>("characters");
    QTest::addColumn<QString>("expected"); // null: not a string field, the read throws

    auto row = [](char const *name, int basis, int bits, bool repeated, QByteArray characters,
                  QString expected) {
        QTest::newRow(name) << basis << bits << repeated << characters << expected;
    };
    int const ch = FieldType::Char;
    row("stops at the first zero", ch, 8, true, QByteArray("AB\0C", 4), QStringLiteral("AB"));
    row("no zero", ch, 8, true, "ABC", QStringLiteral("ABC"));
    row("no values", ch, 8, true, QByteArray(), QStringLiteral(""));
    row("Latin-1", ch, 8, true, "caf\xe9", QStringLiteral("caf\u00e9"));
    row("nchar", FieldType::NChar, 8, true, "XY", QStringLiteral("XY"));
    row("single char", ch, 8, false, "A", QString());
    row("16-bit char", ch, 16, true, "A", QString());
    row("byte", FieldType::Byte, 8, true, "A", QString());
}

void tst_FieldInfo::valueString()
{
    QFETCH(int, basis);
    QFETCH(int, bits);
    QFETCH(bool, repeated);
    QFETCH(QByteArray, characters);
    QFETCH(QString, expected);

    TestFieldInfo field(QStringLiteral("MarkerName"),
                        FieldType(FieldType::BasisType(basis), unsigned(bits)));
    field.setIsRepeated(repeated);
    QCOMPARE(field.isStringField(), !expected.isNull());
    MessageInfo info(QStringLiteral("ReceiverSetup"));
    TestMessage message(&info);
    QVector<FieldValue> values;
    for (char c : characters)
        values.append(basis == FieldType::NChar ? FieldValue::nch(c) : FieldValue::ch(c));
    message.setValues(&field, values);
    try {
        QCOMPARE(field.getValueString(&message), expected);
        QVERIFY(!expected.isNull());
    } catch (MessageApiEvent const &event) {
        QVERIFY(expected.isNull());
        QCOMPARE(event.getType(), MessageApiEvent::ClientError);
        QCOMPARE(event.getMessage(),
                 QStringLiteral("Requesting value as a string for non-string field."));
        QVERIFY(event.getFormat() == nullptr);
    }
}

QTEST_GUILESS_MAIN(tst_FieldInfo)

#include "tst_fieldinfo.moc"
