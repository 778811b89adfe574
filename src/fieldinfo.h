// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FIELDINFO_H
#define MESSAGEAPI_FIELDINFO_H

#include "fieldtype.h"
#include "fieldvalue.h"
#include "messageapiframework_export.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QString>
#include <QVector>

#include <cstdint>

class Message;
class MessageInfo;

/**
 * One field of one or more message types: its name and type, how a raw value becomes a
 * readable text (scale factor, precision, representation mode, unit, symbolic values, a
 * do-not-use value), its place in the messages that contain it, and its sub-fields.
 *
 * Abstract: the format-specific code that builds the dictionary derives from it and supplies
 * the operations that read a field's values out of a decoded Message. Descriptors link by plain
 * pointers and never own one another; the destructor unlinks the field from its messages, its
 * parent, its sub-fields and the message type it refers to. A sub-message field whose message
 * type is destroyed first keeps a sub-message type that names no message type.
 */
class MESSAGEAPIFRAMEWORK_EXPORT FieldInfo
{
    Q_DECLARE_TR_FUNCTIONS(FieldInfo)

public:
    /// The role of a field; the values are the dictionary builders' own.
    enum Role : int32_t { NoRole = 0 };

    /// Physical units. 0 to 62 are fixed; values from 63 up are handed out at run time to unit
    /// names the table does not know.
    enum Unit : int32_t {
        NoUnit = 0,
        UnitMeter = 1,
        UnitKilometer = 2,
        UnitDecimeter = 3,
        UnitMillimeter = 4,
        UnitSecond = 5,
        UnitMicrosecond = 6,
        UnitNanosecond = 7,
        UnitMeterPerSecond = 8,
        UnitMillimeterPerSecond = 9,
        UnitKilometerPerSecond = 10,
        UnitWeek = 11,
        UnitHertz = 12,
        UnitKilohertz = 13,
        UnitRadian = 14,
        UnitDegree = 15,
        UnitChip = 16,
        UnitCycle = 17,
        UnitCelsius = 18,
        UnitSemicircle = 19,
        UnitDegreePerSecond = 20,
        UnitSemicirclePerSecond = 21,
        UnitSemicirclePerSecondSquared = 22,
        UnitSecondPerSecond = 23,
        UnitSecondPerSquareSecond = 24,
        UnitMeterSqrt = 25,
        UnitMeterPerSecondSquared = 26,
        UnitKilometerPerSecondSquared = 27,
        UnitMeterSquared = 28,
        UnitDegreeSquared = 29,
        UnitMeterSquaredPerSecondSquared = 30,
        UnitBaud = 31,
        UnitByte = 32,
        UnitMegabyte = 33,
        UnitKilobytePerSecond = 34,
        UnitDay = 35,
        UnitDecibel = 36,
        UnitDecibelHertz = 37,
        UnitDecibelMilliwatt = 38,
        UnitHertzSquaredPerCycleSquared = 39,
        UnitHertzPerHertz = 40,
        UnitHour = 41,
        UnitMessage = 42,
        UnitMeterCycleSquared = 43,
        UnitMillisecond = 44,
        UnitMinute = 45,
        UnitMonth = 46,
        UnitPercent = 47,
        UnitPpm = 48,
        UnitSecondPerMsd = 49,
        UnitSecondPerOrbitPeriod = 50,
        UnitSecondPerOrbitPeriodSquared = 51,
        UnitSecondPerSecondSquared = 52,
        UnitSecondPerSemicircle = 53,
        UnitSecondPerSemicircleCubed = 54,
        UnitSecondPerSemicircleSquared = 55,
        UnitWattPerMeterSquaredHertz = 56,
        UnitWattPerMeterSquaredHertzPerDegree = 57,
        UnitWattPerMeterSquaredHertzPerDegreeSquared = 58,
        UnitMilliampere = 59,
        UnitMillivolt = 60,
        UnitYear = 61,
        UnitMilligauss = 62
    };

    /// One row of the unit table.
    struct UnitData
    {
        Unit unit = NoUnit; ///< the unit this row describes
        QString identifier; ///< compact name matched by setUnit, e.g. "meterpersecond"
        QString singularText; ///< e.g. "meter/second"
        QString pluralText; ///< e.g. "meters/second"
        QString symbol; ///< written with values, e.g. "m/s"
        bool symbolAfterValue = false; ///< whether the symbol follows the value
    };

    /// A symbolic text and the value it names.
    struct Value
    {
        QString text; ///< shown instead of the value, e.g. "GPS"
        FieldValue value; ///< the raw value it stands for
    };

    /// A field of no message yet, with no unit, scale factor 1.0 and no precision.
    FieldInfo(QString name, FieldType const &type);
    virtual ~FieldInfo();

