// SPDX-License-Identifier: LGPL-2.1-or-later
#include "auxiliary/referencecountedobject.h"

#include "auxiliary/tracing.h"

MSGAPI_SOURCE_FILE("REFCOUNTEDOBJECT", "src/auxiliary/referencecountedobject")

// Construction and counting are inline in the header: decoders build and drop one object per
// record of every message, and a call into the library for each step showed in their profiles.
// The destructor stays out of line: it is the class's first virtual function defined outside
// the class, so the type information and the virtual table are emitted once, in this library,
// and shared by every user of the class (a cast by type works across libraries); and its
// report of a referenced object's deletion names this file and line.
//
//
// The count is not atomic. An object is shared between the source that announces it and the
// consumers that keep it, all on one thread; a consumer on another thread takes its reference
// before the object leaves the source's thread and hands it back the same way.
//
// removeReference() deletes through the virtual destructor, so the most derived class's own
// operator delete runs: a class that builds its objects in a block of its own (as a message
// does with its records) keeps that memory until the block goes, and its objects are still
// destroyed one by one, each with its reports to the allocation tracer.

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
