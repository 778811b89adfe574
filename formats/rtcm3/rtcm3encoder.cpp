// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3encoder.h"

#include "auxiliary/rtcm3bitwriter.h"
#include "auxiliary/rtcm3crc24q.h"
#include "message.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "rtcm3fieldinfo.h"
#include "rtcm3message.h"

#include <algorithm>
#include <bitset>
#include <climits>
#include <cmath>
#include <numeric>

namespace {

constexpr int maxPayloadBytes = 1023;
/// No repeated field can hold more values than a payload has bits.
constexpr unsigned int maxValues = maxPayloadBytes * 8;

Rtcm3FieldInfo const *fieldAt(MessageInfo const *info, int index)
{
    return static_cast<Rtcm3FieldInfo const *>(info->getFieldInfos().at(index));
}

int setBits(quint64 value)
{
    return int(std::bitset<64>(value).count());
}

/// The bit of a 1-based position, counted from the most significant of width bits.
quint64 bitOf(quint64 position, unsigned int width)
{
    return quint64(1) << (width - position);
}

/// The set bits of the mask before the bit of the position: the rank of that bit.
int rankOf(quint64 mask, quint64 position, unsigned int width)
{
    const unsigned int shift = width - unsigned(position) + 1;
    return shift >= 64 ? 0 : setBits(mask >> shift);
}

quint64 rawOf(FieldValue const &value)
{
    if (!value.isValid())
        return 0;
    switch (value.getType().getBasisType()) {
    case FieldType::SignedInteger:
        return quint64(value.getI64());
    case FieldType::Char:
    case FieldType::NChar:
        return quint64(uint8_t(value.getChar()));
    default:
        return value.getU64();
    }
}

/// "unsigned, 12 bits: 0 to 4095", with the bounds in the field's unit when scaled.
QString rangeText(Rtcm3FieldInfo const *field, unsigned int width, double scale)
{
    if (field->getEncoding() == Rtcm3FieldInfo::Character)
        return Rtcm3Encoder::tr("characters of 8 bits");
    const bool isSigned = field->getEncoding() == Rtcm3FieldInfo::TwosComplement
        || field->getEncoding() == Rtcm3FieldInfo::SignMagnitude;
    const quint64 magnitude = width >= 64 ? ~quint64(0) : (quint64(1) << width) - 1;
    const quint64 high = isSigned ? magnitude >> 1 : magnitude;
    const quint64 lowMagnitude = field->getEncoding() == Rtcm3FieldInfo::TwosComplement ? high + 1
        : isSigned                                                                      ? high
                                                                                        : 0;
    auto number = [&](quint64 value, bool negative) -> QString {
        if (scale == 1.0)
            return (negative && value ? QStringLiteral("-") : QString()) + QString::number(value);
        return QString::number((negative ? -1.0 : 1.0) * double(value) * scale, 'f',
                               field->getPrecision());
    };
    const QString kind = field->getEncoding() == Rtcm3FieldInfo::TwosComplement
        ? Rtcm3Encoder::tr("two's complement")
        : field->getEncoding() == Rtcm3FieldInfo::SignMagnitude ? Rtcm3Encoder::tr("sign-magnitude")
                                                                : Rtcm3Encoder::tr("unsigned");
    return Rtcm3Encoder::tr("%1, %2 bits: %3 to %4")
        .arg(kind)
        .arg(width)
        .arg(number(lowMagnitude, true), number(high, false));
}

/// The value in the field's type when it fits width bits of the field's encoding; invalid
/// otherwise.
FieldValue fitted(Rtcm3FieldInfo const *field, FieldValue const &value, unsigned int width)
{
    const FieldType::BasisType kind = value.getType().getBasisType();
    const bool isInteger = kind == FieldType::UnsignedInteger || kind == FieldType::SignedInteger;
    const bool isCharacter = kind == FieldType::Char || kind == FieldType::NChar;
    if (!isInteger && !(isCharacter && field->getEncoding() == Rtcm3FieldInfo::Character))
        return FieldValue::invalid();
    const bool negative = kind == FieldType::SignedInteger && value.getI64() < 0;
    const quint64 raw = rawOf(value);
    const auto bits = static_cast<unsigned char>(field->getType().getBitSize());
    const bool fitsInt64 = negative || raw <= quint64(LLONG_MAX);
    switch (field->getEncoding()) {
    case Rtcm3FieldInfo::TwosComplement:
        return fitsInt64 && Rtcm3BitWriter::fitsSigned(qint64(raw), width)
            ? FieldValue::i(qint64(raw), bits)
            : FieldValue::invalid();
    case Rtcm3FieldInfo::SignMagnitude:
        return fitsInt64 && Rtcm3BitWriter::fitsSignMagnitude(qint64(raw), width)
            ? FieldValue::i(qint64(raw), bits)
            : FieldValue::invalid();
    case Rtcm3FieldInfo::Character:
        return !negative && raw <= 0xFF ? FieldValue::ch(char(raw)) : FieldValue::invalid();
    case Rtcm3FieldInfo::Group:
        return FieldValue::invalid();
    default:
        return !negative && Rtcm3BitWriter::fitsUnsigned(raw, width) ? FieldValue::u(raw, bits)
                                                                     : FieldValue::invalid();
    }
}

/// The width that a field's value is checked against when it is set.
unsigned int widthOf(Rtcm3FieldInfo const *field)
{
    return field->hasWidthFromMasks() ? 64u : field->getBitWidth();
}

} // namespace

