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

class tst_FieldInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void defaults();
    void flagsFollowTheirValues_data();
    void flagsFollowTheirValues();
    void doNotUseValue_data();
    void doNotUseValue();
    void membershipKeepsIndexAfterLeaving();
    void removingNonMemberMessageReports();
    void subFields();
    void secondParentIsReportedAndTakesOver();
    void removingNonSubFieldReports();
    void symbolicValues();
    void rawString_data();
    void rawString();
    void interpretedString_data();
    void interpretedString();
    void unitSymbolBeforeValue();
    void stringField_data();
    void stringField();
    void valueString_data();
    void valueString();
    void valueStringOfNonStringFieldThrows();
};

void tst_FieldInfo::initTestCase()
{
    // Localized rendering takes the default locale of its first use.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_FieldInfo::defaults()
{
    TestFieldInfo field(QStringLiteral("CN0"), FieldType::u(8));
    QCOMPARE(field.getName(), QStringLiteral("CN0"));
    QCOMPARE(field.getType(), FieldType::u(8));
    QVERIFY(field.getShortDescriptiveText().isEmpty());
    QVERIFY(field.getDescriptiveText().isEmpty());
    QVERIFY(!field.isOptional());
    QVERIFY(!field.isRepeated());
    QVERIFY(!field.isVirtual());
    QVERIFY(!field.isConfidential());
    QVERIFY(!field.hasRole());
    QCOMPARE(int(field.getRole()), 0);
    QCOMPARE(field.getUnit(), FieldInfo::NoUnit);
    QVERIFY(!field.hasUnit());
    QCOMPARE(field.getScaleFactor(), 1.0);
    QVERIFY(!field.hasScaleFactor());
    QCOMPARE(int(field.getPrecision()), -1);
    QVERIFY(!field.hasPrecision());
    QCOMPARE(field.getRepresentationMode(), FieldValue::Natural);
    QVERIFY(!field.hasRepresentationMode());
    QVERIFY(!field.hasDoNotUseValue());
    QVERIFY(!field.getDoNotUseValue().isValid());
    QVERIFY(field.getValuesWithSymbolicRepresentation().isEmpty());
    QVERIFY(field.getMessageInfos().isEmpty());
    QVERIFY(!field.hasSubFieldInfos());
    QVERIFY(!field.hasParentFieldInfo());
    QCOMPARE(field.getDoNotUseString(), QStringLiteral("N/A"));
}

void tst_FieldInfo::flagsFollowTheirValues_data()
{
    QTest::addColumn<double>("scaleFactor");
    QTest::addColumn<int>("precision");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("hasScaleFactor");
    QTest::addColumn<bool>("hasPrecision");
    QTest::addColumn<bool>("hasMode");

    QTest::newRow("factor exactly 1 is none") << 1.0 << -1 << 0 << false << false << false;
    QTest::newRow("factor near 1") << 1.0000001 << -1 << 0 << true << false << false;
    QTest::newRow("factor 0") << 0.0 << -1 << 0 << true << false << false;
    QTest::newRow("precision 0") << 1.0 << 0 << 0 << false << true << false;
    QTest::newRow("hexadecimal") << 1.0 << -1 << 1 << false << false << true;
}

void tst_FieldInfo::flagsFollowTheirValues()
{
    QFETCH(double, scaleFactor);
    QFETCH(int, precision);
    QFETCH(int, mode);

    TestFieldInfo field(QStringLiteral("F"), FieldType::i(16));
    field.setScaleFactor(scaleFactor);
    field.setPrecision(static_cast<signed char>(precision));
    field.setRepresentationMode(FieldValue::RepresentationMode(mode));
    QTEST(field.hasScaleFactor(), "hasScaleFactor");
    QTEST(field.hasPrecision(), "hasPrecision");
    QTEST(field.hasRepresentationMode(), "hasMode");
    QCOMPARE(field.getScaleFactor(), scaleFactor);
    QCOMPARE(int(field.getPrecision()), precision);

    field.setRole(FieldInfo::Role(0));
    QVERIFY(field.hasRole()); // setting any role, even 0, counts
}

void tst_FieldInfo::doNotUseValue_data()
{
    QTest::addColumn<bool>("set");
    QTest::addColumn<FieldValue>("doNotUse");
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<bool>("matches");

    QTest::newRow("none set, invalid value")
        << false << FieldValue() << FieldValue::invalid() << false;
    QTest::newRow("same type and value")
        << true << FieldValue::u(255, 8) << FieldValue::u(255, 8) << true;
    QTest::newRow("other value") << true << FieldValue::u(255, 8) << FieldValue::u(254, 8) << false;
    QTest::newRow("same number, other size")
        << true << FieldValue::u(255, 8) << FieldValue::u(255, 16) << false;
    QTest::newRow("float") << true << FieldValue::f64(-2e10) << FieldValue::f64(-2e10) << true;
    QTest::newRow("NaN never matches")
        << true << FieldValue::f64(std::numeric_limits<double>::quiet_NaN())
        << FieldValue::f64(std::numeric_limits<double>::quiet_NaN()) << false;
}

void tst_FieldInfo::doNotUseValue()
{
    QFETCH(bool, set);
    QFETCH(FieldValue, doNotUse);
    QFETCH(FieldValue, value);

    TestFieldInfo field(QStringLiteral("F"), value.getType());
    if (set)
        field.setDoNotUseValue(doNotUse);
    QCOMPARE(field.hasDoNotUseValue(), set);
    QTEST(field.isDoNotUseValue(value), "matches");
}

void tst_FieldInfo::membershipKeepsIndexAfterLeaving()
{
    MessageInfo first(QStringLiteral("A"));
    MessageInfo second(QStringLiteral("B"));
    TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));

    QCOMPARE(field.getIndexInMessageInfo(&first), -1);
    field.addMessageInfo(&first, 4);
    field.addMessageInfo(&second, 0);
    field.addMessageInfo(&first, 7); // a second entry; the newer index wins
    QCOMPARE(field.getMessageInfos(), QVector<MessageInfo *>({ &first, &second, &first }));
    QCOMPARE(field.getIndexInMessageInfo(&first), 7);

    field.removeMessageInfo(&first);
    field.removeMessageInfo(&first);
    QVERIFY(!field.occursIn(&first));
    QVERIFY(field.occursIn(&second));
    QCOMPARE(field.getIndexInMessageInfo(&first), 7);
    QCOMPARE(static_cast<TestFieldInfo const &>(field).getMessageInfos(),
             QVector<MessageInfo const *> { &second });
    field.removeMessageInfo(&second); // second never listed the field
}

