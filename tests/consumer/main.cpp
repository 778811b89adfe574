// SPDX-License-Identifier: LGPL-2.1-or-later
#include <auxiliary/referencecountedobject.h>
#include <message.h>
#include <messageapi.h>
#include <messageapievent.h>

#include <QTextStream>

int main()
{
    QTextStream out(stdout);
    const MessageApiEvent event(MessageApiEvent::ClientError, QStringLiteral("consumer"), nullptr);
    out << event.getTypeString() << ": " << event.getMessage() << '\n';
    MessageApi::enableConfidentialInformationDisplay();
    out << "confidential display: " << MessageApi::confidentialInformationDisplayEnabled() << '\n';
    return event.isError() && Message::fieldSeparator == QLatin1String(",") ? 0 : 1;
}