/// The values of a message with its counts and masks filled in, and its records in mask order.
struct Rtcm3Encoder::Resolved
{
    QVector<QVector<FieldValue>> values;
    QVector<QVector<Rtcm3Encoder const *>> records;

    quint64 valueOf(int index) const
    {
        return index >= 0 && !values[index].isEmpty() ? rawOf(values[index].first()) : 0;
    }
};

Rtcm3Encoder::Rtcm3Encoder(MessageInfo const *info)
    : mInfo(info)
    , mValues(info->getFieldInfos().size())
    , mRecords(std::size_t(info->getFieldInfos().size()))
{ }

Rtcm3Encoder::Rtcm3Encoder(Message const *message)
    : Rtcm3Encoder(message->getInfo())
{
    for (int i = 0; i < mValues.size(); ++i) {
        Rtcm3FieldInfo const *field = fieldAt(mInfo, i);
        const unsigned int count = field->getNumberOfValues(message);
        for (unsigned int k = 0; k < count; ++k) {
            const FieldValue value = field->getValue(message, k);
            if (field->isGroup())
                mRecords[std::size_t(i)].push_back(
                    std::make_unique<Rtcm3Encoder>(value.getSubMessage()));
            else
                mValues[i].append(value);
        }
    }
    auto const *decoded = dynamic_cast<Rtcm3Message const *>(message);
    if (decoded) {
        const QByteArray payload = decoded->getFrame().mid(3, int(decoded->getPayloadSize()));
        mTrailingBytes = payload.mid(encodeFields().size());
    }
}

Rtcm3Encoder::~Rtcm3Encoder() = default;

void Rtcm3Encoder::refuse(char const *function, QString const &text) const
{
    throw MessageApiEvent(MessageApiEvent::ClientError,
                          QLatin1String("Rtcm3Encoder::") + QLatin1String(function)
                              + QLatin1String(": ") + text,
                          mInfo->getFormatInfo());
}

int Rtcm3Encoder::indexOf(QString const &field, char const *function) const
{
    FieldInfo const *info = mInfo->getFieldInfo(field);
    if (!info)
        refuse(function, tr("%1 has no field %2").arg(mInfo->getName(), field));
    return info->getIndexInMessageInfo(mInfo);
}

