// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldinfo.h"

#include "floatrepresentation.h"
#include "message.h"
#include "messageapievent.h"
#include "messageinfo.h"

#include "auxiliary/tracing.h"

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <utility>

MSGAPI_SOURCE_FILE("FIELDINFO", "src/fieldinfo")

QHash<FieldInfo::Unit, FieldInfo::UnitData> FieldInfo::sUnitToUnitDataMap;

namespace {

struct UnitRow
{
    int unit;
    char const *identifier;
    char const *symbol;
    char const *singularText;
    char const *pluralText;
};

// The fixed units, in the order in which they are entered. The texts are Latin-1 (0xb0 degree,
// 0xb2 and 0xb3 superscript two and three, 0xb5 micro sign). Some rows look odd and are meant
// so: 24 and 52 share identifier and symbol (lookups find 24), 51 uses its long name as
// symbol, 56 to 58 spell "hetz", and celsius is entered out of numeric order.
// clang-format off
UnitRow const fixedUnits[] = {
    {0, "", "", "", ""},
    {1, "meter", "m", "meter", "meter"},
    {2, "kilometer", "km", "kilometer", "kilometer"},
    {3, "decimeter", "dm", "decimeter", "decimeter"},
    {4, "millimeter", "mm", "millimeter", "millimeter"},
    {5, "second", "s", "second", "seconds"},
    {6, "microsecond", "\xb5s", "microsecond", "microseconds"},
    {7, "nanosecond", "ns", "nanosecond", "nanoseconds"},
    {8, "meterpersecond", "m/s", "meter/second", "meter/second"},
    {9, "millimeterpersecond", "mm/s", "millimeter/second", "millimeter/second"},
    {10, "kilometerpersecond", "km/s", "kilometer/second", "kilometer/second"},
    {11, "week", "w", "week", "weeks"},
    {12, "hertz", "Hz", "hertz", "hertz"},
    {13, "kilohertz", "kHz", "kilohertz", "kilohertz"},
    {14, "radian", "rad", "radian", "radians"},
    {15, "degree", "\xb0", "degree", "degrees"},
    {18, "celsius", "\xb0" "C", "\xb0" "C", "\xb0" "C"},
    {16, "chip", "chip", "chip", "chips"},
    {17, "cycle", "cyc", "cycle", "cycles"},
    {19, "semicircle", "semi-circle", "semi-circle", "semi-circles"},
    {20, "degreepersecond", "\xb0/s", "degree per second", "degrees per second"},
    {21, "semicirclepersecond", "semi-circle/s", "semi-circle per second", "semi-circles per second"},
    {22, "semicirclepersecondsquared", "semi-circle/s\xb2", "semi-circle per second squared", "semi-circles per second squared"},
    {23, "secondpersecond", "s/s", "second per second", "seconds per second"},
    {24, "secondpersecondsquared", "s/s\xb2", "second per square second", "seconds per square second"},
    {25, "metersqrt", "m**1/2", "meter**1/2", "meter**1/2"},
    {26, "meterpersecondsquared", "m/s\xb2", "meter/second\xb2", "meter/second\xb2"},
    {27, "kilometerpersecondsquared", "km/s\xb2", "kilometer/second\xb2", "kilometer/second\xb2"},
    {28, "metersquared", "m\xb2", "meter\xb2", "meter\xb2"},
    {29, "degreesquared", "deg\xb2", "degree\xb2", "degree\xb2"},
    {30, "metersquaredpersecondsquared", "m\xb2/s\xb2", "meter\xb2/second\xb2", "meter\xb2/second\xb2"},
    {31, "baud", "Bd", "baud", "bauds"},
    {32, "byte", "b", "byte", "bytes"},
    {33, "megabyte", "Mb", "megabyte", "megabytes"},
    {34, "kilobytepersecond", "kbyte/s", "kilobyte/second", "kilobyte/second"},
    {35, "day", "d", "day", "days"},
    {36, "decibel", "dB", "decibel", "decibels"},
    {37, "decibelhertz", "dB-Hz", "decibel-hertz", "decibel-hertz"},
    {38, "decibelm", "dBm", "dBm", "dBm"},
    {39, "hertzsquaredpercyclesquared", "Hz\xb2/cycle\xb2", "hertz\xb2/cycle\xb2", "hertz\xb2/cycle\xb2"},
    {40, "hertzperhertz", "Hz/Hz", "Hertz/Hertz", "Hertz/Hertz"},
    {41, "hour", "h", "hour", "hours"},
    {42, "message", "msg", "message", "messages"},
    {43, "metercyclesquared", "m cycle\xb2", "meter cycle\xb2", "meter cycle\xb2"},
    {44, "millisecond", "ms", "millisecond", "milliseconds"},
    {45, "minute", "min.", "minute", "minutes"},
    {46, "month", "month", "month", "months"},
    {47, "percent", "%", "percent", "percent"},
    {48, "ppm", "ppm", "ppm", "ppm"},
    {49, "secondpermsd", "s/msd", "second/msd", "second/msd"},
    {50, "secondperorbitperiod", "s/orbit-period", "second/orbit-period", "second/orbit-period"},
    {51, "secondperorbitperiodsquared", "second/orbit-period\xb2", "second/orbit-period\xb2", "second/orbit-period\xb2"},
    {52, "secondpersecondsquared", "s/s\xb2", "second/second\xb2", "second/second\xb2"},
    {53, "secondpersemicircle", "s/semi-circle", "second/semi-circle", "second/semi-circle"},
    {54, "secondpersemicirclecubed", "s/semi-circle\xb3", "second/semi-circle\xb3", "second/semi-circle\xb3"},
    {55, "secondpersemicirclesquared", "s\xb2/semi-circle\xb2", "second/semi-circle\xb2", "second/semi-circle\xb2"},
    {56, "wattpermetersquaredhetz", "w/m\xb2Hz", "watt/meter\xb2 hertz", "watt/meter\xb2 hertz"},
    {57, "wattpermetersquaredhetzperdegree", "W/m\xb2Hz/deg", "watt/meter\xb2hertz/degree", "watt/meter\xb2hertz/degree"},
    {58, "wattpermetersquaredhetzperdegreesquared", "W/m\xb2Hz/deg\xb2", "watt/meter\xb2hertz/degree\xb2", "watt/meter\xb2hertz/degree\xb2"},
    {59, "milliampere", "mA", "milliampere", "milliampere"},
    {60, "millivolt", "mV", "millivolt", "millivolt"},
    {61, "year", "Y", "year", "years"},
    {62, "milligauss", "mG", "milligauss", "milligauss"},
};
// clang-format on

constexpr int fixedUnitCount = int(sizeof(fixedUnits) / sizeof(fixedUnits[0]));
static_assert(fixedUnitCount == 63, "units 0 to 62 are fixed; run-time units start at 63");

} // namespace