    /// Whether the field is present in the message.
    virtual bool isPresent(Message const *message) const = 0;
    /// How many values the field has in the message; 0 when absent.
    virtual unsigned int getNumberOfValues(Message const *message) const = 0;
    /// The field's value number index in the message.
    virtual FieldValue getValue(Message const *message, unsigned int index) const = 0;
    /// Writes value number index into the message; false when it cannot.
    virtual bool setValue(Message *message, unsigned int index, FieldValue const &value) const = 0;
    /**
     * The characters of a string field (repeated Char or NChar) up to the first zero character.
     * Throws a ClientError MessageApiEvent for any other field.
     */
    virtual QString getValueString(Message const *message) const;
    /// The value a new message holds in this field.
    virtual FieldValue getDefaultValue() const = 0;

    /// The name, unique within its message types: path expressions and look-ups use it.
    QString getName() const { return mName; }
    /// The kind and size of the field's values.
    FieldType const &getType() const { return mType; }
    /// A label that tools show beside the name ("Antenna reference point ECEF-X").
    ///@{
    QString getShortDescriptiveText() const { return mShortDescriptiveText; }
    void setShortDescriptiveText(QString text);
    ///@}
    /// A sentence or more that tools show as help.
    ///@{
    QString getDescriptiveText() const { return mDescriptiveText; }
    void setDescriptiveText(QString text);
    ///@}

    /// Whether a message may lack the field (false at first).
    ///@{
    bool isOptional() const { return mIsOptional; }
    void setIsOptional(bool isOptional);
    ///@}
    /// Whether the field may hold more than one value (false at first).
    ///@{
    bool isRepeated() const { return mIsRepeated; }
    void setIsRepeated(bool isRepeated);
    ///@}
    /// Whether the value is derived rather than stored in the message's bytes (false at first).
    ///@{
    bool isVirtual() const { return mIsVirtual; }
    void setVirtual(bool isVirtual);
    ///@}
    /// Whether the value is confidential (false at first). Whether it may be shown is decided
    /// by MessageApi, not here.
    ///@{
    bool isConfidential() const { return mIsConfidential; }
    void setConfidential(bool isConfidential);
    ///@}

    /// The role the dictionary builder gave the field; hasRole() is false until one is set.
    ///@{
    Role getRole() const { return mRole; }
    bool hasRole() const { return mHasRole; }
    void setRole(Role role);
    ///@}

    /// The physical value of one unit of the raw value (1.0 at first); the interpreted value
    /// is the raw value times this factor.
    ///@{
    double getScaleFactor() const { return mScaleFactor; }
    ///@}
    /// True when the factor is not exactly 1.0.
    bool hasScaleFactor() const;
    /// Sets the factor by which raw values are multiplied for display.
    void setScaleFactor(double scaleFactor);
    /// Digits after the decimal point of interpreted values; -1 (at first) for the default.
    ///@{
    signed char getPrecision() const { return mPrecision; }
    ///@}
    /// True when the precision is not -1.
    bool hasPrecision() const;
    /// Sets the digits after the decimal point of interpreted values; -1 for the default.
    void setPrecision(signed char precision);
    /// How raw values are rendered: natural (at first), hexadecimal or decimal.
    ///@{
    FieldValue::RepresentationMode getRepresentationMode() const { return mRepresentationMode; }
    ///@}
    /// True when the mode is not Natural.
    bool hasRepresentationMode() const;
    /// Sets how raw values are rendered.
    void setRepresentationMode(FieldValue::RepresentationMode mode);

    // Units.
    /// The unit of interpreted values; NoUnit (at first) when the field has none.
    ///@{
    Unit getUnit() const { return mUnit; }
    bool hasUnit() const { return mUnit != NoUnit; }
    ///@}
    /**
     * Sets the unit from its identifier ("meterpersecond"). An unknown identifier gives two
     * warnings and a new table row whose texts are the identifier itself, but leaves this
     * field's unit as it was: a later setUnit with the same text finds the new row.
     */
    void setUnit(QString text);
    /// The unit's symbol, or its singular name; "unknown unit" (and a warning) for a value not
    /// in the table.
    static QString unitToString(Unit const &unit, bool abbreviated);
    /// unitToString() of the field's unit.
    QString getUnitString(bool abbreviated) const;
    /// Fills the unit table on the first call; later calls return at once.
    static void ensureExplicitUnits();
    /// The process-wide unit table.
    static QHash<Unit, UnitData> sUnitToUnitDataMap;

