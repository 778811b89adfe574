// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_DISCRIMINANTINDEX_H
#define MESSAGEAPI_AUXILIARY_DISCRIMINANTINDEX_H

// Internal helper of FormatInfo. Not installed.

#include "fieldtype.h"

#include <QMutex>
#include <QVarLengthArray>
#include <QVector>

#include <cstdint>
#include <vector>

class FieldValue;
class MessageInfo;

/**
 * The discriminant lookup of one format, with the answers of the plain scan (every message
 * type with as many discriminants as values, accepted when the value at any position lies in
 * a range of that position) but without visiting every message type and range.
 *
 * Ranges become intervals of 64-bit keys that order like the values of their field type, kept
 * sorted per number of values, position and field type. A message type whose ranges the index
 * cannot follow is checked directly at every lookup: one whose discriminant was handed out for
 * writing (MessageInfo::getDiscriminant() returns a reference that may change it at any time
 * later), and one with a floating-point range wider than 64 bits (which the scan's comparison
 * refuses with an exception).
 *
 * The index is built on the first lookup and again after any change: its format calls
 * invalidate() when it gains a message type, and every change of a message type's
 * discriminants moves a process-wide generation on (noteDiscriminantsChanged()), which the
 * index compares with the one it was built at. Lookups from several threads are serialised.
 */
class DiscriminantIndex
{
public:
    DiscriminantIndex();
    ~DiscriminantIndex();
    DiscriminantIndex(DiscriminantIndex const &) = delete;
    DiscriminantIndex &operator=(DiscriminantIndex const &) = delete;

    /// The message types of messages (the format's list, in its order) that accept the values.
    QVector<MessageInfo const *> lookup(QVector<MessageInfo const *> const &messages,
                                        FieldValue const *values, int count);
    /// The format's list of message types changed.
    void invalidate();
    /// The discriminants of some message type changed, or one is being destroyed.
    static void noteDiscriminantsChanged();

    /// The plain scan's test of one message type, as used for the message types checked directly.
    static bool accepts(MessageInfo const *message, FieldValue const *values, int count);

private:
    struct Interval
    {
        uint64_t low;
        uint64_t high;
        int message; ///< position in the format's list
    };
    /// The intervals of one position for the values of one field type, sorted by low end, with
    /// the highest high end up to each interval.
    struct TypeGroup
    {
        FieldType::BasisType basisType;
        unsigned int bitSize;
        MessageInfo const *subMessageInfo;
        std::vector<Interval> intervals;
        std::vector<uint64_t> highestHigh;

        /// Whether the group is the one for values of this field type.
        bool holds(FieldType const &type) const
        {
            return basisType == type.getBasisType() && bitSize == type.getBitSize()
                && subMessageInfo == type.getSubMessageInfo();
        }
    };
    struct Position
    {
        std::vector<TypeGroup> groups;
    };
    /// The message types with a given number of discriminants.
    struct Arity
    {
        std::vector<Position> positions;
    };

    void build(QVector<MessageInfo const *> const &messages);
    static bool indexable(MessageInfo const *message);
    static TypeGroup &groupFor(Position &position, FieldValue const &value);
    static void collect(TypeGroup const &group, uint64_t key, QVarLengthArray<int, 16> &found);

    QMutex mMutex;
    bool mValid = false;
    uint64_t mGeneration = 0;
    std::vector<Arity> mArities; ///< by number of discriminants
    std::vector<int> mCheckedDirectly; ///< positions of the message types checked directly
};

#endif // MESSAGEAPI_AUXILIARY_DISCRIMINANTINDEX_H
