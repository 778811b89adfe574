// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "formatinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "rtcm3/rtcm3decoder.h"
#include "rtcm3/rtcm3dictionary.h"
#include "rtcm3/rtcm3encoder.h"
#include "rtcm3/rtcm3fieldinfo.h"
#include "rtcm3/rtcm3message.h"

#include <QTest>

#include <functional>

using Build = std::function<void(Rtcm3Encoder &)>;
Q_DECLARE_METATYPE(Build)

/// Encoding: real frames back to their bytes, every field's extremes back to their values,
/// and the refusals.
class tst_Rtcm3Encoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void capturesRoundTrip_data();
    void capturesRoundTrip();
    void extremes_data();
    void extremes();
    void recordsInMaskOrder();
    void refusals_data();
    void refusals();

private:
    Rtcm3Dictionary mDictionary;
};

namespace {

enum Extreme { Smallest, Largest, DoNotUse };

/// One value the test set: of the message (record -1) or of a record of a group field.
struct Expected
{
    FieldInfo const *group;
    int record;
    FieldInfo const *field;
    unsigned int index;
    FieldValue value;
};

Rtcm3FieldInfo const *rtcm3(FieldInfo const *field)
{
    return static_cast<Rtcm3FieldInfo const *>(field);
}

/// The smallest or largest raw value of the field's encoding and width.
FieldValue extreme(Rtcm3FieldInfo const *field, bool largest)
{
    const unsigned int w = field->getBitWidth();
    const auto bits = static_cast<unsigned char>(field->getType().getBitSize());
    const quint64 all = w >= 64 ? ~quint64(0) : (quint64(1) << w) - 1;
    switch (field->getEncoding()) {
    case Rtcm3FieldInfo::TwosComplement:
        return FieldValue::i(largest ? qint64(all >> 1) : -qint64(all >> 1) - 1, bits);
    case Rtcm3FieldInfo::SignMagnitude:
        return FieldValue::i(largest ? qint64(all >> 1) : -qint64(all >> 1), bits);
    case Rtcm3FieldInfo::Character:
        return FieldValue::ch(largest ? char(0xFF) : '\0');
    default:
        return FieldValue::u(largest ? all : 0, bits);
    }
}

/// Fields whose values the encoder derives: counts, masks and the cell mask's masks.
QSet<int> derivedFields(MessageInfo const *info)
{
    QSet<int> derived { 0 };
    for (FieldInfo const *field : info->getFieldInfos()) {
        Rtcm3FieldInfo const *own = rtcm3(field);
        derived.insert(own->getCountSource());
        if (own->hasWidthFromMasks()) {
            derived << own->getIndexInMessageInfo(info) << own->getWidthMask(0)
                    << own->getWidthMask(1);
        }
    }
    return derived;
}

/// Sets every field that is not derived to the extreme, two values of texts, two records of
/// groups at the first and last places of their masks; the values set go to expected.
void fill(Rtcm3Encoder &encoder, Extreme which, MessageInfo const *parent, FieldInfo const *group,
          int record, QVector<Expected> *expected, QStringList *unrefused)
{
    MessageInfo const *info = encoder.getInfo();
    const QSet<int> derived = record < 0 ? derivedFields(info) : QSet<int>();
    for (FieldInfo const *field : info->getFieldInfos()) {
        Rtcm3FieldInfo const *own = rtcm3(field);
        if (derived.contains(field->getIndexInMessageInfo(info)))
            continue;
        if (own->isGroup()) {
            for (int r = 0; r < 2; ++r)
                fill(encoder.addRecord(field->getName()), which, info, field, r, expected,
                     unrefused);
            continue;
        }
        if (!own->takesBits()) {
            // The last place: bit 64 of the satellite mask, 32 of the signal mask, 4 of 1230's.
            const int slot = own->getEncoding() == Rtcm3FieldInfo::CellSignal ? 1 : 0;
            Rtcm3FieldInfo const *mask
                = rtcm3(parent->getFieldInfos().at(own->getMaskSource(slot)));
            const FieldValue place = FieldValue::u(record == 0 ? 1 : mask->getBitWidth(), 8);
            encoder.setValue(field->getName(), place);
            expected->append({ group, record, field, 0, place });
            continue;
        }
        FieldValue value = extreme(own, which == Largest);
        if (which == DoNotUse)
            value = field->hasDoNotUseValue() ? field->getDoNotUseValue()
                                              : FieldValue(field->getType());
        const unsigned int count = own->getCount() == Rtcm3FieldInfo::SingleValue ? 1 : 2;
        for (unsigned int index = 0; index < count; ++index) {
            encoder.setValue(field->getName(), value, index);
            expected->append({ group, record, field, index, value });
        }
        // One step beyond the extreme is refused, where the value can take it.
        const bool isSigned = value.getType().getBasisType() == FieldType::SignedInteger;
        if (which == DoNotUse || own->getBitWidth() >= 64
            || own->getEncoding() == Rtcm3FieldInfo::Character)
            continue;
        try {
            encoder.setValue(field->getName(),
                             which == Largest ? (isSigned ? FieldValue::i(value.getI64() + 1, 64)
                                                          : FieldValue::u(value.getU64() + 1, 64))
                                              : (isSigned ? FieldValue::i(value.getI64() - 1, 64)
                                                          : FieldValue::i(-1, 64)));
            unrefused->append(info->getName() + QLatin1Char(' ') + field->getName());
        } catch (MessageApiEvent const &) { }
    }
}

QString describe(Expected const &e)
{
    return (e.group ? e.group->getName() + QLatin1Char('/') + QString::number(e.record)
                    + QLatin1Char('/')
                    : QString())
        + e.field->getName() + QLatin1Char('[') + QString::number(e.index) + QLatin1Char(']');
}

} // namespace