FieldInfo::FieldInfo(QString name, FieldType const &type)
    : mName(std::move(name))
    , mType(type)
    , mIsOptional(false)
    , mIsRepeated(false)
    , mParentFieldInfo(nullptr)
    , mUnit(NoUnit)
    , mUnitData(sUnitToUnitDataMap[NoUnit])
    , mScaleFactor(1.0)
    , mPrecision(-1)
    , mRepresentationMode(FieldValue::Natural)
    , mHasDoNotUseValue(false)
    , mDoNotUseValue(FieldValue::invalid())
    , mHasRole(false)
    , mRole(NoRole)
    , mIsConfidential(false)
    , mIsVirtual(false)
{
    MessageApiTracing::allocated(QStringLiteral("FieldInfo"));
    if (mType.getBasisType() == FieldType::SubMessage && mType.getSubMessageInfo()) {
        // The dictionary is built through const pointers to message types; the referring
        // list is the one part of a message type that its fields maintain.
        const_cast<MessageInfo *>(mType.getSubMessageInfo())->addReferringFieldInfo(this);
    }
}

FieldInfo::~FieldInfo()
{
    MessageApiTracing::deallocated(QStringLiteral("FieldInfo"));
    QVector<MessageInfo *> const messages = mMessageInfos;
    for (MessageInfo *message : messages)
        message->removeFieldInfo(this);
    if (mParentFieldInfo)
        mParentFieldInfo->removeSubFieldInfo(this);
    QVector<FieldInfo *> const subFields = mSubFieldInfos;
    for (FieldInfo *subField : subFields)
        removeSubFieldInfo(subField);
    if (mType.getBasisType() == FieldType::SubMessage && mType.getSubMessageInfo())
        const_cast<MessageInfo *>(mType.getSubMessageInfo())->removeReferringFieldInfo(this);
    // Messages that keep this field as a key or discriminant field, member or not.
    QVector<MessageInfo *> const holders = mHoldingMessageInfos;
    for (MessageInfo *message : holders)
        message->fieldInfoDestroyed(this);
}

