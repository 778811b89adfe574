// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "fieldinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "testfieldinfo.h"
#include "testmessage.h"
#include "warningcapture.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QTest>

#include <cmath>
#include <utility>

using Unit = FieldInfo::Unit;

class tst_FieldInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Localized rendering takes the default locale of its first use.
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        // The first use fills the table; a row that was there before makes its size wrong.
        AssertCapture capture;
        FieldInfo::sUnitToUnitDataMap.insert(Unit(99), FieldInfo::UnitData());
        FieldInfo::ensureExplicitUnits();
        QCOMPARE(capture.texts(),
                 QStringList(QStringLiteral("Units missing in ensureExplicitUnits()")));
        QCOMPARE(capture.functions(), QStringList(QStringLiteral("ensureExplicitUnits")));
        FieldInfo::sUnitToUnitDataMap.remove(Unit(99));
        QCOMPARE(FieldInfo::sUnitToUnitDataMap.size(), 63);

        // Filled once: a second call leaves a changed row alone.
        FieldInfo::sUnitToUnitDataMap[FieldInfo::UnitMeter].symbol = QStringLiteral("changed");
        FieldInfo::ensureExplicitUnits();
        QCOMPARE(FieldInfo::unitToString(FieldInfo::UnitMeter, true), QStringLiteral("changed"));
        FieldInfo::sUnitToUnitDataMap[FieldInfo::UnitMeter].symbol = QStringLiteral("m");
    }

    void unitTable()
    {
        // Every fixed row, as the table holds it, as unitToString() shows it and as setUnit()
        // picks it by its identifier (the first row wins an identifier taken twice), in one text
        // whose SHA-1 is pinned: a changed unit text fails here, and prints the whole table.
        WarningCapture warnings;
        TestFieldInfo field(QStringLiteral("F"), FieldType::u(8));
        QStringList rows;
        for (int unit = 0; unit < 63; ++unit) {
            FieldInfo::UnitData const data = FieldInfo::sUnitToUnitDataMap.value(Unit(unit));
            field.setUnit(QStringLiteral("second"));
            field.setUnit(data.identifier);
            rows << QStringList({ QString::number(data.unit), data.identifier, data.symbol,
                                  data.singularText, data.pluralText,
                                  QString::number(data.symbolAfterValue),
                                  FieldInfo::unitToString(Unit(unit), true),
                                  FieldInfo::unitToString(Unit(unit), false),
                                  QString::number(field.getUnit()),
                                  QString::number(field.hasUnit()), field.getUnitString(true) })
                        .join(QLatin1Char('|'));
        }
        // A value outside the table is warned about and not entered.
        QCOMPARE(FieldInfo::unitToString(Unit(1000), true), QStringLiteral("unknown unit"));
        QCOMPARE(FieldInfo::unitToString(Unit(-3), false), QStringLiteral("unknown unit"));
        QCOMPARE(warnings.warnings(),
                 QStringList({ QStringLiteral("Unknown unit enum value 1000"),
                               QStringLiteral("Unknown unit enum value -3") }));
        QVERIFY(!FieldInfo::sUnitToUnitDataMap.contains(Unit(1000)));
        QByteArray const digest = QCryptographicHash::hash(rows.join(QLatin1Char('\n')).toUtf8(),
                                                           QCryptographicHash::Sha1);
        QVERIFY2(digest.toHex() == "b4a7229562a7c9d6594409dc8c78f432443eef4a",
                 qPrintable(rows.join(QLatin1Char('\n'))));
    }

    void unknownUnitText()
    {
        // Warned about twice, the earlier unit kept, and entered as a row of its own with the
        // text, blanks and quotes as they are, as every name; from then on the text is known.
        TestFieldInfo field(QStringLiteral("T\"1\""), FieldType::u(16));
        field.setUnit(QStringLiteral("second"));
        QString const text = QStringLiteral(" meter/s ");
        WarningCapture warnings;
        field.setUnit(text);
        QCOMPARE(field.getUnit(), FieldInfo::UnitSecond);
        Unit const added = Unit(63); // the first value after the fixed rows
        FieldInfo::UnitData const data = FieldInfo::sUnitToUnitDataMap.value(added);
        QCOMPARE(data.unit, added);
        QCOMPARE(QStringList({ data.identifier, data.symbol, data.singularText, data.pluralText }),
                 QStringList({ text, text, text, text }));
        field.setUnit(text);
        QCOMPARE(
            warnings.warnings(),
            QStringList({ QStringLiteral("Field  \"T\"1\"\"  has unknown unit  \" meter/s \" . "),
                          QStringLiteral("FieldInfo::Unit enum needs a new value for it, which "
                                         "must also be included by ensureExplicitUnits(). ") }));
        QCOMPARE(field.getUnit(), added);
        QCOMPARE(field.getUnitString(false), text);

        // The table's row, not the field's copy, decides at each rendering: a symbol may be
        // moved before the value, and a missing row is entered empty.
        FieldValue const five = FieldValue::u(5, 16);
        QCOMPARE(field.getInterpretedString(five, true), QStringLiteral("5  meter/s "));
        FieldInfo::sUnitToUnitDataMap[added].symbolAfterValue = false;
        QCOMPARE(field.getInterpretedString(five, true), QStringLiteral(" meter/s  5"));
        FieldInfo::sUnitToUnitDataMap.remove(added);
        QCOMPARE(field.getInterpretedString(five, true), QStringLiteral(" 5"));
        QVERIFY(FieldInfo::sUnitToUnitDataMap.contains(added));
        QCOMPARE(field.getInterpretedString(five, false), QStringLiteral("5"));
        field.setUnit(QStringLiteral("furlong")); // takes the next free value
        QCOMPARE(FieldInfo::sUnitToUnitDataMap.value(Unit(64)).symbol, QStringLiteral("furlong"));
    }

    void attributes()
    {
        TestFieldInfo field(QStringLiteral("Mode"), FieldType::u(8));
        QVERIFY(!field.hasRole() && !field.hasDoNotUseValue());
        QVERIFY(!field.isDoNotUseValue(FieldValue::invalid())); // the unset value matches nothing
        field.setRole(FieldInfo::NoRole); // any role set counts, even 0
        field.setScaleFactor(1.0000001);
        QVERIFY(field.hasRole() && field.hasScaleFactor());
        field.setScaleFactor(1.0); // exactly 1 is no factor
        QVERIFY(!field.hasScaleFactor());
        // A sub-message field of no message type has no message type to refer to.
        TestFieldInfo noMessageType(QStringLiteral("S"), FieldType::subMessage(nullptr));
        QCOMPARE(noMessageType.getType().getBasisType(), FieldType::SubMessage);

        // No duplicate check for message types: a second entry needs a second removal, and the
        // newer index wins.
        MessageInfo first(QStringLiteral("A"));
        QCOMPARE(field.getIndexInMessageInfo(&first), -1);
        field.addMessageInfo(&first, 4);
        field.addMessageInfo(&first, 7);
        QCOMPARE(field.getMessageInfos(), QVector<MessageInfo *>({ &first, &first }));
        field.removeMessageInfo(&first);
        QCOMPARE(std::as_const(field).getMessageInfos(), QVector<MessageInfo const *> { &first });
        field.removeMessageInfo(&first);
        QVERIFY(!field.occursIn(&first));
        QCOMPARE(field.getIndexInMessageInfo(&first), 7);

        // Nor for symbolic texts: the later text of a value wins.
        field.addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("x"));
        field.addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("two"));
        field.addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("y"));
        QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(1, 8)), QStringLiteral("y"));
        QCOMPARE(field.getSymbolicRepresentationForValue(FieldValue::u(3, 8)), QString());
        QCOMPARE(
            field.getValuesWithSymbolicRepresentation(),
            QList<FieldValue>({ FieldValue::u(1, 8), FieldValue::u(2, 8), FieldValue::u(1, 8) }));
    }

    void subFields()
    {
        AssertCapture capture;
        TestFieldInfo parent(QStringLiteral("RxState"), FieldType::u(32));
        TestFieldInfo other(QStringLiteral("Other"), FieldType::u(32));
        TestFieldInfo first(QStringLiteral("ActiveAntenna"), FieldType::u(1));
        TestFieldInfo second(QStringLiteral("ExtFreq"), FieldType::u(1));
        parent.addSubFieldInfo(&first);
        parent.addSubFieldInfo(&second);
        QCOMPARE(parent.getSubFieldInfos(), QVector<FieldInfo *>({ &first, &second }));
        parent.removeSubFieldInfo(&first);
        QCOMPARE(std::as_const(parent).getSubFieldInfos(), QVector<FieldInfo const *> { &second });
        QVERIFY(!first.hasParentFieldInfo());

        // A second parent is reported and takes over; the former one still lists the sub-field.
        other.addSubFieldInfo(&second);
        QCOMPARE(second.getParentFieldInfo(), &other);
        QCOMPARE(parent.getSubFieldInfos(), QVector<FieldInfo *> { &second });
        QCOMPARE(other.getSubFieldInfos(), QVector<FieldInfo *> { &second });
        // Removing a stranger leaves its parent alone.
        parent.addSubFieldInfo(&first);
        other.removeSubFieldInfo(&first);
        QCOMPARE(first.getParentFieldInfo(), &parent);
        QCOMPARE(capture.texts().join(QLatin1Char('\n')),
                 QStringLiteral("FieldInfo already has a parent FieldInfo\n"
                                "FieldInfo::removeSubFieldInfo: Trying to remove a non-subfield"));
        QCOMPARE(capture.functions().join(QLatin1Char(' ')),
                 QStringLiteral("addSubFieldInfo removeSubFieldInfo"));

        // Unlink by hand so that no destructor meets a list it does not expect.
        other.removeSubFieldInfo(&second);
        parent.removeSubFieldInfo(&second);
    }

    void rendering_data()
    {
        QTest::addColumn<FieldValue>("value");
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("precision");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("interpreted");
        QTest::addColumn<QString>("raw"); // never localized, scaled, symbolic or with a unit

        // The field has unit "m", do-not-use u8 0, and symbolic texts for u8 0, 2 and (empty) 3.
        auto row = [](char const *name, FieldValue value, double scale, int precision, int mode,
                      char const *interpreted, char const *raw) {
            QTest::newRow(name) << value << scale << precision << mode
                                << QString::fromUtf8(interpreted) << QString::fromUtf8(raw);
        };
        row("do-not-use before symbolic text", FieldValue::u(0, 8), 1, -1, 0, "N/A", "0");
        row("do-not-use of another size", FieldValue::u(0, 16), 1, -1, 0, "0 m", "0");
        row("NaN double", FieldValue::f64(std::nan("")), 1, -1, 0, "N/A", "nan");
        row("NaN float", FieldValue::f32(std::nanf("")), 1, -1, 0, "N/A", "nan");
        row("symbolic text before scaling", FieldValue::u(2, 8), 0.5, -1, 0, "Differential", "2");
        row("empty symbolic text falls through", FieldValue::u(3, 8), 1, -1, 0, "3 m", "3");
        row("scaled, six decimals", FieldValue::u(12345, 32), 0.001, -1, 0, "12,345000 m", "12345");
        row("scaled negative", FieldValue::i(-12345, 32), 0.001, -1, 0, "-12,345000 m", "-12345");
        row("scaled, mode ignored", FieldValue::u(12346, 32), 0.001, 2, 1, "12,35 m", "303a");
        row("scaled and grouped", FieldValue::u(4000000, 32), 0.5, 0, 0, "2.000.000 m", "4000000");
        row("scaled float", FieldValue::f32(8.0f), 0.5, 0, 0, "4 m", "8");
        row("invalid, scaled", FieldValue::invalid(), 0.5, -1, 0, "Invalid", "Invalid");
        row("factor 1, grouped", FieldValue::u(12345, 32), 1, -1, 0, "12.345 m", "12345");
        row("hexadecimal", FieldValue::u(255, 32), 1, -1, 1, "ff m", "ff");
        row("decimal, not grouped", FieldValue::u(12345, 32), 1, -1, 2, "12345 m", "12345");
        row("double, precision", FieldValue::f64(1234.5678), 1, 3, 0, "1.234,568 m", "1234.568");
    }

    void rendering()
    {
        QFETCH(FieldValue, value);
        QFETCH(double, scale);
        QFETCH(int, precision);
        QFETCH(int, mode);

        TestFieldInfo field(QStringLiteral("F"), value.getType());
        field.setScaleFactor(scale);
        field.setPrecision(static_cast<signed char>(precision));
        field.setRepresentationMode(FieldValue::RepresentationMode(mode));
        field.setUnit(QStringLiteral("meter"));
        field.setDoNotUseValue(FieldValue::u(0, 8));
        field.addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("zero"));
        field.addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("Differential"));
        field.addSymbolicValue(FieldValue::u(3, 8), QString());
        QFETCH(QString, interpreted);
        QCOMPARE(field.getInterpretedString(value, true), interpreted);
        QCOMPARE(field.getInterpretedString(value, false),
                 interpreted.endsWith(QLatin1String(" m")) ? interpreted.chopped(2) : interpreted);
        QTEST(field.getRawString(value), "raw");
    }

    void valueString_data()
    {
        QTest::addColumn<FieldValue>("ofType");
        QTest::addColumn<bool>("repeated");
        QTest::addColumn<QByteArray>("characters");
        QTest::addColumn<QString>("expected"); // null: not a string field, the read throws

        auto row = [](char const *name, FieldType const &type, bool repeated, QByteArray characters,
                      QString expected) {
            QTest::newRow(name) << FieldValue(type) << repeated << characters << expected;
        };
        FieldType const ch = FieldType::ch();
        row("stops at the first zero", ch, true, QByteArray("AB\0C", 4), QStringLiteral("AB"));
        row("no zero", ch, true, "ABC", QStringLiteral("ABC"));
        row("no values", ch, true, QByteArray(), QStringLiteral(""));
        row("Latin-1", ch, true, "caf\xe9", QStringLiteral("caf\u00e9"));
        row("nchar", FieldType::nch(), true, "XY", QStringLiteral("XY"));
        row("single char", ch, false, "A", QString());
        row("16-bit char", FieldType(FieldType::Char, 16), true, "A", QString());
        row("byte", FieldType::byte(), true, "A", QString());
    }

    void valueString()
    {
        QFETCH(FieldValue, ofType);
        QFETCH(bool, repeated);
        QFETCH(QByteArray, characters);
        QFETCH(QString, expected);

        TestFieldInfo field(QStringLiteral("MarkerName"), ofType.getType());
        field.setIsRepeated(repeated);
        QCOMPARE(field.isStringField(), !expected.isNull());
        MessageInfo info(QStringLiteral("ReceiverSetup"));
        TestMessage message(&info);
        QVector<FieldValue> values;
        for (char c : characters)
            values.append(ofType.getType() == FieldType::nch() ? FieldValue::nch(c)
                                                               : FieldValue::ch(c));
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
};

QTEST_GUILESS_MAIN(tst_FieldInfo)

#include "tst_fieldinfo.moc"
