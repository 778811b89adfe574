// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testparser.h"

TestParser::TestParser(QObject *parent)
    : QObject(parent)
    , mBuffer(capacity, '\0')
{ }
