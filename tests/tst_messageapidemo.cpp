// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demostreamparser.h"
#include "demostreamwriter.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString dataDir = QStringLiteral(MESSAGEAPI_DEMO_DATA_DIR);

struct Run
{
    bool finished = false;
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

Run run(QString const &program, QStringList const &arguments = {})
{
    QProcess process;
    process.start(program, arguments);
    Run result;
    // Generous: the sanitizer build is slow.
    result.finished = process.waitForFinished(120000);
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

QByteArray readFile(QString const &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// The demonstration program on its bundled stream (its decoder's phases, events and texts show
// in the report), the generator of that stream, and the stream parser that finds the blocks.
class tst_MessageApiDemo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void generatorReproducesBundledStream()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath(QStringLiteral("stream.vexa"));
        const Run generator = run(QStringLiteral(MESSAGEAPI_DEMO_GENERATOR), { path });
        QVERIFY(generator.finished);
        QCOMPARE(generator.exitCode, 0);

        const QByteArray bundled = readFile(dataDir + QStringLiteral("/demo-stream.vexa"));
        QVERIFY(!bundled.isEmpty());
        QVERIFY2(
            readFile(path) == bundled,
            "the bundled stream is not the generator's output: regenerate it with makedemostream");
    }

    void demoPrintsExpectedReport()
    {
        const Run demo = run(QStringLiteral(MESSAGEAPI_DEMO_PROGRAM));
        QVERIFY(demo.finished);
        QCOMPARE(QString::fromUtf8(demo.errors), QString());
        QCOMPARE(demo.exitCode, 0);

        // Compared by lines, so that a failure names the first line that differs.
        const QStringList expected
            = QString::fromUtf8(readFile(dataDir + QStringLiteral("/demo-stream.expected")))
                  .split(QLatin1Char('\n'));
        QVERIFY(expected.size() > 1);
        QCOMPARE(QString::fromUtf8(demo.output).split(QLatin1Char('\n')), expected);
    }

    void parserFindsFrames_data()
    {
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<int>("pieceSize");
        QTest::addColumn<QStringList>(
            "signalsSeen"); // "vexa <number> <length> <block in hex>", "crc"
        QTest::addColumn<int>("skipped");

        // Block A holds what looks like the start of a frame.
        const QByteArray blockA = QByteArray::fromHex("0100a55a0600") + QByteArray("abcdefghijkl");
        const QByteArray blockB = QByteArray::fromHex("0400") + QByteArray(300, 'b');
        const QByteArray frameA = DemoStreamWriter::frame(blockA);
        const QByteArray frameB = DemoStreamWriter::frame(blockB);
        const QString seenA = QStringLiteral("vexa 1 18 ") + QString::fromLatin1(blockA.toHex());
        const QString seenB = QStringLiteral("vexa 4 302 ") + QString::fromLatin1(blockB.toHex());
        QByteArray damagedA = frameA;
        damagedA[frameA.size() - 3] = 'x';

        // Whole pieces of several frames are in the demonstration's report.
        QTest::newRow("two frames byte by byte")
            << frameA + frameB << 1 << QStringList { seenA, seenB } << 0;
        QTest::newRow("noise before and between frames")
            << QByteArray("\x00\xa5\x13", 3) + frameA + QByteArray("\x5a") + frameB << 7
            << QStringList { seenA, seenB } << 4;
        QTest::newRow("damaged frame dropped whole, sync bytes in it ignored")
            << damagedA + frameB << 5 << QStringList { QStringLiteral("crc"), seenB } << 0;
        QTest::newRow("sync bytes with a length beyond any block")
            << QByteArray("\xa5\x5a\xff\x7f", 4) + frameB << 3 << QStringList { seenB } << 4;
    }

    void parserFindsFrames()
    {
        QFETCH(QByteArray, stream);
        QFETCH(int, pieceSize);
        QFETCH(QStringList, signalsSeen);
        QFETCH(int, skipped);

        DemoStreamParser parser;
        QStringList seen;
        connect(&parser, &DemoStreamParser::vexa, this,
                [&](unsigned int number, unsigned int length) {
                    const QByteArray block(parser.buffer(), int(length));
                    seen << QStringLiteral("vexa %1 %2 %3")
                                .arg(number)
                                .arg(length)
                                .arg(QString::fromLatin1(block.toHex()));
                });
        connect(&parser, &DemoStreamParser::crcErrorVexa, this,
                [&seen] { seen << QStringLiteral("crc"); });
        for (int pos = 0; pos < stream.size(); pos += pieceSize)
            parser.processBytes(stream.mid(pos, pieceSize));

        QCOMPARE(seen, signalsSeen);
        QCOMPARE(parser.getSkippedByteCount(), skipped);
    }
};

QTEST_GUILESS_MAIN(tst_MessageApiDemo)
#include "tst_messageapidemo.moc"
