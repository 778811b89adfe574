// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionarytestaccess.h"
#include "testfieldinfo.h"

#include <QTest>

#include <utility>

class tst_DictionaryInvariants : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsOutOfStep();
};

namespace {
template <typename T> void swapFront(QVector<T const *> &list)
{
    std::swap(list[0], list[1]);
}
} // namespace

// Each pair of lists gets two elements, swapped in the const list only; removing the front one
// of the other list takes the same position from both, so each list keeps a different element.
// Then the const list is put back in step and the rest unlinked, so that the destructors meet
// consistent lists.
void tst_DictionaryInvariants::listsOutOfStep()
{
    using Access = DictionaryTestAccess;
    using Fields = QVector<FieldInfo *>;
    using ConstFields = QVector<FieldInfo const *>;
    AssertCapture capture;
    MessageInfo info(QStringLiteral("M"));
    MessageInfo other(QStringLiteral("N"));
    TestFieldInfo first(QStringLiteral("first"), FieldType::u(8));
    TestFieldInfo second(QStringLiteral("second"), FieldType::u(8));
    TestFieldInfo third(QStringLiteral("third"), FieldType::u(8));

    info.addFieldInfo(&first, 0);
    info.addFieldInfo(&second, 1);
    swapFront(Access::constFieldInfos(info));
    info.removeFieldInfo(&first);
    QCOMPARE(info.getFieldInfos(), Fields { &second });
    QCOMPARE(std::as_const(info).getFieldInfos(), ConstFields { &first });
    Access::constFieldInfos(info) = { &second };
    info.removeFieldInfo(&second);

    info.addReferringFieldInfo(&first);
    info.addReferringFieldInfo(&second);
    swapFront(Access::constReferringFieldInfos(info));
    info.removeReferringFieldInfo(&first);
    QCOMPARE(info.getReferringFieldInfos(), Fields { &second });
    QCOMPARE(std::as_const(info).getReferringFieldInfos(), ConstFields { &first });
    Access::constReferringFieldInfos(info) = { &second };
    info.removeReferringFieldInfo(&second);

    first.addMessageInfo(&info, 0);
    first.addMessageInfo(&other, 0);
    swapFront(Access::constMessageInfos(first));
    first.removeMessageInfo(&info);
    QCOMPARE(first.getMessageInfos(), QVector<MessageInfo *> { &other });
    QCOMPARE(std::as_const(first).getMessageInfos(), QVector<MessageInfo const *> { &info });
    Access::constMessageInfos(first) = { &other };
    first.removeMessageInfo(&other);

    first.addSubFieldInfo(&second);
    first.addSubFieldInfo(&third);
    swapFront(Access::constSubFieldInfos(first));
    first.removeSubFieldInfo(&second);
    QVERIFY(!second.hasParentFieldInfo());
    QCOMPARE(first.getSubFieldInfos(), Fields { &third });
    QCOMPARE(std::as_const(first).getSubFieldInfos(), ConstFields { &second });
    Access::constSubFieldInfos(first) = { &third };
    first.removeSubFieldInfo(&third);

    QCOMPARE(capture.texts(),
             QStringList(
                 { QStringLiteral("MessageInfo::removeFieldInfo: vectors not consistent"),
                   QStringLiteral("MessageInfo::removeReferringFieldInfo: vectors not consistent"),
                   QStringLiteral("FieldInfo::removeMessageInfo: vectors not consistent"),
                   QStringLiteral("FieldInfo::removeSubFieldInfo: vectors not consistent") }));
    QCOMPARE(
        capture.functions(),
        QStringList({ QStringLiteral("removeFieldInfo"), QStringLiteral("removeReferringFieldInfo"),
                      QStringLiteral("removeMessageInfo"), QStringLiteral("removeSubFieldInfo") }));
}

QTEST_GUILESS_MAIN(tst_DictionaryInvariants)

#include "tst_dictionaryinvariants.moc"