void tst_Rtcm3Encoder::capturesRoundTrip_data()
{
    QTest::addColumn<QString>("capture");
    QTest::addColumn<int>("messages");
    // Frames of known message types: all but the 26 proprietary 4072 of the timing receiver.
    QTest::newRow("caster stream") << QStringLiteral("dropped-packets.rtcm3") << 7934;
    QTest::newRow("MSM7 station") << QStringLiteral("gmsd7-truncated.rtcm3") << 1143;
    QTest::newRow("timing receiver") << QStringLiteral("f9t-interleaved.log") << 156;
}

void tst_Rtcm3Encoder::capturesRoundTrip()
{
    QFETCH(QString, capture);
    QFETCH(int, messages);
    RTCM3_REQUIRE_CAPTURES();
    const Rtcm3TestData::DecodedStream stream(mDictionary, Rtcm3TestData::readCapture(capture));
    QCOMPARE(stream.messages.size(), messages);
    QStringList differing;
    for (Message const *message : stream.messages) {
        const QByteArray frame = static_cast<Rtcm3Message const *>(message)->getFrame();
        if (Rtcm3Encoder(message).encode() != frame)
            differing.append(message->getInfo()->getName());
    }
    QCOMPARE(differing, QStringList());
}

void tst_Rtcm3Encoder::extremes_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("which");
    for (MessageInfo const *info : mDictionary.getFormat()->getMessageInfos()) {
        const QByteArray name = info->getName().toLatin1();
        QTest::newRow(name + " smallest") << info->getName().toInt() << int(Smallest);
        QTest::newRow(name + " largest") << info->getName().toInt() << int(Largest);
        QTest::newRow(name + " do-not-use") << info->getName().toInt() << int(DoNotUse);
    }
}

void tst_Rtcm3Encoder::extremes()
{
    QFETCH(int, number);
    QFETCH(int, which);
    Rtcm3Encoder encoder(mDictionary.getMessageInfo(number));
    QVector<Expected> expected;
    QStringList unrefused;
    fill(encoder, Extreme(which), nullptr, nullptr, -1, &expected, &unrefused);
    QCOMPARE(unrefused, QStringList());

    const Rtcm3TestData::DecodedStream stream(mDictionary, encoder.encode());
    QCOMPARE(stream.events, QStringList { QStringLiteral("0 foreign, 0 incomplete") });
    QCOMPARE(stream.messages.size(), 1);
    QStringList differing;
    for (Expected const &e : std::as_const(expected)) {
        Message const *holder = stream.messages.first();
        if (e.group)
            holder = e.group->getValue(holder, unsigned(e.record)).getSubMessage();
        const FieldValue value = e.field->getValue(holder, e.index);
        if (!(value == e.value))
            differing.append(describe(e) + QLatin1Char(' ') + value.toString(true));
    }
    QCOMPARE(differing, QStringList());
}