void Rtcm3Encoder::store(int index, unsigned int position, FieldValue const &value,
                         char const *function)
{
    Rtcm3FieldInfo const *field = fieldAt(mInfo, index);
    const bool repeated = field->getCount() != Rtcm3FieldInfo::SingleValue
        || field->getEncoding() == Rtcm3FieldInfo::Character;
    if (position >= (repeated ? maxValues : 1u)) {
        refuse(
            function,
            tr("%1 of %2 has no value %3").arg(field->getName(), mInfo->getName()).arg(position));
    }
    QVector<FieldValue> &values = mValues[index];
    while (unsigned(values.size()) <= position)
        values.append(FieldValue(field->getType()));
    values[int(position)] = value;
}

Rtcm3Encoder &Rtcm3Encoder::setValue(QString const &field, FieldValue const &value,
                                     unsigned int index)
{
    const int i = indexOf(field, "setValue");
    Rtcm3FieldInfo const *info = fieldAt(mInfo, i);
    const FieldValue own = fitted(info, value, widthOf(info));
    if (!own.isValid()) {
        refuse("setValue",
               tr("%1 does not fit %2 of %3 (%4)")
                   .arg(value.toString(true), field, mInfo->getName(),
                        rangeText(info, widthOf(info), 1.0)));
    }
    store(i, index, own, "setValue");
    return *this;
}

Rtcm3Encoder &Rtcm3Encoder::setValue(QString const &field, qint64 value, unsigned int index)
{
    return setValue(field, FieldValue::i(value, 64), index);
}

Rtcm3Encoder &Rtcm3Encoder::setScaled(QString const &field, double value, unsigned int index)
{
    const int i = indexOf(field, "setScaled");
    Rtcm3FieldInfo const *info = fieldAt(mInfo, i);
    const double scale = info->hasScaleFactor() ? info->getScaleFactor() : 1.0;
    const double steps = std::round(value / scale);
    // Beyond 2^62 steps no field of the format fits anyway, and the conversion stays defined.
    const FieldValue own = std::abs(steps) < 4.6e18
        ? fitted(info, FieldValue::i(qint64(steps), 64), widthOf(info))
        : FieldValue::invalid();
    if (!own.isValid()) {
        refuse("setScaled",
               tr("%1 does not fit %2 of %3 (%4)")
                   .arg(QString::number(value, 'g', 15), field, mInfo->getName(),
                        rangeText(info, widthOf(info), scale)));
    }
    store(i, index, own, "setScaled");
    return *this;
}

Rtcm3Encoder &Rtcm3Encoder::setText(QString const &field, QString const &text)
{
    const int i = indexOf(field, "setText");
    Rtcm3FieldInfo const *info = fieldAt(mInfo, i);
    if (info->getEncoding() != Rtcm3FieldInfo::Character)
        refuse("setText", tr("%1 of %2 is not a text").arg(field, mInfo->getName()));
    for (QChar c : text) {
        if (c.unicode() > 0xFF) {
            refuse("setText",
                   tr("%1 does not fit %2 of %3 (%4)")
                       .arg(QString(c), field, mInfo->getName(), rangeText(info, 8, 1.0)));
        }
    }
    mValues[i].clear();
    for (unsigned int k = 0; k < unsigned(text.size()); ++k)
        store(i, k, FieldValue::ch(char(text.at(int(k)).unicode())), "setText");
    return *this;
}

Rtcm3Encoder &Rtcm3Encoder::addRecord(QString const &groupField)
{
    const int i = indexOf(groupField, "addRecord");
    Rtcm3FieldInfo const *field = fieldAt(mInfo, i);
    if (!field->isGroup()) {
        refuse("addRecord",
               tr("%1 of %2 is not a group of records").arg(groupField, mInfo->getName()));
    }
    auto &records = mRecords[std::size_t(i)];
    records.push_back(std::make_unique<Rtcm3Encoder>(field->getType().getSubMessageInfo()));
    return *records.back();
}