void tst_FieldInfo::removingNonMemberMessageReports()
{
    AssertCapture capture;
    MessageInfo message(QStringLiteral("A"));
    TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));
    field.removeMessageInfo(&message);
    QCOMPARE(capture.texts(),
             QStringList {
                 QStringLiteral("FieldInfo::removeMessageInfo: Trying to remove a non-member") });
    QCOMPARE(capture.functions(), QStringList { QStringLiteral("removeMessageInfo") });
    QCOMPARE(capture.reports().at(0).module, QByteArray("MSGAPI"));
}

void tst_FieldInfo::subFields()
{
    AssertCapture capture;
    TestFieldInfo parent(QStringLiteral("RxState"), FieldType::u(32));
    TestFieldInfo first(QStringLiteral("ActiveAntenna"), FieldType::u(1));
    TestFieldInfo second(QStringLiteral("ExtFreq"), FieldType::u(1));
    parent.addSubFieldInfo(&first);
    parent.addSubFieldInfo(&second);
    QVERIFY(parent.hasSubFieldInfos());
    QCOMPARE(parent.getSubFieldInfos(), QVector<FieldInfo *>({ &first, &second }));
    QCOMPARE(first.getParentFieldInfo(), &parent);

    parent.removeSubFieldInfo(&first);
    QCOMPARE(static_cast<FieldInfo const &>(parent).getSubFieldInfos(),
             QVector<FieldInfo const *> { &second });
    QVERIFY(!first.hasParentFieldInfo());
    QVERIFY(second.hasParentFieldInfo());
    QCOMPARE(capture.count(), 0);
}

