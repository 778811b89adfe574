// SPDX-License-Identifier: LGPL-2.1-or-later
// Prints the antenna position of every 1005 in an RTCM 3 capture: rtcm3antenna FILE
#include <fieldinfo.h>
#include <messageinfo.h>
#include <rtcm3/rtcm3decoder.h>
#include <rtcm3/rtcm3dictionary.h>
#include <rtcm3/rtcm3framer.h>

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QStringList>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLocale::setDefault(QLocale::c()); // values as plain digits, whatever the user's locale
    QFile file(app.arguments().value(1));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "rtcm3antenna: cannot open %s: %s\n", qPrintable(file.fileName()),
                     qPrintable(file.errorString()));
        return 1;
    }
    Rtcm3Dictionary dictionary;
    Rtcm3Framer framer(dictionary.getFormat(), QStringLiteral("capture"));
    Rtcm3Decoder decoder(&dictionary, QStringLiteral("decoder"));
    QObject::connect(&framer, &Rtcm3Framer::frameFound, &decoder,
                     qOverload<const uint8_t *, uint>(&Rtcm3Decoder::decodeMessage));
    QObject::connect(&decoder, &MessageSource::newMessage, [](Message const *message) {
        if (message->getInfo()->getName() != QLatin1String("1005"))
            return;
        QStringList position; // "-2386072.7310 m" for each of X, Y, Z
        for (char const *name : { "DF025", "DF026", "DF027" }) {
            FieldInfo const *field = message->getInfo()->getFieldInfo(QLatin1String(name));
            position.append(field->getInterpretedString(field->getValue(message, 0), true));
        }
        std::printf("%s\n", qPrintable(position.join(QLatin1String(", "))));
    });
    framer.addData(file.readAll());
    framer.finish();
    return 0;
}
