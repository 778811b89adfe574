// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_REFERENCECOUNTEDOBJECT_H
#define MESSAGEAPI_REFERENCECOUNTEDOBJECT_H

#include "allocationtracing.h"
#include "messageapiframework_export.h"

/**
 * Base of objects shared through an intrusive, non-atomic reference count.
 *
 * A new object has count 0 and belongs to its creator, who may delete it directly. The first
 * addReference() makes the count 1; the removeReference() that brings the count back to 0
 * deletes the object. Counting is single-threaded: every call on one object must come from
 * one thread or under the caller's own lock.
 */
class MESSAGEAPIFRAMEWORK_EXPORT ReferenceCountedObject
{
public:
    ReferenceCountedObject();
    /// Reports "Deleting referenced object!" when the count is not 0, then destroys anyway.
    virtual ~ReferenceCountedObject();

    /// One more holder: the object lives until it has let go too.
    void addReference() const;
    /// Deletes the object when the count reaches 0; do not touch it afterwards.
    void removeReference() const;
    /// The current count.
    int getNumberOfReferences() const;

private:
    ReferenceCountedObject(ReferenceCountedObject const &) = delete;
    ReferenceCountedObject &operator=(ReferenceCountedObject const &) = delete;

    mutable int mReferenceCount;
};

// Decoders build and drop many objects (one per record of a message), so these stay inline.

inline ReferenceCountedObject::ReferenceCountedObject()
    : mReferenceCount(0)
{
    MessageApiTracing::allocated(QStringLiteral("ReferenceCountedObject"));
}

inline void ReferenceCountedObject::addReference() const
{
    ++mReferenceCount;
}

inline void ReferenceCountedObject::removeReference() const
{
    if (--mReferenceCount == 0)
        delete this;
}

inline int ReferenceCountedObject::getNumberOfReferences() const
{
    return mReferenceCount;
}

#endif // MESSAGEAPI_REFERENCECOUNTEDOBJECT_H