QString FieldInfo::getValueString(Message const *message) const
{
    if (!isStringField()) {
        throw MessageApiEvent(MessageApiEvent::ClientError,
                              QStringLiteral("Requesting value as a string for non-string field."),
                              nullptr);
    }
    QString result;
    unsigned int const count = getNumberOfValues(message);
    for (unsigned int index = 0; index < count; ++index) {
        char const c = getValue(message, index).getChar();
        if (c == '\0')
            break;
        result.append(QChar::fromLatin1(c));
    }
    return result;
}

void FieldInfo::setShortDescriptiveText(QString text)
{
    mShortDescriptiveText = std::move(text);
}

void FieldInfo::setDescriptiveText(QString text)
{
    mDescriptiveText = std::move(text);
}

void FieldInfo::setIsOptional(bool isOptional)
{
    mIsOptional = isOptional;
}

void FieldInfo::setIsRepeated(bool isRepeated)
{
    mIsRepeated = isRepeated;
}

void FieldInfo::setVirtual(bool isVirtual)
{
    mIsVirtual = isVirtual;
}

void FieldInfo::setConfidential(bool isConfidential)
{
    mIsConfidential = isConfidential;
}

void FieldInfo::setRole(Role role)
{
    mRole = role;
    mHasRole = true;
}

bool FieldInfo::hasScaleFactor() const
{
    // Exactly 1.0 is "no factor": it renders the raw value, not a fixed-point number.
    return mScaleFactor != 1.0;
}

void FieldInfo::setScaleFactor(double scaleFactor)
{
    mScaleFactor = scaleFactor;
}

bool FieldInfo::hasPrecision() const
{
    return mPrecision != -1;
}

void FieldInfo::setPrecision(signed char precision)
{
    mPrecision = precision;
}

bool FieldInfo::hasRepresentationMode() const
{
    return mRepresentationMode != FieldValue::Natural;
}

void FieldInfo::setRepresentationMode(FieldValue::RepresentationMode mode)
{
    mRepresentationMode = mode;
}

void FieldInfo::ensureExplicitUnits()
{
    static bool filled = false;
    if (filled)
        return;
    filled = true;

    for (UnitRow const &row : fixedUnits) {
        UnitData data;
        data.unit = Unit(row.unit);
        data.identifier = QString::fromLatin1(row.identifier);
        data.singularText = QString::fromLatin1(row.singularText);
        data.pluralText = QString::fromLatin1(row.pluralText);
        data.symbol = QString::fromLatin1(row.symbol);
        // Only the empty row 0 writes its (empty) symbol before the value.
        data.symbolAfterValue = row.unit != NoUnit;
        sUnitToUnitDataMap[data.unit] = data;
    }
    if (sUnitToUnitDataMap.size() != fixedUnitCount)
        MSGAPI_ASSERT_REPORT("ensureExplicitUnits", "Units missing in ensureExplicitUnits()");
}

