// SPDX-License-Identifier: LGPL-2.1-or-later
// Builds a few events and messages, shows what the library makes of them, and prints the
// allocation tracer's counts at the end.
#include "memleaktracer.h"
#include "message.h"
#include "messageapievent.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

class DemoMessage : public Message
{
public:
    explicit DemoMessage(QByteArray raw)
        : Message(nullptr)
        , mRaw(raw)
    {
    }
    unsigned int getRawSize() const override { return unsigned(mRaw.size()); }

protected:
    uint8_t const *getRawRepresentation() const override
    {
        return reinterpret_cast<uint8_t const *>(mRaw.constData());
    }

private:
    QByteArray mRaw;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    MemLeakTracer::getInstance()->setEnabled(true);
    QTextStream out(stdout);

    const QList<MessageApiEvent> events = {
        MessageApiEvent(MessageApiEvent::ConnectionOpened, QStringLiteral("Rover connection opened"), nullptr),
        MessageApiEvent(MessageApiEvent::CrcError, QStringLiteral("VEXA CRC error"), nullptr),
        MessageApiEvent(MessageApiEvent::ClientError, QStringLiteral("FieldValue::assertType: wrong type"), nullptr),
    };
    for (MessageApiEvent const &event : events)
        out << event.getTypeString() << (event.isError() ? " (error)" : "") << ": " << event.getMessage() << '\n';

    auto *message = new DemoMessage(QByteArray("\xd3\x00\x13", 3));
    message->addReference();
    out << "message with " << message->getRawSize() << " raw bytes, references: "
        << message->getNumberOfReferences() << '\n';
    message->removeReference();

    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    for (char const *name : {"ReferenceCountedObject", "Message", "MessageApiEvent"}) {
        const QString className = QString::fromLatin1(name);
        out << "tracer: " << className << " allocated " << tracer->getAllocationCount(className)
            << ", live " << tracer->getLiveCount(className) << '\n';
    }
    return 0;
}
