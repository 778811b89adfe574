// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <QTest>

class tst_MessageInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void addFieldInfo();
    void removeFieldInfoKeepsKeyField();
    void removeFieldInfoDropsIndexEntryByName();
    void removingNonMemberReportsBothSides();
    void referringFields();
    void removingNonReferringFieldReports();
    void discriminants();
};

void tst_MessageInfo::defaults()
{
    MessageInfo info(QStringLiteral("PosCart"));
    QCOMPARE(info.getName(), QStringLiteral("PosCart"));
    QVERIFY(info.isMain());
    QVERIFY(info.getFormatInfo() == nullptr);
    QVERIFY(info.getFieldInfos().isEmpty());
    QVERIFY(info.getKeyFieldInfos().isEmpty());
    QVERIFY(info.getReferringFieldInfos().isEmpty());
    QVERIFY(info.getDiscriminants().isEmpty());
    QVERIFY(info.getShortDescriptiveText().isEmpty());
    QVERIFY(info.getDescriptiveText().isEmpty());

    FormatInfo format(QStringLiteral("F"));
    info.setFormatInfo(&format);
    info.setIsMain(false);
    QCOMPARE(info.getFormatInfo(), &format);
    QVERIFY(!info.isMain());
    // Setting the format does not register the message with it.
    QVERIFY(format.getMessageInfosIncludingSubMessages().isEmpty());
}

void tst_MessageInfo::addFieldInfo()
{
    MessageInfo info(QStringLiteral("M"));
    TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
    TestFieldInfo svid(QStringLiteral("SVID"), FieldType::u(8));
    TestFieldInfo cn0(QStringLiteral("CN0"), FieldType::u(8));
    info.addFieldInfo(&number, 0);
    info.addFieldInfo(&svid, 12, true);
    info.addFieldInfo(&cn0, 5, false);

    QCOMPARE(info.getFieldInfos(), QVector<FieldInfo *>({ &number, &svid, &cn0 }));
    QCOMPARE(static_cast<MessageInfo const &>(info).getFieldInfos(),
             QVector<FieldInfo const *>({ &number, &svid, &cn0 }));
    QCOMPARE(info.getKeyFieldInfos(), QVector<FieldInfo const *> { &svid });
    QCOMPARE(info.getFieldInfo(QStringLiteral("SVID")), &svid);
    QVERIFY(info.getFieldInfo(QStringLiteral("svid")) == nullptr);
    // The index is the caller's, not the position in the list.
    QCOMPARE(svid.getIndexInMessageInfo(&info), 12);
    QCOMPARE(cn0.getIndexInMessageInfo(&info), 5);
    QVERIFY(svid.occursIn(&info));

    // A second field of the same name takes over the name only.
    TestFieldInfo otherSvid(QStringLiteral("SVID"), FieldType::u(16));
    info.addFieldInfo(&otherSvid, 3);
    QCOMPARE(info.getFieldInfo(QStringLiteral("SVID")), &otherSvid);
    QCOMPARE(info.getFieldInfos().size(), 4);
}

void tst_MessageInfo::removeFieldInfoKeepsKeyField()
{
    AssertCapture capture;
    MessageInfo info(QStringLiteral("M"));
    TestFieldInfo key(QStringLiteral("StationID"), FieldType::u(12));
    TestFieldInfo other(QStringLiteral("Other"), FieldType::u(12));
    info.addFieldInfo(&key, 0, true);
    info.addFieldInfo(&other, 1);
    info.removeFieldInfo(&key);

    QCOMPARE(info.getFieldInfos(), QVector<FieldInfo *> { &other });
    QCOMPARE(static_cast<MessageInfo const &>(info).getFieldInfos(),
             QVector<FieldInfo const *> { &other });
    QVERIFY(info.getFieldInfo(QStringLiteral("StationID")) == nullptr);
    QCOMPARE(info.getKeyFieldInfos(), QVector<FieldInfo const *> { &key });
    QVERIFY(!key.occursIn(&info));
    QCOMPARE(key.getIndexInMessageInfo(&info), 0);
    QCOMPARE(capture.count(), 0);
}

void tst_MessageInfo::removeFieldInfoDropsIndexEntryByName()
{
    AssertCapture capture;
    MessageInfo info(QStringLiteral("M"));
    TestFieldInfo first(QStringLiteral("Mode"), FieldType::u(8));
    TestFieldInfo second(QStringLiteral("Mode"), FieldType::u(8));
    info.addFieldInfo(&first, 0);
    info.addFieldInfo(&second, 1);
    info.removeFieldInfo(&first);
    // The entry named the second field, yet it goes: entries are removed by name.
    QVERIFY(info.getFieldInfo(QStringLiteral("Mode")) == nullptr);
    QCOMPARE(info.getFieldInfos(), QVector<FieldInfo *> { &second });
    QCOMPARE(capture.count(), 0);
}

