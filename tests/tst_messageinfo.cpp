// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "fieldinfo.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <QTest>

#include <utility>

class tst_MessageInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields();
    void referringFields();
    void discriminants();
};

void tst_MessageInfo::fields()
{
    using Fields = QVector<FieldInfo *>;
    AssertCapture capture;
    MessageInfo info(QStringLiteral("M"));
    QVERIFY(info.isMain());
    TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
    TestFieldInfo key(QStringLiteral("SVID"), FieldType::u(8));
    TestFieldInfo mode(QStringLiteral("Mode"), FieldType::u(8));
    TestFieldInfo sameName(QStringLiteral("SVID"), FieldType::u(16));
    TestFieldInfo stranger(QStringLiteral("Mode"), FieldType::u(8));
    info.addFieldInfo(&number, 0);
    info.addFieldInfo(&key, 12, true);
    info.addFieldInfo(&mode, 5);
    // The index is the caller's, not the position in the list.
    QCOMPARE(key.getIndexInMessageInfo(&info), 12);
    QCOMPARE(info.getKeyFieldInfos(), QVector<FieldInfo const *> { &key });
    QCOMPARE(info.getFieldInfo(QStringLiteral("SVID")), &key);
    // A second field of the same name takes over the name only.
    info.addFieldInfo(&sameName, 3);
    QCOMPARE(info.getFieldInfo(QStringLiteral("SVID")), &sameName);
    QCOMPARE(info.getFieldInfos(), Fields({ &number, &key, &mode, &sameName }));

    // A removed key field stays a key field and keeps its index. The name entry goes by name,
    // though it named the other field.
    info.removeFieldInfo(&key);
    QCOMPARE(std::as_const(info).getFieldInfos(),
             QVector<FieldInfo const *>({ &number, &mode, &sameName }));
    QVERIFY(info.getFieldInfo(QStringLiteral("SVID")) == nullptr);
    QCOMPARE(info.getKeyFieldInfos(), QVector<FieldInfo const *> { &key });
    QVERIFY(!key.occursIn(&info));
    QCOMPARE(key.getIndexInMessageInfo(&info), 12);
    QCOMPARE(capture.count(), 0);

    // The field is asked first, then the message checks its own lists; a stranger's name still
    // takes the entry.
    info.removeFieldInfo(&stranger);
    QCOMPARE(
        capture.texts(),
        QStringList(
            { QStringLiteral("FieldInfo::removeMessageInfo: Trying to remove a non-member"),
              QStringLiteral("MessageInfo::removeFieldInfo: Trying to remove a non-member") }));
    QCOMPARE(
        capture.functions(),
        QStringList({ QStringLiteral("removeMessageInfo"), QStringLiteral("removeFieldInfo") }));
    QCOMPARE(info.getFieldInfos(), Fields({ &number, &mode, &sameName }));
    QVERIFY(info.getFieldInfo(QStringLiteral("Mode")) == nullptr);
}

void tst_MessageInfo::referringFields()
{
    AssertCapture capture;
    MessageInfo channel(QStringLiteral("Channel"));
    TestFieldInfo first(QStringLiteral("Type1"), FieldType::subMessage(&channel));
    TestFieldInfo second(QStringLiteral("Type2"), FieldType::subMessage(&channel));
    QCOMPARE(channel.getReferringFieldInfos(), QVector<FieldInfo *>({ &first, &second }));
    QCOMPARE(std::as_const(channel).getReferringFieldInfos(),
             QVector<FieldInfo const *>({ &first, &second }));

    // No duplicate check: a second entry needs a second removal.
    channel.addReferringFieldInfo(&first);
    channel.removeReferringFieldInfo(&first);
    QCOMPARE(channel.getReferringFieldInfos(), QVector<FieldInfo *>({ &second, &first }));
    {
        TestFieldInfo third(QStringLiteral("Type3"), FieldType::subMessage(&channel));
        QCOMPARE(channel.getReferringFieldInfos().size(), 3);
    }
    QCOMPARE(channel.getReferringFieldInfos(), QVector<FieldInfo *>({ &second, &first }));
    QCOMPARE(capture.count(), 0);

    TestFieldInfo plain(QStringLiteral("N"), FieldType::u(8));
    channel.removeReferringFieldInfo(&plain);
    QCOMPARE(capture.texts(),
             QStringList(QStringLiteral(
                 "MessageInfo::removeReferringFieldInfo: Trying to remove a non-member")));
    QCOMPARE(capture.functions(), QStringList(QStringLiteral("removeReferringFieldInfo")));
}

void tst_MessageInfo::discriminants()
{
    MessageInfo info(QStringLiteral("M"));
    TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
    TestFieldInfo revision(QStringLiteral("Revision"), FieldType::u(3));
    FieldValue const value = FieldValue::u(4006, 16);
    FieldValue const high = FieldValue::u(7, 3);
    FieldValue const low = FieldValue::u(1, 3);
    auto ends = [&info](int position) {
        QVector<FieldValue> ends;
        for (MessageInfo::DiscriminantValueRange const &range :
             info.getDiscriminants().at(position).ranges)
            ends << range.low << range.high;
        return ends;
    };

    QVERIFY(info.getDiscriminant(&number).ranges.isEmpty()); // created empty at position 0
    info.addDiscriminantValue(&number, value);
    info.addDiscriminantValueRange(&revision, high, low); // the next position, stored as given
    info.addDiscriminantValue(&number, value); // kept twice
    QCOMPARE(info.getDiscriminants().size(), 2);
    QCOMPARE(info.getDiscriminants().at(0).fieldInfo, &number);
    QCOMPARE(info.getDiscriminants().at(1).fieldInfo, &revision);
    QCOMPARE(ends(0), QVector<FieldValue>({ value, value, value, value }));
    QCOMPARE(ends(1), QVector<FieldValue>({ high, low }));

    // The reference is into the message's own list.
    info.getDiscriminant(&revision).ranges.clear();
    QCOMPARE(ends(1), QVector<FieldValue>());
}

QTEST_GUILESS_MAIN(tst_MessageInfo)

#include "tst_messageinfo.moc"
