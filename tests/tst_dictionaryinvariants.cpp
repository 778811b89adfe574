// SPDX-License-Identifier: LGPL-2.1-or-later

// The parallel lists of the descriptors cannot get out of step through their interface. These
// tests put them out of step by hand to see the reports, so the descriptor headers are read with
// their private members opened up; every other header comes first, unchanged.
#include <QByteArray>
#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QVector>

#include <cstdint>
#include <utility>

#define private public
#include "fieldinfo.h"
#include "messageinfo.h"
#undef private

#include "assertcapture.h"
#include "testfieldinfo.h"

class tst_DictionaryInvariants : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsOutOfStep_data();
    void listsOutOfStep();
};

namespace {
enum Lists { MessageFields, MessageReferringFields, FieldMessages, FieldSubFields };

template <typename T> void swapFirstTwo(QVector<T> &list)
{
    std::swap(list[0], list[1]);
}
} // namespace

void tst_DictionaryInvariants::listsOutOfStep_data()
{
    QTest::addColumn<int>("lists");
    QTest::addColumn<QString>("function");
    QTest::addColumn<QString>("text");

    QTest::newRow("fields of a message")
        << int(MessageFields) << QStringLiteral("removeFieldInfo")
        << QStringLiteral("MessageInfo::removeFieldInfo: vectors not consistent");
    QTest::newRow("referring fields of a message")
        << int(MessageReferringFields) << QStringLiteral("removeReferringFieldInfo")
        << QStringLiteral("MessageInfo::removeReferringFieldInfo: vectors not consistent");
    QTest::newRow("messages of a field")
        << int(FieldMessages) << QStringLiteral("removeMessageInfo")
        << QStringLiteral("FieldInfo::removeMessageInfo: vectors not consistent");
    QTest::newRow("sub-fields of a field")
        << int(FieldSubFields) << QStringLiteral("removeSubFieldInfo")
        << QStringLiteral("FieldInfo::removeSubFieldInfo: vectors not consistent");
}

void tst_DictionaryInvariants::listsOutOfStep()
{
    QFETCH(int, lists);
    QFETCH(QString, function);
    QFETCH(QString, text);

    AssertCapture capture;
    MessageInfo info(QStringLiteral("M"));
    MessageInfo other(QStringLiteral("N"));
    TestFieldInfo first(QStringLiteral("first"), FieldType::u(8));
    TestFieldInfo second(QStringLiteral("second"), FieldType::u(8));
    TestFieldInfo third(QStringLiteral("third"), FieldType::u(8));

    // Each case swaps the second list, removes the element at the front of the first list, and
    // then puts the lists back in step so that the destructors meet consistent lists.
    switch (lists) {
    case MessageFields:
        info.addFieldInfo(&first, 0);
        info.addFieldInfo(&second, 1);
        swapFirstTwo(info.mConstFieldInfos);
        info.removeFieldInfo(&first);
        // The same position went from both lists, so the second list lost the other field.
        QCOMPARE(info.mFieldInfos, QVector<FieldInfo *> { &second });
        QCOMPARE(info.mConstFieldInfos, QVector<FieldInfo const *> { &first });
        info.mConstFieldInfos = { &second };
        break;
    case MessageReferringFields:
        info.addReferringFieldInfo(&first);
        info.addReferringFieldInfo(&second);
        swapFirstTwo(info.mConstReferringFieldInfos);
        info.removeReferringFieldInfo(&first);
        QCOMPARE(info.mReferringFieldInfos, QVector<FieldInfo *> { &second });
        info.mReferringFieldInfos.clear();
        info.mConstReferringFieldInfos.clear();
        break;
    case FieldMessages:
        first.addMessageInfo(&info, 0);
        first.addMessageInfo(&other, 0);
        swapFirstTwo(first.mConstMessageInfos);
        first.removeMessageInfo(&info);
        QCOMPARE(first.mMessageInfos, QVector<MessageInfo *> { &other });
        first.mMessageInfos.clear();
        first.mConstMessageInfos.clear();
        break;
    case FieldSubFields:
        first.addSubFieldInfo(&second);
        first.addSubFieldInfo(&third);
        swapFirstTwo(first.mConstSubFieldInfos);
        first.removeSubFieldInfo(&second);
        QVERIFY(!second.hasParentFieldInfo());
        QCOMPARE(first.mSubFieldInfos, QVector<FieldInfo *> { &third });
        first.mConstSubFieldInfos = { &third };
        break;
    }
    QCOMPARE(capture.texts(), QStringList { text });
    QCOMPARE(capture.functions(), QStringList { function });
}

QTEST_GUILESS_MAIN(tst_DictionaryInvariants)

#include "tst_dictionaryinvariants.moc"