void tst_Rtcm3Encoder::recordsInMaskOrder()
{
    // Satellites 12 and 3, cells given last signal first: the frame carries them in mask order.
    auto build = [this](QList<int> const &satellites, QList<QPair<int, int>> const &cells) {
        Rtcm3Encoder encoder(mDictionary.getMessageInfo(1074));
        for (int satellite : satellites) {
            encoder.addRecord(QStringLiteral("Satellites"))
                .setValue(QStringLiteral("SatelliteId"), satellite)
                .setValue(QStringLiteral("DF397"), 60 + satellite);
        }
        for (auto const &cell : cells) {
            encoder.addRecord(QStringLiteral("Signals"))
                .setValue(QStringLiteral("SatelliteId"), cell.first)
                .setValue(QStringLiteral("SignalId"), cell.second)
                .setValue(QStringLiteral("DF403"), cell.first + cell.second);
        }
        return encoder.encode();
    };
    const QByteArray frame = build({ 12, 3 }, { { 12, 16 }, { 3, 16 }, { 12, 2 } });
    QCOMPARE(frame, build({ 3, 12 }, { { 3, 16 }, { 12, 2 }, { 12, 16 } }));
    const Rtcm3TestData::DecodedStream stream(mDictionary, frame);
    QCOMPARE(stream.messages.size(), 1);
    QStringList cells;
    for (Message const *record : stream.messages.first()->getSubMessages()) {
        QStringList values;
        for (FieldInfo const *field : record->getInfo()->getFieldInfos())
            values.append(field->getValue(record, 0).toString());
        cells.append(values.join(QLatin1Char(' ')));
    }
    QCOMPARE(cells,
             QStringList({ QStringLiteral("3 63 0"), QStringLiteral("12 72 0"),
                           QStringLiteral("3 16 0 0 0 0 19"), QStringLiteral("12 2 0 0 0 0 14"),
                           QStringLiteral("12 16 0 0 0 0 28") }));
}