void Rtcm3Encoder::resolve(Resolved *resolved) const
{
    resolved->values = mValues;
    resolved->records.resize(mValues.size());
    const int fieldCount = mValues.size();
    QVector<quint64> derived(fieldCount, 0);
    QVector<bool> isDerived(fieldCount, false);

    // Masks from the records' positions: the satellites and signals of MSM, 1230's signals.
    for (int i = 0; i < fieldCount; ++i) {
        for (auto const &record : mRecords[std::size_t(i)])
            resolved->records[i].append(record.get());
        QVector<Rtcm3Encoder const *> const &records = resolved->records[i];
        MessageInfo const *recordInfo = fieldAt(mInfo, i)->isGroup()
            ? fieldAt(mInfo, i)->getType().getSubMessageInfo()
            : nullptr;
        for (int v = 0; recordInfo && v < recordInfo->getFieldInfos().size(); ++v) {
            Rtcm3FieldInfo const *position = fieldAt(recordInfo, v);
            const int maskSlot = position->getEncoding() == Rtcm3FieldInfo::CellSignal ? 1 : 0;
            if (position->takesBits() || records.isEmpty())
                continue;
            const bool complete
                = std::all_of(records.begin(), records.end(),
                              [v](Rtcm3Encoder const *r) { return !r->mValues[v].isEmpty(); });
            if (!complete)
                continue;
            const int mask = position->getMaskSource(maskSlot);
            const unsigned int width = fieldAt(mInfo, mask)->getBitWidth();
            for (Rtcm3Encoder const *record : records) {
                const quint64 place = rawOf(record->mValues[v].first());
                if (place == 0 || place > width) {
                    refuse("encode",
                           tr("%1 %2 of a record of %3 does not fit the %4 bits of %5")
                               .arg(position->getName())
                               .arg(place)
                               .arg(mInfo->getName())
                               .arg(width)
                               .arg(fieldAt(mInfo, mask)->getName()));
                }
                derived[mask] |= bitOf(place, width);
            }
            isDerived[mask] = true;
        }
    }

    auto settle = [&](int mask) {
        if (!isDerived[mask])
            return;
        Rtcm3FieldInfo const *field = fieldAt(mInfo, mask);
        if (resolved->values[mask].isEmpty()) {
            resolved->values[mask]
                = { FieldValue::u(derived[mask], field->getType().getBitSize()) };
        } else if (resolved->valueOf(mask) != derived[mask]) {
            refuse("encode",
                   tr("%1 of %2 is %3 but its records give %4")
                       .arg(field->getName(), mInfo->getName())
                       .arg(QStringLiteral("0x") + QString::number(resolved->valueOf(mask), 16),
                            QStringLiteral("0x") + QString::number(derived[mask], 16)));
        }
    };
    for (int i = 0; i < fieldCount; ++i) {
        if (!fieldAt(mInfo, i)->hasWidthFromMasks())
            settle(i);
    }

    // The cell mask of MSM from the cells' satellites and signals; then every group in order.
    for (int i = 0; i < fieldCount; ++i) {
        QVector<Rtcm3Encoder const *> &records = resolved->records[i];
        if (!fieldAt(mInfo, i)->isGroup() || records.isEmpty())
            continue;
        MessageInfo const *recordInfo = fieldAt(mInfo, i)->getType().getSubMessageInfo();
        QVector<int> positions; // virtual fields of the record type
        for (int v = 0; v < recordInfo->getFieldInfos().size(); ++v) {
            if (!fieldAt(recordInfo, v)->takesBits())
                positions.append(v);
        }
        const bool complete = !positions.isEmpty()
            && std::all_of(records.begin(), records.end(), [&](Rtcm3Encoder const *r) {
                   return std::all_of(positions.begin(), positions.end(),
                                      [r](int v) { return !r->mValues[v].isEmpty(); });
               });
        if (!complete)
            continue;
        // Each record's place in the masks, the order in which the frame carries it.
        QVector<quint64> keys;
        int cellMask = -1;
        unsigned int cellWidth = 0;
        for (Rtcm3Encoder const *record : records) {
            Rtcm3FieldInfo const *first = fieldAt(recordInfo, positions.first());
            const quint64 place = rawOf(record->mValues[positions.first()].first());
            if (first->getEncoding() == Rtcm3FieldInfo::MaskPosition) {
                keys.append(place);
                continue;
            }
            const int satellites = first->getMaskSource(0);
            const int signalMask = first->getMaskSource(1);
            cellMask = first->getMaskSource(2);
            const quint64 signal = rawOf(record->mValues[positions.last()].first());
            const int signalCount = setBits(resolved->valueOf(signalMask));
            const unsigned int cells
                = unsigned(setBits(resolved->valueOf(satellites)) * signalCount);
            if (cells > 64) {
                refuse("encode",
                       tr("%1 of %2 would take %3 bits; it has at most 64")
                           .arg(fieldAt(mInfo, cellMask)->getName(), mInfo->getName())
                           .arg(cells));
            }
            cellWidth = cells;
            const int rank = rankOf(resolved->valueOf(satellites), place,
                                    fieldAt(mInfo, satellites)->getBitWidth())
                    * signalCount
                + rankOf(resolved->valueOf(signalMask), signal,
                         fieldAt(mInfo, signalMask)->getBitWidth());
            keys.append(quint64(rank) + 1);
        }
        if (cellMask >= 0) {
            isDerived[cellMask] = true;
            derived[cellMask] = 0;
            for (quint64 key : std::as_const(keys))
                derived[cellMask] |= bitOf(key, cellWidth);
            settle(cellMask);
        }
        QVector<int> order(records.size());
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return keys[a] < keys[b]; });
        QVector<Rtcm3Encoder const *> sorted;
        for (int k = 0; k < order.size(); ++k) {
            if (k > 0 && keys[order[k]] == keys[order[k - 1]]) {
                refuse("encode",
                       tr("two records of %1 in %2 take the same place in the masks")
                           .arg(fieldAt(mInfo, i)->getName(), mInfo->getName()));
            }
            sorted.append(records[order[k]]);
        }
        records = sorted;
    }

    // Counts from the values and records given; masks must have a bit per record.
    for (int i = 0; i < fieldCount; ++i) {
        Rtcm3FieldInfo const *field = fieldAt(mInfo, i);
        const int source = field->getCountSource();
        if (field->getCount() == Rtcm3FieldInfo::SingleValue || source < 0)
            continue;
        const int given
            = field->isGroup() ? resolved->records[i].size() : resolved->values[i].size();
        Rtcm3FieldInfo const *counter = fieldAt(mInfo, source);
        if (field->getCount() == Rtcm3FieldInfo::MaskBits) {
            if (setBits(resolved->valueOf(source)) != given) {
                refuse("encode",
                       tr("%1 of %2 has %3 bits set but %4 has %5")
                           .arg(counter->getName(), mInfo->getName())
                           .arg(setBits(resolved->valueOf(source)))
                           .arg(field->getName())
                           .arg(given));
            }
        } else if (resolved->values[source].isEmpty()) {
            const FieldValue count
                = fitted(counter, FieldValue::u(quint64(given), 64), counter->getBitWidth());
            if (!count.isValid()) {
                refuse("encode",
                       tr("%1 values in %2 of %3 do not fit %4 (%5)")
                           .arg(given)
                           .arg(field->getName(), mInfo->getName(), counter->getName(),
                                rangeText(counter, counter->getBitWidth(), 1.0)));
            }
            resolved->values[source] = { count };
        } else if (resolved->valueOf(source) != quint64(given)) {
            refuse("encode",
                   tr("%1 of %2 is %3 but %4 has %5")
                       .arg(counter->getName(), mInfo->getName())
                       .arg(resolved->valueOf(source))
                       .arg(field->getName())
                       .arg(given));
        }
    }
}

