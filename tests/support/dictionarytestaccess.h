// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_DICTIONARYTESTACCESS_H
#define MESSAGEAPI_TESTS_DICTIONARYTESTACCESS_H

#include "fieldinfo.h"
#include "messageinfo.h"

/// The descriptors keep some lists twice, once with const pointers, and their interface keeps
/// the two in step. Tests that need them out of step reach the const halves through this class,
/// a friend of both descriptors.
class DictionaryTestAccess
{
public:
    static QVector<FieldInfo const *> &constFieldInfos(MessageInfo &message)
    {
        return message.mConstFieldInfos;
    }
    static QVector<FieldInfo const *> &constReferringFieldInfos(MessageInfo &message)
    {
        return message.mConstReferringFieldInfos;
    }
    static QVector<MessageInfo const *> &constMessageInfos(FieldInfo &field)
    {
        return field.mConstMessageInfos;
    }
    static QVector<FieldInfo const *> &constSubFieldInfos(FieldInfo &field)
    {
        return field.mConstSubFieldInfos;
    }
};

#endif // MESSAGEAPI_TESTS_DICTIONARYTESTACCESS_H