void FieldInfo::setUnit(QString text)
{
    ensureExplicitUnits();

    QList<Unit> units = sUnitToUnitDataMap.keys();
    std::sort(units.begin(), units.end());
    // Ascending order makes the first of two rows with the same identifier win.
    for (Unit unit : std::as_const(units)) {
        UnitData const &data = sUnitToUnitDataMap[unit];
        if (data.identifier == text) {
            mUnit = unit;
            mUnitData = data;
            return;
        }
    }

    qWarning().noquote().nospace()
        << QStringLiteral("Field  \"") << mName << QStringLiteral("\"  has unknown unit  \"")
        << text << QStringLiteral("\" . ");
    qWarning().noquote().nospace() << QStringLiteral(
        "FieldInfo::Unit enum needs a new value for it, which must also be included by "
        "ensureExplicitUnits(). ");

    int value = fixedUnitCount;
    while (sUnitToUnitDataMap.contains(Unit(value)))
        ++value;
    UnitData data;
    data.unit = Unit(value);
    data.identifier = text;
    data.singularText = text;
    data.pluralText = text;
    data.symbol = text;
    data.symbolAfterValue = true;
    sUnitToUnitDataMap.insert(data.unit, data);
    // This field keeps its unit: only later calls with the same text find the new row.
}

QString FieldInfo::unitToString(Unit const &unit, bool abbreviated)
{
    ensureExplicitUnits();
    auto const row = sUnitToUnitDataMap.constFind(unit);
    if (row == sUnitToUnitDataMap.constEnd()) {
        qWarning().noquote().nospace() << tr("Unknown unit enum value %1").arg(int(unit));
        return tr("unknown unit");
    }
    return abbreviated ? row->symbol : row->singularText;
}

QString FieldInfo::getUnitString(bool abbreviated) const
{
    return unitToString(getUnit(), abbreviated);
}

void FieldInfo::setDoNotUseValue(FieldValue const &value)
{
    mDoNotUseValue = value;
    mHasDoNotUseValue = true;
}

bool FieldInfo::isDoNotUseValue(FieldValue const &value) const
{
    return mHasDoNotUseValue && value == mDoNotUseValue;
}

QString FieldInfo::getDoNotUseString() const
{
    return tr("N/A");
}

void FieldInfo::addMessageInfo(MessageInfo *message, int index)
{
    mMessageInfos.append(message);
    mConstMessageInfos.append(message);
    mIndexInMessageInfo[message] = index;
}

void FieldInfo::removeMessageInfo(MessageInfo *message)
{
    int const position = mMessageInfos.indexOf(message);
    if (position < 0)
        MSGAPI_ASSERT_REPORT("removeMessageInfo",
                             "FieldInfo::removeMessageInfo: Trying to remove a non-member");
    if (mConstMessageInfos.indexOf(message) != position)
        MSGAPI_ASSERT_REPORT("removeMessageInfo",
                             "FieldInfo::removeMessageInfo: vectors not consistent");
    if (position >= 0) {
        mMessageInfos.remove(position);
        mConstMessageInfos.remove(position);
    }
    // The index stays: callers may still ask where the field was in a message it has left.
}

int FieldInfo::getIndexInMessageInfo(MessageInfo const *message) const
{
    return mIndexInMessageInfo.value(message, -1);
}

bool FieldInfo::occursIn(MessageInfo const *message) const
{
    return mConstMessageInfos.contains(message);
}

QVector<MessageInfo *> FieldInfo::getMessageInfos()
{
    return mMessageInfos;
}

QVector<MessageInfo const *> FieldInfo::getMessageInfos() const
{
    return mConstMessageInfos;
}

void FieldInfo::addSubFieldInfo(FieldInfo *subField)
{
    if (subField->mParentFieldInfo)
        MSGAPI_ASSERT_REPORT("addSubFieldInfo", "FieldInfo already has a parent FieldInfo");
    subField->mParentFieldInfo = this;
    mSubFieldInfos.append(subField);
    mConstSubFieldInfos.append(subField);
}