void Rtcm3Encoder::write(Resolved const &resolved, Rtcm3BitWriter *writer) const
{
    for (int i = 0; i < mValues.size(); ++i) {
        Rtcm3FieldInfo const *field = fieldAt(mInfo, i);
        if (field->isGroup()) {
            writeRecords(i, resolved.records[i], writer);
            continue;
        }
        if (!field->takesBits())
            continue;
        unsigned int width = field->getBitWidth();
        if (field->hasWidthFromMasks()) {
            width = unsigned(setBits(resolved.valueOf(field->getWidthMask(0)))
                             * setBits(resolved.valueOf(field->getWidthMask(1))));
        }
        quint64 count = 1;
        if (field->getCount() == Rtcm3FieldInfo::CountField)
            count = resolved.valueOf(field->getCountSource());
        else if (field->getCount() == Rtcm3FieldInfo::MaskBits)
            count = quint64(setBits(resolved.valueOf(field->getCountSource())));
        for (quint64 k = 0; k < count; ++k) {
            const FieldValue value = resolved.values[i].value(int(k), FieldValue(field->getType()));
            if (!fitted(field, value, width).isValid()) {
                refuse("encode",
                       tr("%1 does not fit %2 of %3 (%4)")
                           .arg(value.toString(true), field->getName(), mInfo->getName(),
                                rangeText(field, width, 1.0)));
            }
            if (field->getEncoding() == Rtcm3FieldInfo::SignMagnitude)
                writer->writeSignMagnitude(qint64(rawOf(value)), width);
            else
                writer->writeUnsigned(rawOf(value), width);
        }
    }
}