void tst_FieldInfo::secondParentIsReportedAndTakesOver()
{
    AssertCapture capture;
    TestFieldInfo former(QStringLiteral("P1"), FieldType::u(8));
    TestFieldInfo newer(QStringLiteral("P2"), FieldType::u(8));
    TestFieldInfo sub(QStringLiteral("S"), FieldType::u(1));
    former.addSubFieldInfo(&sub);
    newer.addSubFieldInfo(&sub);
    QCOMPARE(capture.texts(),
             QStringList { QStringLiteral("FieldInfo already has a parent FieldInfo") });
    QCOMPARE(capture.functions(), QStringList { QStringLiteral("addSubFieldInfo") });
    QCOMPARE(sub.getParentFieldInfo(), &newer);
    QCOMPARE(former.getSubFieldInfos(), QVector<FieldInfo *> { &sub });
    QCOMPARE(newer.getSubFieldInfos(), QVector<FieldInfo *> { &sub });

    // Unlink by hand so that no destructor meets a list it does not expect.
    newer.removeSubFieldInfo(&sub);
    former.removeSubFieldInfo(&sub);
}

void tst_FieldInfo::removingNonSubFieldReports()
{
    AssertCapture capture;
    TestFieldInfo parent(QStringLiteral("P"), FieldType::u(8));
    TestFieldInfo stranger(QStringLiteral("S"), FieldType::u(1));
    TestFieldInfo otherParent(QStringLiteral("O"), FieldType::u(8));
    otherParent.addSubFieldInfo(&stranger);
    parent.removeSubFieldInfo(&stranger);
    QCOMPARE(capture.texts(),
             QStringList { QStringLiteral(
                 "FieldInfo::removeSubFieldInfo: Trying to remove a non-subfield") });
    QCOMPARE(capture.functions(), QStringList { QStringLiteral("removeSubFieldInfo") });
    // Not ours to unlink: the real parent keeps it.
    QCOMPARE(stranger.getParentFieldInfo(), &otherParent);
}

void tst_FieldInfo::symbolicValues()
{
    TestFieldInfo field(QStringLiteral("Mode"), FieldType::u(8));
    field.addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("x"));
    field.addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("two"));
    field.addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("y"));
    QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(1, 8)), QStringLiteral("y"));
    QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(2, 8)), QStringLiteral("two"));
    QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(3, 8)), QString());
    QCOMPARE(field.getValuesWithSymbolicRepresentation(),
             QList<FieldValue>({ FieldValue::u(1, 8), FieldValue::u(2, 8), FieldValue::u(1, 8) }));
}

void tst_FieldInfo::rawString_data()
{
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<int>("precision");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("expected");

    // Never localized, scaled, symbolic or with a unit, whatever the field says.
    QTest::newRow("unsigned, not grouped")
        << FieldValue::u(1234567, 32) << -1 << 0 << QStringLiteral("1234567");
    QTest::newRow("hexadecimal") << FieldValue::u(255, 32) << -1 << 1 << QStringLiteral("ff");
    QTest::newRow("float with precision")
        << FieldValue::f64(1234.5678) << 2 << 0 << QStringLiteral("1234.57");
    QTest::newRow("symbolic value") << FieldValue::u(1, 32) << -1 << 0 << QStringLiteral("1");
    QTest::newRow("do-not-use value") << FieldValue::u(0, 32) << -1 << 0 << QStringLiteral("0");
}

void tst_FieldInfo::rawString()
{
    QFETCH(FieldValue, value);
    QFETCH(int, precision);
    QFETCH(int, mode);

    TestFieldInfo field(QStringLiteral("F"), value.getType());
    field.setPrecision(static_cast<signed char>(precision));
    field.setRepresentationMode(FieldValue::RepresentationMode(mode));
    field.setScaleFactor(0.5);
    field.setUnit(QStringLiteral("meter"));
    field.addSymbolicValue(FieldValue::u(1, 32), QStringLiteral("one"));
    field.setDoNotUseValue(FieldValue::u(0, 32));
    QTEST(field.getRawString(value), "expected");
}

// How a field of the rendering table is configured; an invalid value means "not set".
struct Setup
{
    double scale = 1.0;
    int precision = -1;
    int mode = 0;
    QString unit;
    FieldValue doNotUse;
    FieldValue symbolic;
    QString symbolicText;
};
Q_DECLARE_METATYPE(Setup)