void FieldInfo::removeSubFieldInfo(FieldInfo *subField)
{
    int const position = mSubFieldInfos.indexOf(subField);
    if (position < 0)
        MSGAPI_ASSERT_REPORT("removeSubFieldInfo",
                             "FieldInfo::removeSubFieldInfo: Trying to remove a non-subfield");
    if (mConstSubFieldInfos.indexOf(subField) != position)
        MSGAPI_ASSERT_REPORT("removeSubFieldInfo",
                             "FieldInfo::removeSubFieldInfo: vectors not consistent");
    if (position >= 0) {
        mSubFieldInfos.remove(position);
        mConstSubFieldInfos.remove(position);
        subField->mParentFieldInfo = nullptr;
    }
}

QVector<FieldInfo *> FieldInfo::getSubFieldInfos()
{
    return mSubFieldInfos;
}

QVector<FieldInfo const *> FieldInfo::getSubFieldInfos() const
{
    return mConstSubFieldInfos;
}

bool FieldInfo::hasSubFieldInfos() const
{
    return !mSubFieldInfos.isEmpty();
}

void FieldInfo::addSymbolicValue(FieldValue const &value, QString text)
{
    mSymbolicValues.append(value);
    mSymbolicValueMap.insert(value, Value { std::move(text), value });
}

QString FieldInfo::getSymbolicRepresentationForValue(FieldValue const &value) const
{
    auto const entry = mSymbolicValueMap.constFind(value);
    return entry == mSymbolicValueMap.constEnd() ? QString() : entry->text;
}

QList<FieldValue> FieldInfo::getValuesWithSymbolicRepresentation() const
{
    return mSymbolicValues;
}

QString FieldInfo::getRawString(FieldValue const &value) const
{
    return value.toString(false, mPrecision, mRepresentationMode, false);
}

QString FieldInfo::getInterpretedString(FieldValue const &value, bool withUnit) const
{
    QString text;
    if (isDoNotUseValue(value)) {
        text = getDoNotUseString();
    } else {
        bool isNan = false;
        if (value.getType().getBasisType() == FieldType::Float) {
            value.assertType(FieldType::Float, 64);
            isNan = value.getType().getBitSize() == 64 ? std::isnan(value.getF64())
                                                       : std::isnan(value.getF32());
        }
        text = isNan ? getDoNotUseString() : getSymbolicRepresentationForValue(value);
    }
    if (!text.isEmpty())
        return text;

    if (hasScaleFactor() && value.isValid()) {
        int const precision = mPrecision == -1 ? 6 : mPrecision;
        text = FloatRepresentation::getString(value.scaled(mScaleFactor), 'f', precision, true);
    } else {
        text = value.toString(false, mPrecision, mRepresentationMode, true);
    }
    if (withUnit && hasUnit() && value.isValid()) {
        // The table, not this field's copy, decides: rows added later are seen too. A row
        // missing from the table is entered empty, as a subscript would.
        auto row = sUnitToUnitDataMap.constFind(mUnit);
        if (row == sUnitToUnitDataMap.constEnd())
            row = sUnitToUnitDataMap.insert(mUnit, UnitData());
        if (row->symbolAfterValue) {
            // The number's own string grows in place, usually without moving.
            text.reserve(text.size() + 1 + row->symbol.size());
            text.append(QLatin1Char(' ')).append(row->symbol);
        } else {
            text = row->symbol + QLatin1Char(' ') + text;
        }
    }
    return text;
}

bool FieldInfo::isStringField() const
{
    return mIsRepeated && (mType == FieldType::ch() || mType == FieldType::nch());
}

void FieldInfo::heldBy(MessageInfo *message) const
{
    if (!mHoldingMessageInfos.contains(message))
        mHoldingMessageInfos.append(message);
}

void FieldInfo::releasedBy(MessageInfo *message) const
{
    mHoldingMessageInfos.removeAll(message);
}

void FieldInfo::subMessageInfoDestroyed()
{
    mType = FieldType::subMessage(nullptr);
}
