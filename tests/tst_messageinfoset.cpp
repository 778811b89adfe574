// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "messageinfo.h"
#include "messageinfoset.h"
#include "tracerrecorder.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using InfoSet = QSet<MessageInfo const *>;

class tst_MessageInfoSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesEmitOnlyWhenContentsChange();
    void flippingAlternatesGeodeticAndCartesian();
};

void tst_MessageInfoSet::changesEmitOnlyWhenContentsChange()
{
    MessageInfo const infos[3] { MessageInfo(QStringLiteral("A")), MessageInfo(QStringLiteral("B")),
                                 MessageInfo(QStringLiteral("C")) };
    auto set = [&infos](QString const &names) {
        InfoSet result;
        for (QChar name : names)
            result.insert(&infos[name.toLatin1() - 'A']);
        return result;
    };
    MessageInfoSet infoSet;
    QSignalSpy spy(&infoSet, &MessageInfoSet::changed);
    QStringList contents, emissions;
    // "+B" add, "-B" remove, "=BC" set the contents, "clear"; a step that changes nothing must
    // not emit.
    for (QString const &step :
         QStringLiteral("+A +B +B -C -B =BA =AB =A =C clear clear").split(' ')) {
        if (step == QLatin1String("clear"))
            infoSet.clear();
        else if (step.startsWith(QLatin1Char('+')))
            infoSet.addMessageInfo(*set(step.mid(1)).cbegin());
        else if (step.startsWith(QLatin1Char('-')))
            infoSet.removeMessageInfo(*set(step.mid(1)).cbegin());
        else
            infoSet.setContents(set(step.mid(1)));
        QStringList names;
        for (MessageInfo const *info : infoSet.getMessageInfos())
            names.append(info->getName());
        names.sort();
        contents.append(names.join(QString()));
        emissions.append(QString::number(spy.count()));
    }
    QCOMPARE(contents.join(QLatin1Char(' ')), QStringLiteral("A AB AB AB A AB AB A C  "));
    QCOMPARE(emissions.join(QLatin1Char(' ')), QStringLiteral("1 2 2 2 3 4 4 5 6 7 7"));
}

void tst_MessageInfoSet::flippingAlternatesGeodeticAndCartesian()
{
    DictionaryFixture dictionary;
    InfoSet const geodetic { dictionary.posGeod(), dictionary.velGeod() };
    InfoSet const cartesian { dictionary.posCart(), dictionary.velCart() };
    TracerRecorder recorder;
    {
        MessageInfoSet infoSet;
        infoSet.setContents({ dictionary.diffCorrIn() });
        QSignalSpy spy(&infoSet, &MessageInfoSet::changed);
        infoSet.startFlipping();
        QCOMPARE(infoSet.findChildren<QTimer *>().size(), 1);
        auto *timer = infoSet.findChild<QTimer *>();
        QVERIFY(timer->isActive() && !timer->isSingleShot());
        QCOMPARE(timer->interval(), 2000);
        QCOMPARE(infoSet.getMessageInfos(), InfoSet { dictionary.diffCorrIn() });

        // The period is checked above; shorten it so that the flips come without slowing the
        // suite.
        timer->setInterval(1);
        for (int flip = 1; flip <= 4; ++flip) {
            QVERIFY(spy.wait());
            QCOMPARE(spy.count(), flip);
            QCOMPARE(infoSet.getMessageInfos(), flip % 2 ? geodetic : cartesian);
        }
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("MessageInfoSet")),
             QStringList({ "+MessageInfoSet", "-MessageInfoSet" }));
    // The exported flag is kept for old applications only; the flip state is the set's own.
    QVERIFY(!mCurrentlyCart);
}

QTEST_GUILESS_MAIN(tst_MessageInfoSet)
#include "tst_messageinfoset.moc"
