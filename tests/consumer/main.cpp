// SPDX-License-Identifier: LGPL-2.1-or-later
#include <auxiliary/referencecountedobject.h>
#include <message.h>
#include <messageapi.h>
#include <messageapievent.h>

#include <QTextStream>

#ifdef CONSUMER_RTCM3
#include <formatinfo.h>
#include <rtcm3/rtcm3framer.h>
#endif

int main()
{
    QTextStream out(stdout);
    const MessageApiEvent event(MessageApiEvent::ClientError, QStringLiteral("consumer"), nullptr);
    out << event.getTypeString() << ": " << event.getMessage() << '\n';
    MessageApi::enableConfidentialInformationDisplay();
    out << "confidential display: " << MessageApi::confidentialInformationDisplayEnabled() << '\n';
#ifdef CONSUMER_RTCM3
    // The smallest frame: an empty payload and its CRC.
    FormatInfo format(QStringLiteral("RTCM3"));
    Rtcm3Framer framer(&format, QStringLiteral("consumer"));
    framer.addData(QByteArray::fromHex("d3000047ea4b"));
    out << "rtcm3 frames: " << framer.getFrameCount() << '\n';
#endif
    return event.isError() && Message::fieldSeparator == QLatin1String(",") ? 0 : 1;
}