    // Do-not-use value.
    /// The raw value that stands for "not available" (none at first); interpreted strings
    /// show getDoNotUseString() instead of it.
    ///@{
    bool hasDoNotUseValue() const { return mHasDoNotUseValue; }
    FieldValue const &getDoNotUseValue() const { return mDoNotUseValue; }
    void setDoNotUseValue(FieldValue const &value);
    ///@}
    /// Whether the field has a do-not-use value and value equals it.
    bool isDoNotUseValue(FieldValue const &value) const;
    /// "N/A", translated on each call.
    QString getDoNotUseString() const;

    // Membership in messages; called by MessageInfo::addFieldInfo and removeFieldInfo.
    /// Records that the field belongs to message at index, or forgets it.
    ///@{
    void addMessageInfo(MessageInfo *message, int index);
    void removeMessageInfo(MessageInfo *message);
    ///@}
    /// The index stored for the message, also after the field left it; -1 when none.
    int getIndexInMessageInfo(MessageInfo const *message) const;
    /// Whether the field belongs to the message type.
    bool occursIn(MessageInfo const *message) const;
    /// The message types the field belongs to, in order of addition.
    ///@{
    QVector<MessageInfo *> getMessageInfos();
    QVector<MessageInfo const *> getMessageInfos() const;
    ///@}

    // Sub-fields.
    /// The fields that make up this one, in order of addition; each has this field as parent.
    ///@{
    void addSubFieldInfo(FieldInfo *subField);
    void removeSubFieldInfo(FieldInfo *subField);
    QVector<FieldInfo *> getSubFieldInfos();
    QVector<FieldInfo const *> getSubFieldInfos() const;
    bool hasSubFieldInfos() const;
    ///@}
    /// The field this one is a sub-field of, or null.
    ///@{
    FieldInfo *getParentFieldInfo() { return mParentFieldInfo; }
    FieldInfo const *getParentFieldInfo() const { return mParentFieldInfo; }
    bool hasParentFieldInfo() const { return mParentFieldInfo != nullptr; }
    ///@}

    // Symbolic values.
    /// Adds a symbolic text for a value; a later text for the same value replaces the earlier.
    void addSymbolicValue(FieldValue const &value, QString text);
    /// The symbolic text of the value, or an empty string.
    QString getSymbolicRepresentationForValue(FieldValue const &value) const;
    /// The values with a symbolic text, in order of addition, repeats included.
    QList<FieldValue> getValuesWithSymbolicRepresentation() const;

    // Rendering.
    /// The value as text with the field's precision and representation mode; nothing else.
    QString getRawString(FieldValue const &value) const;
    /// The value as a reader sees it: "N/A", a symbolic text, or the scaled value with the
    /// field's precision and, when wanted, its unit.
    QString getInterpretedString(FieldValue const &value, bool withUnit) const;
    /// Repeated Char or NChar.
    bool isStringField() const;

private:
    friend class MessageInfo;
    friend class DictionaryTestAccess;

    FieldInfo(FieldInfo const &) = delete;
    FieldInfo &operator=(FieldInfo const &) = delete;

    // A message keeps pointers to its key fields and discriminant fields beyond membership;
    // these record which messages do, so that each side can unlink itself when destroyed.
    void heldBy(MessageInfo *message) const;
    void releasedBy(MessageInfo *message) const;
    /// The referenced sub-message type is being destroyed: the type keeps its kind but names
    /// no message type any more.
    void subMessageInfoDestroyed();

    QString mName;
    FieldType mType;
    QString mShortDescriptiveText;
    QString mDescriptiveText;
    bool mIsOptional;
    bool mIsRepeated;
    QVector<MessageInfo *> mMessageInfos;
    QVector<MessageInfo const *> mConstMessageInfos;
    QHash<MessageInfo const *, int> mIndexInMessageInfo;
    QVector<FieldInfo *> mSubFieldInfos;
    QVector<FieldInfo const *> mConstSubFieldInfos;
    FieldInfo *mParentFieldInfo;
    Unit mUnit;
    UnitData mUnitData;
    double mScaleFactor;
    signed char mPrecision;
    FieldValue::RepresentationMode mRepresentationMode;
    QList<FieldValue> mSymbolicValues;
    QHash<FieldValue, Value> mSymbolicValueMap;
    bool mHasDoNotUseValue;
    FieldValue mDoNotUseValue;
    bool mHasRole;
    Role mRole;
    bool mIsConfidential;
    bool mIsVirtual;
    mutable QVector<MessageInfo *> mHoldingMessageInfos;
};

/// The hash of a unit is its integer value (seeded as Qt seeds integers).
inline decltype(qHash(0)) qHash(FieldInfo::Unit unit, decltype(qHash(0)) seed = 0)
{
    return qHash(int(unit), seed);
}

#endif // MESSAGEAPI_FIELDINFO_H
