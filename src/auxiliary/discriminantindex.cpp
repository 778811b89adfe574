// SPDX-License-Identifier: LGPL-2.1-or-later
#include "auxiliary/discriminantindex.h"

#include "auxiliary/dictionaryaccess.h"
#include "auxiliary/tracing.h"
#include "fieldvalue.h"
#include "messageinfo.h"

#include <QMutexLocker>
#include <QVarLengthArray>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

MSGAPI_SOURCE_FILE("DISCRIMINANTINDEX", "src/auxiliary/discriminantindex")

namespace {

std::atomic<uint64_t> sDiscriminantGeneration { 1 };

bool isWideFloat(FieldType const &type)
{
    return type.getBasisType() == FieldType::Float && type.getBitSize() > 64;
}

/**
 * A key whose unsigned order is the order of the values of one field type (FieldValue's < and
 * ==), or false for a value that equals and orders against nothing (a NaN, an unused kind).
 * Characters order as signed 8-bit numbers, floats by their value with -0.0 equal to 0.0;
 * every invalid value is equal to every other; sub-messages only equal the same message.
 */
bool orderKey(FieldValue const &value, uint64_t *key)
{
    uint64_t const payload = DictionaryAccess::payload(value);
    FieldType const &type = value.getType();
    switch (type.getBasisType()) {
    case FieldType::UnsignedInteger:
    case FieldType::SubMessage:
        *key = payload;
        return true;
    case FieldType::SignedInteger:
        *key = payload ^ (uint64_t(1) << 63);
        return true;
    case FieldType::Float: {
        double number;
        if (type.getBitSize() == 64) {
            std::memcpy(&number, &payload, sizeof number);
        } else {
            auto const bits = static_cast<uint32_t>(payload);
            float single;
            std::memcpy(&single, &bits, sizeof single);
            number = single;
        }
        if (std::isnan(number))
            return false;
        if (number == 0.0)
            number = 0.0;
        uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        *key = (bits >> 63) ? ~bits : bits | (uint64_t(1) << 63);
        return true;
    }
    case FieldType::Char:
    case FieldType::NChar:
        *key = static_cast<uint8_t>(payload) ^ 0x80u;
        return true;
    case FieldType::Byte:
        *key = static_cast<uint8_t>(payload);
        return true;
    case FieldType::Invalid:
        *key = 0;
        return true;
    }
    return false;
}

} // namespace

DiscriminantIndex::DiscriminantIndex() = default;
DiscriminantIndex::~DiscriminantIndex() = default;

void DiscriminantIndex::noteDiscriminantsChanged()
{
    sDiscriminantGeneration.fetch_add(1, std::memory_order_relaxed);
}

void DiscriminantIndex::invalidate()
{
    QMutexLocker const locker(&mMutex);
    mValid = false;
}

bool DiscriminantIndex::accepts(MessageInfo const *message, FieldValue const *values, int count)
{
    QVector<MessageInfo::Discriminant> const &discriminants = message->getDiscriminants();
    if (discriminants.isEmpty() || discriminants.size() != count)
        return false;
    // The positions are alternatives: one accepting position is enough.
    for (int position = 0; position < count; ++position) {
        FieldValue const &value = values[position];
        for (MessageInfo::DiscriminantValueRange const &range : discriminants.at(position).ranges) {
            if (range.low <= value && value <= range.high)
                return true;
        }
    }
    return false;
}

bool DiscriminantIndex::indexable(MessageInfo const *message)
{
    if (DictionaryAccess::discriminantsExposed(message))
        return false;
    for (MessageInfo::Discriminant const &discriminant : message->getDiscriminants()) {
        for (MessageInfo::DiscriminantValueRange const &range : discriminant.ranges) {
            if (isWideFloat(range.low.getType()) || isWideFloat(range.high.getType()))
                return false;
        }
    }
    return true;
}

DiscriminantIndex::TypeGroup &DiscriminantIndex::groupFor(Position &position,
                                                          FieldValue const &value)
{
    FieldType const &type = value.getType();
    for (TypeGroup &group : position.groups) {
        if (group.holds(type))
            return group;
    }
    position.groups.push_back(
        TypeGroup { type.getBasisType(), type.getBitSize(), type.getSubMessageInfo(), {}, {} });
    return position.groups.back();
}