void tst_FieldInfo::interpretedString_data()
{
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<bool>("withUnit");
    QTest::addColumn<QString>("expected");

    double const nan = std::numeric_limits<double>::quiet_NaN();
    auto row
        = [](char const *name, Setup setup, FieldValue value, bool withUnit, QString expected) {
              QTest::newRow(name) << setup << value << withUnit << expected;
          };
    Setup meter;
    meter.unit = QStringLiteral("meter");

    Setup zeroIsNa = meter;
    zeroIsNa.doNotUse = FieldValue::u(0, 8);
    zeroIsNa.symbolic = FieldValue::u(0, 8);
    zeroIsNa.symbolicText = QStringLiteral("zero");
    row("do-not-use beats symbolic text, no unit", zeroIsNa, FieldValue::u(0, 8), true,
        QStringLiteral("N/A"));
    row("do-not-use of another size is a plain value", zeroIsNa, FieldValue::u(0, 16), true,
        QStringLiteral("0 m"));
    row("NaN double without do-not-use", meter, FieldValue::f64(nan), true, QStringLiteral("N/A"));
    Setup otherDoNotUse = meter;
    otherDoNotUse.doNotUse = FieldValue::f32(-2e10f);
    row("NaN float with another do-not-use", otherDoNotUse, FieldValue::f32(float(nan)), true,
        QStringLiteral("N/A"));

    Setup symbolic = meter;
    symbolic.symbolic = FieldValue::u(2, 8);
    symbolic.symbolicText = QStringLiteral("Differential");
    row("symbolic text gets no unit", symbolic, FieldValue::u(2, 8), true,
        QStringLiteral("Differential"));
    row("value without symbolic text", symbolic, FieldValue::u(3, 8), true, QStringLiteral("3 m"));
    Setup emptySymbolic = meter;
    emptySymbolic.symbolic = FieldValue::u(2, 8);
    emptySymbolic.symbolicText = QStringLiteral("");
    row("empty symbolic text falls through", emptySymbolic, FieldValue::u(2, 8), true,
        QStringLiteral("2 m"));

    Setup milli = meter;
    milli.scale = 0.001;
    row("scaled, six decimals by default", milli, FieldValue::u(12345, 32), true,
        QStringLiteral("12,345000 m"));
    row("scaled, unit not wanted", milli, FieldValue::u(12345, 32), false,
        QStringLiteral("12,345000"));
    row("scaled negative", milli, FieldValue::i(-12345, 32), true, QStringLiteral("-12,345000 m"));
    Setup milliTwo = milli;
    milliTwo.precision = 2;
    milliTwo.mode = 1; // the mode does not apply to scaled values
    row("scaled with precision", milliTwo, FieldValue::u(12346, 32), true,
        QStringLiteral("12,35 m"));
    Setup half = meter;
    half.scale = 0.5;
    half.precision = 0;
    row("scaled and grouped", half, FieldValue::u(4000000, 32), true,
        QStringLiteral("2.000.000 m"));
    row("scaled float", half, FieldValue::f32(8.0f), true, QStringLiteral("4 m"));
    row("invalid value with a scale factor", half, FieldValue::invalid(), true,
        QStringLiteral("Invalid"));

    row("factor 1 renders the raw value, grouped", meter, FieldValue::u(12345, 32), true,
        QStringLiteral("12.345 m"));
    Setup hex = meter;
    hex.mode = 1;
    row("hexadecimal", hex, FieldValue::u(255, 32), true, QStringLiteral("ff m"));
    Setup decimal = meter;
    decimal.mode = 2;
    row("decimal is not grouped", decimal, FieldValue::u(12345, 32), true,
        QStringLiteral("12345 m"));
    Setup three = meter;
    three.precision = 3;
    row("double with precision", three, FieldValue::f64(1234.5678), true,
        QStringLiteral("1.234,568 m"));
    row("character", Setup(), FieldValue::ch('A'), true, QStringLiteral("A"));

    Setup celsius;
    celsius.unit = QStringLiteral("celsius");
    row("degree sign", celsius, FieldValue::i(-5, 8), true, QStringLiteral("-5 \u00b0C"));
    Setup micro;
    micro.unit = QStringLiteral("microsecond");
    row("micro sign", micro, FieldValue::u(5, 32), true, QStringLiteral("5 \u00b5s"));
}

void tst_FieldInfo::interpretedString()
{
    QFETCH(Setup, setup);
    QFETCH(FieldValue, value);
    QFETCH(bool, withUnit);

    TestFieldInfo field(QStringLiteral("F"), value.getType());
    field.setScaleFactor(setup.scale);
    field.setPrecision(static_cast<signed char>(setup.precision));
    field.setRepresentationMode(FieldValue::RepresentationMode(setup.mode));
    field.setUnit(setup.unit);
    if (setup.doNotUse.isValid())
        field.setDoNotUseValue(setup.doNotUse);
    if (setup.symbolic.isValid())
        field.addSymbolicValue(setup.symbolic, setup.symbolicText);
    QTEST(field.getInterpretedString(value, withUnit), "expected");
}

