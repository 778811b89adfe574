// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3record.h"

Rtcm3Record::Rtcm3Record(MessageInfo const *info, Rtcm3Message *message,
                         unsigned int groupOffset, unsigned int count, unsigned int recordWidth,
                         bool columnMajor, unsigned int index)
    : Message(info)
    , mGroupOffset(quint16(groupOffset))
    , mGroupCount(quint16(count))
    , mRecordWidth(quint16(recordWidth))
    , mIndex(quint16(index))
    , mColumnMajor(columnMajor)
{
    setParentMessage(message);
}

uint8_t const *Rtcm3Record::getRawRepresentation() const
{
    return getRawRepresentationOf(getMessage());
}
