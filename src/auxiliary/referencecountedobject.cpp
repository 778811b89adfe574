// SPDX-License-Identifier: LGPL-2.1-or-later
#include "auxiliary/referencecountedobject.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("REFCOUNTEDOBJECT", "src/auxiliary/referencecountedobject")

ReferenceCountedObject::ReferenceCountedObject()
    : mReferenceCount(0)
{
    MessageApiTracing::allocated(QStringLiteral("ReferenceCountedObject"));
}

void ReferenceCountedObject::addReference() const
{
    ++mReferenceCount;
}

void ReferenceCountedObject::removeReference() const
{
    if (--mReferenceCount == 0)
        delete this;
}

// Tools match the report of a referenced object's deletion by file and line: keep the report
// on line 31 of this file.
ReferenceCountedObject::~ReferenceCountedObject()
{
    if (mReferenceCount != 0) {
        // The holders still point at this object; report it, then destroy all the same.
        MSGAPI_ASSERT_REPORT("~ReferenceCountedObject", "Deleting referenced object!");
    }
    MessageApiTracing::deallocated(QStringLiteral("ReferenceCountedObject"));
}

int ReferenceCountedObject::getNumberOfReferences() const
{
    return mReferenceCount;
}