void tst_FieldInfo::unitSymbolBeforeValue()
{
    // No fixed unit writes its symbol first; a row may be changed to do so.
    WarningCapture warnings; // the first setUnit of a new text warns
    TestFieldInfo field(QStringLiteral("Price"), FieldType::u(16));
    field.setUnit(QStringLiteral("EUR"));
    field.setUnit(QStringLiteral("EUR"));
    QVERIFY(field.hasUnit());
    FieldInfo::sUnitToUnitDataMap[field.getUnit()].symbolAfterValue = false;
    QCOMPARE(field.getInterpretedString(FieldValue::u(5, 16), true), QStringLiteral("EUR 5"));
}

void tst_FieldInfo::stringField_data()
{
    QTest::addColumn<int>("basis");
    QTest::addColumn<int>("bits");
    QTest::addColumn<bool>("repeated");
    QTest::addColumn<bool>("isString");

    QTest::newRow("repeated char") << int(FieldType::Char) << 8 << true << true;
    QTest::newRow("repeated nchar") << int(FieldType::NChar) << 8 << true << true;
    QTest::newRow("single char") << int(FieldType::Char) << 8 << false << false;
    QTest::newRow("repeated 16-bit char") << int(FieldType::Char) << 16 << true << false;
    QTest::newRow("repeated byte") << int(FieldType::Byte) << 8 << true << false;
    QTest::newRow("repeated u8") << int(FieldType::UnsignedInteger) << 8 << true << false;
}

void tst_FieldInfo::stringField()
{
    QFETCH(int, basis);
    QFETCH(int, bits);
    QFETCH(bool, repeated);

    TestFieldInfo field(QStringLiteral("F"),
                        FieldType(FieldType::BasisType(basis), unsigned(bits)));
    field.setIsRepeated(repeated);
    QTEST(field.isStringField(), "isString");
}

void tst_FieldInfo::valueString_data()
{
    QTest::addColumn<QByteArray>("characters");
    QTest::addColumn<bool>("nch");
    QTest::addColumn<QString>("expected");

    QTest::newRow("stops at the first zero")
        << QByteArray("AB\0C", 4) << false << QStringLiteral("AB");
    QTest::newRow("no zero: every character")
        << QByteArray("ABC") << false << QStringLiteral("ABC");
    QTest::newRow("zero first") << QByteArray("\0AB", 3) << false << QString();
    QTest::newRow("no values") << QByteArray() << false << QString();
    QTest::newRow("Latin-1") << QByteArray("caf\xe9") << false << QStringLiteral("caf\u00e9");
    QTest::newRow("nchar field") << QByteArray("XY") << true << QStringLiteral("XY");
}

void tst_FieldInfo::valueString()
{
    QFETCH(QByteArray, characters);
    QFETCH(bool, nch);

    MessageInfo info(QStringLiteral("ReceiverSetup"));
    TestFieldInfo field(QStringLiteral("MarkerName"), nch ? FieldType::nch() : FieldType::ch());
    field.setIsRepeated(true);
    TestMessage message(&info);
    QVector<FieldValue> values;
    for (char c : characters)
        values.append(nch ? FieldValue::nch(c) : FieldValue::ch(c));
    message.setValues(&field, values);
    QTEST(field.getValueString(&message), "expected");
}

void tst_FieldInfo::valueStringOfNonStringFieldThrows()
{
    MessageInfo info(QStringLiteral("ReceiverSetup"));
    TestFieldInfo field(QStringLiteral("Single"), FieldType::ch());
    TestMessage message(&info);
    message.setValues(&field, { FieldValue::ch('A') });
    try {
        field.getValueString(&message);
        QFAIL("no exception");
    } catch (MessageApiEvent const &event) {
        QCOMPARE(event.getType(), MessageApiEvent::ClientError);
        QCOMPARE(event.getMessage(),
                 QStringLiteral("Requesting value as a string for non-string field."));
        QVERIFY(event.getFormat() == nullptr);
    }
}

QTEST_GUILESS_MAIN(tst_FieldInfo)

#include "tst_fieldinfo.moc"