void Rtcm3Encoder::writeRecords(int group, QVector<Rtcm3Encoder const *> const &records,
                                Rtcm3BitWriter *writer) const
{
    MessageInfo const *recordInfo = fieldAt(mInfo, group)->getType().getSubMessageInfo();
    if (!fieldAt(mInfo, group)->isColumnMajor()) {
        for (Rtcm3Encoder const *record : records) {
            Resolved own;
            record->resolve(&own);
            record->write(own, writer);
        }
        return;
    }
    // Field after field: one record at a time would interleave them.
    QVector<Resolved> resolvedRecords(records.size());
    for (int r = 0; r < records.size(); ++r)
        records[r]->resolve(&resolvedRecords[r]);
    for (int v = 0; v < recordInfo->getFieldInfos().size(); ++v) {
        Rtcm3FieldInfo const *field = fieldAt(recordInfo, v);
        if (!field->takesBits())
            continue;
        for (int r = 0; r < records.size(); ++r) {
            const FieldValue value
                = resolvedRecords[r].values[v].value(0, FieldValue(field->getType()));
            if (field->getEncoding() == Rtcm3FieldInfo::SignMagnitude)
                writer->writeSignMagnitude(qint64(rawOf(value)), field->getBitWidth());
            else
                writer->writeUnsigned(rawOf(value), field->getBitWidth());
        }
    }
}

QByteArray Rtcm3Encoder::encodeFields() const
{
    Resolved resolved;
    resolve(&resolved);
    // The message number is the discriminant of the message type.
    if (!mInfo->getDiscriminants().isEmpty() && resolved.values[0].isEmpty())
        resolved.values[0] = { mInfo->getDiscriminants().first().ranges.first().low };
    Rtcm3BitWriter writer;
    write(resolved, &writer);
    return writer.getBytes();
}

QByteArray Rtcm3Encoder::encode() const
{
    const QByteArray payload = encodeFields() + mTrailingBytes;
    if (payload.size() > maxPayloadBytes) {
        refuse("encode",
               tr("the payload of %1 takes %2 bytes; a frame holds at most %3")
                   .arg(mInfo->getName())
                   .arg(payload.size())
                   .arg(maxPayloadBytes));
    }
    return frame(payload);
}

QByteArray Rtcm3Encoder::frame(QByteArray const &payload)
{
    Rtcm3BitWriter writer;
    writer.writeUnsigned(0xD3, 8);
    writer.writeUnsigned(0, 6);
    writer.writeUnsigned(quint64(payload.size()), 10);
    QByteArray result = writer.getBytes() + payload;
    const uint32_t crc
        = rtcm3Crc24q(reinterpret_cast<uint8_t const *>(result.constData()), size_t(result.size()));
    Rtcm3BitWriter check;
    check.writeUnsigned(crc, 24);
    return result + check.getBytes();
}