void tst_MessageInfo::removingNonMemberReportsBothSides()
{
    AssertCapture capture;
    MessageInfo info(QStringLiteral("M"));
    TestFieldInfo member(QStringLiteral("Mode"), FieldType::u(8));
    TestFieldInfo stranger(QStringLiteral("Mode"), FieldType::u(8));
    info.addFieldInfo(&member, 0);
    info.removeFieldInfo(&stranger);

    // The field is asked first, then the message checks its own lists.
    QCOMPARE(
        capture.texts(),
        QStringList(
            { QStringLiteral("FieldInfo::removeMessageInfo: Trying to remove a non-member"),
              QStringLiteral("MessageInfo::removeFieldInfo: Trying to remove a non-member") }));
    QCOMPARE(
        capture.functions(),
        QStringList({ QStringLiteral("removeMessageInfo"), QStringLiteral("removeFieldInfo") }));
    QCOMPARE(info.getFieldInfos(), QVector<FieldInfo *> { &member });
    // Even a stranger's name takes the index entry with it.
    QVERIFY(info.getFieldInfo(QStringLiteral("Mode")) == nullptr);
}

void tst_MessageInfo::referringFields()
{
    MessageInfo channel(QStringLiteral("Channel"));
    TestFieldInfo first(QStringLiteral("Type1"), FieldType::subMessage(&channel));
    TestFieldInfo second(QStringLiteral("Type2"), FieldType::subMessage(&channel));
    TestFieldInfo plain(QStringLiteral("N"), FieldType::u(8));
    QCOMPARE(channel.getReferringFieldInfos(), QVector<FieldInfo *>({ &first, &second }));
    QCOMPARE(static_cast<MessageInfo const &>(channel).getReferringFieldInfos(),
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
}

void tst_MessageInfo::removingNonReferringFieldReports()
{
    AssertCapture capture;
    MessageInfo channel(QStringLiteral("Channel"));
    TestFieldInfo plain(QStringLiteral("N"), FieldType::u(8));
    channel.removeReferringFieldInfo(&plain);
    QCOMPARE(
        capture.texts(),
        QStringList { QStringLiteral("MessageInfo::removeReferringFieldInfo: Trying to remove a "
                                     "non-member") });
    QCOMPARE(capture.functions(), QStringList { QStringLiteral("removeReferringFieldInfo") });
}

void tst_MessageInfo::discriminants()
{
    MessageInfo info(QStringLiteral("M"));
    TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
    TestFieldInfo revision(QStringLiteral("Revision"), FieldType::u(3));

    MessageInfo::Discriminant &created = info.getDiscriminant(&number);
    QCOMPARE(created.fieldInfo, &number);
    QVERIFY(created.ranges.isEmpty());
    QCOMPARE(info.getDiscriminants().size(), 1);

    info.addDiscriminantValue(&number, FieldValue::u(4006, 16));
    info.addDiscriminantValueRange(&revision, FieldValue::u(7, 3), FieldValue::u(1, 3));
    info.addDiscriminantValue(&number, FieldValue::u(4006, 16));

    QVector<MessageInfo::Discriminant> const discriminants = info.getDiscriminants();
    QCOMPARE(discriminants.size(), 2);
    QCOMPARE(discriminants.at(0).fieldInfo, &number);
    QCOMPARE(discriminants.at(0).ranges.size(), 2);
    for (MessageInfo::DiscriminantValueRange const &range : discriminants.at(0).ranges) {
        QCOMPARE(range.low, FieldValue::u(4006, 16));
        QCOMPARE(range.high, FieldValue::u(4006, 16));
    }
    // Stored as given, even with low above high.
    QCOMPARE(discriminants.at(1).fieldInfo, &revision);
    QCOMPARE(discriminants.at(1).ranges.size(), 1);
    QCOMPARE(discriminants.at(1).ranges.at(0).low, FieldValue::u(7, 3));
    QCOMPARE(discriminants.at(1).ranges.at(0).high, FieldValue::u(1, 3));

    // The reference is into the message's own list.
    info.getDiscriminant(&revision).ranges.clear();
    QVERIFY(info.getDiscriminants().at(1).ranges.isEmpty());
}

QTEST_GUILESS_MAIN(tst_MessageInfo)

#include "tst_messageinfo.moc"