void tst_Rtcm3Encoder::refusals_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<Build>("build");
    QTest::addColumn<QString>("text");

    const QString df003 = QStringLiteral("DF003");
    auto records = [](char const *group, char const *field, QList<int> const &places) {
        return [=](Rtcm3Encoder &e) {
            for (int place : places)
                e.addRecord(QLatin1String(group)).setValue(QLatin1String(field), place);
        };
    };
    QTest::newRow("unknown field")
        << 1005 << Build([](Rtcm3Encoder &e) { e.setValue(QStringLiteral("DF999"), 1); })
        << QStringLiteral("Rtcm3Encoder::setValue: 1005 has no field DF999");
    QTest::newRow("unsigned, one too large")
        << 1005 << Build([=](Rtcm3Encoder &e) { e.setValue(df003, 4096); })
        << QStringLiteral("Rtcm3Encoder::setValue: 4096 (i64) does not fit DF003 of 1005 "
                          "(unsigned, 12 bits: 0 to 4095)");
    QTest::newRow("unsigned, negative")
        << 1005 << Build([=](Rtcm3Encoder &e) { e.setValue(df003, FieldValue::i(-1, 8)); })
        << QStringLiteral("Rtcm3Encoder::setValue: -1 (i8) does not fit DF003 of 1005 "
                          "(unsigned, 12 bits: 0 to 4095)");
    QTest::newRow("second value of a single field")
        << 1005 << Build([=](Rtcm3Encoder &e) { e.setValue(df003, 1, 1); })
        << QStringLiteral("Rtcm3Encoder::setValue: DF003 of 1005 has no value 1");
    QTest::newRow("two's complement in meters")
        << 1005 << Build([](Rtcm3Encoder &e) { e.setScaled(QStringLiteral("DF025"), 13743895.35); })
        << QStringLiteral("Rtcm3Encoder::setScaled: 13743895.35 does not fit DF025 of 1005 "
                          "(two's complement, 38 bits: -13743895.3472 to 13743895.3471)");
    QTest::newRow("not a number")
        << 1005 << Build([](Rtcm3Encoder &e) { e.setScaled(QStringLiteral("DF027"), qQNaN()); })
        << QStringLiteral("Rtcm3Encoder::setScaled: nan does not fit DF027 of 1005 "
                          "(two's complement, 38 bits: -13743895.3472 to 13743895.3471)");
    QTest::newRow("sign-magnitude has no room for the smallest two's complement")
        << 1020 << Build([](Rtcm3Encoder &e) { e.setValue(QStringLiteral("DF124"), -2097152); })
        << QStringLiteral("Rtcm3Encoder::setValue: -2097152 (i64) does not fit DF124 of 1020 "
                          "(sign-magnitude, 22 bits: -2097151 to 2097151)");
    QTest::newRow("text beyond Latin-1")
        << 1007 << Build([](Rtcm3Encoder &e) {
               e.setText(QStringLiteral("DF030"), QStringLiteral("A\u0100"));
           })
        << QStringLiteral("Rtcm3Encoder::setText: \u0100 does not fit DF030 of 1007 "
                          "(characters of 8 bits)");
    QTest::newRow("text into a number")
        << 1005 << Build([=](Rtcm3Encoder &e) { e.setText(df003, QStringLiteral("A")); })
        << QStringLiteral("Rtcm3Encoder::setText: DF003 of 1005 is not a text");
    QTest::newRow("records of a single field")
        << 1005 << Build([=](Rtcm3Encoder &e) { e.addRecord(df003); })
        << QStringLiteral("Rtcm3Encoder::addRecord: DF003 of 1005 is not a group of records");
    QTest::newRow("count set, other text") << 1007 << Build([](Rtcm3Encoder &e) {
        e.setValue(QStringLiteral("DF029"), 3)
            .setText(QStringLiteral("DF030"), QStringLiteral("AB"));
    }) << QStringLiteral("Rtcm3Encoder::encode: DF029 of 1007 is 3 but DF030 has 2");
    QTest::newRow("more records than the count can say")
        << 1013 << Build([=](Rtcm3Encoder &e) {
               for (int i = 0; i < 32; ++i)
                   e.addRecord(QStringLiteral("Messages"));
           })
        << QStringLiteral("Rtcm3Encoder::encode: 32 values in Messages of 1013 do not fit DF053 "
                          "(unsigned, 5 bits: 0 to 31)");
    QTest::newRow("mask set, other records")
        << 1077 << Build([=](Rtcm3Encoder &e) {
               e.setValue(QStringLiteral("DF394"), FieldValue::u(quint64(1) << 63, 64));
               records("Satellites", "SatelliteId", { 2 })(e);
           })
        << QStringLiteral("Rtcm3Encoder::encode: DF394 of 1077 is 0x8000000000000000 but its "
                          "records give 0x4000000000000000");
    QTest::newRow("mask set, no records")
        << 1077 << Build([](Rtcm3Encoder &e) { e.setValue(QStringLiteral("DF394"), 3); })
        << QStringLiteral("Rtcm3Encoder::encode: DF394 of 1077 has 2 bits set but Satellites "
                          "has 0");
    QTest::newRow("place beyond the mask")
        << 1230 << Build(records("Biases", "SignalId", { 5 }))
        << QStringLiteral("Rtcm3Encoder::encode: SignalId 5 of a record of 1230 does not fit "
                          "the 4 bits of DF422");
    QTest::newRow("two satellites in one place")
        << 1077 << Build(records("Satellites", "SatelliteId", { 3, 3 }))
        << QStringLiteral("Rtcm3Encoder::encode: two records of Satellites in 1077 take the "
                          "same place in the masks");
    QTest::newRow("more cells than the cell mask holds")
        << 1077 << Build([](Rtcm3Encoder &e) {
               for (int satellite = 1; satellite <= 9; ++satellite) {
                   e.addRecord(QStringLiteral("Satellites"))
                       .setValue(QStringLiteral("SatelliteId"), satellite);
                   e.addRecord(QStringLiteral("Signals"))
                       .setValue(QStringLiteral("SatelliteId"), satellite)
                       .setValue(QStringLiteral("SignalId"), satellite % 8 + 1);
               }
           })
        << QStringLiteral("Rtcm3Encoder::encode: DF396 of 1077 would take 72 bits; it has at "
                          "most 64");
    QTest::newRow("payload beyond 1023 bytes")
        << 1033 << Build([](Rtcm3Encoder &e) {
               for (char const *text : { "DF030", "DF033", "DF228", "DF230", "DF232" })
                   e.setText(QLatin1String(text), QString(255, QLatin1Char('x')));
           })
        << QStringLiteral("Rtcm3Encoder::encode: the payload of 1033 takes 1284 bytes; a "
                          "frame holds at most 1023");
}

void tst_Rtcm3Encoder::refusals()
{
    QFETCH(int, number);
    QFETCH(Build, build);
    QFETCH(QString, text);
    Rtcm3Encoder encoder(mDictionary.getMessageInfo(number));
    try {
        build(encoder);
        encoder.encode();
        QFAIL("not refused");
    } catch (MessageApiEvent const &event) {
        QCOMPARE(event.getType(), MessageApiEvent::ClientError);
        QCOMPARE(event.getMessage(), text);
        QCOMPARE(event.getFormat(), mDictionary.getFormat());
    }
}

QTEST_GUILESS_MAIN(tst_Rtcm3Encoder)
#include "tst_rtcm3encoder.moc"