void DiscriminantIndex::build(QVector<MessageInfo const *> const &messages)
{
    mArities.clear();
    mCheckedDirectly.clear();
    for (int m = 0; m < messages.size(); ++m) {
        MessageInfo const *message = messages.at(m);
        if (!indexable(message)) {
            mCheckedDirectly.push_back(m);
            continue;
        }
        QVector<MessageInfo::Discriminant> const &discriminants = message->getDiscriminants();
        auto const count = size_t(discriminants.size());
        if (count == 0)
            continue; // never accepted, not even for no values
        if (mArities.size() <= count)
            mArities.resize(count + 1);
        Arity &arity = mArities[count];
        arity.positions.resize(count);
        for (size_t p = 0; p < count; ++p) {
            for (MessageInfo::DiscriminantValueRange const &range :
                 discriminants.at(int(p)).ranges) {
                // A value is in range only when it has the type of both ends, orders between
                // them and equals or orders against both.
                if (range.low.getType() != range.high.getType())
                    continue;
                uint64_t low;
                uint64_t high;
                if (!orderKey(range.low, &low) || !orderKey(range.high, &high) || low > high)
                    continue;
                // Sub-messages have no order: only a range of one message can hold a value.
                if (range.low.getType().getBasisType() == FieldType::SubMessage && low != high)
                    continue;
                groupFor(arity.positions[p], range.low)
                    .intervals.push_back(Interval { low, high, m });
            }
        }
    }
    for (Arity &arity : mArities) {
        for (Position &position : arity.positions) {
            for (TypeGroup &group : position.groups) {
                std::sort(group.intervals.begin(), group.intervals.end(),
                          [](Interval const &a, Interval const &b) { return a.low < b.low; });
                group.highestHigh.resize(group.intervals.size());
                uint64_t highest = 0;
                for (size_t i = 0; i < group.intervals.size(); ++i) {
                    highest = std::max(highest, group.intervals[i].high);
                    group.highestHigh[i] = highest;
                }
            }
        }
    }
}

void DiscriminantIndex::collect(TypeGroup const &group, uint64_t key,
                                QVarLengthArray<int, 16> &found)
{
    // Every interval that starts at or below the key, from the last one back for as long as
    // some interval so far still reaches the key.
    auto const after
        = std::upper_bound(group.intervals.begin(), group.intervals.end(), key,
                           [](uint64_t k, Interval const &interval) { return k < interval.low; });
    for (auto i = after - group.intervals.begin() - 1;
         i >= 0 && group.highestHigh[size_t(i)] >= key; --i) {
        if (group.intervals[size_t(i)].high >= key)
            found.append(group.intervals[size_t(i)].message);
    }
}

QVector<MessageInfo const *> DiscriminantIndex::lookup(QVector<MessageInfo const *> const &messages,
                                                       FieldValue const *values, int count)
{
    QVector<MessageInfo const *> result;
    if (count < 1)
        return result; // no message type takes part without values

    QMutexLocker const locker(&mMutex);
    uint64_t const generation = sDiscriminantGeneration.load(std::memory_order_relaxed);
    if (!mValid || mGeneration != generation) {
        build(messages);
        mValid = true;
        mGeneration = generation;
    }

    QVarLengthArray<int, 16> found;
    if (size_t(count) < mArities.size()) {
        Arity const &arity = mArities[size_t(count)];
        for (size_t p = 0; p < arity.positions.size(); ++p) {
            FieldValue const &value = values[p];
            uint64_t key;
            if (!orderKey(value, &key))
                continue;
            for (TypeGroup const &group : arity.positions[p].groups) {
                if (group.holds(value.getType())) {
                    collect(group, key, found);
                    break;
                }
            }
        }
    }
    for (int m : mCheckedDirectly) {
        if (accepts(messages.at(m), values, count))
            found.append(m);
    }

    // Each accepted message type once, in the order of the format's list.
    std::sort(found.begin(), found.end());
    auto const end = std::unique(found.begin(), found.end());
    result.reserve(int(end - found.begin()));
    for (auto m = found.begin(); m != end; ++m)
        result.append(messages.at(*m));
    return result;
}
